#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDIo.h"
#include "vdbase/VDVariant.h"

/// What a FileFormat plug-in exports: each of these functions as `extern "C"` under the plug-in's prefix and the name here
/// (prefix "WavFF": `WavFFIdentifyFile`). The library calls them one at a time, under its lock. An exception that leaves a
/// plug-in is caught and counts as a failure.
namespace DaxFileFormat {

/// Says whether the file is of one of the plug-in's formats. It sets `claimed` either way. A plug-in that claims the file
/// sets the file type on `id`, with all else that it read, and appends each test that the file holds to `tests` (usually `id`
/// itself).
/// @param header      the file's first bytes, with a zero byte behind them
/// @param headerSize  at most 512
/// @param io          the open file, positioned behind the header
/// @return 0 if the routine itself failed, which counts as declined
using IdentifyFile = int(VDFileId* id, const char* header, int headerSize, VDIo* io, VDFileIdArray* tests, char* claimed);

/// Fills the channel list of an id that the plug-in identified. The header has no zero byte behind it.
using LoadFileInfo = int(VDFileId* id, const char* header, int headerSize, VDIo* io);

/// The text of the last failure; exactly "VARDO" if the plug-in has recorded it in the error system already.
using GetLastError = void(VDString* text);

/// Walks the plug-in's file types.
/// @param index       in-out, 0 at the start
/// @param accessType  a `VTFileAccessType`
/// @param accessClass class id text: the name of the access plug-in in its section
/// @param more        0 when there are no more, and the other arguments are then void
using GetNextSupportedType = void(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
                                  VDString* description, char* more);

/// Walks the capabilities of one type, such as "Readable", "Writable", "HasRun", "HasBurst" and "HasMode".
using GetNextCapability = void(int fileId, int subId, int* index, VDString* name, int* value, char* more);

/// Answers a question about a type with a list of one item.
/// @param key  "NameForm" (a long, `VTNameForm`) or "FormatKeyword" (a text), given the list (file id, sub id) as longs;
///             "DefaultExtension" (a text), given (file id, sub id, hint text in upper case)
using GetValue = void(const char* key, const VDVariant* arguments, VDVariant* answer);

/// Optional. Makes a descriptor of the plug-in's own; an empty text leaves it to the library.
using FileIdToTestDesc = int(VDFileId* id, int type, VDString* text);

/// Optional. Reads such a descriptor.
using TestDescToFileIdArray = int(const char* text, VDFileIdArray* tests, char* claimed);

/// Optional. Gives the id through which the test is served instead, with a reference for the caller, or null.
using GetProxyAccessFileId = int(VDFileId* id, VDFileId** proxy);

}  // namespace DaxFileFormat
