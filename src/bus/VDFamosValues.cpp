#include "VDFamosValues.h"

#include "frame/VFDaxReport.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <type_traits>

namespace {

constexpr int VVHighestFirst = 2;
constexpr std::int64_t VVWindowSize = 64 * 1024;

constexpr std::size_t VVAnyGroup = std::numeric_limits<std::size_t>::max();

// Which of the integers of a buffer is what.
enum BufferField { Reference, Samples, FirstByte, Size, Begin, Filled };

template <class Number, int Bytes, bool HighestFirst>
double Get(const unsigned char* bytes)
{
    std::uint64_t bits = 0;
    for (int index = 0; index < Bytes; ++index)
        bits |= std::uint64_t{bytes[HighestFirst ? Bytes - 1 - index : index]} << 8 * index;
    if constexpr (std::is_same_v<Number, double>)
        return std::bit_cast<double>(bits);
    else if constexpr (std::is_same_v<Number, float>)
        return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    else
        return static_cast<double>(static_cast<Number>(bits));
}

struct Format
{
    int number;
    int bytes;
    double (*get)(const unsigned char* bytes);
    double (*getHighestFirst)(const unsigned char* bytes);
};

template <class Number, int Bytes = sizeof(Number)>
constexpr Format MakeFormat(int number)
{
    return {number, Bytes, Get<Number, Bytes, false>, Get<Number, Bytes, true>};
}

constexpr Format VVFormats[] = {
    MakeFormat<std::uint8_t>(1),   MakeFormat<std::int8_t>(2),
    MakeFormat<std::uint16_t>(3),  MakeFormat<std::int16_t>(4),
    MakeFormat<std::uint32_t>(5),  MakeFormat<std::int32_t>(6),
    MakeFormat<float>(7),          MakeFormat<double>(8),
    MakeFormat<std::uint16_t>(11), MakeFormat<std::uint64_t, 6>(13),
};

bool Fail(int code, const char* routine)
{
    return VFDaxReportError(code, routine) != 0;
}

}  // namespace

VDFamosValues::VDFamosValues(VDIo& file, const VDFamosHeader& header)
    : file_(file), header_(header), fileSize_(file.GetFileSize()), window_(static_cast<std::size_t>(VVWindowSize))
{
    for (const VDFamosDataBlock& block : header_.dataBlocks)
        samples_.try_emplace(block.index, &block);
    for (const VDFamosBufferDescription& description : header_.bufferDescriptions)
        for (const VDFamosBuffer& buffer : description.buffers)
            for (const std::size_t numGroups : {description.numGroups, VVAnyGroup})
                buffers_[{buffer.integers[Reference], numGroups}].push_back(&buffer);
}

bool VDFamosValues::SetComponent(std::size_t group, std::size_t component)
{
    constexpr const char* routine = "VDFamosValues::SetComponent";
    rings_.clear();
    count_ = 0;
    isCut_ = false;
    if (group >= header_.groups.size() || component >= header_.groups[group].components.size())
        return Fail(DaxError::FamosNoComponent, routine);
    const VDFamosComponent& chosen = header_.groups[group].components[component];
    if (chosen.packet == nullptr || !TakePacket(*chosen.packet))
        return Fail(DaxError::FamosPacketKey, routine);
    const bool isScaled = chosen.range != nullptr && chosen.range->transform == 1;
    factor_ = isScaled ? chosen.range->factor : 1;
    shift_ = isScaled ? chosen.range->offset : 0;
    if (AddRings(chosen.packet->bufferReference, group + 1))
        return true;
    rings_.clear();
    count_ = 0;
    return Fail(DaxError::FamosBufferKey, routine);
}

bool VDFamosValues::TakePacket(const VDFamosPacket& packet)
{
    const auto* const format = std::find_if(std::begin(VVFormats), std::end(VVFormats),
                                            [&packet](const Format& known) { return known.number == packet.numberFormat; });
    if (format == std::end(VVFormats) || packet.bytes != format->bytes || packet.offset < 0 || packet.directSequence < 1 ||
        packet.bytesBetween < 0)
        return false;
    get_ = header_.processor == VVHighestFirst ? format->getHighestFirst : format->get;
    bytes_ = packet.bytes;
    offset_ = packet.offset;
    inRow_ = packet.directSequence;
    between_ = packet.bytesBetween;
    return true;
}

// References count anew in each group, or through the file, as writers like.
bool VDFamosValues::AddRings(int reference, std::size_t numGroups)
{
    auto found = buffers_.find({reference, numGroups});
    if (found == buffers_.end())
        found = buffers_.find({reference, VVAnyGroup});
    return found != buffers_.end() && std::all_of(found->second.begin(), found->second.end(),
                                                  [this](const VDFamosBuffer* buffer) { return AddRing(*buffer); });
}

bool VDFamosValues::AddRing(const VDFamosBuffer& buffer)
{
    const auto found = samples_.find(buffer.integers[Samples]);
    if (found == samples_.end())
        return false;
    const VDFamosDataBlock& samples = *found->second;
    const std::int64_t firstByte = buffer.integers[FirstByte];
    const std::int64_t size = buffer.integers[Size];
    const std::int64_t begin = buffer.integers[Begin];
    const std::int64_t filled = buffer.integers[Filled];
    if (firstByte < 0 || size < 0 || begin < 0 || begin > size || filled < 0 || filled > size ||
        size > samples.end - samples.start - firstByte)
        return false;
    Ring ring = {samples.start + firstByte, size, begin == size ? 0 : begin, CountUntil(filled)};
    // Of a ring of which the end is missing, what comes before it is there: nothing, if its values begin behind it.
    const std::int64_t inFile = std::clamp<std::int64_t>(fileSize_ - ring.start - ring.first, 0, size - ring.first);
    if (inFile < std::min(filled, size - ring.first)) {
        isCut_ = true;
        ring.count = CountUntil(inFile);
    }
    count_ += ring.count;
    rings_.push_back(ring);
    return true;
}

// Points that end up to a position in a ring.
std::int64_t VDFamosValues::CountUntil(std::int64_t position) const
{
    const std::int64_t period = inRow_ * bytes_ + between_;
    const std::int64_t room = position - offset_;
    return room <= 0 ? 0 : room / period * inRow_ + std::min(inRow_, room % period / bytes_);
}

std::int64_t VDFamosValues::PositionOf(std::int64_t point) const
{
    return offset_ + point * bytes_ + point / inRow_ * between_;
}

bool VDFamosValues::Read(std::int64_t first, std::int64_t count, double* values)
{
    if (count <= 0)
        return true;
    if (first < 0 || first > count_ || count > count_ - first)
        return Fail(DaxError::FamosSamplesKey, "VDFamosValues::Read");
    for (const Ring& ring : rings_) {
        const std::int64_t part = std::clamp<std::int64_t>(ring.count - first, 0, count);
        if (part > 0 && !ReadRing(ring, first, part, values))
            return false;
        first = std::max<std::int64_t>(first - ring.count, 0);
        count -= part;
        values += part;
    }
    return true;
}

bool VDFamosValues::ReadRing(const Ring& ring, std::int64_t first, std::int64_t count, double* values)
{
    while (count > 0) {
        const std::int64_t start = PositionOf(first);
        const std::int64_t part = std::min(count, CountUntil(start + VVWindowSize) - first);
        if (!ReadBytes(ring, start, PositionOf(first + part - 1) + bytes_ - start, window_.data()))
            return false;
        std::size_t at = 0;
        std::int64_t row = first % inRow_;
        for (std::int64_t index = 0; index < part; ++index) {
            *values++ = get_(&window_[at]) * factor_ + shift_;
            at += static_cast<std::size_t>(bytes_);
            if (++row == inRow_) {
                row = 0;
                at += static_cast<std::size_t>(between_);
            }
        }
        first += part;
        count -= part;
    }
    return true;
}

bool VDFamosValues::ReadBytes(const Ring& ring, std::int64_t position, std::int64_t count, unsigned char* bytes)
{
    while (count > 0) {
        const std::int64_t at = (ring.first + position) % ring.size;
        const std::int64_t part = std::min(count, ring.size - at);
        if (!file_.Read(ring.start + at, part, bytes, nullptr))
            return false;
        position += part;
        bytes += part;
        count -= part;
    }
    return true;
}
