#pragma once

#include "InputTest.h"
#include "MetaEdits.h"

/// Where metadata were written.
struct VDMetaStored
{
    std::string file;
    int count = 0;  ///< items that were put or removed
};

/// Changes the metadata of a test where they are kept: in its file if the format has a place for them, else in its sidecar.
/// The file is as before if anything fails; throws then.
VDMetaStored VFStoreMetaData(const VDInputTest& input, const VDMetaEdits& edits);
