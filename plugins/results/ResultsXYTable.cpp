#include "ResultsXYTable.h"

#include "ResultsError.h"

#include <limits>

using namespace DaxMultiColumn;

// What describes the table; the values are in ResultsXYValues.cpp.

namespace {

constexpr long LongestText = std::numeric_limits<std::int32_t>::max();
constexpr long BlockSize = 65536;

struct ColumnType
{
    int code;  ///< a `DaxColumnType`
    std::int32_t stored;
};

constexpr ColumnType VVColumnTypes[] = {
    {DaxColumnType::Text, Z4TypeString},   {DaxColumnType::Long, Z4TypeLong},
    {DaxColumnType::Float, Z4TypeFloat},   {DaxColumnType::Short, Z4TypeShort},
    {DaxColumnType::Huge, Z4TypeHuge},     {DaxColumnType::Double, Z4TypeDouble},
    {DaxColumnType::DateTime, LQTypeDateTime}, {DaxColumnType::Enumeration, LQTypeEnumeration},
};

long CodeOf(std::int32_t stored)
{
    for (const ColumnType& type : VVColumnTypes)
        if (type.stored == stored)
            return type.code;
    return -1;
}

VDVariant ListOf(const std::vector<LQEnumOption>& options)
{
    VDVariant values;
    VDVariant texts;
    const auto count = static_cast<std::int64_t>(options.size());
    values.SetBufferSizeAndAllocate(VTVariantLongBuffer, count);
    texts.SetBufferSizeAndAllocate(VTVariantStringBuffer, count);
    for (std::size_t at = 0; at < options.size(); ++at) {
        values.GetBuffer<std::int32_t>()[at] = options[at].value;
        texts.GetBuffer<VDString>()[at] = options[at].text;
    }
    return VDVariant::FromList({values, texts});
}

std::vector<LQEnumOption> OptionsOf(const VDVariant& list)
{
    std::vector<LQEnumOption> options;
    const auto values = list[0].GetBuffer<std::int32_t>();
    const auto texts = list[1].GetBuffer<VDString>();
    for (std::size_t at = 0; at < values.size() && at < texts.size(); ++at)
        options.push_back({values[at], texts[at]});
    return options;
}

}  // namespace

bool ResultsXYTable::Open(int mode)
{
    constexpr const char* routine = "ResultsXY::Open";
    Close();
    if (file_.Open(mode, ResultsFormat::TableClass, routine)) {
        LQDataManager& data = *LQGetDataManager();
        table_ = file_.IsCreated()
                     ? data.AdoptResultsTable(file_.GetRoot(), ResultsFormat::TableNode, nullptr, Z4Size::Record32K)
                     : data.OpenResultsTable(file_.GetRoot(), ResultsFormat::TableNode);
        if (table_ != nullptr && file_.MatchChannels(*table_, routine))
            return true;
    }
    file_.Close(std::exchange(table_, nullptr), false);
    return false;
}

bool ResultsXYTable::Close()
{
    return file_.Close(std::exchange(table_, nullptr), true);
}

bool ResultsXYTable::HasCapability(int capability)
{
    switch (capability) {
    case Writable:
    case Extendable:
    case LargeDataSets:
    case ChannelTitles:
    case KeepsMetaData:
    case NoSerialisation:
    case Enumerations:
        return true;
    default:
        return false;
    }
}

const LQResultsTableColumn* ResultsXYTable::GetColumn(long channel, long column)
{
    return table_->GetColumn(static_cast<int>(column), file_.GetChannel(channel));
}

bool ResultsXYTable::GetValue(long channel, long dataSet, long column, int key, const VDVariant& input, VDVariant& value)
{
    switch (key) {
    case MaxTitle:
    case MaxUnits:
        return value.SetLong(LongestText), true;
    case BufferSize:
        return value.SetLong(BlockSize), true;
    default:
        break;
    }
    if (table_ == nullptr || channel < 0)
        return true;
    const int object = file_.GetChannel(channel);
    const int set = static_cast<int>(dataSet);
    const bool ofColumn = column >= 0;
    const LQResultsTableColumn* const described = ofColumn ? GetColumn(channel, column) : nullptr;
    if (ofColumn && described == nullptr)
        return false;
    VDString text;
    long bit = -1;
    switch (key) {
    case NumDataSets:
        value.SetLong(table_->GetDataSetCount(object));
        break;
    case NumCols:
        value.SetLong(table_->GetColumnCount(object));
        break;
    case NumRows:
        value.SetHuge(table_->GetRowCount(set, object));
        break;
    case DataSetTitle:
        if (!table_->GetDataSetTitle(text, set, object))
            return false;
        value = VDVariant(text);
        break;
    case ChanTitle:
        if (!table_->GetChanTitle(text, object))
            return false;
        value = VDVariant(text);
        break;
    case ActualChanNumber:
        value.SetLong(table_->GetMapper()->NumberFromIndex(object, false));
        break;
    case ColType:
        value.SetLong(ofColumn ? CodeOf(described->GetDataType(0)) : -1);
        break;
    case ColTitle:
        value = VDVariant(ofColumn ? described->GetTitle() : text);
        break;
    case ColUnits:
        value = VDVariant(ofColumn ? described->GetUnits() : text);
        break;
    case ColKeyword:
        value = VDVariant(ofColumn ? described->GetKeyword() : text);
        break;
    case StatusWordEnabled:
        value.SetBoolean(ofColumn && described->HasStatus());
        break;
    case StatusBitText:
        input.GetLong(&bit);
        value = VDVariant(ofColumn ? described->GetStatusBitText(static_cast<int>(bit)) : text);
        break;
    case EnumOptions:
        value = ofColumn ? ListOf(described->GetEnumOptions()) : VDVariant();
        break;
    default:
        break;
    }
    return true;
}

bool ResultsXYTable::PutValue(long channel, long dataSet, long column, int key, const VDVariant& value)
{
    if (table_ == nullptr || channel < 0)
        return true;
    const int object = file_.GetChannel(channel);
    const int set = static_cast<int>(dataSet);
    LQResultsTableColumn* const described = column < 0 ? nullptr : table_->GetColumn(static_cast<int>(column), object);
    if (column >= 0 && described == nullptr)
        return false;
    VDString text;
    value.GetString(&text);
    std::int64_t rows = 0;
    unsigned long bit = 0;
    switch (key) {
    case NumRows:
        return value.GetHuge(&rows) && table_->SetRowCount(rows, set, object);
    case DataSetTitle:
        return table_->SetDataSetTitle(text, set, object);
    case ChanTitle:
        return table_->SetChanTitle(text, object);
    case ColTitle:
        if (described != nullptr)
            described->SetTitle(text);
        break;
    case ColUnits:
        if (described != nullptr)
            described->SetUnits(text);
        break;
    case ColKeyword:
        if (described != nullptr)
            described->SetKeyword(text);
        break;
    case StatusBitText:
        if (described == nullptr || !value[0].GetUnsignedLong(&bit) || !value[1].GetString(&text) ||
            !described->SetStatusBitText(static_cast<int>(std::min<unsigned long>(bit, 99)), text))
            return file_.Report(ResultsError::DataType, "ResultsXY::PutValue",
                                "Only the bits 0 to 14 of a status word have texts.");
        break;
    case EnumOptions:
        if (described != nullptr)
            described->SetEnumOptions(OptionsOf(value));
        break;
    default:
        break;
    }
    return true;
}

bool ResultsXYTable::AppendCol(long channel, int type, bool withStatus)
{
    for (const ColumnType& known : VVColumnTypes)
        if (known.code == type)
            return table_->AddColumn(known.stored, "", "", "", withStatus, file_.GetChannel(channel));
    return file_.Report(ResultsError::DataType, "ResultsXY::AppendCol");
}

bool ResultsXYTable::AppendDataSet(long channel)
{
    return table_->AppendDataSet(file_.GetChannel(channel), "");
}

bool ResultsXYTable::LoadMetaData(LQChannelMapper** mapper)
{
    if (!table_->RefreshMetadata(false, LQObject::ALL_CHANNELS))
        return false;
    *mapper = table_->GetMapper();
    return true;
}

int ResultsLoadTableInfo(VDFileId* id, const VDString& filename)
{
    LQDataManager& data = *LQGetDataManager();
    Z4File* const file = data.GetFileManager()->OpenFile(filename, false);
    LQResultsTable* const table = file == nullptr ? nullptr : data.OpenResultsTable(file->GetRoot(), ResultsFormat::TableNode);
    const bool listed = table != nullptr && ResultsListChannels(id, *table, filename, ResultsError::NoTableChannels,
                                                                "ResultsFFLoadFileInfo");
    if (table != nullptr)
        data.Close(table, false);
    if (file != nullptr)
        data.GetFileManager()->CloseFile(file, false);
    return listed ? 1 : 0;
}
