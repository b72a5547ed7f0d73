#include "vdstore/LQResultsTable.h"

#include "TableParts.h"
#include "vdarchive/Z4Size.h"
#include "vdstore/LQAttributeNames.h"
#include "vdstore/VDStoreErrorCodes.h"

#include <algorithm>
#include <unordered_map>

namespace {

constexpr std::size_t SmallestChannelBytes = 8;
constexpr std::size_t SmallestDataSetBytes = 12;

/// Which streams a column of this kind has: values, bytes of texts, status words.
std::array<bool, 3> PartsOf(const LQResultsTableColumn& column)
{
    return {true, LQResultsTableColumn::IsTextType(column.GetDataType(0)), column.HasStatus()};
}

/// Position of each stream of a node.
std::unordered_map<const Z4Stream*, std::uint32_t> StreamIndexes(const Z4Node& node)
{
    std::unordered_map<const Z4Stream*, std::uint32_t> indexes;
    for (int i = 0; i < node.GetStreamCount(); ++i)
        indexes[node.GetStream(i)] = static_cast<std::uint32_t>(i);
    return indexes;
}

}  // namespace

LQResultsTable::LQResultsTable() : recordSize_(Z4Size::Record32K) {}

LQResultsTable::~LQResultsTable() = default;

int LQResultsTable::GetChannelCount() const
{
    return static_cast<int>(channels_.size());
}

LQResultsTable::Channel* LQResultsTable::GetChannel(int channel) const
{
    return CheckChannel(channel) ? channels_[static_cast<std::size_t>(channel)].get() : nullptr;
}

LQTableDataSet* LQResultsTable::GetDataSet(int dataSet, int channel) const
{
    const Channel* const found = GetChannel(channel);
    if (found == nullptr)
        return nullptr;
    if (dataSet >= 0 && static_cast<std::size_t>(dataSet) < found->dataSets.size())
        return found->dataSets[static_cast<std::size_t>(dataSet)].get();
    Report(VDStoreError::OutOfRange, "A table has no data set at this index");
    return nullptr;
}

bool LQResultsTable::AdjustChannelCount(int count)
{
    if (count < 0)
        return Report(VDStoreError::OutOfRange, "A data object can't have fewer than no channels");
    while (GetChannelCount() > count)
        if (!RemoveChannel(GetChannelCount() - 1))
            return false;
    while (GetChannelCount() < count) {
        auto channel = std::make_unique<Channel>();
        if (!channels_.empty())
            for (const auto& column : channels_.front()->columns)
                channel->columns.push_back(std::make_unique<LQResultsTableColumn>(*column));
        channels_.push_back(std::move(channel));
        // Whoever puts channels of his own into the mapper gives them to these.
        if (GetMapper()->GetChannelCount() < GetChannelCount())
            GetMapper()->Append();
    }
    return true;
}

bool LQResultsTable::RemoveChannel(int channel)
{
    const Channel* const found = GetChannel(channel);
    if (found == nullptr)
        return false;
    const auto indexes = StreamIndexes(*GetNode());
    std::vector<int> streams;
    for (const auto& dataSet : found->dataSets)
        for (const LQTableCell& cell : dataSet->cells)
            for (const Z4Stream* stream : cell.streams)
                if (stream != nullptr)
                    streams.push_back(static_cast<int>(indexes.at(stream)));
    // From the last one, since those behind a stream that goes move up.
    std::sort(streams.rbegin(), streams.rend());
    for (const int stream : streams)
        if (!GetNode()->RemoveStream(stream))
            return Fail();
    channels_.erase(channels_.begin() + channel);
    return GetMapper()->RemoveChannel(channel);
}

std::int64_t LQResultsTable::GetElementCount(int channel) const
{
    return GetRowCount(0, channel);
}

bool LQResultsTable::AdjustElementCount(std::int64_t count, int channel)
{
    return SetRowCount(count, 0, channel);
}

int LQResultsTable::GetColumnCount(int channel) const
{
    const Channel* const found = channels_.empty() && channel == 0 ? nullptr : GetChannel(channel);
    return found == nullptr ? 0 : static_cast<int>(found->columns.size());
}

const LQResultsTableColumn* LQResultsTable::GetColumn(int column, int channel) const
{
    const Channel* const found = GetChannel(channel == OF_FIRST_CHANNEL ? 0 : channel);
    if (found == nullptr)
        return nullptr;
    if (column >= 0 && static_cast<std::size_t>(column) < found->columns.size())
        return found->columns[static_cast<std::size_t>(column)].get();
    Report(VDStoreError::OutOfRange, "A table has no column at this index");
    return nullptr;
}

LQResultsTableColumn* LQResultsTable::GetColumn(int column, int channel)
{
    return const_cast<LQResultsTableColumn*>(std::as_const(*this).GetColumn(column, channel));
}

bool LQResultsTable::AddColumn(std::int32_t type, const char* title, const char* units, const char* keyword, bool withStatus,
                               int channel)
{
    if (!LQResultsTableColumn::IsType(type))
        return Report(VDStoreError::WrongDataType, "A column of a table can't have this data type");
    if (channel == ALL_CHANNELS ? channels_.empty() && !AdjustChannelCount(1) : GetChannel(channel) == nullptr)
        return false;
    const bool all = channel == ALL_CHANNELS;
    for (int each = all ? 0 : channel; each <= (all ? GetChannelCount() - 1 : channel); ++each) {
        Channel& to = *channels_[static_cast<std::size_t>(each)];
        auto column = std::make_unique<LQResultsTableColumn>(type, withStatus);
        column->SetTitle(title);
        column->SetUnits(units);
        column->SetKeyword(keyword);
        to.columns.push_back(std::move(column));
        for (const auto& dataSet : to.dataSets)
            dataSet->cells.resize(to.columns.size());
    }
    return true;
}

bool LQResultsTable::AddShortColumn(const char* title, const char* units, const char* keyword, char withStatus)
{
    return AddColumn(Z4TypeShort, title, units, keyword, withStatus != 0);
}

bool LQResultsTable::AddLongColumn(const char* title, const char* units, const char* keyword, char withStatus)
{
    return AddColumn(Z4TypeLong, title, units, keyword, withStatus != 0);
}

bool LQResultsTable::AddHugeColumn(const char* title, const char* units, const char* keyword, char withStatus)
{
    return AddColumn(Z4TypeHuge, title, units, keyword, withStatus != 0);
}

bool LQResultsTable::AddFloatColumn(const char* title, const char* units, const char* keyword, char withStatus)
{
    return AddColumn(Z4TypeFloat, title, units, keyword, withStatus != 0);
}

bool LQResultsTable::AddDoubleColumn(const char* title, const char* units, const char* keyword, char withStatus)
{
    return AddColumn(Z4TypeDouble, title, units, keyword, withStatus != 0);
}

int LQResultsTable::GetDataSetCount(int channel) const
{
    const Channel* const found = GetChannel(channel);
    return found == nullptr ? 0 : static_cast<int>(found->dataSets.size());
}

bool LQResultsTable::AppendDataSet(int channel, const char* title)
{
    Channel* const found = GetChannel(channel);
    if (found == nullptr)
        return false;
    auto dataSet = std::make_unique<LQTableDataSet>();
    dataSet->title = title;
    dataSet->cells.resize(found->columns.size());
    found->dataSets.push_back(std::move(dataSet));
    return true;
}

bool LQResultsTable::GetDataSetTitle(VDString& title, int dataSet, int channel) const
{
    const LQTableDataSet* const found = GetDataSet(dataSet, channel);
    if (found != nullptr)
        title = found->title;
    return found != nullptr;
}

bool LQResultsTable::SetDataSetTitle(const char* title, int dataSet, int channel)
{
    LQTableDataSet* const found = GetDataSet(dataSet, channel);
    if (found != nullptr)
        found->title = title;
    return found != nullptr;
}

std::int64_t LQResultsTable::GetRowCount(int dataSet, int channel) const
{
    // A table that is only set up has no data set yet.
    if (dataSet == 0 && channel >= 0 && channel < GetChannelCount() &&
        channels_[static_cast<std::size_t>(channel)]->dataSets.empty())
        return 0;
    const LQTableDataSet* const found = GetDataSet(dataSet, channel);
    return found == nullptr ? 0 : found->rows;
}

bool LQResultsTable::SetRowCount(std::int64_t rows, int dataSet, int channel)
{
    LQTableDataSet* const found = GetDataSet(dataSet, channel);
    if (found == nullptr)
        return false;
    if (rows < 0 || rows > LargestRows)
        return Report(VDStoreError::OutOfRange, "A data set can't have so many rows");
    const auto& columns = channels_[static_cast<std::size_t>(channel)]->columns;
    for (std::size_t column = 0; rows < found->rows && column < columns.size(); ++column) {
        auto& [values, texts, status] = found->cells[column].streams;
        const std::int64_t size = VFColumnValueSize(columns[column]->GetDataType(0));
        if ((values != nullptr && values->GetLength() > rows * size && !values->SetLength(rows * size)) ||
            (rows == 0 && texts != nullptr && !texts->SetLength(0)) ||
            (status != nullptr && status->GetLength() > rows * 2 && !status->SetLength(rows * 2)))
            return Fail();
    }
    found->rows = rows;
    return true;
}

LQArrayChannel* LQResultsTable::GetArrayChannel(int column, int channel, int dataSet)
{
    const LQResultsTableColumn* const described = GetColumn(column, channel);
    if (described == nullptr || (dataSet == 0 && GetDataSetCount(channel) == 0 && !AppendDataSet(channel, "")))
        return nullptr;
    LQTableDataSet* const found = GetDataSet(dataSet, channel);
    if (found == nullptr)
        return nullptr;
    auto& access = found->cells[static_cast<std::size_t>(column)].access;
    if (access != nullptr)
        return access.get();
    switch (described->GetDataType(0)) {
    case Z4TypeShort:
        access.reset(new LQArrayChannelEx<std::int16_t>(*this, *found, column));
        break;
    case Z4TypeHuge:
        access.reset(new LQArrayChannelEx<std::int64_t>(*this, *found, column));
        break;
    case Z4TypeFloat:
        access.reset(new LQArrayChannelEx<float>(*this, *found, column));
        break;
    case Z4TypeDouble:
        access.reset(new LQArrayChannelEx<double>(*this, *found, column));
        break;
    case Z4TypeString:
    case LQTypeDateTime:
        access.reset(new LQTextArrayChannel(*this, *found, column));
        break;
    default:
        access.reset(new LQArrayChannelEx<std::int32_t>(*this, *found, column));
        break;
    }
    return access.get();
}

template <class T>
LQArrayChannelEx<T>* LQResultsTable::GetNumbers(int column, int channel, int dataSet)
{
    LQArrayChannel* const found = GetArrayChannel(column, channel, dataSet);
    auto* const numbers = dynamic_cast<LQArrayChannelEx<T>*>(found);
    if (found != nullptr && numbers == nullptr)
        Report(VDStoreError::WrongDataType, "The values of the column have another type");
    return numbers;
}

LQArrayChannelEx<std::int16_t>* LQResultsTable::GetShortArrayChannel(int column, int channel, int dataSet)
{
    return GetNumbers<std::int16_t>(column, channel, dataSet);
}

LQArrayChannelEx<std::int32_t>* LQResultsTable::GetLongArrayChannel(int column, int channel, int dataSet)
{
    return GetNumbers<std::int32_t>(column, channel, dataSet);
}

LQArrayChannelEx<std::int64_t>* LQResultsTable::GetHugeArrayChannel(int column, int channel, int dataSet)
{
    return GetNumbers<std::int64_t>(column, channel, dataSet);
}

LQArrayChannelEx<float>* LQResultsTable::GetFloatArrayChannel(int column, int channel, int dataSet)
{
    return GetNumbers<float>(column, channel, dataSet);
}

LQArrayChannelEx<double>* LQResultsTable::GetDoubleArrayChannel(int column, int channel, int dataSet)
{
    return GetNumbers<double>(column, channel, dataSet);
}

LQTextArrayChannel* LQResultsTable::GetTextArrayChannel(int column, int channel, int dataSet)
{
    LQArrayChannel* const found = GetArrayChannel(column, channel, dataSet);
    auto* const texts = dynamic_cast<LQTextArrayChannel*>(found);
    if (found != nullptr && texts == nullptr)
        Report(VDStoreError::WrongDataType, "The values of the column are no texts");
    return texts;
}

bool LQResultsTable::RefreshMetadata(bool keep, int channel)
{
    if (!LQObject::RefreshMetadata(keep, channel))
        return false;
    for (int each = 0; each < GetChannelCount(); ++each) {
        Z4PropertySet* const set = channel == ALL_CHANNELS || channel == each
                                       ? GetMapper()->AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, each)
                                       : nullptr;
        if (set == nullptr)
            continue;
        const auto may = [&](const char* name) { return !keep || !set->Exists(name, false); };
        if (may(LQAttribute::NumCols))
            set->PutLong(LQAttribute::NumCols, GetColumnCount(each));
        if (may(LQAttribute::NumDataSets))
            set->PutLong(LQAttribute::NumDataSets, GetDataSetCount(each));
        for (int dataSet = 0; dataSet < GetDataSetCount(each); ++dataSet) {
            VDString name;
            name.Format(LQAttribute::NumRowsOfDataSet, dataSet + 1);
            if (may(name))
                set->PutHuge(name, GetRowCount(dataSet, each));
        }
    }
    return true;
}

void LQResultsTable::WriteContent(Z4ByteWriter& writer) const
{
    const auto indexes = StreamIndexes(*GetNode());
    writer.Put(static_cast<std::uint32_t>(channels_.size()));
    for (const auto& channel : channels_) {
        writer.Put(static_cast<std::uint32_t>(channel->columns.size()));
        for (const auto& column : channel->columns)
            column->Write(writer);
        writer.Put(static_cast<std::uint32_t>(channel->dataSets.size()));
        for (const auto& dataSet : channel->dataSets) {
            writer.Put(dataSet->rows);
            writer.PutText(dataSet->title.View());
            for (std::size_t column = 0; column < dataSet->cells.size(); ++column) {
                const auto parts = PartsOf(*channel->columns[column]);
                for (std::size_t part = 0; part < parts.size(); ++part)
                    if (parts[part]) {
                        const Z4Stream* const stream = dataSet->cells[column].streams[part];
                        writer.Put(stream == nullptr ? std::uint32_t(0) : indexes.at(stream) + 1);
                    }
            }
        }
    }
}

bool LQResultsTable::ReadContent(Z4ByteReader& reader)
{
    channels_.clear();
    std::vector<bool> taken(static_cast<std::size_t>(GetNode()->GetStreamCount()));
    const std::uint32_t count = reader.GetCount(SmallestChannelBytes);
    for (std::uint32_t i = 0; i < count; ++i) {
        channels_.push_back(std::make_unique<Channel>());
        if (!ReadChannel(reader, *channels_.back(), taken))
            return false;
    }
    return reader.IsGood() && std::find(taken.begin(), taken.end(), false) == taken.end();
}

bool LQResultsTable::ReadChannel(Z4ByteReader& reader, Channel& channel, std::vector<bool>& taken)
{
    const std::uint32_t columns = reader.GetCount(LQResultsTableColumn::SmallestBytes);
    std::size_t cellBytes = 0;
    for (std::uint32_t i = 0; i < columns && reader.IsGood(); ++i) {
        channel.columns.push_back(std::make_unique<LQResultsTableColumn>(LQResultsTableColumn::Read(reader)));
        for (const bool part : PartsOf(*channel.columns.back()))
            cellBytes += part ? 4 : 0;
    }
    const std::uint32_t dataSets = reader.GetCount(SmallestDataSetBytes + cellBytes);
    for (std::uint32_t i = 0; i < dataSets && reader.IsGood(); ++i) {
        auto dataSet = std::make_unique<LQTableDataSet>();
        dataSet->rows = reader.Get<std::int64_t>();
        dataSet->title = reader.GetText();
        dataSet->cells.resize(channel.columns.size());
        if (dataSet->rows < 0 || dataSet->rows > LargestRows || !ReadCells(reader, channel, *dataSet, taken))
            return false;
        channel.dataSets.push_back(std::move(dataSet));
    }
    return reader.IsGood();
}

/// Each stream belongs to one part of one cell, and is no longer than its rows; only texts may be longer than that, but not
/// than the file.
bool LQResultsTable::ReadCells(Z4ByteReader& reader, const Channel& channel, LQTableDataSet& dataSet,
                               std::vector<bool>& taken)
{
    for (std::size_t column = 0; column < channel.columns.size(); ++column) {
        const auto parts = PartsOf(*channel.columns[column]);
        const std::int64_t valueSize = VFColumnValueSize(channel.columns[column]->GetDataType(0));
        for (std::size_t part = 0; part < parts.size(); ++part) {
            const std::uint32_t number = parts[part] ? reader.Get<std::uint32_t>() : 0;
            if (number == 0)
                continue;
            if (number > taken.size() || taken[number - 1])
                return false;
            taken[number - 1] = true;
            Z4Stream* const stream = GetNode()->GetStream(static_cast<int>(number - 1));
            const std::int64_t size = part == 0 ? valueSize : 2;
            const bool fits = part == 1 ? stream->GetLength() <= GetNode()->GetFileEnd()
                                        : stream->GetLength() % size == 0 && stream->GetLength() / size <= dataSet.rows;
            if (!fits)
                return false;
            dataSet.cells[column].streams[part] = stream;
        }
    }
    return reader.IsGood();
}
