#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDArray.h"
#include "vdbase/VDVariant.h"

class LQChannelMapper;
class VDHist;

/// Reading and writing histogram tests, whatever the file format. A channel is one whole histogram, which travels as a
/// handle of the base library (`vdbase/VFHist.h`): bins, axes, titles, overflows and all else that belongs to it.
///
/// The life of an access object: `HFAccCreate`, `HFAccSetId`, `HFAccOpen`, calls, `HFAccClose`, `HFAccRelease`. Channels are
/// indexes into the channel list sorted by number; -1 is the file as a whole.
///
/// Errors of every function: -328009 "SetID must be called before any other function", -327993 "File is not yet open",
/// -327808 with the plug-in's own text when a plug-in fails, -327807 when it fails without saying why. Of functions of a
/// channel: -327994 without channels, -327995 for an index that isn't there. Of functions that write: -327998 for a file
/// that is open to read only or a format that can't be written.

extern "C" {

/// @name Life
/// @{
/// A new object with one reference; null when memory is short.
DAX_API VDHistAcc* HFAccCreate();
/// The last reference closes an open file.
DAX_API int HFAccRelease(VDHistAcc* acc);
/// Binds the object to a test, of which it takes a copy. A second call ends the first binding. -327802 if no plug-in serves
/// the file's type, -327809 without channels.
/// @param create  non-zero for a file that will be written anew
DAX_API int HFAccSetId(VDHistAcc* acc, VDFileId* id, char create);
/// A copy of the object's id, for the caller to release. -327795 "File ID object not set" before `HFAccSetId`.
DAX_API int HFAccGetId(VDHistAcc* acc, VDFileId** id);
/// @param mode  1 read, 2 read and write an existing file, 3 and 4 create. -328017 if it doesn't fit `create`
DAX_API int HFAccOpen(VDHistAcc* acc, int mode);
/// Flushes, unless the file is open to read only. Success if it isn't open.
DAX_API int HFAccClose(VDHistAcc* acc);
/// What was put until now survives whatever happens, in formats that can promise it.
DAX_API int HFAccFlush(VDHistAcc* acc);
/// Makes a plug-in known that isn't in the configuration.
/// @param name  the class id text that file types name
/// @return 1 also if the name is there already; 0, recorded, if it doesn't load
DAX_API int HFAccAddPlugin(const char* name, const char* prefix, const char* library, const char* description);
/// @param capability  a `DaxHistogram::Capability`
/// @param answer      0 on failure
DAX_API int HFAccGetCapability(VDHistAcc* acc, int capability, char* answer);
/// @}

/// @name Channels
/// Known from `HFAccSetId` on.
/// @{
DAX_API int HFAccGetNumChans(VDHistAcc* acc, int* count);
DAX_API int HFAccGetChans(VDHistAcc* acc, VDArrayWithSort<long>* numbers);
/// -328010 "Invalid channel number : n" if the test has no such channel.
DAX_API int HFAccGetChanIndex(VDHistAcc* acc, int number, int* index);
/// Success also for a number that isn't there.
DAX_API int HFAccIsValidChan(VDHistAcc* acc, int number, char* valid);
/// The number that the file itself gives the channel.
DAX_API int HFAccGetActualChanNumber(VDHistAcc* acc, int index, int* number);
/// The title in the file or, for a format that stores none, in the id.
DAX_API int HFAccGetChanTitle(VDHistAcc* acc, int index, VDString* title);
/// The title in the file; that in the id stays. -327691 for a format that stores none.
DAX_API int HFAccSetChanTitle(VDHistAcc* acc, int index, const char* title);
/// @}

/// @name Data
/// @{
/// The histogram of a channel. One that was never put comes without bins. With offsets in use its axes are those of the
/// values with the channel's offset (`VFHistAddStaticOffset`).
/// @param histogram  gets a new handle, for the caller to give back with `VFHistRelease`; null on failure
DAX_API int HFAccGetHistogram(VDHistAcc* acc, int index, VDHist** histogram);
/// Puts a histogram in the place of the channel's. It stays the caller's, and offsets are not taken off. A histogram without
/// a format may get the format of doubles.
DAX_API int HFAccPutHistogram(VDHistAcc* acc, int index, VDHist* histogram);
/// Whether the offsets of channels are added; they aren't at first.
DAX_API int HFAccSetUseOffset(VDHistAcc* acc, char useOffset);
/// @}

/// @name Format-specific values and metadata
/// @{
/// A name that the format doesn't know leaves the value empty, and succeeds.
DAX_API int HFAccGetFormatSpecificValue(VDHistAcc* acc, int index, const char* name, VDVariant* value);
DAX_API int HFAccSetFormatSpecificValue(VDHistAcc* acc, int index, const char* name, VDVariant* value);
/// The metadata, to be read and, in a file that isn't open to read only, changed. Every histogram is described in the
/// attributes of its channel. The mapper stays the library's or the plug-in's and is valid until the test is closed.
DAX_API int HFAccGetMetaData(VDHistAcc* acc, LQChannelMapper** mapper);
/// @}

}  // extern "C"
