#pragma once

#include "FamosNumbers.h"
#include "FamosRecords.h"

#include <map>
#include <tuple>
#include <vector>

/// Where the values of one component lie and how they are read.
///
/// They lie in the component's buffers: pieces of the file's samples, one behind the other in the order of the keys. Each is
/// a ring, which begins at any of its bytes. In it values come in packets: so many in a row, then bytes of others.
struct VDFamosLayout
{
    /// A ring in the file and the points in it. Positions in it count from where its values begin.
    struct Ring
    {
        std::int64_t start = 0;  ///< position in the file of its first byte
        std::int64_t size = 0;
        std::int64_t first = 0;     ///< byte of the ring at which its values begin
        std::int64_t count = 0;     ///< points that the file holds of it
        std::int64_t readable = 0;  ///< bytes that it holds, from where the values begin
    };

    const VDFamosNumbers* numbers = nullptr;
    bool highestFirst = false;  ///< order of the bytes of a value
    VDFamosNumbers::Scale scale;
    std::int64_t offset = 0;
    std::int64_t inRow = 1;
    std::int64_t between = 0;
    std::vector<Ring> rings;
    std::vector<const VDFamosBuffer*> buffers;  ///< one a ring
    std::int64_t count = 0;                     ///< points that the file holds
    std::int64_t declared = 0;                  ///< points that it would hold if it were whole

    /// Bytes from a row of values to the next.
    std::int64_t GetPeriod() const { return inRow * numbers->bytes + between; }
    std::int64_t GetPosition(std::int64_t point) const { return offset + point * numbers->bytes + point / inRow * between; }
    /// Points that end up to a position in a ring.
    std::int64_t CountUntil(std::int64_t position) const;
};

/// Finds the layouts of the components of one file.
class VDFamosPlacement
{
public:
    /// @param header  outlives the object and the layouts
    VDFamosPlacement(const VDFamosHeader& header, std::int64_t fileSize);

    /// @return false, recorded, if the keys of the component don't fit together: -332794 for the packet (the number format
    ///         too), -332795 for the buffers, -332802 if there is no such component. The layout then has no points
    bool Find(std::size_t group, std::size_t component, VDFamosLayout* layout) const;

private:
    /// A number of the file and the group and component in which it was given, or any.
    using Place = std::tuple<std::int64_t, std::size_t, std::size_t>;

    bool TakePacket(const VDFamosPacket& packet, VDFamosLayout* layout) const;
    bool AddRings(int reference, std::size_t numGroups, std::size_t numComponents, VDFamosLayout* layout) const;
    bool AddRing(const VDFamosBuffer& buffer, std::size_t numGroups, VDFamosLayout* layout) const;

    const VDFamosHeader& header_;
    std::int64_t fileSize_;
    std::map<std::pair<std::int64_t, std::size_t>, const VDFamosDataBlock*> samples_;  ///< by index and group
    std::map<Place, std::vector<const VDFamosBuffer*>> buffers_;
};
