#pragma once

#include "vdstore/LQArrayChannel.h"
#include "vdstore/LQObject.h"
#include "vdstore/LQResultsTableColumn.h"

/// Tables of results. A channel holds columns and data sets; all data sets of a channel have its columns, and each its own
/// number of rows. The values of each column of each data set lie in streams of their own, so that reading a column touches
/// nothing else and appending rows copies nothing.
class VDSTORE_API LQResultsTable : public LQObject
{
public:
    static constexpr std::int64_t LargestRows = std::int64_t(1) << 42;  ///< of a data set
    static constexpr int OF_FIRST_CHANNEL = -1;

    ~LQResultsTable() override;

    int GetChannelCount() const override;
    /// A new channel has the columns of the first one, and no data sets.
    bool AdjustChannelCount(int count) override;
    bool RemoveChannel(int channel) override;
    /// Rows of the first data set.
    std::int64_t GetElementCount(int channel) const override;
    bool AdjustElementCount(std::int64_t count, int channel) override;
    bool RefreshMetadata(bool keep, int channel) override;

    /// @name Columns
    /// @{
    int GetColumnCount(int channel = 0) const;
    /// Null, recorded, if there is none. Valid until the channel goes.
    /// @param channel  or `OF_FIRST_CHANNEL`
    LQResultsTableColumn* GetColumn(int column, int channel);
    const LQResultsTableColumn* GetColumn(int column, int channel) const;
    /// Appends a column.
    /// @param type     one of `Z4PropertyType` or `LQColumnType`
    /// @param channel  or `ALL_CHANNELS`, which makes the first channel of a table that has none
    bool AddColumn(std::int32_t type, const char* title, const char* units, const char* keyword, bool withStatus,
                   int channel = ALL_CHANNELS);
    /// The same for all channels.
    /// @param withStatus  non-zero keeps a status word with each value
    bool AddShortColumn(const char* title, const char* units, const char* keyword, char withStatus);
    bool AddLongColumn(const char* title, const char* units, const char* keyword, char withStatus);
    bool AddHugeColumn(const char* title, const char* units, const char* keyword, char withStatus);
    bool AddFloatColumn(const char* title, const char* units, const char* keyword, char withStatus);
    bool AddDoubleColumn(const char* title, const char* units, const char* keyword, char withStatus);
    /// @}

    /// @name Data sets
    /// @{
    int GetDataSetCount(int channel) const;
    bool AppendDataSet(int channel, const char* title);
    bool GetDataSetTitle(VDString& title, int dataSet, int channel) const;
    bool SetDataSetTitle(const char* title, int dataSet, int channel);
    /// 0 where there is no such data set.
    std::int64_t GetRowCount(int dataSet, int channel) const;
    /// Cuts the columns, or lengthens the data set with rows that were never written.
    bool SetRowCount(std::int64_t rows, int dataSet, int channel);
    /// @}

    /// @name Values
    /// Null, recorded, if there is no such place or the column has another type. The first data set is made if it isn't there.
    /// @{
    LQArrayChannelEx<std::int16_t>* GetShortArrayChannel(int column, int channel, int dataSet = 0);
    /// Of enumerations, too.
    LQArrayChannelEx<std::int32_t>* GetLongArrayChannel(int column, int channel, int dataSet = 0);
    LQArrayChannelEx<std::int64_t>* GetHugeArrayChannel(int column, int channel, int dataSet = 0);
    LQArrayChannelEx<float>* GetFloatArrayChannel(int column, int channel, int dataSet = 0);
    LQArrayChannelEx<double>* GetDoubleArrayChannel(int column, int channel, int dataSet = 0);
    /// Of texts and dates.
    LQTextArrayChannel* GetTextArrayChannel(int column, int channel, int dataSet = 0);
    /// Of any type.
    LQArrayChannel* GetArrayChannel(int column, int channel, int dataSet = 0);
    /// @}

private:
    friend class LQDataManager;
    friend class LQArrayChannel;
    struct Channel;

    LQResultsTable();

    void WriteContent(Z4ByteWriter& writer) const override;
    bool ReadContent(Z4ByteReader& reader) override;
    bool ReadChannel(Z4ByteReader& reader, Channel& channel, std::vector<bool>& taken);
    bool ReadCells(Z4ByteReader& reader, const Channel& channel, LQTableDataSet& dataSet, std::vector<bool>& taken);
    /// Null, recorded, if there is none.
    Channel* GetChannel(int channel) const;
    LQTableDataSet* GetDataSet(int dataSet, int channel) const;
    template <class T>
    LQArrayChannelEx<T>* GetNumbers(int column, int channel, int dataSet);

    std::vector<std::unique_ptr<Channel>> channels_;
    int recordSize_;
};
