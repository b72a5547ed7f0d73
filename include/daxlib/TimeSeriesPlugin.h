#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDVariant.h"

class LQChannelMapper;

/// What a time-series access plug-in exports, in the configuration section "TimeSeriesFiles" and under the class id text that
/// its file types name: each of these functions as `extern "C"` under the plug-in's prefix. All are needed.
///
/// `instance` is what `Create` gave; one instance serves one test. A result of 0, or an exception, is a failure, and
/// `GetLastError` is asked for its text. Channels are indexes into the sorted channel list of the id that `SetId` got, -1 is
/// the file as a whole. Points count from 1. Calls come one at a time for the whole process unless the instance answers
/// `NoSerialisation`.
namespace DaxTimeSeries {

using Create = void*(const char* classId);
using Release = int(void* instance);
/// @param id      the access object's own copy, valid until the instance is released
/// @param create  non-zero for a file that is to be written anew
using SetId = int(void* instance, VDFileId* id, char create);
/// @param mode  1 read, 2 read and write an existing file, 3 and 4 create
using Open = int(void* instance, int mode);
using Close = int(void* instance);
/// The text of the last failure; exactly "VARDO" if the plug-in has recorded it in the error system already.
using GetLastError = void(void* instance, VDString& text);
using Flush = int(void* instance);
/// @param capability  a `Capability`; an unknown one is answered with 0
using GetCapability = int(void* instance, int capability, char* answer);
/// @param key  a `Key`. The keys 1 to 11 are always answered, texts with the empty one if need be: anything but the type there
///             fails the host's call with -328012. Any other key that the format has no answer for leaves the variant as it
///             is, which is no failure
using GetValue = int(void* instance, long channel, int key, VDVariant* value);
using PutValue = int(void* instance, long channel, int key, VDVariant* value);
/// The range was checked against the number of points that the plug-in gave.
using GetData = int(void* instance, long channel, std::int64_t first, std::int64_t count, float* values);
using PutData = int(void* instance, long channel, std::int64_t first, std::int64_t count, const float* values);
/// The mapper that the plug-in keeps and owns.
using LoadMetaData = int(void* instance, LQChannelMapper** mapper);
using AddLegacyMetaData = int(void* instance, LQChannelMapper* mapper);
using GetDataDoublePrecision = int(void* instance, long channel, std::int64_t first, std::int64_t count, double* values);
using PutDataDoublePrecision = int(void* instance, long channel, std::int64_t first, std::int64_t count, const double* values);
using GetDataDigital32 = int(void* instance, long channel, std::int64_t first, std::int64_t count, std::uint32_t* values);
using PutDataDigital32 = int(void* instance, long channel, std::int64_t first, std::int64_t count, const std::uint32_t* values);
using GetDataDigital64 = int(void* instance, long channel, std::int64_t first, std::int64_t count, std::uint64_t* values);
using PutDataDigital64 = int(void* instance, long channel, std::int64_t first, std::int64_t count, const std::uint64_t* values);

/// What `GetCapability` is asked.
enum Capability : int {
    OneChannelAtATime = 0,  ///< reading one channel at a time is fast
    Writable = 2,           ///< writing is possible at all
    CommonHeader = 3,       ///< sample rate, base time and number of points are common to all channels
    Extendable = 4,         ///< the file can grow past its stated length
    LargeFiles = 5,         ///< the file can hold more than 2,000,000,000 points
    StoresStatistics = 6,
    KeepsMetaData = 7,
    ChannelTitles = 9,  ///< channel titles are stored in the file
    NoSerialisation = 11,  ///< instances may be called at the same time from different threads
};

/// Keys of `GetValue` and `PutValue`, with the variant that goes with each.
enum Key : int {
    AccessObject = 0,       ///< put, file: pointer to the access object
    SampleRate = 1,         ///< both, channel: double
    BaseTime = 2,           ///< both, channel: double
    NumPoints = 3,          ///< both, channel: 64-bit
    MaxXTitle = 4,          ///< get, file: long, longest text that the file can hold; also the next three
    MaxXUnits = 5,
    MaxYTitle = 6,
    MaxYUnits = 7,
    XTitle = 8,             ///< both, file: text
    XUnits = 9,             ///< both, file: text
    YTitle = 10,            ///< both, channel: text
    YUnits = 11,            ///< both, channel: text
    Statistics = 12,        ///< both, channel: list of max, min, mean, sdev, rms (floats; a get may give doubles) and the
                            ///< points of max, min and largest absolute value (64-bit)
    StatisticsDouble = 13,  ///< put, channel: the same with doubles
    FullScale = 14,         ///< both, channel: list of two floats, low and high
    FormatSpecific = 15,    ///< both, channel or file: list. Get: holds the name, the plug-in appends the value; put: name, value.
                            ///< `DaxFormatValue` has the names that all formats share
    BufferSize = 16,        ///< get, file: long, preferred block in points
    ChanTitle = 17,         ///< both, channel: text
    ActualChanNumber = 18,  ///< get, channel: long
    FullScaleValid = 19,    ///< get, channel: boolean
    TimeStamp = 20,         ///< put, channel: text
    MetaDataMapper = 21,    ///< put, file: pointer named "MetaDataMapper"
    UseOffset = 22,         ///< put, file: boolean
    ScheduleOffset = 23,    ///< get, channel: list of boolean (present) and float (offset)
};

}  // namespace DaxTimeSeries
