#pragma once

/// The types of the built-in storage format, all under the file id `DaxStorageFileId`.
namespace StorageFormat {

/// Class id text of time-series access to storage files: the name of the access plug-in in its section.
constexpr const char* TimeSeriesClass = "8F517AAA-6DB0-45bb-990D-821265DFB159";
/// The same for histograms.
constexpr const char* HistogramClass = "FB3DAE1E-0E86-4f2d-9B58-3766EAE9A6EB";

/// Name of the data object in a time-series file.
constexpr const char* TimeSeriesNode = "TimeSeries";
/// The same in a histogram file.
constexpr const char* HistogramNode = "Histogram";

enum SubId : int {
    FlexTimeSeries = 4,  ///< single precision only
    Histogram = 6,
    TimeSeries = 11,
    TemporaryTimeSeries = 13,
    TemporaryHistogram = 14,
};

struct Type
{
    int subId;
    const char* keyword;  ///< null if there is none
    const char* extension;
    bool writable;
    bool claimed;  ///< identification knows such files by their content
};

/// Null for a sub id that the format doesn't have.
const Type* FindType(int subId);

constexpr bool IsTimeSeries(int subId)
{
    return subId == FlexTimeSeries || subId == TimeSeries || subId == TemporaryTimeSeries;
}

constexpr bool IsHistogram(int subId)
{
    return subId == Histogram || subId == TemporaryHistogram;
}

}  // namespace StorageFormat
