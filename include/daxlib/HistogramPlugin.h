#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDVariant.h"

class LQChannelMapper;
class VDHist;

/// What a histogram access plug-in exports, in the configuration section "HistogramFiles" and under the class id text that
/// its file types name: each of these functions as `extern "C"` under the plug-in's prefix. All are needed.
///
/// `instance` is what `Create` gave; one instance serves one test. A result of 0, or an exception, is a failure, and
/// `GetLastError` is asked for its text. Channels are indexes into the sorted channel list of the id that `SetId` got, -1 is
/// the file as a whole. A channel is one whole histogram (`vdbase/VFHist.h`). Calls come one at a time for the whole process
/// unless the instance answers `NoSerialisation`.
namespace DaxHistogram {

using Create = void*(const char* classId);
using Release = int(void* instance);
/// @param id      the access object's own copy, valid until the instance is released
/// @param create  non-zero for a file that is to be written anew
using SetId = int(void* instance, VDFileId* id, char create);
/// @param mode  1 read, 2 read and write an existing file, 3 and 4 create
using Open = int(void* instance, int mode);
using Close = int(void* instance);
/// The text of the plug-in's last failure; exactly "VARDO" if the plug-in has recorded it in the error system already.
using GetLastError = void(VDString& text);
using Flush = int(void* instance);
/// @param capability  a `Capability`; an unknown one is answered with 0
using GetCapability = int(void* instance, int capability, char* answer);
/// @param key  a `Key`. A key that the format has no answer for leaves the variant as it is, which is no failure
using GetValue = int(void* instance, long channel, int key, VDVariant* value);
using PutValue = int(void* instance, long channel, int key, VDVariant* value);
/// @param histogram  gets a new one, for the caller to release
using GetHistogram = int(void* instance, long channel, VDHist** histogram);
/// The histogram stays the caller's.
using PutHistogram = int(void* instance, long channel, VDHist* histogram);
/// The mapper that the plug-in keeps and owns.
using LoadMetaData = int(void* instance, LQChannelMapper** mapper);
/// Adds to the sidecar of a test what an older form of the format keeps of it.
using AddLegacyMetaData = int(void* instance, LQChannelMapper* mapper);

/// What `GetCapability` is asked.
enum Capability : int {
    Writable = 1,
    KeepsMetaData = 2,    ///< the file holds the metadata; otherwise they go into a sidecar beside it
    ChannelTitles = 3,    ///< channel titles are stored in the file
    NoSerialisation = 4,  ///< instances may be called at the same time from different threads
};

/// Keys of `GetValue` and `PutValue`, with the variant that goes with each.
enum Key : int {
    AccessObject = 0,  ///< put, file: pointer to the access object
    ChanTitle = 1,     ///< both, channel: text
    FormatSpecific =
        2,  ///< both, channel or file: list. Get: holds the name, the plug-in appends the value; put: name, value
    ActualChanNumber = 3,  ///< get, channel: long
    MetaDataMapper = 4,    ///< put, file: pointer named "MetaDataMapper", the sidecar's mapper
    UseOffset = 5,         ///< put, file: boolean
    ScheduleOffset = 6,    ///< get, channel: list of boolean (there is one) and double, for the type that applies its own
};

}  // namespace DaxHistogram
