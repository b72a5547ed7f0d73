#include "TestCopy.h"

#include "Identification.h"
#include "Interrupt.h"
#include "TestMetaData.h"
#include "ToolError.h"
#include "Values.h"

#include "daxlib/TimeSeriesPlugin.h"
#include "daxlib/VMD.h"
#include "vdstore/LQChannelMapper.h"

#include <algorithm>

namespace {

/// One channel on its way.
struct Stream
{
    VDChannel channel;
    VDValues values;
    int target = 0;  ///< its index in the target
    VTValueForm form;
    bool formKnown = false;

    Stream(const VDChannel& source, std::int64_t block, int index)
        : channel(source), values(VFValueForm(source.type), block), target(index), form(values.GetForm())
    {
    }
};

/// A target whose channels share one header holds channels that agree only: anything else would put values at wrong times.
void VFCheckCommonHeader(const VDCopyPlan& plan)
{
    const VDChannel& first = plan.channels.front();
    for (const VDChannel& channel : plan.channels)
        if (channel.sampleRate != first.sampleRate || channel.baseTime != first.baseTime || channel.points != first.points)
            VFFail(DaxToolError::CommonHeader,
                   "All channels of a " + plan.format.keyword +
                       " file have the same sample rate, base time and length, but channels " +
                       std::to_string(first.number) + " and " + std::to_string(channel.number) +
                       " differ; copy them apart with --chan",
                   "VFWriteTest");
}

bool VFCan(VDTsAcc* acc, int capability)
{
    char answer = 0;
    VFCheck(TSAccGetCapability(acc, capability, &answer));
    return answer != 0;
}

/// Writes all that stands in front of the values. Texts and base time may be more than the format can hold: what it kept is
/// read back later. A sample rate or a length that it refuses ends the copy.
void VFWriteHeader(const VDCopyPlan& plan, VDTsAcc* acc, std::int64_t limit)
{
    const bool growing = VFCan(acc, DaxTimeSeries::Extendable);
    const bool titled = VFCan(acc, DaxTimeSeries::ChannelTitles);
    TSAccSetXTitle(acc, plan.source.GetXTitle().c_str());
    TSAccSetXUnits(acc, plan.source.GetXUnits().c_str());
    for (int index = 0; index < static_cast<int>(plan.channels.size()); ++index) {
        const VDChannel& channel = plan.channels[static_cast<std::size_t>(index)];
        VFCheck(TSAccSetSampleRate(acc, index, channel.sampleRate));
        if (!growing)
            VFCheck(TSAccSetNumPoints(acc, index, std::min(channel.points, limit)));
        TSAccSetBaseTime(acc, index, channel.baseTime);
        TSAccSetYTitle(acc, index, (titled ? channel.yTitle : channel.title).c_str());
        TSAccSetYUnits(acc, index, channel.units.c_str());
    }
    VFErrorClear();
}

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
void VFPutValues(const VDCopyPlan& plan, VDTsAcc* acc)
{
    for (const VDValueToKeep& value : plan.values) {
        VDVariant copy = value.value;
        TSAccSetFormatSpecificValue(acc, static_cast<int>(DaxChannel::WholeFile), value.name.c_str(), &copy);
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
void VFWriteMetaData(const VDCopyPlan& plan, VDTsAcc* acc)
{
    if (!plan.metaData)
        return;
    const LQChannelMapper* const from = VFGetMetaData(plan.source.Get());
    std::vector<const VDValueToKeep*> values;
    for (const VDValueToKeep& value : plan.values)
        if (VFGetFormatText(acc, value.name.c_str()).empty())
            values.push_back(&value);
    const bool hasItems = from != nullptr && VFHasOwnItems(plan, *from);
    if (values.empty() && !hasItems && !VFCan(acc, DaxTimeSeries::KeepsMetaData))
        return;
    LQChannelMapper* const to = VFGetMetaData(acc);
    if (to == nullptr)
        return;
    if (from != nullptr)
        VFCopyMetaData(plan, *from, *to);
    VFKeepValues(values, *to);
}

/// Writes the first block in the most exact form that the target takes, which is then the form of the whole channel.
void VFWriteFirstBlock(Stream& stream, VDTsAcc* acc, std::int64_t point)
{
    if (stream.values.Write(acc, stream.target, point, stream.form)) {
        stream.formKnown = true;
        return;
    }
    const std::vector<VDErrorReport> reports = VFTakeErrors();
    const VTValueForm others[] = {VTValueForm::Digital64, VTValueForm::Double, VTValueForm::Float};
    for (const VTValueForm form : others) {
        const bool toInteger = form == VTValueForm::Digital64;
        if (form == stream.form || (toInteger ? stream.form != VTValueForm::Digital32 : form < stream.form))
            continue;
        if (stream.values.Write(acc, stream.target, point, form)) {
            stream.form = form;
            stream.formKnown = true;
            return;
        }
    }
    // None fits, so the first refusal is what has to be said.
    VFPutErrors(reports);
    throw VDFailure();
}

void VFCopyValues(const VDCopyPlan& plan, VDTsAcc* acc, std::int64_t block, std::int64_t limit, VDProgressBar& progress)
{
    std::int64_t last = 0;
    std::vector<Stream> streams;
    for (const VDChannel& channel : plan.channels) {
        streams.emplace_back(channel, block, static_cast<int>(streams.size()));
        last = std::max(last, std::min(channel.points, limit));
    }
    // Block by block over all channels, which suits files that hold their channels side by side.
    for (std::int64_t point = 1; point <= last; point += block) {
        for (Stream& stream : streams) {
            VDInterruptGuard::Check();
            const std::int64_t count = std::min(block, std::min(stream.channel.points, limit) - point + 1);
            if (count < 1)
                continue;
            if (stream.values.Read(plan.source.Get(), stream.channel.index, point, count) != count)
                VFFail(DaxToolError::Incomplete, "The file ends before the points that it states", "VFWriteTest");
            if (!stream.formKnown)
                VFWriteFirstBlock(stream, acc, point);
            else if (!stream.values.Write(acc, stream.target, point, stream.form))
                throw VDFailure();
            progress.Advance(count);
        }
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

std::vector<VDValueToKeep> VFGetValuesToKeep(const VDTimeSeriesTest& source, bool metaData)
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
        add({VVEncoding, VDVariant(VFGetFormatText(source.Get(), VVEncoding).c_str())}, VVEncoding);
        return values;
    }
    const LQChannelMapper* const mapper = VFGetMetaData(source.Get());
    const Z4PropertySet* const details =
        mapper != nullptr ? mapper->GetMetaDataSet(VVExtraDetails, LQChannelMapper::GLOBAL) : nullptr;
    for (int index = 0; details != nullptr && index < details->GetSize(); ++index)
        if (const Z4Property& item = *details->GetProperty(index); item.IsDefined())
            add({item.GetName().Str(), VDVariant(item.ToString())}, VFItemName(VVExtraDetails, item));
    for (const VDFormatValue& value : VFGetFormatValues(source.Get()))
        add(value, "format value " + value.name);
    add({VVTitle, VDVariant(VFOwnTitle(source.GetId()).c_str())}, "testTitle");
    return values;
}

std::vector<std::string> VFGetTargetFiles(VDFileId* target)
{
    std::vector<std::string> files = VFGetTestFiles(target);
    const VDTsAccHandle acc(TSAccCreate());
    VFCheck(static_cast<bool>(acc));
    VFCheck(TSAccSetId(acc.Get(), target, 1));
    if (!VFCan(acc.Get(), DaxTimeSeries::KeepsMetaData)) {
        VDString sidecar;
        VFCheck(VMDCreateFilenameFromFileId(target, &sidecar));
        files.push_back(sidecar.Str());
    }
    return files;
}

void VFWriteTest(const VDCopyPlan& plan, VDFileId* target, std::int64_t limit, VDProgressBar& progress)
{
    const VDTsAccHandle acc(TSAccCreate());
    VFCheck(static_cast<bool>(acc));
    VFCheck(TSAccSetId(acc.Get(), target, 1));
    if (VFCan(acc.Get(), DaxTimeSeries::CommonHeader))
        VFCheckCommonHeader(plan);
    VFPutValues(plan, acc.Get());
    VFCheck(TSAccOpen(acc.Get(), VTTsAccOpenCreate));
    VFWriteHeader(plan, acc.Get(), limit);
    VFWriteMetaData(plan, acc.Get());
    // The larger of the two sides' blocks, as far as the channels' buffers together stay small.
    constexpr auto memory = std::int64_t{16} << 20;
    long targetBlock = 0;
    VFCheck(TSAccGetBufferSize(acc.Get(), &targetBlock));
    const auto wanted = std::max<std::int64_t>(targetBlock, plan.source.GetBlockSize());
    const auto room = memory / (static_cast<std::int64_t>(plan.channels.size() * sizeof(double)));
    const auto block = std::clamp<std::int64_t>(wanted, 1, std::max<std::int64_t>(room, 1));
    try {
        VFCopyValues(plan, acc.Get(), block, limit, progress);
    } catch (const VDFailure&) {
        const std::vector<VDErrorReport> reports = VFTakeErrors();
        const std::string unfit = VFGetFormatText(acc.Get(), DaxFormatValue::Unfit);
        if (!unfit.empty())
            throw VDUnfit{unfit};
        VFPutErrors(reports);
        throw;
    }
    VFCheck(TSAccClose(acc.Get()));
}
