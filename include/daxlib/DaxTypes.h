#pragma once

#include "daxlib/DaxApi.h"

#include <cstdint>

/// Values that the whole exported interface shares.
///
/// Conventions. A handle is an opaque pointer; every function checks it first and reports -327682 "Invalid handle" for a
/// null handle or one of another family. A result is non-zero for success and 0 for failure, with the error recorded in the
/// error system of `vdbase` on the calling thread. Out arguments come last; an out text is assigned, never appended to. No
/// exception crosses the interface. One thread uses an object at a time.

class VDCFAcc;
class VDDirList;
class VDFileId;
class VDFileIdArray;
class VDFileInfo;
class VDHistAcc;
class VDMetaAcc;
class VDTsAcc;
class VDVmdFile;
class VDXYAcc;

/// What `GetID` gives for the objects behind handles.
namespace DaxHandleId {
constexpr std::int32_t TsAcc = static_cast<std::int32_t>(0xa04f0005);
constexpr std::int32_t FileId = static_cast<std::int32_t>(0xa04f000d);
constexpr std::int32_t FileIdArray = static_cast<std::int32_t>(0xa04f0052);
constexpr std::int32_t FileInfo = static_cast<std::int32_t>(0xa04f0057);
constexpr std::int32_t DirList = static_cast<std::int32_t>(0xa04f0102);
constexpr std::int32_t HistAcc = static_cast<std::int32_t>(0xa04f0113);
constexpr std::int32_t XyAcc = static_cast<std::int32_t>(0xa04f0110);
constexpr std::int32_t VmdFile = static_cast<std::int32_t>(0xa04f0156);
constexpr std::int32_t MetaAcc = static_cast<std::int32_t>(0xa04f0203);
constexpr std::int32_t CFAcc = static_cast<std::int32_t>(0xa04f020f);
constexpr std::int32_t MetaDataReader = static_cast<std::int32_t>(0xa04f0244);
}  // namespace DaxHandleId

/// Types of a channel's values.
namespace DaxDataType {
constexpr std::int32_t Long = static_cast<std::int32_t>(0xa04f106c);
constexpr std::int32_t Huge = static_cast<std::int32_t>(0xa04f106e);
constexpr std::int32_t Float = static_cast<std::int32_t>(0xa04f106f);
constexpr std::int32_t Double = static_cast<std::int32_t>(0xa04f1070);
constexpr std::int32_t Digital32 = static_cast<std::int32_t>(0xa04f1079);
constexpr std::int32_t Digital64 = static_cast<std::int32_t>(0xa04f107a);

/// The type that an id stands for. Older formats give the low half alone, which means the same everywhere.
constexpr std::int32_t FromId(std::int32_t id)
{
    return static_cast<std::int32_t>(0xa04f0000U | (static_cast<std::uint32_t>(id) & 0xffffU));
}
}  // namespace DaxDataType

/// Channel arguments that are no index. An index is a position in a channel list, from 0; a number is the channel's own.
namespace DaxChannel {
constexpr int WholeFile = -1;
constexpr std::uint32_t All = 0xf0000001U;
}  // namespace DaxChannel

/// Names of format-specific values that mean the same in every format. All but those of a channel are asked of the file as a
/// whole, and a format that knows nothing of one leaves the answer empty.
namespace DaxFormatValue {
/// A list of texts: the names of all values that the file has, so that a host can show them and put them into a copy. Names
/// that tell of a state, like those that follow, needn't be among them.
constexpr const char* Names = "Names";
/// A text: what of the file is missing or wrong although it can be read; empty for a sound file.
constexpr const char* Damage = "Damage";
/// A text: the name of the value because of which the last data that were put were refused, so that a host may begin anew
/// without it; empty if that wasn't the reason.
constexpr const char* Unfit = "Unfit";
/// A boolean: points that are left out when others are written behind the last one read as 0.
constexpr const char* GapsAreZero = "GapsAreZero";
/// A boolean, of a channel: all points that its stored statistics are of are numbers, so that they can be gone on with when
/// points are written behind them. The library puts false behind statistics of which that isn't true; those that are put
/// next make it true again.
constexpr const char* StatisticsOfNumbers = "StatisticsOfNumbers";
}  // namespace DaxFormatValue

/// The file id of the built-in storage format.
constexpr int DaxStorageFileId = 154;

/// The kind of data that a test holds.
enum VTFileAccessType : int {
    VTFileAccessUnknown = 0,
    VTFileAccessTimeSeries = 1,
    VTFileAccessHistogram = 2,
    VTFileAccessCycles = 3,
    VTFileAccessMultiColumn = 4,
    VTFileAccessMetaData = 5,
    VTFileAccessComplexFrequency = 6,
    VTFileAccessFEModels = 7,
    VTFileAccessFirstConfigured = 1000,
    VTFileAccessLastConfigured = 2999,
    VTFileAccessAll = 9999,
};

/// How a test lies on disk.
enum VTNameForm : std::int32_t {
    VTNameFormFile = 0,              ///< one file, whose whole path is the filename
    VTNameFormTestPlusChannels = 1,  ///< one file per channel; the filename is the stem
};

/// Where a test lies.
enum VTDataSource : std::int32_t {
    VTDataSourceDisk = 0,
    VTDataSourceStore1 = 1,
    VTDataSourceStore2 = 2,
    VTDataSourceStore3 = 3,
};

/// Bits of the mask of `FIDCopy`.
enum VTFileIdCopyFlag : std::uint32_t {
    VTFileIdCopyChannels = 0x0001,
    VTFileIdCopyFileId = 0x0002,
    VTFileIdCopyVersion = 0x0004,
    VTFileIdCopyTitle = 0x0008,
    VTFileIdCopyRun = 0x0010,
    VTFileIdCopyOpSys = 0x0020,
    VTFileIdCopyNames = 0x0040,
    VTFileIdCopySelectedChannels = 0x0080,
    VTFileIdCopySelected = 0x0100,
    VTFileIdCopyShowChannels = 0x0200,
    VTFileIdCopyBurst = 0x0400,
    VTFileIdCopyExtraData = 0x0800,
    VTFileIdCopyMode = 0x1000,
    VTFileIdCopyPreferences = 0x2000,
    VTFileIdCopyDefault = 0xffffefacU,  ///< what a mask of 0 means
};

/// Forms of a test's text (`FIDGetTestDescriptor`).
enum VTTestDescriptorType : int {
    VTTestDescShortName = 0,  ///< folderless name and the suffixes of run, burst and mode, for deriving file names
    VTTestDescTitle = 1,      ///< display title without folder
    VTTestDescSelected = 2,   ///< test descriptor that lists the selected channels
    VTTestDescRelative = 3,   ///< the same with stored-relative paths
    VTTestDescAll = 4,        ///< test descriptor that lists all channels
    VTTestDescPathName = 5,   ///< as the short name, with the folder
    VTTestDescFullTitle = 6,  ///< display title with the whole filename
    VTTestDescListLabel = 7,  ///< compact label
    VTTestDescBaseTitle = 8,  ///< display title with the base name only
};

/// How `FIDCreateOutputFromId` forms a name from that of the source, and what its text is.
enum VTOutputNameForm : int {
    VTOutputSameName = 0,      ///< not used
    VTOutputNewExtension = 1,  ///< the extension; empty for the format's default
    VTOutputPrefix = 2,        ///< stands in front of the base name
    VTOutputSuffix = 3,        ///< stands behind the base name
    VTOutputNewFolder = 4,     ///< the folder
    VTOutputNewName = 5,       ///< the base name
};

/// How a file's base name is split into test stem and channel number.
enum VTChanSepMethod : int {
    VTChanSepFixedDigits = 1,
    VTChanSepVariableDigits = 2,
};
