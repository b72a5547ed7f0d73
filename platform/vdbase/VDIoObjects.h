#pragma once

#include "vdbase/VDIo.h"

#include <string>
#include <vector>

/// The objects of a file that are being written or read, the outermost first.
struct VDIo::Objects
{
    struct Written
    {
        std::int64_t begin;  ///< of the frame
        bool failed;         ///< something in it couldn't be put
    };

    std::vector<Written> written;
    std::string pending;  ///< what was put and isn't in the file yet
    std::int64_t pendingOffset = 0;
    std::vector<std::int64_t> readEnds;
};
