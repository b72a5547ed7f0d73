#pragma once

#include "vdarchive/VDArchiveApi.h"

#include <cstdint>

/// The record sizes of streams, in bytes.
class VDARCHIVE_API Z4Size
{
public:
    static constexpr int Record32K = 32 * 1024;
    static constexpr int Record256K = 256 * 1024;

    static int GetNumRecordSizes();
    /// In ascending order; 0 outside the table.
    static int GetRecordSize(int index);
    static bool IsRecordSize(std::int64_t size);
};
