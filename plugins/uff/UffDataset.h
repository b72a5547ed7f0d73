#pragma once

#include "UffHeader.h"

#include <cstdint>
#include <vector>

/// One dataset 58 of a file: its header, and where its data lie.
struct UffDataset
{
    UffHeader header;
    int number = 0;  ///< among all of this type, from 1
    bool isText = true;
    bool isBigEndian = false;
    int abscissaBytes = 0;     ///< of an abscissa in binary data: 4, or 8
    std::int64_t offset = 0;   ///< of the data
    std::int64_t end = 0;
    std::int64_t points = 0;   ///< that are there, each of them whole
    bool isEnded = false;      ///< by its own mark and not by the file
    /// Lines have as many values as the format says, so that a point's line can be worked out; else where groups of lines begin
    /// was found by reading all of them.
    bool isRegular = true;
    struct Mark
    {
        std::int64_t part;  ///< number of the first number from here
        std::int64_t offset;
    };
    /// Places in the text data, in order, so that no more than some lines need be read to find a point.
    std::vector<Mark> marks;

    /// Bytes of a point in binary data.
    std::int64_t GetPointBytes() const
    {
        const std::int64_t values = (header.IsComplex() ? 2 : 1) * (header.IsDouble() ? 8 : 4);
        return values + (header.isEven ? 0 : abscissaBytes);
    }
};
