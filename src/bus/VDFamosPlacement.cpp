#include "VDFamosPlacement.h"

#include "frame/VFDaxReport.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int VVHighestFirst = 2;
constexpr int VVScaled = 1;

constexpr std::size_t VVAny = std::numeric_limits<std::size_t>::max();

// Which of the integers of a buffer is what.
enum BufferField { Reference, Samples, FirstByte, Size, Begin, Filled };

bool Fail(int code)
{
    return VFDaxReportError(code, "VDFamosPlacement::Find") != 0;
}

}  // namespace

std::int64_t VDFamosLayout::CountUntil(std::int64_t position) const
{
    const std::int64_t room = position - offset;
    return room <= 0 ? 0 : room / GetPeriod() * inRow + std::min(inRow, room % GetPeriod() / numbers->bytes);
}

VDFamosPlacement::VDFamosPlacement(const VDFamosHeader& header, std::int64_t fileSize) : header_(header), fileSize_(fileSize)
{
    for (const VDFamosDataBlock& block : header_.dataBlocks)
        samples_.try_emplace({block.index, block.numGroups}, &block);
    for (const VDFamosBufferDescription& description : header_.bufferDescriptions)
        for (const VDFamosBuffer& buffer : description.buffers) {
            const std::int64_t reference = buffer.integers[Reference];
            buffers_[{reference, description.numGroups, description.numComponents}].push_back(&buffer);
            buffers_[{reference, description.numGroups, VVAny}].push_back(&buffer);
            buffers_[{reference, VVAny, VVAny}].push_back(&buffer);
        }
}

bool VDFamosPlacement::Find(std::size_t group, std::size_t component, VDFamosLayout* layout) const
{
    *layout = {};
    if (group >= header_.groups.size() || component >= header_.groups[group].components.size())
        return Fail(DaxError::FamosNoComponent);
    const VDFamosComponent& chosen = header_.groups[group].components[component];
    if (chosen.packet == nullptr || !TakePacket(*chosen.packet, layout))
        return Fail(DaxError::FamosPacketKey);
    if (chosen.range != nullptr && chosen.range->transform == VVScaled)
        layout->scale = {chosen.range->factor != 1 || chosen.range->offset != 0, chosen.range->factor, chosen.range->offset};
    if (AddRings(chosen.packet->bufferReference, group + 1, component + 1, layout))
        return true;
    layout->rings.clear();
    layout->buffers.clear();
    layout->count = 0;
    layout->declared = 0;
    return Fail(DaxError::FamosBufferKey);
}

bool VDFamosPlacement::TakePacket(const VDFamosPacket& packet, VDFamosLayout* layout) const
{
    const VDFamosNumbers* const numbers = VDFamosNumbers::Find(packet.numberFormat);
    if (numbers == nullptr || packet.bytes != numbers->bytes || packet.offset < 0 || packet.directSequence < 1 ||
        packet.bytesBetween < 0)
        return false;
    layout->numbers = numbers;
    layout->highestFirst = header_.processor == VVHighestFirst;
    layout->offset = packet.offset;
    // Without bytes between, all values lie in one row.
    layout->inRow = packet.bytesBetween == 0 ? 1 : packet.directSequence;
    layout->between = packet.bytesBetween;
    return true;
}

// References count anew in each component or group, or through the file, as writers like.
bool VDFamosPlacement::AddRings(int reference, std::size_t numGroups, std::size_t numComponents, VDFamosLayout* layout) const
{
    for (const auto& [group, component] : {std::pair{numGroups, numComponents}, {numGroups, VVAny}, {VVAny, VVAny}})
        if (const auto found = buffers_.find({reference, group, component}); found != buffers_.end())
            return std::all_of(found->second.begin(), found->second.end(), [this, numGroups, layout](const auto* buffer) {
                return AddRing(*buffer, numGroups, layout);
            });
    return false;
}

bool VDFamosPlacement::AddRing(const VDFamosBuffer& buffer, std::size_t numGroups, VDFamosLayout* layout) const
{
    // Indexes may count anew, too. Samples in front of a group aren't its own: a file that is cut off would give them twice.
    const auto found = samples_.lower_bound({buffer.integers[Samples], numGroups});
    if (found == samples_.end() || found->first.first != buffer.integers[Samples])
        return false;
    const VDFamosDataBlock& samples = *found->second;
    const std::int64_t firstByte = buffer.integers[FirstByte];
    const std::int64_t size = buffer.integers[Size];
    const std::int64_t begin = buffer.integers[Begin];
    const std::int64_t filled = buffer.integers[Filled];
    if (firstByte < 0 || size < 0 || begin < 0 || begin > size || filled < 0 || filled > size ||
        size > samples.end - samples.start - firstByte)
        return false;
    VDFamosLayout::Ring ring = {samples.start + firstByte, size, begin == size ? 0 : begin};
    // Of a ring of which the end is missing, what comes before it is there: nothing, if its values begin behind it.
    const std::int64_t inFile = std::clamp<std::int64_t>(fileSize_ - ring.start - ring.first, 0, size - ring.first);
    ring.readable = inFile < size - ring.first ? inFile : size;
    layout->declared += layout->CountUntil(filled);
    ring.count = layout->CountUntil(std::min(filled, ring.readable));
    layout->count += ring.count;
    layout->rings.push_back(ring);
    layout->buffers.push_back(&buffer);
    return true;
}
