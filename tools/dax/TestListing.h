#pragma once

#include "daxlib/DaxHandle.h"

#include <string>
#include <vector>

/// A file or folder that couldn't be read, and why.
struct VDUnreadFile
{
    std::string path;
    std::string reason;
};

/// How tests are looked for.
struct VDTestListOptions
{
    bool recurse = false;
    int accessType = VTFileAccessAll;
    std::string filter;  ///< options of a test spec, each with its ";" in front, that hold for every piece
    VDDirListProgress* progress = nullptr;
    void* context = nullptr;
};

/// The tests that a text means.
struct VDTestListing
{
    std::vector<VDFileIdHandle> tests;  ///< also those that nobody knows, with file id 0
    std::vector<VDUnreadFile> unread;
};

/// Lists the tests of a text with their channels. One that names a file is that file, whatever signs its name has; one that
/// names a folder is what lies in it; any other is a test spec. Throws if the scan is broken off or can't be made.
VDTestListing VFListTests(const std::string& text, const VDTestListOptions& options);

/// A text as a part of a test spec. "|", for which such a part has no place, becomes the sign for any byte.
std::string VFQuoteForSpec(const std::string& text);

/// The shortest test spec that means a test: the name of its file, as the current folder sees it, and what else tells it
/// from others.
std::string VFSpecOf(VDFileId* test);
