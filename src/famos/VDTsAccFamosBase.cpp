#include "VDTsAccFamosBase.h"

#include "FamosFormat.h"
#include "frame/DaxErrorCodes.h"

#include "daxlib/FID.h"
#include "daxlib/TimeSeriesPlugin.h"
#include "vdbase/VFError.h"
#include "vdstore/LQAttributeNames.h"

namespace {

constexpr long VVBlockPoints = 32768;
constexpr const char* VVExtraDetails = "ExtraDetails";

}  // namespace

bool VDTsAccFamosBase::SetId(VDFileId* id, char create)
{
    Close();
    fileId_.Reset();
    int fileId = 0;
    int subId = 0;
    if (!FIDGetFileId(id, &fileId, &subId) || !FIDAddRef(id))
        return false;
    fileId_.Reset(id);
    if (fileId != FamosFormat::FileId || subId != subId_)
        return Report(0, DaxError::FamosFileId, "VDTsAccFamos::SetId");
    return create == 0 || Report(0, DaxError::FamosWrite, "VDTsAccFamos::SetId");
}

bool VDTsAccFamosBase::Open(int mode)
{
    constexpr const char* routine = "VDTsAccFamos::Open";
    Close();
    if (mode != 1)
        return Report(0, DaxError::FamosWrite, routine);
    contents_ = {};
    isOpen_ = OpenFiles(&contents_);
    for (std::size_t index = 0; isOpen_ && index < contents_.channels.size(); ++index)
        // The access object goes by its id.
        isOpen_ = FIDSetChanType(GetId(), static_cast<int>(index), contents_.channels[index].type) != 0;
    if (isOpen_)
        return true;
    CloseFiles();
    return Report(0, DaxError::FamosFileOpen, routine, 1);
}

bool VDTsAccFamosBase::Close()
{
    isOpen_ = false;
    contents_ = {};
    mapper_.reset();
    return CloseFiles() || Report(0, DaxError::FamosFileClose, "VDTsAccFamos::Close", 1);
}

bool VDTsAccFamosBase::GetCapability(int capability, char* answer)
{
    using namespace DaxTimeSeries;
    switch (capability) {
    case OneChannelAtATime:
        *answer = !contents_.isInterleaved;
        break;
    case LargeFiles:
    case KeepsMetaData:
    case ChannelTitles:
    case NoSerialisation:
        *answer = 1;
        break;
    default:
        *answer = 0;
        break;
    }
    return true;
}

VDVariant VDTsAccFamosBase::GetFileValue(int key) const
{
    using namespace DaxTimeSeries;
    switch (key) {
    case MaxXTitle:
    case MaxXUnits:
    case MaxYTitle:
    case MaxYUnits:
        return VDVariant(0L);
    case XTitle:
        return VDVariant(contents_.xTitle);
    case XUnits:
        return VDVariant(contents_.xUnits);
    case BufferSize:
        return VDVariant(contents_.bufferSize > 0 ? contents_.bufferSize : VVBlockPoints);
    default:
        return {};
    }
}

VDVariant VDTsAccFamosBase::GetChannelValue(const Channel& channel, int key) const
{
    using namespace DaxTimeSeries;
    switch (key) {
    case SampleRate:
        return VDVariant(channel.sampleRate);
    case BaseTime:
        return VDVariant(channel.baseTime);
    case NumPoints:
        return VDVariant::FromHuge(channel.numPoints);
    case YTitle:
    case ChanTitle:
        return VDVariant(channel.title);
    case YUnits:
        return VDVariant(channel.units);
    case ActualChanNumber:
        return VDVariant(channel.number);
    case FullScaleValid:
        return VDVariant(false);
    case ScheduleOffset:
        return VDVariant::FromList({VDVariant(false), VDVariant(0.0F)});
    default:
        return {};
    }
}

bool VDTsAccFamosBase::GetValue(long channel, int key, VDVariant* value)
{
    if (key == DaxTimeSeries::FormatSpecific) {
        GetFormatSpecific(value);
        return true;
    }
    // Titles of the axis are asked of the file, by whatever channel.
    VDVariant answer = GetFileValue(key);
    if (answer.IsNull() && channel >= 0) {
        if (!CheckRange(channel, 1, 0, "VDTsAccFamos::GetValue"))
            return false;
        answer = GetChannelValue(contents_.channels[static_cast<std::size_t>(channel)], key);
    }
    if (!answer.IsNull())
        *value = std::move(answer);
    return true;
}

/// The texts of the file that are kept as metadata too, and what is missing of it.
void VDTsAccFamosBase::GetFormatSpecific(VDVariant* list)
{
    VDString name;
    (*list)[0].GetString(&name);
    if (name.CompareNoCase(DaxFormatValue::Damage) == 0) {
        list->AppendItem(VDVariant(contents_.damage.c_str()));
        return;
    }
    const bool wantsNames = name.CompareNoCase(DaxFormatValue::Names) == 0;
    LQChannelMapper* mapper = nullptr;
    const Z4PropertySet* const set =
        isOpen_ && LoadMetaData(&mapper) ? mapper->GetMetaDataSet(VVExtraDetails, LQChannelMapper::GLOBAL) : nullptr;
    VDVariant names = VDVariant::FromList({});
    for (int index = 0; set != nullptr && index < set->GetSize(); ++index) {
        const VDString& known = set->GetProperty(index)->GetName();
        VDString text;
        if (wantsNames) {
            names.AppendItem(VDVariant(known));
        } else if (name.CompareNoCase(known) == 0 && set->GetString(known, &text)) {
            list->AppendItem(VDVariant(text));
            return;
        }
    }
    if (wantsNames)
        list->AppendItem(names);
}

bool VDTsAccFamosBase::PutValue(long channel, int key, VDVariant*)
{
    // What comes with the instance itself concerns other formats.
    return key == DaxTimeSeries::AccessObject || key == DaxTimeSeries::UseOffset ||
           Report(channel, DaxError::FamosWrite, "VDTsAccFamos::PutValue");
}

bool VDTsAccFamosBase::PutData(long channel, std::int64_t, std::int64_t, const float*)
{
    return Report(channel, DaxError::FamosWrite, "VDTsAccFamos::PutData");
}

bool VDTsAccFamosBase::PutDataDoublePrecision(long channel, std::int64_t, std::int64_t, const double*)
{
    return Report(channel, DaxError::FamosWrite, "VDTsAccFamos::PutDataDoublePrecision");
}

bool VDTsAccFamosBase::PutDataDigital32(long channel, std::int64_t, std::int64_t, const std::uint32_t*)
{
    return Report(channel, DaxError::FamosWrite, "VDTsAccFamos::PutDataDigital32");
}

bool VDTsAccFamosBase::PutDataDigital64(long channel, std::int64_t, std::int64_t, const std::uint64_t*)
{
    return Report(channel, DaxError::FamosWrite, "VDTsAccFamos::PutDataDigital64");
}

bool VDTsAccFamosBase::GetDataDigital64(long channel, std::int64_t, std::int64_t, std::uint64_t*)
{
    return Report(channel, DaxError::FamosNoStatus, "VDTsAccFamos::GetDataDigital64");
}

bool VDTsAccFamosBase::CheckRange(long channel, std::int64_t first, std::int64_t count, const char* routine) const
{
    if (channel < 0 || channel >= static_cast<long>(contents_.channels.size()))
        return Report(channel, DaxError::FamosChannelRange, routine);
    const std::int64_t points = contents_.channels[static_cast<std::size_t>(channel)].numPoints;
    return (first >= 1 && count >= 0 && count <= points - (first - 1)) || count == 0 ||
           Report(channel, DaxError::FamosReadPastEnd, routine);
}

bool VDTsAccFamosBase::LoadMetaData(LQChannelMapper** mapper)
{
    if (mapper_ == nullptr && !MakeMapper())
        return false;
    *mapper = mapper_.get();
    return true;
}

bool VDTsAccFamosBase::MakeMapper()
{
    auto mapper = std::make_unique<LQChannelMapper>(nullptr);
    mapper->SetStringAttribute(LQAttribute::XTitle, contents_.xTitle, LQChannelMapper::GLOBAL);
    mapper->SetStringAttribute(LQAttribute::XUnits, contents_.xUnits, LQChannelMapper::GLOBAL);
    for (const Channel& channel : contents_.channels) {
        const int index = mapper->Append()->GetIndex();
        if (!mapper->SetChannelNumber(channel.number, index))
            return Report(0, DaxError::FamosChannelRange, "VDTsAccFamos::LoadMetaData");
        mapper->SetChanTitle(channel.title, index);
        mapper->SetStringAttribute(LQAttribute::ChanTitle, channel.title, index);
        mapper->SetStringAttribute(LQAttribute::YUnits, channel.units, index);
        mapper->SetDoubleAttribute(LQAttribute::SampleRate, channel.sampleRate, index);
        mapper->SetDoubleAttribute(LQAttribute::BaseTime, channel.baseTime, index);
        mapper->SetHugeAttribute(LQAttribute::NumPoints, channel.numPoints, index);
    }
    AddMetaData(*mapper);
    mapper_ = std::move(mapper);
    return true;
}

void VDTsAccFamosBase::GetChanFileName(VDString& filename, long channel) const
{
    const VDErrorMute mute;
    if (GetId() == nullptr || !FIDGetChanFilename(GetId(), channel < 0 ? 0 : static_cast<int>(channel), &filename))
        filename.Empty();
}
