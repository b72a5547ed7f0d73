#pragma once

#include "VDFamosPlacement.h"

#include "vdbase/VDIo.h"

/// Reads the values of the components of one file, with the component's factor and offset.
///
/// Values that lie side by side are read straight or in small pieces. Where several components are interleaved, a run of
/// whole packets is kept in memory: the first component of a block reads it, the others take theirs from it. Its size
/// follows the blocks that are asked for and is bounded.
class VDFamosValues
{
public:
    /// Reads points, of which all must be there (-332799). Nothing is read for a count of 0 or fewer.
    /// @param file    the open file that the layout is of; always the same
    /// @param values  floats or doubles; or 32-bit words, which are the whole numbers of the file as they stand
    /// @return false, recorded; `values` then holds what was read until then
    template <class Value>
    bool Read(VDIo& file, const VDFamosLayout& layout, std::int64_t first, std::int64_t count, Value* values);

private:
    template <class Value>
    class Part;

    const unsigned char* Cover(VDIo& file, const VDFamosLayout::Ring& ring, std::int64_t from, std::int64_t to);

    std::vector<unsigned char> window_;
    VDFamosLayout::Ring windowRing_{};
    std::int64_t windowFrom_ = 0;
    std::int64_t windowTo_ = 0;
};
