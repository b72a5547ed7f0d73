#include "VDFamosValues.h"

#include "frame/VFDaxReport.h"

#include <algorithm>
#include <bit>
#include <type_traits>

namespace {

// Stays in the processor's cache.
constexpr std::int64_t VVPieceBytes = 128 * 1024;
// A read of a few points of one component fetches what the next reads of it and of the others will want.
constexpr std::int64_t VVLeastWindow = 64 * 1024;
// Blocks of more bytes than this, the other components' among them, are read once for each component.
constexpr std::int64_t VVMostWindow = 32 * 1024 * 1024;
// Rows of values that lie farther apart than this are read one by one.
constexpr std::int64_t VVFarApart = 16 * 1024;

// A ring goes on at its beginning.
bool ReadBytes(VDIo& file, const VDFamosLayout::Ring& ring, std::int64_t position, std::int64_t count, void* target)
{
    auto* bytes = static_cast<unsigned char*>(target);
    while (count > 0) {
        const std::int64_t at = (ring.first + position) % ring.size;
        const std::int64_t part = std::min(count, ring.size - at);
        if (!file.Read(ring.start + at, part, bytes, nullptr))
            return false;
        position += part;
        bytes += part;
        count -= part;
    }
    return true;
}

// Floats of the file are what the caller wants, bit by bit.
template <class Value>
bool AreAsWanted(const VDFamosLayout& layout)
{
    return std::is_floating_point_v<Value> && !layout.numbers->isWhole && layout.numbers->bytes == sizeof(Value) &&
           !layout.scale.isUsed && layout.highestFirst == (std::endian::native == std::endian::big);
}

}  // namespace

/// The points of one ring that are asked for.
template <class Value>
class VDFamosValues::Part
{
public:
    Part(VDFamosValues& owner, VDIo& file, const VDFamosLayout& layout, const VDFamosLayout::Ring& ring)
        : owner_(owner),
          file_(file),
          layout_(layout),
          ring_(ring),
          read_(layout.numbers->GetReader<Value>(layout.highestFirst))
    {
    }

    bool Read(std::int64_t first, std::int64_t count, Value* values) const
    {
        if (layout_.between == 0)
            return ReadRow(first, count, values);
        return layout_.GetPeriod() > VVFarApart ? ReadRows(first, count, values) : ReadPackets(first, count, values);
    }

private:
    // Points side by side.
    bool ReadRow(std::int64_t first, std::int64_t count, Value* values) const
    {
        const std::int64_t bytes = layout_.numbers->bytes;
        if (AreAsWanted<Value>(layout_))
            return ReadBytes(file_, ring_, layout_.GetPosition(first), count * bytes, values);
        const std::int64_t most = VVPieceBytes / bytes;
        owner_.window_.resize(std::max(owner_.window_.size(), static_cast<std::size_t>(std::min(count, most) * bytes)));
        owner_.windowTo_ = 0;
        while (count > 0) {
            const std::int64_t part = std::min(count, most);
            if (!ReadBytes(file_, ring_, layout_.GetPosition(first), part * bytes, owner_.window_.data()))
                return false;
            read_({owner_.window_.data(), bytes, part}, layout_.scale, values);
            first += part;
            count -= part;
            values += part;
        }
        return true;
    }

    bool ReadRows(std::int64_t first, std::int64_t count, Value* values) const
    {
        while (count > 0) {
            const std::int64_t part = std::min(count, layout_.inRow - first % layout_.inRow);
            if (!ReadRow(first, part, values))
                return false;
            first += part;
            count -= part;
            values += part;
        }
        return true;
    }

    // A block of whole packets, the same for all components that lie in them.
    bool ReadPackets(std::int64_t first, std::int64_t count, Value* values) const
    {
        const std::int64_t period = layout_.GetPeriod();
        const bool isShared = count / layout_.inRow * period <= VVMostWindow;
        const std::int64_t most = isShared ? count : std::max(layout_.inRow, VVPieceBytes / period * layout_.inRow);
        while (count > 0) {
            const std::int64_t part = std::min(count, most);
            const std::int64_t start = layout_.GetPosition(first);
            const std::int64_t end = layout_.GetPosition(first + part - 1) + layout_.numbers->bytes;
            const std::int64_t from = start / period * period;
            const unsigned char* const bytes =
                owner_.Cover(file_, ring_, from, std::min((end + period - 1) / period * period, ring_.readable));
            if (bytes == nullptr)
                return false;
            Take(bytes - from, first, part, values);
            first += part;
            count -= part;
            values += part;
        }
        return true;
    }

    void Take(const unsigned char* bytes, std::int64_t first, std::int64_t count, Value* values) const
    {
        if (layout_.inRow == 1) {
            read_({bytes + layout_.GetPosition(first), layout_.GetPeriod(), count}, layout_.scale, values);
            return;
        }
        while (count > 0) {
            const std::int64_t part = std::min(count, layout_.inRow - first % layout_.inRow);
            read_({bytes + layout_.GetPosition(first), layout_.numbers->bytes, part}, layout_.scale, values);
            first += part;
            count -= part;
            values += part;
        }
    }

    VDFamosValues& owner_;
    VDIo& file_;
    const VDFamosLayout& layout_;
    const VDFamosLayout::Ring& ring_;
    VDFamosNumbers::Reader<Value>* read_;
};

/// Makes bytes of a ring lie in the window; null if they can't be read.
const unsigned char* VDFamosValues::Cover(VDIo& file, const VDFamosLayout::Ring& ring, std::int64_t from, std::int64_t to)
{
    // Components of one ring may have different numbers of points.
    const bool isHere = from >= windowFrom_ && to <= windowTo_ && ring.start == windowRing_.start &&
                        ring.size == windowRing_.size && ring.first == windowRing_.first;
    if (!isHere) {
        windowTo_ = 0;
        const std::int64_t end = std::min(std::max(to, from + VVLeastWindow), ring.readable);
        window_.resize(std::max(window_.size(), static_cast<std::size_t>(end - from)));
        if (!ReadBytes(file, ring, from, end - from, window_.data()))
            return nullptr;
        windowRing_ = ring;
        windowFrom_ = from;
        windowTo_ = end;
    }
    return window_.data() + (from - windowFrom_);
}

template <class Value>
bool VDFamosValues::Read(VDIo& file, const VDFamosLayout& layout, std::int64_t first, std::int64_t count, Value* values)
{
    if (count <= 0)
        return true;
    const bool isThere = first >= 0 && first <= layout.count && count <= layout.count - first;
    if (!isThere || layout.numbers->GetReader<Value>(layout.highestFirst) == nullptr)
        return VFDaxReportError(DaxError::FamosSamplesKey, "VDFamosValues::Read") != 0;
    for (const VDFamosLayout::Ring& ring : layout.rings) {
        const std::int64_t part = std::clamp<std::int64_t>(ring.count - first, 0, count);
        if (part > 0 && !Part<Value>(*this, file, layout, ring).Read(first, part, values))
            return false;
        first = std::max<std::int64_t>(first - ring.count, 0);
        count -= part;
        values += part;
    }
    return true;
}

template bool VDFamosValues::Read(VDIo&, const VDFamosLayout&, std::int64_t, std::int64_t, float*);
template bool VDFamosValues::Read(VDIo&, const VDFamosLayout&, std::int64_t, std::int64_t, double*);
template bool VDFamosValues::Read(VDIo&, const VDFamosLayout&, std::int64_t, std::int64_t, std::uint32_t*);
