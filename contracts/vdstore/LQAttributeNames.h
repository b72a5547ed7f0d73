#pragma once

/// Names of the items by which a test's header and statistics stand in the set `LQChannelMapper::ATTRIBUTES`.
namespace LQAttribute {

// Of the test as a whole
constexpr const char* XTitle = "XTitle";
constexpr const char* XUnits = "XUnits";
constexpr const char* NumSpectra = "NumSpectra";
constexpr const char* NumLines = "NumLines";

// Of each channel
constexpr const char* ChanTitle = "ChanTitle";
constexpr const char* YTitle = "YTitle";
constexpr const char* YUnits = "YUnits";
constexpr const char* SampleRate = "SampleRate";
constexpr const char* BaseTime = "BaseTime";
constexpr const char* NumPoints = "NumPoints";
constexpr const char* NumCols = "NumCols";
constexpr const char* NumDataSets = "NumDataSets";
constexpr const char* NumRowsOfDataSet = "NumRowsDataSet%d";  ///< with the data set's number, from 1
constexpr const char* Stats[] = {"Max", "Min", "Mean", "SDev", "RMS"};
/// Points, from 1, of max, min and largest absolute value, and their x values.
constexpr const char* StatPoints[] = {"PMax", "PMin", "PAbs"};
constexpr const char* StatTimes[] = {"TimeMax", "TimeMin", "TimeAbs"};

}  // namespace LQAttribute
