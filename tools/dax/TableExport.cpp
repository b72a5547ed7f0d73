#include "Interrupt.h"
#include "Printable.h"
#include "TableTest.h"
#include "TestExport.h"
#include "ToolError.h"

#include <algorithm>
#include <charconv>

namespace {

/// Columns of one data set of a channel.
struct Choice
{
    const VDChannel* channel;
    int dataSet;
    std::vector<const VDColumn*> columns;
};

class TableExport : public VDTestExport
{
public:
    TableExport(const VDTableTest& test, const VDReadSelection& selection);

    std::vector<VDCsvPart> MakeParts() const override;
    std::string WhyParts(const std::vector<VDCsvPart>& parts) const override;
    void WriteJson(VDTextSink& out) const override;

private:
    void Choose(const VDChannel& channel, const VDReadSelection& selection);
    std::int64_t LastRow(const Choice& choice) const;
    std::int64_t WriteCsv(const Choice& choice, VDTextSink& out) const;
    void WriteJsonSet(const Choice& choice, VDTextSink& out) const;
    void WriteJsonColumn(const Choice& choice, const VDColumn& column, VDTextSink& out) const;
    const VDDataSet& DataSet(const Choice& choice) const
    {
        return test_.GetTable(*choice.channel).dataSets[static_cast<std::size_t>(choice.dataSet)];
    }

    const VDTableTest& test_;
    std::vector<VDChannel> channels_;
    VDNumberRange<std::int64_t> rows_;
    std::vector<Choice> choices_;
};

/// A column by title or keyword, or else by its position from 1; null if the table has none such.
const VDColumn* VFFindColumn(const VDTable& table, const std::string& name)
{
    for (const VDColumn& column : table.columns)
        if (column.title == name || column.keyword == name)
            return &column;
    std::size_t position = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), position);
    const bool isPosition = error == std::errc() && end == name.data() + name.size();
    return isPosition && position >= 1 && position <= table.columns.size() ? &table.columns[position - 1] : nullptr;
}

std::vector<const VDColumn*> VFChooseColumns(const VDTable& table, const std::vector<std::string>& names)
{
    std::vector<const VDColumn*> columns;
    for (const std::string& name : names) {
        columns.push_back(VFFindColumn(table, name));
        if (columns.back() == nullptr)
            VFFail(DaxToolError::UnknownColumn, "There is no column '" + name + "'", "VFMakeTableExport");
    }
    if (names.empty())
        for (const VDColumn& column : table.columns)
            columns.push_back(&column);
    return columns;
}

TableExport::TableExport(const VDTableTest& test, const VDReadSelection& selection)
    : test_(test), channels_(selection.channels.Choose(test))
{
    if (!selection.rows.empty())
        rows_ = VDNumberRange<std::int64_t>::Read("--rows", selection.rows);
    std::int64_t most = 0;
    for (const VDChannel& channel : channels_) {
        Choose(channel, selection);
        most = std::max(most, test.CountRows(channel));
    }
    if (choices_.empty())
        VFFail(DaxToolError::UnknownColumn,
               selection.dataSet > 0 ? "There is no data set " + std::to_string(selection.dataSet) : "The test has no data",
               "VFMakeTableExport");
    if (rows_.first > std::max<std::int64_t>(most, 1))
        VFFail(DaxToolError::FirstPoint,
               "Row " + std::to_string(rows_.first) + " lies behind the end; there are " + std::to_string(most) + " rows",
               "VFMakeTableExport");
    rows_.first = std::max<std::int64_t>(rows_.first, 1);
}

void TableExport::Choose(const VDChannel& channel, const VDReadSelection& selection)
{
    const VDTable& table = test_.GetTable(channel);
    const std::vector<const VDColumn*> columns = VFChooseColumns(table, selection.columns);
    for (int dataSet = 0; dataSet < static_cast<int>(table.dataSets.size()); ++dataSet)
        if (selection.dataSet == 0 || selection.dataSet == dataSet + 1)
            choices_.push_back({&channel, dataSet, columns});
}

std::int64_t TableExport::LastRow(const Choice& choice) const
{
    return std::min(rows_.last, DataSet(choice).rows);
}

std::vector<VDCsvPart> TableExport::MakeParts() const
{
    std::vector<VDCsvPart> parts;
    for (const Choice& choice : choices_) {
        const std::string number = std::to_string(choice.channel->number);
        const std::string set = std::to_string(choice.dataSet + 1);
        parts.push_back({"channel " + number + ", data set " + set,
                         "_ch" + number + "_set" + set,
                         {{"channel", choice.channel->number}, {"dataSet", choice.dataSet + 1}},
                         [this, &choice](VDTextSink& out) { return WriteCsv(choice, out); }});
    }
    return parts;
}

std::string TableExport::WhyParts(const std::vector<VDCsvPart>& parts) const
{
    return "There are " + std::to_string(parts.size()) +
           " data sets, which can't share one CSV; write them to files with --out, or choose one with --chan and --set";
}

std::int64_t TableExport::WriteCsv(const Choice& choice, VDTextSink& out) const
{
    const char* separator = "";
    std::vector<VDColumnBlock> blocks;
    for (const VDColumn* column : choice.columns) {
        out.Write(separator);
        out.Write(VFCsvText(VFWithUnits(column->title, column->units)));
        separator = ",";
        blocks.emplace_back(test_.Get(), choice.channel->index, *column);
    }
    out.Write("\n");
    const std::int64_t last = LastRow(choice);
    const std::int64_t block = test_.GetBlockRows(blocks.size());
    for (std::int64_t first = rows_.first; first <= last; first += block) {
        VDInterruptGuard::Check();
        const std::int64_t count = std::min(block, last - first + 1);
        for (VDColumnBlock& column : blocks)
            column.Read(choice.dataSet, first, count);
        for (std::int64_t row = 0; row < count; ++row) {
            for (std::size_t column = 0; column < blocks.size(); ++column) {
                if (column > 0)
                    out.Write(",");
                blocks[column].PutCsv(out, row);
            }
            out.Write("\n");
        }
    }
    return std::max<std::int64_t>(last - rows_.first + 1, 0);
}

void TableExport::WriteJsonColumn(const Choice& choice, const VDColumn& column, VDTextSink& out) const
{
    VDColumnBlock values(test_.Get(), choice.channel->index, column);
    const std::int64_t last = LastRow(choice);
    const std::int64_t block = test_.GetBlockRows(1);
    for (std::int64_t first = rows_.first; first <= last; first += block) {
        VDInterruptGuard::Check();
        const std::int64_t count = std::min(block, last - first + 1);
        values.Read(choice.dataSet, first, count);
        for (std::int64_t row = 0; row < count; ++row) {
            if (first + row > rows_.first)
                out.Write(",");
            values.PutJson(out, row);
        }
    }
}

void TableExport::WriteJsonSet(const Choice& choice, VDTextSink& out) const
{
    const VDJson head = {{"channel", choice.channel->number},
                         {"dataSet", choice.dataSet + 1},
                         {"title", DataSet(choice).title},
                         {"first", rows_.first}};
    std::string text = VFJsonText(head, -1);
    text.pop_back();  // its closing brace: the columns belong inside
    out.Write(text + ",\"columns\":[");
    const char* separator = "\n";
    for (const VDColumn* column : choice.columns) {
        const VDJson columnHead = {
            {"title", column->title}, {"units", column->units}, {"type", VFColumnTypeWord(column->type)}};
        text = VFJsonText(columnHead, -1);
        text.pop_back();
        out.Write(separator + text + ",\"values\":[");
        separator = ",\n";
        try {
            WriteJsonColumn(choice, *column, out);
        } catch (const VDFailure&) {
            out.Write("]}]}");
            throw;
        }
        out.Write("]}");
    }
    out.Write("]}");
}

void TableExport::WriteJson(VDTextSink& out) const
{
    out.Write("{\"path\":" + VFJsonText(VFGetTestFiles(test_.GetId()).front(), -1) + ",\"dataSets\":[");
    const char* separator = "\n";
    for (const Choice& choice : choices_) {
        out.Write(separator);
        separator = ",\n";
        try {
            WriteJsonSet(choice, out);
        } catch (const VDFailure&) {
            out.Write("]");
            throw;
        }
    }
    out.Write("]");
}

}  // namespace

std::unique_ptr<VDTestExport> VFMakeTableExport(const VDDataTest& test, const VDReadSelection& selection)
{
    return std::make_unique<TableExport>(static_cast<const VDTableTest&>(test), selection);
}
