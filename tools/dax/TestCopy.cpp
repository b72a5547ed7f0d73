#include "TestCopy.h"

#include "DataWriter.h"
#include "Identification.h"
#include "TestMetaData.h"
#include "ToolError.h"
#include "Values.h"

#include "daxlib/VMD.h"
#include "vdstore/LQChannelMapper.h"

#include <algorithm>

namespace {

void VFCopyMetaData(const VDCopyPlan& plan, const LQChannelMapper& from, LQChannelMapper& to)
{
    VFCopyItems(from, LQChannelMapper::GLOBAL, to, LQChannelMapper::GLOBAL);
    for (std::size_t index = 0; index < plan.channels.size(); ++index) {
        const int fromSlot = from.IndexFromNumber(plan.channels[index].number, false);
        const int toSlot = to.IndexFromNumber(plan.numbers[index], false);
        if (fromSlot >= 0 && toSlot >= 0)
            VFCopyItems(from, fromSlot, to, toSlot);
    }
    VFDropInputInfo(to);
}

/// Gives the format what it is asked to keep. What it doesn't take is found by a comparison later.
void VFPutValues(const VDCopyPlan& plan, VDTestAccess& target)
{
    for (const VDValueToKeep& value : plan.values) {
        VDVariant copy = value.value;
        target.SetFormatValue(value.name.c_str(), &copy);
    }
    VFErrorClear();
}

/// Puts what the format has no place for into the metadata, from where a later copy takes it again.
void VFKeepValues(const std::vector<const VDValueToKeep*>& values, LQChannelMapper& to)
{
    for (const VDValueToKeep* value : values)
        if (Z4PropertySet* set = to.AdoptMetaDataSet(VVExtraDetails, nullptr, LQChannelMapper::GLOBAL))
            set->PutString(value->name.c_str(), value->Text().c_str());
}

/// Whether the test, or a channel that is copied, has an item of its own besides what the format keeps under own names.
bool VFHasOwnItems(const VDCopyPlan& plan, const LQChannelMapper& from)
{
    bool found = false;
    VFForEachOwnItem(from, LQChannelMapper::GLOBAL,
                     [&](const std::string& set, const Z4Property&) { found = found || set != VVExtraDetails; });
    for (const VDChannel& channel : plan.channels) {
        const int slot = from.IndexFromNumber(channel.number, false);
        if (slot >= 0 && !found)
            VFForEachOwnItem(from, slot, [&](const std::string&, const Z4Property&) { found = true; });
    }
    return found;
}

/// Hands the metadata over. A format that keeps none gets a file beside it only if there is anything to put into that.
void VFWriteMetaData(const VDCopyPlan& plan, VDTestAccess& target)
{
    if (!plan.metaData)
        return;
    const LQChannelMapper* const from = VFGetMetaData(*plan.source.Access());
    std::vector<const VDValueToKeep*> values;
    for (const VDValueToKeep& value : plan.values)
        if (VFGetFormatText(target, value.name.c_str()).empty())
            values.push_back(&value);
    const bool hasItems = from != nullptr && VFHasOwnItems(plan, *from);
    if (values.empty() && !hasItems && !target.KeepsMetaData())
        return;
    LQChannelMapper* const to = VFGetMetaData(target);
    if (to == nullptr)
        return;
    if (from != nullptr)
        VFCopyMetaData(plan, *from, *to);
    VFKeepValues(values, *to);
}

std::unique_ptr<VDDataWriter> VFMakeDataWriter(const VDCopyPlan& plan)
{
    switch (plan.format.accessType) {
    case VTFileAccessTimeSeries:
        return VFMakeTimeSeriesWriter(plan);
    case VTFileAccessHistogram:
        return VFMakeHistogramWriter(plan);
    case VTFileAccessMultiColumn:
        return VFMakeTableWriter(plan);
    case VTFileAccessComplexFrequency:
        return VFMakeSpectraWriter(plan);
    default:
        VFFail(DaxToolError::NoFormat, "Tests of this kind can't be written: " + plan.format.description, "VFWriteTest");
    }
}

/// Writes the values; where the format takes them only without one of the values of its own, that one is thrown.
void VFWriteData(VDDataWriter& writer, std::int64_t limit, VDProgressBar& progress)
{
    try {
        writer.WriteData(limit, progress);
    } catch (const VDFailure&) {
        const std::vector<VDErrorReport> reports = VFTakeErrors();
        const std::string unfit = VFGetFormatText(writer.Access(), DaxFormatValue::Unfit);
        if (!unfit.empty())
            throw VDUnfit{unfit};
        VFPutErrors(reports);
        throw;
    }
}

}  // namespace

VDFileIdHandle VFMakeTargetId(const VDCopyPlan& plan, const std::string& name)
{
    VDFileIdHandle id(FIDCreate());
    VFCheck(static_cast<bool>(id));
    VFCheck(FIDSetFileId(id.Get(), plan.format.fileId, plan.format.subId));
    VFCheck(FIDSetTestname(id.Get(), name.c_str(), plan.format.keyword.c_str(), ""));
    VDString title;
    VFCheck(FIDGetTestTitle(plan.source.GetId(), &title));
    VFCheck(FIDSetTestTitle(id.Get(), title));
    for (std::size_t position = 0; position < plan.channels.size(); ++position) {
        const VDChannel& channel = plan.channels[position];
        int index = 0;
        VFCheck(FIDAddChannel(id.Get(), plan.numbers[position], &index));
        if (index != static_cast<int>(position))
            VFFail(DaxToolError::UnknownChannel,
                   "Channel number " + std::to_string(channel.number) + " occurs more than once, which can't be copied",
                   "VFMakeTargetId");
        VFCheck(FIDSetChanTitle(id.Get(), index, channel.title.c_str()));
        VFCheck(FIDSetChanUnits(id.Get(), index, channel.units.c_str()));
        // The type in which the values come, so that whole numbers too wide for a float go into a double.
        VFCheck(FIDSetChanType(id.Get(), index, VFChannelType(VFValueForm(channel.type))));
    }
    VFCheck(FIDSetInfoLoaded(id.Get(), 1));
    return id;
}

std::string VFOwnTitle(VDFileId* id)
{
    VDString title;
    VDString filename;
    VDString extension;
    VFCheck(FIDGetTestTitle(id, &title));
    VFCheck(FIDGetFilename(id, &filename, &extension));
    const bool derived = filename.Find(title) >= 0;
    return derived ? std::string() : title.Str();
}

std::vector<VDValueToKeep> VFGetValuesToKeep(const VDDataTest& source, bool metaData)
{
    std::vector<VDValueToKeep> values;
    const auto add = [&values](const VDFormatValue& found, const std::string& what) {
        const auto same = [&](const VDFormatValue& value) {
            return VDString(value.name).CompareNoCase(found.name.c_str()) == 0;
        };
        if (!found.Text().empty() && std::none_of(values.begin(), values.end(), same))
            values.push_back({found, what});
    };
    if (!metaData) {
        add({VVEncoding, VDVariant(VFGetFormatText(*source.Access(), VVEncoding).c_str())}, VVEncoding);
        return values;
    }
    const LQChannelMapper* const mapper = VFGetMetaData(*source.Access());
    const Z4PropertySet* const details =
        mapper != nullptr ? mapper->GetMetaDataSet(VVExtraDetails, LQChannelMapper::GLOBAL) : nullptr;
    for (int index = 0; details != nullptr && index < details->GetSize(); ++index)
        if (const Z4Property& item = *details->GetProperty(index); item.IsDefined())
            add({item.GetName().Str(), VDVariant(item.ToString())}, VFItemName(VVExtraDetails, item));
    for (const VDFormatValue& value : VFGetFormatValues(*source.Access()))
        add(value, "format value " + value.name);
    add({VVTitle, VDVariant(VFOwnTitle(source.GetId()).c_str())}, "testTitle");
    return values;
}

std::vector<std::string> VFGetTargetFiles(const VDFileType& format, VDFileId* target)
{
    std::vector<std::string> files = VFGetTestFiles(target);
    const std::unique_ptr<VDTestAccess> access = VFMakeTestAccess(format.accessType);
    VFCheck(access->SetId(target, true));
    if (!access->KeepsMetaData()) {
        VDString sidecar;
        VFCheck(VMDCreateFilenameFromFileId(target, &sidecar));
        files.push_back(sidecar.Str());
    }
    return files;
}

void VFWriteTest(const VDCopyPlan& plan, VDFileId* target, std::int64_t limit, VDProgressBar& progress)
{
    const std::unique_ptr<VDDataWriter> writer = VFMakeDataWriter(plan);
    VFCheck(writer->Access().SetId(target, true));
    writer->CheckFits();
    VFPutValues(plan, writer->Access());
    VFCheck(writer->Access().Open(VTTestOpen::Create));
    writer->WriteHeader(limit);
    VFWriteMetaData(plan, writer->Access());
    VFWriteData(*writer, limit, progress);
    VFCheck(writer->Access().Close());
}
