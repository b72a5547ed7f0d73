#pragma once

#include "VDFileIdRecord.h"

/// What the stored forms of a file id have in common.

/// The values of a record that aren't any number.
struct VDStoredLimits
{
    long nameForm = VTNameFormFile;
    long dataSource = VTDataSourceDisk;
    long chanDigits = 0;

    static VDStoredLimits Of(const VDFileIdRecord& record);
    /// Whether these are values that an id can have; if not, that is recorded.
    bool Check(const char* routine) const;
    void Apply(VDFileIdRecord& record) const;
};
