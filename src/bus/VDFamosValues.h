#pragma once

#include "FamosRecords.h"

#include "vdbase/VDIo.h"

#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

/// Reads the values of one component of a Famos file after another, as numbers with the component's factor and offset.
///
/// The values lie in the component's buffers: pieces of the file's samples, one behind the other in the order of the keys.
/// Each is a ring, which begins at any of its bytes. In it values come in packets: so many in a row, then bytes of others.
///
/// Number formats: 1 to 6 are whole numbers of 1, 2 and 4 bytes, unsigned and signed in turns, 7 and 8 floats of 4 and 8
/// bytes, 11 a word of digital channels, 13 a whole number of 6 bytes without a sign. The file's processor (key `CF`)
/// says in which order the bytes stand: 2 for the highest one first.
class VDFamosValues
{
public:
    /// Both must outlive the object; the file must be open.
    VDFamosValues(VDIo& file, const VDFamosHeader& header);

    /// Chooses the component to read.
    /// @return false, recorded, if its keys don't fit together: -332794 for the packet (the number format too), -332795 for
    ///         the buffers, -332802 if there is no such component. It then has no points.
    bool SetComponent(std::size_t group, std::size_t component);

    /// Points that are in the file.
    std::int64_t GetCount() const { return count_; }
    /// Whether the file ends before the component's buffers do.
    bool IsCut() const { return isCut_; }

    /// Reads points, of which all must be there (-332799). Nothing is read for a count of 0 or fewer.
    /// @return false, recorded; `values` then holds what was read until then
    bool Read(std::int64_t first, std::int64_t count, double* values);

private:
    /// Takes a value from its bytes.
    using Getter = double (*)(const unsigned char* bytes);

    /// A ring in the file and the points in it. Positions in it count from where its values begin.
    struct Ring
    {
        std::int64_t start;  ///< position in the file of its first byte
        std::int64_t size;
        std::int64_t first;
        std::int64_t count;
    };

    bool TakePacket(const VDFamosPacket& packet);
    bool AddRings(int reference, std::size_t numGroups);
    bool AddRing(const VDFamosBuffer& buffer);
    std::int64_t CountUntil(std::int64_t position) const;
    std::int64_t PositionOf(std::int64_t point) const;
    bool ReadRing(const Ring& ring, std::int64_t first, std::int64_t count, double* values);
    bool ReadBytes(const Ring& ring, std::int64_t position, std::int64_t count, unsigned char* bytes);

    VDIo& file_;
    const VDFamosHeader& header_;
    std::int64_t fileSize_;
    std::vector<unsigned char> window_;
    std::unordered_map<int, const VDFamosDataBlock*> samples_;
    /// By reference and group.
    std::map<std::pair<int, std::size_t>, std::vector<const VDFamosBuffer*>> buffers_;
    std::vector<Ring> rings_;
    std::int64_t count_ = 0;
    bool isCut_ = false;
    Getter get_ = nullptr;
    std::int64_t bytes_ = 0;
    std::int64_t offset_ = 0;
    std::int64_t inRow_ = 1;
    std::int64_t between_ = 0;
    double factor_ = 1;
    double shift_ = 0;
};
