#pragma once

#include "../common/PluginReport.h"

#include "daxlib/DaxTypes.h"

/// The file types that this plug-in serves: one file id, a sub id for each kind of data in each form of dataset 58. A file may
/// hold both kinds and both forms; the id of a test in it has the form of its first dataset.
namespace UffFormat {

constexpr int FileId = 31002;

enum SubId : int {
    BinaryTimeSeries = 1,
    TextTimeSeries = 2,
    BinarySpectra = 3,
    TextSpectra = 4,
};

/// Class id texts of the access, as the manifest names them.
constexpr const char* TimeSeriesClass = "6D0F4B52-8E37-4C19-A5D4-92B7E16C3F08";
constexpr const char* SpectraClass = "B81C9E27-5A40-4D63-9F7E-3C05D2A8641B";

struct Type
{
    SubId subId;
    bool isSpectra;
    bool isText;
    const char* keyword;
    const char* suffix;  ///< of the description
};

/// What is written without a word about the form is binary, which keeps all values as they are.
constexpr Type Types[] = {
    {BinaryTimeSeries, false, false, "UFF58b", " (58b)"},
    {TextTimeSeries, false, true, "UFF58", " (58)"},
    {BinarySpectra, true, false, "UFF58bSpectra", " (58b)"},
    {TextSpectra, true, true, "UFF58Spectra", " (58)"},
};

/// The type of a pair of ids; null if it isn't one of this plug-in's.
constexpr const Type* Find(int fileId, int subId)
{
    for (const Type& type : Types)
        if (fileId == FileId && type.subId == subId)
            return &type;
    return nullptr;
}

constexpr const Type& Get(bool isSpectra, bool isText)
{
    return Types[(isSpectra ? 2 : 0) + (isText ? 1 : 0)];
}

}  // namespace UffFormat

/// The texts of the catalogue that this plug-in reports.
namespace UffError {
constexpr int NotImplemented = -327992;
constexpr int ClassNotRecognised = -328013;
constexpr int ChannelIndexRange = -327995;
constexpr int NotAUniversalFile = -333281;
constexpr int InvalidFileId = -333282;
constexpr int Open = -333283;
constexpr int Read = -333284;
constexpr int NotWritable = -333285;
}  // namespace UffError
