#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDArray.h"
#include "vdbase/VDString.h"

class VDChanSep;
class VDStringArray;

/// Directory lists: turn a folder, a pattern and filters into a sorted array of tests.
///
/// The life of an object: `VFDirListCreate`, `VFDirListSetPath`, `VFDirListSetFilesMatching` and filters, `VFDirListCreateList`
/// or `VFDirListCreateListWithInfo`, `VFDirListGetFileIdArray`, `VFDirListRelease`. Filters stay between scans.
///
/// The text that says which files are meant holds pieces parted by "|", which are scanned one after the other into the same
/// array. A piece is a file pattern ("*" for any text, "?" for one byte, in the last element of the name), and options behind
/// it, each parted by ";"; ";;" is a semicolon of a name. A pattern without "*" and extension finds the channel files of a
/// test, too: "road" finds road01.dat, and keeps the test "road". The first letter of an option, in either case, says what it
/// is; any other letter is passed over:
///
///     c1,4-6     keeps channels of these numbers         x PATTERN   keeps tests with such an extension
///     t PATTERN  keeps channels with such a title        s           looks into sub-folders, too
///     r, b, m    keep tests of these run, burst, mode numbers
///     aTS        keeps tests of this kind of data: TS, HS, CY, MC, MD, CF or FE
///     d FILE     sets the extra metadata file            n FILE      sets the associated file; "** NO NAME **" if empty
///     pKEY=TEXT  sets a preference of the tests
///
/// A text "@FILE" names a file that lists names instead, one a line. A name ends at a blank or at the end of its line,
/// whichever gives a file that exists: every beginning of the line that does is taken.
///
/// Where files of a format hold a channel each, they are put together: road01.dat and road02.dat are the test "road" with the
/// channels 1 and 2. Only what leads back to the files is put together.
///
/// Only plain files, and links to such, are looked at. A folder is visited once, whatever links lead to it.

extern "C" {

/// @name Life
/// @{
/// A new object with one reference; null with -327681 "Out of memory " when memory is short.
DAX_API VDDirList* VFDirListCreate();
DAX_API int VFDirListRelease(VDDirList* list);
/// @}

/// @name What is listed
/// @{
/// The folder that names are taken under; empty for the current one. One that doesn't exist lists nothing.
DAX_API int VFDirListSetPath(VDDirList* list, const VDString& path);
/// Sets the text. The list keeps it for one scan: what stands there for the next is the pattern of the last piece without its
/// options. A text with the extension "tmp", one that begins with "@" and one with options have the object look at the
/// content of files from then on, also where an extension would tell what they are.
DAX_API int VFDirListSetFilesMatching(VDDirList* list, const VDString& text);
/// Looks into sub-folders, other than those whose name begins with a dot.
DAX_API int VFDirListSetRecurseSubDirs(VDDirList* list, char recurse);
/// The rules that split file names into test and channel; copied.
DAX_API int VFDirListSetChanSep(VDDirList* list, const VDChanSep* chanSep);
/// @}

/// @name Filters
/// Each takes the place of the one before. Any but that for all types has files that nobody knows left out; without one these
/// are listed with file id 0.
/// @{
/// @param type  9999 for all types
DAX_API int VFDirListSetFilterByAccessType(VDDirList* list, VTFileAccessType type);
/// @param types  copied; an empty list fails with -328783
DAX_API int VFDirListSetFilterByAccessTypes(VDDirList* list, VDArray<VTFileAccessType> types);
DAX_API int VFDirListSetFilterByFileId(VDDirList* list, int fileId, int subId);
/// @param fileIds, subIds  pairs; copied. Lists of different length, or empty ones, fail with -328782
DAX_API int VFDirListSetFilterByFileIds(VDDirList* list, VDArray<int> fileIds, VDArray<int> subIds);
DAX_API int VFDirListClearFilter(VDDirList* list);
/// @}

/// @name The scan
/// @{
/// Lists the tests, by name, run, burst and mode, with the channels ascending. -328781 "Error creating file list" on failure,
/// on top of what it came from; the array then holds what was found until then. Files that can't be opened or read, and empty
/// ones, are left out.
DAX_API int VFDirListCreateList(VDDirList* list);
/// The same with the channel list of every test.
DAX_API int VFDirListCreateListWithInfo(VDDirList* list);
/// @param tests  the array of the object, with a reference for the caller; each scan fills it anew
DAX_API int VFDirListGetFileIdArray(VDDirList* list, VDFileIdArray** tests);

/// Is called every 0.2 seconds and at every 20th file.
/// @return 0 ends the scan with -328784 "Directory scan aborted"
typedef int VDDirListProgress(void* context);
/// @param progress  null for none
DAX_API int VFDirListSetProgressCallback(VDDirList* list, VDDirListProgress* progress, void* context);
/// @}

/// @name What can't be read
/// @{
/// @param errorOnLoad    whether a test whose channel list can't be loaded ends the scan, as it does unless this is called.
///                       Otherwise it stays with file id 0, or is left out where unknown files are, and a file whose content
///                       makes a plug-in fail doesn't end the scan either
/// @param recordDetails  keeps what the two functions below give
DAX_API int VFDirListSetErrorOnLoadDetails(VDDirList* list, char errorOnLoad, char recordDetails);
/// The tests that stayed with file id 0, and why.
/// @param tests  gets a reference for the caller
/// @param texts  parallel to the array
DAX_API int VFDirListGetLoadErrorDetails(VDDirList* list, VDFileIdArray** tests, VDStringArray* texts);
/// The files and folders that were left out because they couldn't be read, and why: two parallel lists.
DAX_API int VFDirListGetSkipped(VDDirList* list, VDStringArray* names, VDStringArray* texts);
/// @}

}  // extern "C"
