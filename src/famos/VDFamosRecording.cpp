#include "VDFamosRecording.h"

#include "bus/VDFamosKeyParser.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VDUnicodeString.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int VVTimeStampedFormat = 10;
constexpr int VVDigitalFormat = 11;
constexpr int VVDigitalComponent = 2;
constexpr int VVScaled = 1;
constexpr int VVNotClosed = 0;

// Kinds of groups with two components, of which often only the first has a name.
struct PairRole
{
    int fieldType;
    const char* second;
};
constexpr PairRole VVPairs[] = {{2, " (x)"}, {3, " (x)"}, {4, " (imaginary)"}, {5, " (phase)"}, {6, " (phase)"}};

/// The second component is the x axis of the first.
bool IsPair(const VDFamosGroup& group)
{
    return (group.fieldType == 2 || group.fieldType == 3) && group.components.size() == 2;
}

void Append(std::string& text, const std::string& sentence)
{
    text += (text.empty() ? "" : " ") + sentence;
}

/// The names of a component; a word of digital channels has one for each bit.
std::string NamesOf(const VDFamosComponent& component)
{
    std::string names;
    for (const VDFamosChannelName& name : component.channelNames)
        if (!name.name.IsEmpty())
            names += (names.empty() ? "" : " | ") + VFTextAsUtf8(name.name).Str();
    return names;
}

// Values of one or two bytes that are shifted by a power of two.
bool KeepsFloats(const VDFamosRange& range)
{
    int exponent = 0;
    return range.offset == 0 && std::abs(std::frexp(range.factor, &exponent)) == 0.5 && std::abs(exponent) < 100;
}

}  // namespace

bool VDFamosRecording::IsTimeStamped(const VDFamosHeader& header)
{
    if (header.groups.size() != 1 || header.groups[0].components.size() != 1)
        return false;
    const VDFamosComponent& component = header.groups[0].components[0];
    return component.packet != nullptr && component.packet->numberFormat == VVTimeStampedFormat;
}

std::optional<VDFamosHeader> VDFamosRecording::ReadHeader(VDIo& file, std::string* damage)
{
    VDFamosHeader header;
    const std::int64_t size = file.GetFileSize();
    VFErrorClear();
    if (VDFamosKeyParser(file, size, header).Run()) {
        if (header.status == VVNotClosed)
            Append(*damage, "The recorder has not closed the file.");
    } else {
        const bool hasSamples = !header.groups.empty() && !header.dataBlocks.empty();
        if (!hasSamples) {
            VFDaxReport(DaxError::FamosInvalid, "VDFamosUtil::Open", {.chain = 1});
            return {};
        }
        const VDArray<VDErrorReport> reports = VFErrorGetReports(VFGetBaseLibError());
        Append(*damage, "The file declares more, which can't be read: " +
                            (reports.GetSize() > 0 ? reports[reports.GetSize() - 1].text.Str() : "a key is incomplete") +
                            ".");
        VFErrorClear();
    }
    if (!header.groups.empty() &&
        static_cast<std::int64_t>(header.groups.back().components.size()) < header.groups.back().numComponents)
        Append(*damage, "The file ends before all components that it announces.");
    if (!header.dataBlocks.empty() && header.dataBlocks.back().end > size)
        Append(*damage, "The file ends inside its samples, " + std::to_string(header.dataBlocks.back().end - size) +
                            " bytes before they do.");
    return header;
}

bool VDFamosRecording::IsScaled(const VDFamosComponent& component)
{
    const VDFamosRange* const range = component.range.get();
    return range != nullptr && range->transform == VVScaled && (range->factor != 1 || range->offset != 0);
}

std::unique_ptr<VDFamosRecording> VDFamosRecording::Open(const VDString& filename, VTFamosContent content)
{
    std::unique_ptr<VDFamosRecording> recording(new VDFamosRecording(filename));
    VDIo* const file = recording->Use();
    if (file == nullptr)
        return nullptr;
    std::optional<VDFamosHeader> header = ReadHeader(*file, &recording->damage_);
    if (!header)
        return nullptr;
    recording->header_ = std::move(*header);
    recording->placement_.emplace(recording->header_, file->GetFileSize());
    recording->ListChannels(content);
    return recording;
}

VDIo* VDFamosRecording::Use()
{
    if (file_.IsOpen() || file_.Open(VTOpenRead))
        return &file_;
    VFDaxReport(DaxError::FamosOpen, "VDFamosRecording::Open", {.chain = 1});
    return nullptr;
}

bool VDFamosRecording::Holds(const VDFamosHeader& header, VTFamosContent content)
{
    return std::any_of(header.groups.begin(), header.groups.end(),
                       [content](const VDFamosGroup& group) { return IsPair(group) == (content == VTFamosContent::Pairs); });
}

void VDFamosRecording::ListChannels(VTFamosContent content)
{
    for (const VDFamosDefinition& definition : header_.groupDefinitions)
        groupDefinitions_.try_emplace(definition.index, &definition);
    for (std::size_t group = 0; group < header_.groups.size(); ++group)
        for (std::size_t component = 0; component < header_.groups[group].components.size(); ++component)
            if (IsPair(header_.groups[group]) == (content == VTFamosContent::Pairs))
                channels_.push_back({group, component});
}

VDString VDFamosRecording::GetTitle(std::size_t channel) const
{
    std::string names = NamesOf(ComponentOf(channel));
    const VDFamosGroup& group = GroupOf(channel);
    for (const PairRole& pair : VVPairs)
        if (names.empty() && pair.fieldType == group.fieldType && channels_[channel].component == 1)
            if (const std::string first = NamesOf(group.components[0]); !first.empty())
                names = first + pair.second;
    return names.empty() ? VDString("Channel " + std::to_string(channel + 1)) : VDString(names);
}

VDString VDFamosRecording::GetUnits(std::size_t channel) const
{
    const auto& range = ComponentOf(channel).range;
    return range != nullptr ? VFTextAsUtf8(range->unit) : VDString();
}

const VDFamosScaling* VDFamosRecording::AxisOf(std::size_t channel) const
{
    for (const auto* scaling : {ComponentOf(channel).scaling.get(), GroupOf(channel).scaling.get()})
        if (scaling != nullptr && scaling->hasScaling != 0)
            return scaling;
    return nullptr;
}

const VDTime* VDFamosRecording::TriggerOf(std::size_t channel) const
{
    for (const auto* scaling : {ComponentOf(channel).scaling.get(), GroupOf(channel).scaling.get()})
        if (scaling != nullptr && scaling->hasTriggerTime != 0 && scaling->triggerTime.IsSet())
            return &scaling->triggerTime;
    return nullptr;
}

VDString VDFamosRecording::GetXUnits(std::size_t channel) const
{
    const VDFamosScaling* const axis = AxisOf(channel);
    return axis != nullptr ? VFTextAsUtf8(axis->unit) : VDString();
}

int VDFamosRecording::GetDataType(std::size_t channel) const
{
    const VDFamosComponent& component = ComponentOf(channel);
    const VDFamosNumbers* const numbers =
        component.packet != nullptr ? VDFamosNumbers::Find(component.packet->numberFormat) : nullptr;
    if (numbers == nullptr)
        return DaxDataType::Double;
    if (numbers->number == VVDigitalFormat ||
        (component.analogDigital == VVDigitalComponent && numbers->isWhole && numbers->bytes <= 4))
        return DaxDataType::Digital32;
    const bool isExact = !IsScaled(component) || (numbers->isWhole && KeepsFloats(*component.range));
    return numbers->fitsFloat && isExact ? DaxDataType::Float : DaxDataType::Double;
}

double VDFamosRecording::GetSampleRate(std::size_t channel) const
{
    const VDFamosScaling* const axis = AxisOf(channel);
    const double rate = axis != nullptr ? 1 / axis->dx : 1;
    return rate > 0 && std::isfinite(rate) ? rate : 1;
}

double VDFamosRecording::GetBaseTime(std::size_t channel, const VDFamosLayout& layout) const
{
    const VDFamosScaling* const axis = AxisOf(channel);
    const double start = (axis != nullptr ? axis->x0 : 0) + (layout.buffers.empty() ? 0 : layout.buffers[0]->x0);
    return std::isfinite(start) ? start : 0;
}

VDFamosLayout VDFamosRecording::GetLayout(std::size_t channel, std::string* damage) const
{
    VDFamosLayout layout;
    const std::string name = "\"" + GetTitle(channel).Str() + "\"";
    if (!placement_->Find(channels_[channel].group, channels_[channel].component, &layout)) {
        Append(*damage, "The values of " + name + " can't be read: " + VFErrorGetText(VFGetBaseLibError()).Str() + ".");
        VFErrorClear();
    } else if (layout.count < layout.declared) {
        Append(*damage, "Of " + name + " the file holds " + std::to_string(layout.count) + " of " +
                            std::to_string(layout.declared) + " points.");
    }
    return layout;
}
