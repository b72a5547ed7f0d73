#pragma once

#include "daxlib/CFAcc.h"

/// What a complex frequency access plug-in exports, in the configuration section "ComplexFrequencyFiles" and under the class id
/// text that its file types name: each of these functions as `extern "C"` under the plug-in's prefix. All are needed.
///
/// `instance` is what `Create` gave; one instance serves one test. A result of 0, or an exception, is a failure, and
/// `GetLastError` is asked for its text. Channels are indexes into the sorted channel list of the id that `SetId` got, -1 is
/// the file as a whole. Spectra and lines count from 1, -1 is none. Calls come one at a time for the whole process unless the
/// instance answers `NoSerialisation`.
namespace DaxComplexFrequency {

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
/// @param key    a `Key`. The keys 1 to 4 and 19 are always answered, and those of the texts whose capability is there. Any
///               other key that the format has no answer for leaves the variant as it is, which is no failure
/// @param input  with `FormatSpecific`, what the host's variant held
using GetValue = int(void* instance, long channel, std::int64_t spectrum, std::int64_t line, int key, VDVariant* input,
                     VDVariant* value);
using PutValue = int(void* instance, long channel, std::int64_t spectrum, std::int64_t line, int key, VDVariant* value);
/// The range was checked against the numbers of spectra and lines that the plug-in gave.
/// @param kind  a `DaxSpectrumKind`, unchecked
using GetData = int(void* instance, long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind,
                    void* values);
/// The lines were checked, the spectrum wasn't.
using PutData = int(void* instance, long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind,
                    const void* values);
using GetLineAxisData = int(void* instance, std::int64_t first, std::int64_t count, int kind, void* values);
using PutLineAxisData = int(void* instance, std::int64_t first, std::int64_t count, int kind, const void* values);
using GetSpectrumAxisData = int(void* instance, std::int64_t first, std::int64_t count, int kind, void* values);
using PutSpectrumAxisData = int(void* instance, std::int64_t first, std::int64_t count, int kind, const void* values);
/// @param progress  the host's, for long operations; null for none
using SetProgressObject = int(void* instance, VDProgressObject* progress);
/// The mapper that the plug-in keeps and owns.
using LoadMetaData = int(void* instance, LQChannelMapper** mapper);
using AddLegacyMetaData = int(void* instance, LQChannelMapper* mapper);

/// What `GetCapability` is asked.
enum Capability : int {
    Writable = 2,     ///< writing is possible at all
    BeforePut = 3,    ///< asked before each put of a value; the question must succeed, any answer will do
    Extendable = 4,   ///< lines, and values of an axis, can be put behind the last one
    LargeFiles = 5,   ///< the file can hold more than 2,000,000,000 lines or spectra
    ChannelTitles = 7,  ///< stored in the file, like all that follow
    ChannelUnits = 8,
    KeepsMetaData = 9,
    XTitles = 10,
    XUnitsTexts = 11,
    YTitles = 12,
    YUnitsTexts = 13,
    ZTitles = 14,
    ZUnitsTexts = 15,
    NoSerialisation = 16,  ///< instances may be called at the same time from different threads
};

/// Keys of `GetValue` and `PutValue`, with the variant that goes with each.
enum Key : int {
    AccessObject = 0,       ///< put, file: pointer to the access object
    Type = 1,               ///< both, file: long
    SubType = 2,            ///< both, file: long
    NumSpectra = 3,         ///< both, file: 64-bit
    NumLines = 4,           ///< both, file: 64-bit
    MaxTitle = 5,           ///< get, file: long, longest text that the file can hold; also the next
    MaxUnits = 6,
    FormatSpecific = 7,     ///< both, of anything: list. Get: holds the name, the plug-in appends the value; put: name, value.
                            ///< `DaxFormatValue` has the names that all formats share
    BufferSize = 8,         ///< get, file: long, preferred number of lines for one call
    ChanTitle = 9,          ///< both, channel: text; also the next seven
    ChanUnits = 10,
    XTitle = 11,
    XUnits = 12,
    YTitle = 13,
    YUnits = 14,
    ZTitle = 15,
    ZUnits = 16,
    ActualChanNumber = 17,  ///< get, channel: long
    MetaDataMapper = 18,    ///< put, file: pointer named "MetaDataMapper", the sidecar's mapper
    Complex = 19,           ///< both, file: boolean
};

}  // namespace DaxComplexFrequency
