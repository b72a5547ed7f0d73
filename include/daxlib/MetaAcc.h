#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDArray.h"
#include "vdbase/VDVariant.h"

class LQChannelMapper;

/// Reading and writing files whose content is metadata alone: channels, titles, values that a format knows by names of its
/// own, and one mapper (`vdstore/LQChannelMapper.h`). No data goes this way.
///
/// The life of an access object: `MetaAccCreate`, `MetaAccSetId`, `MetaAccOpen`, calls, `MetaAccClose`, `MetaAccRelease`.
/// Channels are indexes into the channel list sorted by number; -1 is the file as a whole. A test may have no channels.
///
/// Errors of every function: -328009 "SetID must be called before any other function", -327993 "File is not yet open",
/// -327808 with the plug-in's own text when a plug-in fails, -327807 when it fails without saying why.

extern "C" {

/// @name Life
/// @{
/// A new object with one reference; null when memory is short.
DAX_API VDMetaAcc* MetaAccCreate();
/// The last reference closes an open file.
DAX_API int MetaAccRelease(VDMetaAcc* acc);
/// Binds the object to a test, of which it takes a copy. A second call ends the first binding. -327802 if no plug-in serves
/// the file's type; -328682 and -328683 while one of the family's plug-ins doesn't load.
/// @param create  non-zero for a file that will be written anew
DAX_API int MetaAccSetId(VDMetaAcc* acc, VDFileId* id, char create);
/// A copy of the object's id, for the caller to release. -327795 "File ID object not set" before `MetaAccSetId`.
DAX_API int MetaAccGetId(VDMetaAcc* acc, VDFileId** id);
/// @param mode  1 read, 2 read and write an existing file, 3 and 4 create. -328017 if it doesn't fit `create`
DAX_API int MetaAccOpen(VDMetaAcc* acc, int mode);
/// Flushes, unless the file is open to read only. Success if it isn't open.
DAX_API int MetaAccClose(VDMetaAcc* acc);
DAX_API int MetaAccFlush(VDMetaAcc* acc);
/// Makes a plug-in known that isn't in the configuration.
/// @param name  the class id text that file types name
/// @return 1 also if the name is there already; 0, recorded, if it doesn't load: it isn't kept then
DAX_API int MetaAccAddPlugin(const char* name, const char* prefix, const char* library, const char* description);
/// @param capability  a `DaxMetaData::Capability`
/// @param answer      0 on failure
DAX_API int MetaAccGetCapability(VDMetaAcc* acc, int capability, char* answer);
/// @}

/// @name Channels
/// Known from `MetaAccSetId` on.
/// @{
DAX_API int MetaAccGetNumChans(VDMetaAcc* acc, int* count);
DAX_API int MetaAccGetChans(VDMetaAcc* acc, VDArrayWithSort<long>* numbers);
/// -328010 "Invalid channel number : n" if the test has no such channel.
DAX_API int MetaAccGetChanIndex(VDMetaAcc* acc, int number, int* index);
/// Success also for a number that isn't there.
DAX_API int MetaAccIsValidChan(VDMetaAcc* acc, int number, char* valid);
/// The number that the file itself gives the channel.
DAX_API int MetaAccGetActualChanNumber(VDMetaAcc* acc, int index, int* number);
/// The title in the file or, for a format that stores none, in the id. -327994 without channels, -327995 for an index that
/// isn't there.
DAX_API int MetaAccGetChanTitle(VDMetaAcc* acc, int index, VDString* title);
/// The title in the file; that in the id stays. -327691 for a format that stores none.
DAX_API int MetaAccSetChanTitle(VDMetaAcc* acc, int index, const char* title);
/// @}

/// @name Format-specific values and metadata
/// @{
/// A name that the format doesn't know leaves the value empty, and succeeds.
DAX_API int MetaAccGetFormatSpecificValue(VDMetaAcc* acc, int channel, const char* name, VDVariant* value);
DAX_API int MetaAccSetFormatSpecificValue(VDMetaAcc* acc, int channel, const char* name, VDVariant* value);
/// The metadata, to be read and, in a file that isn't open to read only, changed: what the format keeps, or its sidecar. The
/// mapper stays the library's or the plug-in's and is valid until the test is closed.
DAX_API int MetaAccGetMetaData(VDMetaAcc* acc, LQChannelMapper** mapper);
/// @}

}  // extern "C"
