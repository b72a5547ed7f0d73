#pragma once

#include "VDAccessCore.h"
#include "VDXYFileChan.h"
#include "XyFamily.h"

#include "vdbase/VDCompBase.h"

class VDOperationProgress;

/// A column of a data set.
struct VDXYPlace
{
    int channel;
    int dataSet;
    int column;
};

/// Access to one multi-column test, behind the `XYAcc` functions: the counts, titles and types of its tables, checks and
/// clamping around the plug-in's calls, and the limits of columns. The methods, and the core's, correspond to the exported
/// functions.
class VDXYAcc : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::XyAcc;
    static constexpr bool GuardedHandle = false;

    VDXYAcc() : VDCompBase(HandleId), core_(VFXyFamily(), VFXyPlugins(), this) {}

    VDAccessCore& GetCore() { return core_; }

    /// @name Steps of the core
    /// @{
    bool SetChannelCount(int count);
    bool FinishOpen(bool created);
    bool AddHeaderAttributes(LQChannelMapper& mapper);
    /// @}

    /// @name Data sets and columns; `routine` names the export where several share a method
    /// @{
    bool GetNumDataSets(int channel, int* count);
    bool GetNumRows(int channel, int dataSet, std::int64_t* rows);
    bool GetDataSetTitle(int channel, int dataSet, VDString* title);
    bool SetDataSetTitle(int channel, int dataSet, const char* title);
    bool AppendDataSet(int channel);
    bool SetNumRows(int channel, int dataSet, std::int64_t rows);
    bool GetNumCols(int channel, int* count);
    bool GetColType(int channel, int column, int* type);
    bool GetColText(int channel, int column, VDString VDXYFileCol::*text, VDString* out, const char* routine);
    bool SetColText(int channel, int column, int key, const char* text, const char* routine);
    bool GetMaxLength(int key, int* length, const char* routine);
    bool GetColEnumOptions(int channel, int column, VDArrayWithSort<long>* values, VDStringArray* texts);
    bool SetColEnumOptions(int channel, int column, const VDArrayWithSort<long>* values, const VDStringArray* texts);
    bool AppendCol(int channel, int type);
    bool AppendColWithStatus(int channel, int type);
    /// @}

    /// @name Data
    /// @{
    bool GetDataF(VDXYPlace place, std::int64_t first, std::int64_t count, std::int64_t* numRead, float* values);
    bool GetData(VDXYPlace place, std::int64_t first, std::int64_t count, VDVariant* values);
    bool GetDataElement(VDXYPlace place, std::int64_t row, VDVariant* value);
    bool PutDataF(VDXYPlace place, std::int64_t first, std::int64_t count, const float* values);
    bool PutData(VDXYPlace place, std::int64_t first, VDVariant* values);
    bool PutDataElement(VDXYPlace place, std::int64_t row, VDVariant* value);
    bool GetColLimits(VDXYPlace place, VDVariant* minimum, VDVariant* maximum);
    /// @}

    /// @name Status words
    /// @{
    bool GetStatusWordEnabled(VDXYPlace place, char* enabled);
    bool GetStatusBitText(VDXYPlace place, int bit, VDString* text);
    bool SetStatusBitText(VDXYPlace place, int bit, const char* text);
    bool GetStatusWordBitData(VDXYPlace place, int bit, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                              char* flags);
    bool GetStatusWordData(VDXYPlace place, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                           std::uint16_t* words);
    bool GetDataValidData(VDXYPlace place, std::int64_t first, std::int64_t count, std::int64_t* numRead, char* valid);
    bool PutStatusWordData(VDXYPlace place, std::int64_t first, std::int64_t count, const std::uint16_t* words);
    bool GetStatusElement(VDXYPlace place, std::int64_t row, VDVariant* value, char* valid, char* hasStatus,
                          VDStringArray* bitTexts);
    /// @}

private:
    static bool IsAllSets(int dataSet) { return static_cast<std::uint32_t>(dataSet) == DaxDataSet::All; }
    static VDAccessSelector SelectorOf(VDXYPlace place) { return {place.channel, place.dataSet, place.column}; }
    int Count() const { return channels_.GetSize(); }
    VDXYFileCol& ColumnOf(VDXYPlace place) { return channels_[place.channel].columns[place.column]; }
    std::int64_t RowsOf(VDXYPlace place) { return channels_[place.channel].dataSets[place.dataSet].rows; }
    const VDXYAccEntryPoints& Plugin() const { return core_.GetEntryPoints<VDXYAccEntryPoints>(); }

    /// Each asks for an open file first, and for the channel.
    bool CheckChannel(int channel, const char* routine);
    bool CheckDataSet(int channel, int dataSet, bool allowAll, const char* routine);
    bool CheckColumn(int channel, int column, const char* routine);
    bool CheckPlace(VDXYPlace place, const char* routine);

    bool LoadHeader(int channel);
    bool LoadDataSet(int channel, int dataSet, VDXYFileDataSet* record);
    bool LoadColumn(int channel, int column, VDXYFileCol* record);
    bool LoadColumns(int channel);
    /// Gets a count that the plug-in gives as a long.
    bool GetPluginCount(int channel, int key, int* count);
    /// A text that the plug-in needn't give.
    bool GetPluginText(const VDAccessSelector& selector, int key, VDString* text);
    template <auto EntryPoint>
    bool AppendColumn(int channel, int type, const char* routine);

    /// Cuts a range to the rows.
    /// @return false, recorded, for a row below 1
    bool CutRange(VDXYPlace place, std::int64_t first, std::int64_t* count, const char* routine);
    bool Fetch(VDXYPlace place, std::int64_t first, std::int64_t count, VDVariant* values);
    /// Whether a range may be written; `last` gets its last row.
    bool CheckPut(VDXYPlace place, std::int64_t first, std::int64_t count, std::int64_t* last, const char* routine);
    template <class Function>
    bool Put(VDXYPlace place, std::int64_t first, std::int64_t count, const char* routine, Function&& function);
    template <class Function>
    bool GetStatusRange(VDXYPlace place, std::int64_t first, std::int64_t count, std::int64_t* numRead, const char* routine,
                        Function&& function);

    bool CalcColLimits(int channel);
    bool CalcColLimits(VDXYPlace place, std::int64_t blockSize, VDOperationProgress& progress, VDXYLimits* limits);
    bool ReportAborted();

    VDArray<VDXYFileChan> channels_;
    VDVariant block_;  ///< values on their way, used again and again
    VDAccessCore core_;  // the last member: it ends first, when the steps still have all that they need
};
