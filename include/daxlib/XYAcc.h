#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDArray.h"
#include "vdbase/VDStringArray.h"
#include "vdbase/VDVariant.h"

class LQChannelMapper;
class VDProgressObject;

/// Reading and writing the tables of a multi-column test of any format.
///
/// A test has channels; a channel holds data sets and one list of columns, which all its data sets share; every data set has
/// its own number of rows. A cell is named by channel, data set, column and row.
///
/// The life of an access object: `XYAccCreate`, `XYAccSetId`, `XYAccOpen`, data, `XYAccClose`, `XYAccRelease`. Channels are
/// indexes into the channel list sorted by number; data sets and columns are indexes from 0; rows count from 1. What describes
/// the table (counts, titles, units, keywords, types) was read when the test was opened; asking for it calls no plug-in.
///
/// Errors of every function: -327993 "File is not yet open", -327995 "Channel index out of range", -328981 "No data sets
/// defined", -328982 "Data set index out of range", -328983 "No column defined", -328984 "Column index out of range", -328683
/// with the plug-in's own text, -327690 "Unknown error in access plugin". Those that write: -327998 "Writing is not supported
/// for this file format".

/// How `XYAccOpen` opens a test.
enum VTXyAccOpenMode : int {
    VTXyAccOpenRead = 0,
    VTXyAccOpenUpdate = 1,  ///< read and write an existing test
    VTXyAccOpenCreate = 2,
    VTXyAccOpenCreateNew = 3,
};

/// The types of a column, with the variant buffer in which its values travel. A format may have types of its own besides.
namespace DaxColumnType {
constexpr int Text = 0;          ///< string buffer
constexpr int Long = 1;          ///< 32-bit whole numbers; long buffer
constexpr int Float = 2;         ///< float buffer
constexpr int Short = 4;         ///< 16-bit whole numbers; short buffer
constexpr int Huge = 5;          ///< 64-bit whole numbers; huge buffer
constexpr int Double = 6;        ///< double buffer
constexpr int DateTime = 7;      ///< texts of the form of ISO 8601; string buffer
constexpr int Enumeration = 15;  ///< 32-bit whole numbers that have texts; long buffer

/// Whether the values are numbers, so that they have limits and can be read as floats.
constexpr bool IsNumeric(int type)
{
    return type != Text && type != DateTime;
}

/// The `VTVariantType` of the buffer; `VTVariantNull` for a format's own type.
constexpr int BufferType(int type)
{
    switch (type) {
    case Text:
    case DateTime:
        return VTVariantStringBuffer;
    case Long:
    case Enumeration:
        return VTVariantLongBuffer;
    case Float:
        return VTVariantFloatBuffer;
    case Short:
        return VTVariantShortBuffer;
    case Huge:
        return VTVariantHugeBuffer;
    case Double:
        return VTVariantDoubleBuffer;
    default:
        return VTVariantNull;
    }
}
}  // namespace DaxColumnType

/// The data set argument that is no index.
namespace DaxDataSet {
constexpr std::uint32_t All = 0xf0000002U;
}  // namespace DaxDataSet

/// A status word is 16 bits that go with one value of a column that has them. The bits 0 to 14 have texts and mean what the
/// format says.
namespace DaxStatusWord {
constexpr int NumBits = 15;  ///< that have texts
/// The value isn't valid. This is how the formats that come with the library keep it; how others do, only
/// `XYAccGetDataValidData` tells.
constexpr std::uint16_t Invalid = 0x8000;
}  // namespace DaxStatusWord

extern "C" {

/// @name Life
/// @{
/// A new object with one reference; null with -327681 when memory is short.
DAX_API VDXYAcc* XYAccCreate();
/// Closes the test if it is open.
DAX_API int XYAccRelease(VDXYAcc* acc);
/// Binds the object to a test, of which it keeps a copy, and to the format's plug-in.
/// @param create  non-zero for a test that is to be written anew
DAX_API int XYAccSetId(VDXYAcc* acc, VDFileId* id, char create);
/// @param mode  a `VTXyAccOpenMode` that agrees with `create`, else -328005 or -328017
DAX_API int XYAccOpen(VDXYAcc* acc, int mode);
/// A test that isn't open is no failure.
DAX_API int XYAccClose(VDXYAcc* acc);
DAX_API int XYAccFlush(VDXYAcc* acc);
/// Registers an access plug-in that isn't configured; a name that is there already is left alone.
DAX_API int XYAccAddPlugin(const char* name, const char* prefix, const char* library, const char* description);
/// @param capability  a `DaxMultiColumn::Capability`
DAX_API int XYAccGetCapability(VDXYAcc* acc, int capability, char* answer);
/// Block size in values that suits the format. Needs no open test.
DAX_API int XYAccGetBufferSize(VDXYAcc* acc, int* values);
/// @param progress  the host's, or null; stays the host's. Used by long operations until it is replaced
DAX_API int XYAccSetProgressObject(VDXYAcc* acc, VDProgressObject* progress);
/// @}

/// @name Channels
/// @{
/// 0 until the first `XYAccOpen`.
DAX_API int XYAccGetNumChans(VDXYAcc* acc, int* count);
/// The channel numbers, ascending.
DAX_API int XYAccGetChans(VDXYAcc* acc, VDArrayWithSort<long>* numbers);
/// -328010 for a number that isn't there.
DAX_API int XYAccGetChanIndex(VDXYAcc* acc, int number, int* index);
DAX_API int XYAccIsValidChan(VDXYAcc* acc, int number, char* valid);
/// The channel's number as the file has it.
DAX_API int XYAccGetActualChanNumber(VDXYAcc* acc, int index, int* number);
DAX_API int XYAccGetChanTitle(VDXYAcc* acc, int index, VDString* title);
/// -327691 if the format stores no titles.
DAX_API int XYAccSetChanTitle(VDXYAcc* acc, int index, const char* title);
/// @}

/// @name Data sets
/// @{
DAX_API int XYAccGetNumDataSets(VDXYAcc* acc, int channel, int* count);
DAX_API int XYAccGetNumRows(VDXYAcc* acc, int channel, int dataSet, std::int64_t* rows);
/// One that has no title is called by its number: "Dataset 1".
DAX_API int XYAccGetDataSetTitle(VDXYAcc* acc, int channel, int dataSet, VDString* title);
/// What was set is given out when the test is opened the next time.
DAX_API int XYAccSetDataSetTitle(VDXYAcc* acc, int channel, int dataSet, const char* title);
DAX_API int XYAccAppendDataSet(VDXYAcc* acc, int channel);
/// Makes a data set longer, with values that weren't written, or shorter. Writing data does it, too.
/// @param channel  or all; -327990 for a format that can't extend a data set
DAX_API int XYAccSetNumRows(VDXYAcc* acc, int channel, int dataSet, std::int64_t rows);
/// @}

/// @name Columns
/// @{
DAX_API int XYAccGetNumCols(VDXYAcc* acc, int channel, int* count);
/// @param type  a `DaxColumnType`, or one of the format's own
DAX_API int XYAccGetColType(VDXYAcc* acc, int channel, int column, int* type);
/// One that has no title is called by its number: "Column 1".
DAX_API int XYAccGetColTitle(VDXYAcc* acc, int channel, int column, VDString* title);
DAX_API int XYAccGetColUnits(VDXYAcc* acc, int channel, int column, VDString* units);
/// One that has no keyword in the file gets one that no other column has: "Col_1".
DAX_API int XYAccGetColKeyword(VDXYAcc* acc, int channel, int column, VDString* keyword);
/// What was set is given out when the test is opened the next time; also the next two.
DAX_API int XYAccSetColTitle(VDXYAcc* acc, int channel, int column, const char* title);
DAX_API int XYAccSetColUnits(VDXYAcc* acc, int channel, int column, const char* units);
DAX_API int XYAccSetColKeyword(VDXYAcc* acc, int channel, int column, const char* keyword);
/// Longest texts that the file can hold.
DAX_API int XYAccGetMaxTitleLength(VDXYAcc* acc, int* length);
DAX_API int XYAccGetMaxUnitsLength(VDXYAcc* acc, int* length);
/// The values of an enumeration and the text of each; both arrays are emptied first. -329002 if the plug-in gives no such.
DAX_API int XYAccGetColEnumOptions(VDXYAcc* acc, int channel, int column, VDArrayWithSort<long>* values, VDStringArray* texts);
/// @param values  within 32 bits, and as many as texts, else -327704
DAX_API int XYAccSetColEnumOptions(VDXYAcc* acc, int channel, int column, VDArrayWithSort<long>* values,
                                   VDStringArray* texts);
/// @param type  a `DaxColumnType`; -329001 for an enumeration in a format that has none
DAX_API int XYAccAppendCol(VDXYAcc* acc, int channel, int type);
/// A column that keeps a status word for each value.
DAX_API int XYAccAppendColWithStatus(VDXYAcc* acc, int channel, int type);
/// @}

/// @name Data
/// @{
/// Values of a numeric column as floats; -328997 for others.
/// @param first    row, from 1; below it -327989
/// @param numRead  how many values there were; null if fewer than `count` are a failure, -327686
/// @param values   room for `count`
DAX_API int XYAccGetDataF(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                          std::int64_t* numRead, float* values);
/// Values of any column in a buffer of the column's own type. A count that goes past the rows is cut.
/// @param values  its buffer is used again if it has the type already
DAX_API int XYAccGetData(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                         VDVariant* values);
/// -327686 for a row that isn't there.
DAX_API int XYAccGetDataElement(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t row, VDVariant* value);
/// The next three write over rows or behind them, which makes the data set longer for all columns. -327990 for a format that
/// can't extend a data set, -328006 past 2,000,000,000 rows for one that can't have so many.
DAX_API int XYAccPutDataF(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                          const float* values);
/// @param values  a buffer, of the column's own type
DAX_API int XYAccPutData(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, VDVariant* values);
DAX_API int XYAccPutDataElement(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t row, VDVariant* value);
/// The smallest and the largest value of a column, as doubles. They are worked out for all columns of the channel at the
/// first request after a change, with the progress object. Null variants for a column that isn't numeric, and where there are
/// no values.
/// @param dataSet  or `DaxDataSet::All`
DAX_API int XYAccGetColLimits(VDXYAcc* acc, int channel, int dataSet, int column, VDVariant* minimum, VDVariant* maximum);
/// @}

/// @name Status words, of columns that have them; -328996 of others
/// @{
DAX_API int XYAccGetStatusWordEnabled(VDXYAcc* acc, int channel, int dataSet, int column, char* enabled);
/// @param bit  0 to 14
DAX_API int XYAccGetStatusWordBitText(VDXYAcc* acc, int channel, int dataSet, int column, int bit, VDString* text);
DAX_API int XYAccSetStatusWordBitText(VDXYAcc* acc, int channel, int dataSet, int column, int bit, const char* text);
/// A count that goes past the rows is cut in all of these.
/// @param flags  one byte for each value, non-zero where the bit is set
DAX_API int XYAccGetStatusWordBitData(VDXYAcc* acc, int channel, int dataSet, int column, int bit, std::int64_t first,
                                      std::int64_t count, std::int64_t* numRead, char* flags);
DAX_API int XYAccGetStatusWordData(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                                   std::int64_t* numRead, std::uint16_t* words);
/// @param valid  one byte for each value, 0 where the value isn't valid
DAX_API int XYAccGetDataValidData(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                                  std::int64_t* numRead, char* valid);
/// Extends the data set like writing data.
DAX_API int XYAccPutStatusWordData(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                                   const std::uint16_t* words);
/// One value with what its status word says.
/// @param hasStatus  0 for a column without status words, which is no failure
/// @param bitTexts   the texts of the bits that are set are appended
DAX_API int XYAccGetStatusElement(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t row, VDVariant* value,
                                  char* valid, char* hasStatus, VDStringArray* bitTexts);
/// @}

/// @name Format-specific values and metadata
/// @{
/// A name that the format doesn't know gives a null variant. No open test is needed; channel, data set and column go to the
/// plug-in as they are, -1 for none.
/// @param value  in and out: the plug-in may look at what it held
DAX_API int XYAccGetFormatSpecificValue(VDXYAcc* acc, int channel, int dataSet, int column, const char* name,
                                        VDVariant* value);
DAX_API int XYAccSetFormatSpecificValue(VDXYAcc* acc, int channel, int dataSet, int column, const char* name,
                                        VDVariant* value);
/// The metadata of the test, with the counts of each channel in its attributes. The mapper stays the library's or the
/// plug-in's and is valid until the test is closed.
DAX_API int XYAccGetMetaData(VDXYAcc* acc, LQChannelMapper** mapper);
/// @}

}  // extern "C"
