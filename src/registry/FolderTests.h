#pragma once

#include "vdbase/VDStringArray.h"

#include <array>

/// Folder tests: folders of certain extensions that hold one test, whose channels are the files inside.

/// One type of folder test: a folder with one of these extensions holds a test in files with one of those.
struct VDFolderTestRow
{
    VDStringArray folderExtensions;
    VDStringArray fileExtensions;
};

using VDFolderTestRows = std::array<VDFolderTestRow, 3>;

/// The types in order, with what the preferences add. They are worked out anew only after a preference has changed.
/// The reference is good until the thread's next call in here.
const VDFolderTestRows& VFGetFolderTestRows();

/// Whether a file of this extension in a folder of that extension is part of a folder test. Case doesn't matter, and nothing
/// is copied.
/// @param folderExtensionLower  of the folder or, where the folder has none, of the file
/// @param folderHasExtension    false looks at the folder's extension alone
bool VFIsFolderTestName(const VDString& folderExtensionLower, const VDString& fileExtensionLower, bool folderHasExtension);
