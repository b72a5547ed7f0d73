#pragma once

#include "daxlib/VFDaxMetaData.h"

/// What the functions of the copy family differ in.
struct VDMetaDataCopyOptions
{
    VTMetaDataCopyMode mode = VTMetaDataCopyMatching;
    bool overwrite = false;
    bool attributes = false;
    bool testInfo = true;
    bool check = false;                   ///< only with `sets`: names are checked, and failures reported
    const VDStringArray* sets = nullptr;  ///< the sets to copy; null for all
};

/// Copies global metadata, then the channels that both mappers have or that the mode makes.
bool VFCopyMetaDataMapper(LQChannelMapper& source, LQChannelMapper& target, VDMetaDataCopyOptions options);

/// Copies one slot. `options.sets` plays no part.
bool VFCopyMetaDataSlot(LQChannelMapper& source, int sourceIndex, LQChannelMapper& target, int targetIndex,
                        VDMetaDataCopyOptions options);

/// Copies those sets of one slot that `options.sets` names.
/// @param routine  under which failures are reported
bool VFCopyMetaDataSelectedSets(LQChannelMapper& source, int sourceIndex, LQChannelMapper& target, int targetIndex,
                                VDMetaDataCopyOptions options, const char* routine);
