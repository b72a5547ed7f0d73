#include "CsvMultiColumn.h"

#include "CsvFormatValues.h"
#include "CsvReport.h"

#include <algorithm>

bool CsvMultiColumn::Fail(int code, const char* routine, const std::string& detail) const
{
    return PluginReport(code, routine, filename_, detail) != 0;
}

bool CsvMultiColumn::SetId(VDFileId* id)
{
    int fileId = 0;
    int subId = 0;
    VDString filename;
    if (!FIDGetFileId(id, &fileId, &subId) || !FIDGetChanFilename(id, 0, &filename))
        return false;
    id_ = id;
    filename_ = filename.Str();
    settings_ = {};
    return (fileId == CsvFormat::FileId && subId == CsvFormat::Table) || Fail(CsvError::InvalidFileId, "CsvXY::SetId");
}

bool CsvMultiColumn::Open(int mode)
{
    constexpr const char* routine = "CsvXY::Open";
    unfit_.clear();
    hasDataSet_ = mode < 3;
    int channels = 0;
    if (!FIDGetNumChans(id_, &channels))
        return false;
    if (channels != 1)
        return Fail(CsvError::Columns, routine, "A table as text holds one channel, not " + std::to_string(channels) + ".");
    if (mode > 2)
        return Create(routine);
    table_ = CsvTable::Open(filename_, settings_, routine);
    return table_ && (mode == 1 || Update(routine));
}

bool CsvMultiColumn::Create(const char* routine)
{
    CsvDialect dialect;
    settings_.ApplyTo(dialect);
    if (dialect.decimal == dialect.separator)
        return Fail(CsvError::Open, routine, "The comma can't be the separator and the decimal sign.");
    writer_ = std::make_unique<CsvWriter>(filename_, dialect, settings_.Has(CsvSettings::Units));
    return true;
}

bool CsvMultiColumn::Update(const char* routine)
{
    const CsvIndex& index = table_->GetIndex();
    if (index.GetDamage().empty()) {
        writer_ = std::make_unique<CsvWriter>(filename_, index);
        return true;
    }
    Fail(CsvError::NotWritable, routine, "Nothing is appended to a damaged table. " + index.GetDamage());
    table_.reset();
    return false;
}

bool CsvMultiColumn::Close()
{
    const bool published = !writer_ || writer_->Publish("CsvXY::Close");
    if (writer_)
        unfit_ = writer_->GetUnfit();
    writer_.reset();
    table_.reset();
    return published;
}

bool CsvMultiColumn::GetCapability(int capability) const
{
    switch (capability) {
    case DaxMultiColumn::GivesLimits:
        return table_ && !writer_;
    case DaxMultiColumn::Writable:
    case DaxMultiColumn::CommonRows:
    case DaxMultiColumn::Extendable:
    case DaxMultiColumn::LargeDataSets:
    case DaxMultiColumn::NoSerialisation:
        return true;
    default:
        return false;
    }
}

const std::vector<CsvColumn>& CsvMultiColumn::GetColumns() const
{
    return writer_ ? writer_->GetColumns() : table_->GetIndex().GetColumns();
}

const CsvDialect& CsvMultiColumn::GetDialect() const
{
    return writer_ ? writer_->GetDialect() : table_->GetIndex().GetDialect();
}

std::int64_t CsvMultiColumn::GetNumRows() const
{
    return writer_ ? writer_->GetNumRows() : table_->GetIndex().GetNumRows();
}

VDVariant CsvMultiColumn::GetFileValue(int key) const
{
    constexpr long longestText = 32767;
    constexpr std::int64_t usualBlock = 16384;
    switch (key) {
    case DaxMultiColumn::NumDataSets:
        return VDVariant(static_cast<long>(hasDataSet_));
    case DaxMultiColumn::NumCols:
        return VDVariant(static_cast<long>(table_ || writer_ ? GetColumns().size() : 0));
    case DaxMultiColumn::NumRows:
        return VDVariant::FromHuge(table_ || writer_ ? GetNumRows() : 0);
    case DaxMultiColumn::MaxTitle:
    case DaxMultiColumn::MaxUnits:
        return VDVariant(longestText);
    case DaxMultiColumn::BufferSize:
        // So that all columns of a block fit into memory at the same time.
        return VDVariant(static_cast<long>(table_ ? std::min(table_->GetChunkRows(), 4 * usualBlock) : usualBlock));
    case DaxMultiColumn::ActualChanNumber:
        return VDVariant(1L);
    case DaxMultiColumn::DataSetTitle:
        return VDVariant("");
    default:
        return {};
    }
}

VDVariant CsvMultiColumn::GetColumnValue(const CsvColumn& column, int key) const
{
    switch (key) {
    case DaxMultiColumn::ColType:
        return VDVariant(static_cast<long>(column.type));
    case DaxMultiColumn::ColTitle:
        return VDVariant(column.title.c_str());
    case DaxMultiColumn::ColUnits:
        return VDVariant(column.units.c_str());
    case DaxMultiColumn::StatusWordEnabled:
        // Rows that are appended may lack values.
        return VDVariant(column.hasInvalid || (table_ && writer_));
    default:
        return VDVariant("");
    }
}

bool CsvMultiColumn::GetValue(long, long column, int key, VDVariant& value)
{
    constexpr const char* routine = "CsvXY::GetValue";
    switch (key) {
    case DaxMultiColumn::FormatSpecific: {
        VDString name;
        value[0].GetString(&name);
        const std::string damage = table_ ? table_->GetIndex().GetDamage() : std::string();
        const bool open = table_ || writer_;
        if (const auto answer = CsvFormatValues::Get(name, open ? GetDialect() : CsvDialect(), damage,
                                                     writer_ ? writer_->GetUnfit() : unfit_))
            value.AppendItem(*answer);
        return true;
    }
    case DaxMultiColumn::ColLimits:
        return !table_ || writer_ ||
               (Check(column, 1, 0, routine) && table_->GetLimits(static_cast<std::size_t>(column), value, routine));
    case DaxMultiColumn::ColType:
    case DaxMultiColumn::ColTitle:
    case DaxMultiColumn::ColUnits:
    case DaxMultiColumn::ColKeyword:
    case DaxMultiColumn::StatusWordEnabled:
    case DaxMultiColumn::StatusBitText:
        if (!Check(column, 1, 0, routine))
            return false;
        value = GetColumnValue(GetColumns()[static_cast<std::size_t>(column)], key);
        return true;
    default:
        if (VDVariant answer = GetFileValue(key); !answer.IsNull())
            value = std::move(answer);
        return true;
    }
}

bool CsvMultiColumn::PutValue(long, long column, int key, const VDVariant& value)
{
    constexpr const char* routine = "CsvXY::PutValue";
    std::string why;
    VDString text;
    std::int64_t rows = 0;
    switch (key) {
    case DaxMultiColumn::FormatSpecific:
        if (table_ || writer_)
            return Fail(CsvError::NotWritable, routine, "How a table is read or written is said before it is opened.");
        return CsvFormatValues::Put(value, settings_, why) || Fail(CsvError::Write, routine, why);
    case DaxMultiColumn::NumRows:
        if (!writer_ || !value.GetHuge(&rows))
            return Fail(CsvError::NotWritable, routine);
        return writer_->SetNumRows(rows, routine);
    case DaxMultiColumn::StatusBitText:
        value[1].GetString(&text);
        return text.Str().empty() || Fail(CsvError::Write, routine, "A table as text has no texts of status bits.");
    case DaxMultiColumn::EnumOptions:
        return Fail(CsvError::Write, routine, "A table as text has no enumerations.");
    case DaxMultiColumn::DataSetTitle:
    case DaxMultiColumn::ColTitle:
    case DaxMultiColumn::ColUnits:
    case DaxMultiColumn::ColKeyword:
        if (!value.GetString(&text))
            return Fail(CsvError::Write, routine, "This is a text.");
        return PutText(column, key, text);
    default:
        return true;
    }
}

bool CsvMultiColumn::PutText(long column, int key, const VDString& text)
{
    constexpr const char* routine = "CsvXY::PutValue";
    if (!writer_)
        return Fail(CsvError::NotWritable, routine);
    // The title that the library gives to what has none is none.
    if (key == DaxMultiColumn::DataSetTitle)
        return text.Str().empty() || text == "Dataset 1" ||
               Fail(CsvError::Write, routine, "A table as text has no title of its own.");
    if (key == DaxMultiColumn::ColKeyword)
        return text.Str().empty() || Fail(CsvError::Write, routine, "A table as text has no keywords of columns.");
    if (!Check(column, 1, 0, routine))
        return false;
    return key == DaxMultiColumn::ColTitle ? writer_->SetTitle(static_cast<std::size_t>(column), text.Str(), routine)
                                           : writer_->SetUnits(static_cast<std::size_t>(column), text.Str(), routine);
}

bool CsvMultiColumn::AppendColumn(int type, bool withStatus, const char* routine)
{
    return writer_ ? writer_->AppendColumn(type, withStatus, routine) : Fail(CsvError::NotWritable, routine);
}

bool CsvMultiColumn::AppendDataSet()
{
    constexpr const char* routine = "CsvXY::AppendDataSet";
    if (hasDataSet_ || !writer_)
        return Fail(CsvError::DataSet, routine, "A table as text holds one data set.");
    hasDataSet_ = true;
    return true;
}

bool CsvMultiColumn::AddMetaData(LQChannelMapper& mapper) const
{
    return !table_ || CsvFormatValues::AddMetaData(mapper, GetDialect()) || Fail(CsvError::Read, "CsvXY::AddLegacyMetaData");
}
