#pragma once

#include "daxlib/DaxTypes.h"

#include <cstdint>

class VDIo;

/// Ordered lists of tests. An array holds one reference on each entry; entries may be shared with other arrays and callers.
/// An index outside the array fails with -328595 "Index out of range  (%d)".

/// Bits of `FIASort`.
enum VTFileIdArraySort : int {
    VTFileIdArraySortTests = 1,
    VTFileIdArraySortChannels = 2,
    VTFileIdArraySortTestsDescending = 4,
    VTFileIdArraySortChannelsDescending = 8,
};

extern "C" {

/// A new empty array with one reference; null with -327681 when memory is short.
DAX_API VDFileIdArray* FIACreate();
DAX_API int FIAAddRef(VDFileIdArray* array);
/// The last release gives up every entry.
DAX_API int FIARelease(VDFileIdArray* array);
/// Empties the target and fills it with independent copies of the source's entries.
DAX_API int FIACopy(VDFileIdArray* target, VDFileIdArray* source);
DAX_API int FIAGetSize(VDFileIdArray* array, int* size);
DAX_API int FIAClear(VDFileIdArray* array);
/// Shares the id: it gets a reference and is appended.
DAX_API int FIAAppendItem(VDFileIdArray* array, VDFileId* id);
/// Appends independent copies of the source's entries.
DAX_API int FIAAppend(VDFileIdArray* target, VDFileIdArray* source);
/// @param id  gets a new reference for the caller
DAX_API int FIAGetAt(VDFileIdArray* array, int index, VDFileId** id);
DAX_API int FIARemoveAt(VDFileIdArray* array, int index);
/// Selection is a flag of the id, so it is shared where the id is shared.
DAX_API int FIASelectAt(VDFileIdArray* array, int index, char selected);
DAX_API int FIAGetSelectAt(VDFileIdArray* array, int index, char* selected);
DAX_API int FIASelectAll(VDFileIdArray* array, char selected);
/// Removes the selected entries, or with a false flag the others.
DAX_API int FIARemoveSelected(VDFileIdArray* array, char selected);
/// Index of the first entry that means the same test; -1, and success, if there is none.
DAX_API int FIAFind(VDFileIdArray* array, VDFileId* id, int* index);
/// @param flags  bits of `VTFileIdArraySort`. Tests sort by base name, run, burst and mode; channels by number
DAX_API int FIASort(VDFileIdArray* array, int flags);
/// Fills the array with all tests that a spec names, as `FIDCreateFromTestSpec` reads it. -328605 if there are none, unless a
/// plug-in says so.
DAX_API int FIACreateFromTestSpec(VDFileIdArray* array, const char* text);
/// The first entry that a descriptor names: its filename and extension without regard to case, and its run, burst, mode,
/// access type and exact list of channels as far as the descriptor says them. No file is looked at.
/// @param text  parted at every ";"; it has no wildcards. A number that is none fails with -328615, an access type with
///              -328616, as does "afe"
/// @param id    gets a reference for the caller; null, and success, if there is no such entry
DAX_API int FIAFindFromTestSpec(VDFileIdArray* array, const char* text, VDFileId** id);
/// Writes the entries as an object into an open file or, with `reading` set, replaces them by what the object at the file's
/// current position holds; see `FIDSerialise`. After a failure the array has the entries up to there.
DAX_API int FIASerialise(VDFileIdArray* array, VDIo* io, char reading, std::int64_t* context);

}  // extern "C"
