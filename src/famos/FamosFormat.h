#pragma once

/// The types of Famos recordings.
namespace FamosFormat {

constexpr int FileId = 2400;

enum SubId : int {
    TimeSeries = 1,
    Pairs = 2,        ///< components with x values of their own, as tables
    TimeStamped = 3,  ///< a stream of time-stamped bus frames, as time series
};

/// Class id texts of the access plug-ins.
constexpr const char* TimeSeriesClass = "5B0E3C52-8C1D-4E0B-A3B5-6F6C1E7D2400";
constexpr const char* PairsClass = "7E94B2A1-0F6D-43C8-8E57-2B1DA0C62400";
constexpr const char* TimeStampedClass = "D1A6F0C4-27E9-4B52-9B0E-0C5D8A912400";

constexpr const char* DefaultExtension = "raw";

}  // namespace FamosFormat
