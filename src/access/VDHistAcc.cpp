#include "VDHistAcc.h"

#include "frame/DaxErrorCodes.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdbase/VFHist.h"
#include "vdstore/LQAttributeNames.h"
#include "vdstore/LQHistogramAttributes.h"

bool VDHistAcc::CheckOpenAndChannel(int index, const char* routine)
{
    return core_.CheckFileOpen(routine) && core_.CheckChannel(index, false, routine);
}

bool VDHistAcc::ReadHistogram(int index, VDHist** histogram)
{
    const auto& entryPoints = core_.GetEntryPoints<VDHistAccEntryPoints>();
    *histogram = nullptr;
    if (core_.Call("GetHistogram", [&] { return entryPoints.GetHistogram(core_.GetInstance(), index, histogram); }))
        return true;
    *histogram = nullptr;
    return false;
}

bool VDHistAcc::AddOffset(int index, VDHist* histogram)
{
    if (histogram == nullptr || !core_.GetOffsets().AreAdded())
        return true;
    if (!core_.GetOffsets().Need())
        return false;
    const double offset = core_.GetOffsets()[index];
    return offset == 0.0 || VFHistAddStaticOffset(histogram, offset) != 0;
}

bool VDHistAcc::GetHistogram(int index, VDHist** histogram)
{
    *histogram = nullptr;
    if (!CheckOpenAndChannel(index, "GetHistogram"))
        return false;
    VDHistHandle got;
    if (!ReadHistogram(index, got.Out()) || !AddOffset(index, got.Get()))
        return false;
    *histogram = got.Detach();
    return true;
}

bool VDHistAcc::PutHistogram(int index, VDHist* histogram)
{
    // No plug-in has to know what to do with a handle that is none.
    if (!CheckOpenAndChannel(index, "PutHistogram") || !core_.CheckWritable("PutHistogram") ||
        VFHistGetDescription(histogram) == nullptr)
        return false;
    const auto& entryPoints = core_.GetEntryPoints<VDHistAccEntryPoints>();
    return core_.Call("PutData", [&] { return entryPoints.PutHistogram(core_.GetInstance(), index, histogram); });
}

bool VDHistAcc::AddHeaderAttributes(LQChannelMapper& mapper)
{
    try {
        if (mapper.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, LQChannelMapper::GLOBAL) == nullptr)
            return false;
        for (int index = 0; index < core_.GetChannelCount(); ++index)
            if (!Describe(mapper, index))
                return false;
        return true;
    } catch (...) {
        return core_.ReportPluginError("AddHeaderMetaData");
    }
}

bool VDHistAcc::Describe(LQChannelMapper& mapper, int index)
{
    Z4PropertySet* const set = mapper.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, index);
    if (set == nullptr)
        return false;
    VDString title;
    if (core_.GetChanTitle(index, &title))
        set->PutString(LQAttribute::ChanTitle, title);
    // What can be written back must speak of the values in the file, and not of those with their offsets.
    VDHistHandle histogram;
    if (!(core_.IsReadOnly() ? GetHistogram(index, histogram.Out()) : ReadHistogram(index, histogram.Out())))
        return false;
    if (!histogram)
        return true;
    double zMin = 0;
    double zMax = 0;
    const VDHistDescription* const description = VFHistGetDescription(histogram.Get());
    if (description == nullptr || !VFHistGetZLimits(histogram.Get(), &zMin, &zMax))
        return false;
    VFPutHistogramAttributes(*set, *description, zMin, zMax);
    return true;
}
