#pragma once

#include "ResultsFile.h"

#include "daxlib/MultiColumnPlugin.h"

/// Multi-column access to one storage file: the table inside, value by value. Failures are recorded and give false. Channel,
/// data set and column are indexes that the access object has checked; rows count from 1.
class ResultsXYTable
{
public:
    ~ResultsXYTable() { Close(); }

    bool SetId(VDFileId* id) { return file_.SetId(id, ResultsFormat::TableClass, "ResultsXY::SetId"); }
    bool Open(int mode);
    bool Close();
    bool Flush() { return LQGetDataManager()->Flush(table_); }
    static bool HasCapability(int capability);

    bool GetValue(long channel, long dataSet, long column, int key, const VDVariant& input, VDVariant& value);
    bool PutValue(long channel, long dataSet, long column, int key, const VDVariant& value);
    bool AppendCol(long channel, int type, bool withStatus);
    bool AppendDataSet(long channel);

    bool GetDataF(long channel, long dataSet, long column, std::int64_t first, std::int64_t count, float* values);
    bool PutDataF(long channel, long dataSet, long column, std::int64_t first, std::int64_t count, const float* values);
    bool GetData(long channel, long dataSet, long column, std::int64_t first, std::int64_t count, VDVariant& values);
    bool PutData(long channel, long dataSet, long column, std::int64_t first, const VDVariant& values);
    bool GetDataElement(long channel, long dataSet, long column, std::int64_t row, VDVariant& value);
    bool PutDataElement(long channel, long dataSet, long column, std::int64_t row, const VDVariant& value);

    bool GetStatus(long channel, long dataSet, long column, std::int64_t first, std::int64_t count, std::uint16_t* words);
    bool PutStatus(long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                   const std::uint16_t* words);
    /// One byte for each value: whether its status word has a bit of the mask, or has none of them.
    bool GetStatusFlags(long channel, long dataSet, long column, std::int64_t first, std::int64_t count, unsigned mask,
                        bool ifSet, char* flags);

    bool LoadMetaData(LQChannelMapper** mapper);

private:
    LQArrayChannel* GetAccess(long channel, long dataSet, long column);
    const LQResultsTableColumn* GetColumn(long channel, long column);
    template <class Function>
    bool WithColumn(long channel, long dataSet, long column, Function&& function);
    bool ReportUnfit(const char* routine);

    ResultsFile file_;
    LQResultsTable* table_ = nullptr;
};
