#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDString.h"

/// One channel of a test.
struct VDFileIdChanInfo
{
    std::int32_t number = 0;  ///< the channel's number in the test, of which descriptors and selection lists speak
    bool selected = true;
    VDString title = {};
    VDString units = {};
    std::int32_t type = DaxDataType::Float;  ///< of the values, see `DaxDataType`
    std::int32_t fileChanNumber = -1;        ///< inside the channel's file
    VDString filename = {};                  ///< of the channel's file in a folder test, where it differs from the title
};
