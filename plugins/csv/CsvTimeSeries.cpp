#include "CsvTimeSeries.h"

#include "CsvFormatValues.h"
#include "CsvReport.h"

bool CsvTimeSeries::Fail(int code, const char* routine, const std::string& detail) const
{
    return PluginReport(code, routine, filename_, detail) != 0;
}

bool CsvTimeSeries::SetId(VDFileId* id)
{
    VDString filename;
    if (!FIDGetChanFilename(id, 0, &filename))
        return false;
    id_ = id;
    filename_ = filename.Str();
    settings_ = {};
    return true;
}

bool CsvTimeSeries::Open(int mode)
{
    constexpr const char* routine = "CsvTS::Open";
    if (mode != 1)
        return Fail(CsvError::NotWritable, routine, "A table is written as columns, the time among them.");
    table_ = CsvTable::Open(filename_, settings_, routine);
    if (!table_)
        return false;
    const bool open =
        (table_->GetIndex().IsTimeSeries() || Fail(CsvError::Read, routine, CsvNoTimeSeries)) && MapChannels(routine);
    if (!open)
        table_.reset();
    return open;
}

/// An id may name some of the channels only, in any order.
bool CsvTimeSeries::MapChannels(const char* routine)
{
    const std::vector<CsvColumn>& columns = table_->GetIndex().GetColumns();
    int channels = 0;
    if (!FIDGetNumChans(id_, &channels))
        return false;
    columns_.clear();
    for (int index = 0; index < channels; ++index) {
        int number = 0;
        if (!FIDGetFileChanNumber(id_, index, &number))
            return false;
        if (number < 2 || number > static_cast<int>(columns.size()) ||
            !columns[static_cast<std::size_t>(number) - 1].IsNumeric())
            return Fail(CsvError::Columns, routine, "Column " + std::to_string(number) + " is none of numbers over time.");
        columns_.push_back(static_cast<std::size_t>(number) - 1);
    }
    return true;
}

bool CsvTimeSeries::Close()
{
    table_.reset();
    return true;
}

VDVariant CsvTimeSeries::GetFileValue(int key) const
{
    constexpr long usualBlock = 16384;
    switch (key) {
    case DaxTimeSeries::MaxXTitle:
    case DaxTimeSeries::MaxXUnits:
    case DaxTimeSeries::MaxYTitle:
    case DaxTimeSeries::MaxYUnits:
        return VDVariant(0L);
    case DaxTimeSeries::XTitle:
        return VDVariant("Time");
    case DaxTimeSeries::XUnits:
        return VDVariant("s");
    case DaxTimeSeries::BufferSize:
        return VDVariant(table_ ? static_cast<long>(std::min<std::int64_t>(table_->GetChunkRows(), usualBlock))
                                : usualBlock);
    default:
        return {};
    }
}

VDVariant CsvTimeSeries::GetChannelValue(const CsvColumn& column, std::size_t number, int key) const
{
    switch (key) {
    case DaxTimeSeries::SampleRate:
        return VDVariant(table_->GetIndex().GetRate());
    case DaxTimeSeries::BaseTime:
        return VDVariant(table_->GetIndex().GetFirstTime());
    case DaxTimeSeries::NumPoints:
        return VDVariant::FromHuge(table_->GetIndex().GetNumRows());
    case DaxTimeSeries::YTitle:
        return VDVariant(column.title.c_str());
    case DaxTimeSeries::YUnits:
        return VDVariant(column.units.c_str());
    case DaxTimeSeries::FullScaleValid:
        return VDVariant(false);
    case DaxTimeSeries::ActualChanNumber:
        return VDVariant(static_cast<long>(number));
    case DaxTimeSeries::ScheduleOffset:
        return VDVariant::FromList({VDVariant(false), VDVariant(0.0F)});
    default:
        return {};
    }
}

bool CsvTimeSeries::GetValue(long channel, int key, VDVariant& value) const
{
    if (key == DaxTimeSeries::FormatSpecific) {
        VDString name;
        value[0].GetString(&name);
        if (table_)
            if (const auto answer =
                    CsvFormatValues::Get(name, table_->GetIndex().GetDialect(), table_->GetIndex().GetDamage(), {}))
                value.AppendItem(*answer);
        return true;
    }
    if (channel == DaxChannel::WholeFile) {
        value = GetFileValue(key);
        return true;
    }
    if (!table_ || channel < 0 || channel >= static_cast<long>(columns_.size()))
        return Fail(CsvError::Columns, "CsvTS::GetValue");
    const std::size_t column = columns_[static_cast<std::size_t>(channel)];
    value = GetChannelValue(table_->GetIndex().GetColumns()[column], column + 1, key);
    return true;
}

bool CsvTimeSeries::PutValue(int key, const VDVariant& value)
{
    std::string why;
    if (key != DaxTimeSeries::FormatSpecific)
        return true;
    if (table_)
        return Fail(CsvError::NotWritable, "CsvTS::PutValue", "How a table is read is said before it is opened.");
    return CsvFormatValues::Put(value, settings_, why) || Fail(CsvError::Open, "CsvTS::PutValue", why);
}

template <class Value>
bool CsvTimeSeries::GetData(long channel, std::int64_t first, std::int64_t count, Value* values)
{
    constexpr const char* routine = "CsvTS::GetData";
    const bool known = table_ && channel >= 0 && channel < static_cast<long>(columns_.size());
    if (!known || first < 1 || count < 0 || first - 1 > table_->GetIndex().GetNumRows() - count)
        return Fail(CsvError::PointNumber, routine);
    const std::size_t column = columns_[static_cast<std::size_t>(channel)];
    return table_->ReadSamples(column, first - 1, count, values, routine);
}

template bool CsvTimeSeries::GetData(long, std::int64_t, std::int64_t, float*);
template bool CsvTimeSeries::GetData(long, std::int64_t, std::int64_t, double*);

bool CsvTimeSeries::AddMetaData(LQChannelMapper& mapper) const
{
    return !table_ || CsvFormatValues::AddMetaData(mapper, table_->GetIndex().GetDialect()) ||
           Fail(CsvError::Read, "CsvTS::AddLegacyMetaData");
}
