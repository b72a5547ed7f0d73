#pragma once

#include "daxlib/XYAcc.h"

/// What a multi-column access plug-in exports, in the configuration section "XYPairedFiles" and under the class id text that
/// its file types name: each of these functions as `extern "C"` under the plug-in's prefix. All are needed.
///
/// `instance` is what `Create` gave; one instance serves one test. A result of 0, or an exception, is a failure, and
/// `GetLastError` is asked for its text. Channels are indexes into the sorted channel list of the id that `SetId` got; -1
/// stands for a selector that doesn't apply. Rows count from 1. Indexes and ranges of data calls were checked against what the
/// plug-in gave. Calls come one at a time for the whole process unless the instance answers `NoSerialisation`.
namespace DaxMultiColumn {

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
/// @param key     a `Key`. What a key gives is of the type that stands there, else the host's call fails with -328012; of
///                texts, only the status bit's must be given. Any other key that the format has no answer for leaves `value`
///                as it is, which is no failure
/// @param input   what some keys need to know besides
using GetValue = int(void* instance, long channel, long dataSet, long column, int key, VDVariant* input, VDVariant* value);
using PutValue = int(void* instance, long channel, long dataSet, long column, int key, VDVariant* value);
/// Of columns of type `DaxColumnType::Float` alone.
using GetDataF = int(void* instance, long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                     float* values);
/// Of columns of any type; the plug-in converts, or fails.
using PutDataF = int(void* instance, long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                     const float* values);
/// One value: texts as a string, whole numbers of 64 bits as a huge, others as a long (16 bits may come as a short), else float
/// or double. What is put may be of another type of number.
using GetDataElement = int(void* instance, long channel, long dataSet, long column, std::int64_t row, VDVariant* value);
using PutDataElement = int(void* instance, long channel, long dataSet, long column, std::int64_t row, VDVariant* value);
/// @param type  a `DaxColumnType`, or one of the format's own
using AppendCol = int(void* instance, long channel, int type);
using AppendColWithStatus = int(void* instance, long channel, int type);
using AppendDataSet = int(void* instance, long channel);
/// @param progress  a `VDProgressObject` of the host's, or null
using SetProgressObject = int(void* instance, void* progress);
/// @param flags  one byte for each value
using GetStatusWordBitData = int(void* instance, long channel, long dataSet, long column, int bit, std::int64_t first,
                                 std::int64_t count, char* flags);
using GetStatusWordData = int(void* instance, long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                              std::uint16_t* words);
using PutStatusWordData = int(void* instance, long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                              const std::uint16_t* words);
/// @param valid  one byte for each value, 0 where the value isn't valid
using GetDataValidData = int(void* instance, long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                             char* valid);
/// @param values  has a buffer of `count` elements of the column's type, which the plug-in fills (`VDVariant::GetBuffer`); for a
///                type that is the format's own it is null, and the plug-in makes the buffer
using GetData = int(void* instance, long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                    VDVariant* values);
/// @param values  a buffer, of any type and size from 1
using PutData = int(void* instance, long channel, long dataSet, long column, std::int64_t first, VDVariant* values);
/// The mapper that the plug-in keeps and owns.
using LoadMetaData = int(void* instance, LQChannelMapper** mapper);
/// Adds to the sidecar of a test what an older form of the format keeps of it.
using AddLegacyMetaData = int(void* instance, LQChannelMapper* mapper);

/// What `GetCapability` is asked.
enum Capability : int {
    Writable = 2,          ///< writing is possible at all
    CommonRows = 3,        ///< all channels share one number of rows for each data set
    Extendable = 4,        ///< rows can be added to a data set
    LargeDataSets = 5,     ///< a data set can have more than 2,000,000,000 rows
    GivesLimits = 8,       ///< the plug-in knows the limits of columns
    ChannelTitles = 9,     ///< channel titles are stored in the file
    KeepsMetaData = 10,    ///< the file holds the metadata; otherwise they go into a sidecar beside it
    NoSerialisation = 12,  ///< instances may be called at the same time from different threads
    Enumerations = 13,     ///< columns can be enumerations
};

/// Keys of `GetValue` and `PutValue`: selectors, and the variant that goes with each.
enum Key : int {
    AccessObject = 0,        ///< put, file: pointer to the access object
    NumDataSets = 1,         ///< get, channel: long
    NumCols = 2,             ///< get, channel: long
    NumRows = 3,             ///< both, data set: 64-bit
    DataSetTitle = 4,        ///< both, data set: text
    ColType = 5,             ///< get, column: long
    ColTitle = 6,            ///< both, column: text
    ColUnits = 7,            ///< both, column: text
    ColKeyword = 8,          ///< both, column: text
    MaxTitle = 9,            ///< get, file: long, longest text that the file can hold; also the next
    MaxUnits = 10,
    ColLimits = 11,          ///< get, data set (or all, 0xf0000002) and column: list of minimum and maximum
    FormatSpecific = 12,     ///< both, any: list. Get: holds the name, the plug-in appends the value; put: name, value. Comes
                             ///< before the file is open, too. `DaxFormatValue` has the names that all formats share
    BufferSize = 13,         ///< get, file: long, preferred block in values
    ChanTitle = 14,          ///< both, channel: text
    StatusWordEnabled = 15,  ///< get, data set and column: boolean
    StatusBitText = 16,      ///< get, data set and column: text; the input holds the bit as a long. Put: list of bit and text
    ActualChanNumber = 17,   ///< get, channel: long
    MetaDataMapper = 18,     ///< put, file: pointer named "MetaDataMapper", the sidecar's mapper
    EnumOptions = 19,        ///< both, column: list of a long buffer, the values, and a string buffer of equal size, their texts
};

}  // namespace DaxMultiColumn
