#pragma once

#include "daxlib/daxlib.h"
#include "support/TestSupport.h"

/// What tests of time-series access start from.

/// The file's one test, identified by content, with its channels; empty, with a test failure, if that doesn't work.
inline VDFileIdHandle IdentifyTest(const std::string& filename)
{
    VDFileIdHandle id(FIDCreate());
    EXPECT_TRUE(FIDSetFilename(id.Get(), VTNameFormFile, filename.c_str(), ""));
    VDFileInfoHandle info(FINFCreate());
    VDFileIdArrayHandle tests;
    int size = 0;
    EXPECT_TRUE(FINFIdentifyFile(info.Get(), id.Get(), 1, tests.Out())) << VFErrorGetText(VFGetBaseLibError()).Str();
    EXPECT_TRUE(FIAGetSize(tests.Get(), &size));
    EXPECT_EQ(size, 1);
    VDFileIdHandle test;
    FIAGetAt(tests.Get(), 0, test.Out());
    return test;
}

/// The id of a test that is to be written, with channels 1, 2, ... of these data types.
inline VDFileIdHandle NewTestId(const std::string& filename, int fileId, int subId, const std::vector<int>& types)
{
    VDFileIdHandle id(FIDCreate());
    FIDSetFileId(id.Get(), fileId, subId);
    FIDSetFilename(id.Get(), VTNameFormFile, filename.c_str(), "");
    int index = -1;
    for (const int type : types) {
        FIDAddChannel(id.Get(), index + 2, &index);
        FIDSetChanType(id.Get(), index, type);
    }
    FIDSetIdentified(id.Get(), 1);
    FIDSetInfoLoaded(id.Get(), 1);
    return id;
}

/// An access object bound to a test.
inline VDTsAccHandle BindTest(VDFileId* id, bool create = false)
{
    VDTsAccHandle acc(TSAccCreate());
    EXPECT_TRUE(TSAccSetId(acc.Get(), id, create ? 1 : 0)) << VFErrorGetText(VFGetBaseLibError()).Str();
    return acc;
}

/// An existing file, identified and opened.
inline VDTsAccHandle OpenTest(const std::string& filename, int mode = VTTsAccOpenRead)
{
    VDTsAccHandle acc = BindTest(IdentifyTest(filename).Get());
    EXPECT_TRUE(TSAccOpen(acc.Get(), mode)) << VFErrorGetText(VFGetBaseLibError()).Str();
    return acc;
}
