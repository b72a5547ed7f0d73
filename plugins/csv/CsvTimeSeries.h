#pragma once

#include "CsvFormat.h"
#include "CsvTable.h"

#include "daxlib/FID.h"
#include "daxlib/TimeSeriesPlugin.h"

class LQChannelMapper;

/// A table over an even time that is open as time series. It is read only: a table that is to be written is one of columns.
/// Every failure is recorded.
class CsvTimeSeries
{
public:
    bool SetId(VDFileId* id);
    bool Open(int mode);
    bool Close();
    bool GetCapability(int capability) const { return capability == DaxTimeSeries::NoSerialisation; }
    bool GetValue(long channel, int key, VDVariant& value) const;
    bool PutValue(int key, const VDVariant& value);
    template <class Value>
    bool GetData(long channel, std::int64_t first, std::int64_t count, Value* values);
    bool AddMetaData(LQChannelMapper& mapper) const;
    bool Fail(int code, const char* routine, const std::string& detail = {}) const;

private:
    bool MapChannels(const char* routine);
    VDVariant GetFileValue(int key) const;
    VDVariant GetChannelValue(const CsvColumn& column, std::size_t number, int key) const;

    VDFileId* id_ = nullptr;
    std::string filename_;
    CsvSettings settings_;
    std::unique_ptr<CsvTable> table_;
    std::vector<std::size_t> columns_;  ///< of each channel of the id
};
