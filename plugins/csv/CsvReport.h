#pragma once

#include "../common/PluginReport.h"

/// The texts of the catalogue that this plug-in reports.
namespace CsvError {
constexpr int PointNumber = -327989;
constexpr int NotWritable = -327998;
constexpr int ClassNotRecognised = -328013;
constexpr int Read = -328989;
constexpr int Append = -328990;
constexpr int Columns = -328991;
constexpr int Variant = -328993;
constexpr int DataSet = -329083;
constexpr int DigitalData = -329082;
constexpr int ColumnType = -333081;
constexpr int InvalidFileId = -334482;
constexpr int Open = -334483;
constexpr int Close = -334484;
constexpr int Write = -334485;
constexpr int Staging = -334487;
}  // namespace CsvError

/// What is said where a table is asked for as a time series and is none.
constexpr const char* CsvNoTimeSeries = "The first column isn't a time that grows evenly, or there are no others of numbers "
                                        "that a double holds; the file can be "
                                        "read as a table.";
