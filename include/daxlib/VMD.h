#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDArray.h"
#include "vdbase/VDString.h"

class LQChannelMapper;

/// The metadata sidecar of a test: a storage file beside the data, with the extension "vmd", that holds the metadata of a
/// test whose format keeps none.
///
/// The life of an object: `VMDCreate`, `VMDSetChannelNumberList`, `VMDAdoptTestVmd`, `VMDGetMetaData` as often as wanted,
/// `VMDRelease`. An object is adopted once. It has no lock: one thread uses it at a time. A sidecar has one writer, and any
/// number of readers, which see it as it was last written whole; a writer that is killed leaves it so.
///
/// A failure below the sidecar stands recorded as the storage reported it.

extern "C" {

/// A new object with one reference; null with -327681 when memory is short.
DAX_API VDVmdFile* VMDCreate();
/// The last reference writes a sidecar that was adopted for writing.
/// @return 0, recorded, if that writing failed: the sidecar is then as of the last `VMDFlush`. The object is gone either way
DAX_API int VMDRelease(VDVmdFile* sidecar);
/// Opens a sidecar, or for writing makes one, which appears under its name once it is written. A name that is a link is
/// refused for writing, and so is a storage file that holds something else.
/// @param readMode  reads only; no file of that name is no failure then, and none is made
DAX_API int VMDAdopt(VDVmdFile* sidecar, const char* filename, bool readMode);
/// The same for the sidecar of a test. Channels of the test that the sidecar doesn't have are added with number and title.
/// @param id  gets a reference for the life of the object
DAX_API int VMDAdoptTestVmd(VDVmdFile* sidecar, VDFileId* id, bool readMode);
/// The metadata, to be read and changed. Where there is no file to read, it is a mapper of the test's channels without any
/// set. -329781 "Open not called on VMD file" before a successful adopt.
/// @param mapper  stays the object's; the same at every call
DAX_API int VMDGetMetaData(VDVmdFile* sidecar, LQChannelMapper** mapper);
/// Writes the sidecar as it is now; success, and nothing done, where it is only read. A new one gets the numbers of
/// `VMDSetChannelNumberList` with the last reference only.
DAX_API int VMDFlush(VDVmdFile* sidecar);
/// Takes a sidecar that was adopted for writing for a new one: without metadata, with the channels of the test alone. What lies
/// on disk stays as it is until it is written. Success, and nothing done, where it is only read.
DAX_API int VMDClear(VDVmdFile* sidecar);
/// The name of a test's sidecar: "run1_dat.vmd" for the test "run1" with files of the extension "dat", "run1_dat_s.vmd" for
/// the single file, in the folder of the test. It says nothing about whether there is one.
DAX_API int VMDCreateFilenameFromFileId(VDFileId* id, VDString* filename);
/// The numbers that the channels of a new sidecar get when it is written for the last time, in the order of the channels. To
/// be called before adopting; a list that would leave two channels with one number is not applied.
DAX_API int VMDSetChannelNumberList(VDVmdFile* sidecar, const VDArrayWithSort<long>& numbers);

}  // extern "C"
