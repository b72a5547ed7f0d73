#include "TableTest.h"

#include "NumberText.h"
#include "Printable.h"

#include <algorithm>

namespace {

/// Memory for the blocks of all columns together, and a block beyond which more gains nothing.
constexpr std::int64_t VVBlockMemory = std::int64_t{16} << 20;
constexpr std::int64_t VVMaxBlockRows = 65536;

/// Values that are compared after a copy: rows of each column, and columns with theirs.
constexpr std::int64_t VVSampleRows = 1024;
constexpr std::int64_t VVSampleValues = 1 << 20;
constexpr int VVSampleSets = 16;

/// Cells of a channel whose limits are worked out without being asked for.
constexpr std::int64_t VVCheapCells = std::int64_t{1} << 22;

template <class Call, class... Selectors>
std::string VFReadText(Call call, Selectors... selectors)
{
    VDString text;
    VFCheck(call(selectors..., &text));
    return text.Str();
}

}  // namespace

std::string VFColumnTypeWord(int type)
{
    switch (type) {
    case DaxColumnType::Text:
        return "text";
    case DaxColumnType::Long:
        return "long";
    case DaxColumnType::Float:
        return "float";
    case DaxColumnType::Short:
        return "short";
    case DaxColumnType::Huge:
        return "int64";
    case DaxColumnType::Double:
        return "double";
    case DaxColumnType::DateTime:
        return "datetime";
    case DaxColumnType::Enumeration:
        return "enumeration";
    default:
        return "type" + std::to_string(type);
    }
}

VDTableTest::VDTableTest(VDFileId* id) : VDDataTest(id)
{
    Open(access_);
    channels_ = ListChannels(id);
    int count = 0;
    VFCheck(XYAccGetNumChans(Get(), &count));
    channels_.resize(static_cast<std::size_t>(std::min<std::int64_t>(count, std::ssize(channels_))));
    for (VDChannel& channel : channels_) {
        channel.title = VFReadText(XYAccGetChanTitle, Get(), channel.index);
        tables_.push_back(ReadTable(channel.index));
    }
    VFErrorClear();
}

VDTable VDTableTest::ReadTable(int channel) const
{
    VDTable table;
    int count = 0;
    VFCheck(XYAccGetNumDataSets(Get(), channel, &count));
    for (int index = 0; index < count; ++index) {
        VDDataSet& dataSet = table.dataSets.emplace_back();
        dataSet.title = VFReadText(XYAccGetDataSetTitle, Get(), channel, index);
        VFCheck(XYAccGetNumRows(Get(), channel, index, &dataSet.rows));
    }
    const bool hasDataSets = count > 0;
    VFCheck(XYAccGetNumCols(Get(), channel, &count));
    for (int index = 0; index < count; ++index)
        table.columns.push_back(ReadColumn(channel, index, hasDataSets));
    return table;
}

VDColumn VDTableTest::ReadColumn(int channel, int index, bool hasDataSets) const
{
    VDColumn column;
    column.index = index;
    column.title = VFReadText(XYAccGetColTitle, Get(), channel, index);
    column.units = VFReadText(XYAccGetColUnits, Get(), channel, index);
    column.keyword = VFReadText(XYAccGetColKeyword, Get(), channel, index);
    VFCheck(XYAccGetColType(Get(), channel, index, &column.type));
    if (hasDataSets) {
        char enabled = 0;
        VFCheck(XYAccGetStatusWordEnabled(Get(), channel, 0, index, &enabled));
        column.status = enabled != 0;
    }
    if (column.type == DaxColumnType::Enumeration) {
        VDArrayWithSort<long> values;
        VDStringArray texts;
        VFCheck(XYAccGetColEnumOptions(Get(), channel, index, &values, &texts));
        for (int option = 0; option < values.GetSize(); ++option) {
            column.optionValues.push_back(values[option]);
            column.optionTexts.push_back(texts[option].Str());
        }
    }
    return column;
}

std::int64_t VDTableTest::GetBlockRows(std::size_t columns) const
{
    int wanted = 0;
    VFCheck(XYAccGetBufferSize(Get(), &wanted));
    const auto room = VVBlockMemory / static_cast<std::int64_t>(std::max<std::size_t>(columns, 1) * sizeof(double));
    return std::clamp<std::int64_t>(wanted, 1, std::clamp<std::int64_t>(room, 1, VVMaxBlockRows));
}

std::int64_t VDTableTest::CountRows(const VDChannel& channel) const
{
    std::int64_t rows = 0;
    for (const VDDataSet& dataSet : GetTable(channel).dataSets)
        rows = std::max(rows, dataSet.rows);
    return rows;
}

VDJson VDTableTest::DescribeChannel(const VDChannel& channel) const
{
    const VDTable& table = GetTable(channel);
    VDJson json = {{"index", channel.index}, {"number", channel.number}, {"title", channel.title}};
    VDJson& columns = json["columns"] = VDJson::array();
    for (const VDColumn& column : table.columns) {
        VDJson& each = columns.emplace_back(VDJson{{"title", column.title},
                                                   {"units", column.units},
                                                   {"keyword", column.keyword},
                                                   {"type", VFColumnTypeWord(column.type)},
                                                   {"status", column.status}});
        if (column.type == DaxColumnType::Enumeration) {
            VDJson& options = each["options"] = VDJson::array();
            for (std::size_t option = 0; option < column.optionValues.size(); ++option)
                options.push_back({{"value", column.optionValues[option]}, {"text", column.optionTexts[option]}});
        }
    }
    VDJson& dataSets = json["dataSets"] = VDJson::array();
    for (const VDDataSet& dataSet : table.dataSets)
        dataSets.push_back({{"title", dataSet.title}, {"rows", dataSet.rows}});
    return json;
}

VDJson VDTableTest::Sample(const VDChannel& channel) const
{
    const VDTable& table = GetTable(channel);
    VDJson sets = VDJson::array();
    const auto columns = std::max<std::int64_t>(std::ssize(table.columns), 1);
    const auto rows = std::clamp<std::int64_t>(VVSampleValues / (columns * VVSampleSets), 1, VVSampleRows);
    for (int index = 0; index < std::min<int>(VVSampleSets, static_cast<int>(table.dataSets.size())); ++index) {
        const std::int64_t count = std::min(rows, table.dataSets[static_cast<std::size_t>(index)].rows);
        VDJson& set = sets.emplace_back(VDJson::array());
        for (const VDColumn& column : table.columns) {
            VDColumnBlock block(Get(), channel.index, column);
            block.Read(index, 1, count);
            VDJson& values = set.emplace_back(VDJson::array());
            for (std::int64_t row = 0; row < count; ++row)
                values.push_back(block.ToJson(row));
        }
    }
    return sets;
}

void VDTableTest::AddLimits(const VDChannel& channel, bool always, VDJson& described) const
{
    const VDTable& table = GetTable(channel);
    const bool given = access_.Can(DaxMultiColumn::GivesLimits);
    std::int64_t cells = 0;
    for (const VDDataSet& dataSet : table.dataSets)
        cells += dataSet.rows * std::ssize(table.columns);
    if (table.dataSets.empty() || (!always && !given && cells > VVCheapCells))
        return;
    for (const VDColumn& column : table.columns) {
        VDVariant minimum;
        VDVariant maximum;
        VFCheck(
            XYAccGetColLimits(Get(), channel.index, static_cast<int>(DaxDataSet::All), column.index, &minimum, &maximum));
        const auto add = [&](const char* name, const VDVariant& limit) {
            double value = 0;
            described["columns"][static_cast<std::size_t>(column.index)][name] =
                limit.ConvertToDouble(&value) ? VDJson(value) : VDJson();
        };
        add("min", minimum);
        add("max", maximum);
    }
}

void VDTableTest::PrintChannels(const VDJson& described, VDTextSink& out) const
{
    const auto limit = [](const VDJson& column, const char* name) {
        return column.contains(name) && column[name].is_number() ? VFNumberText(column[name].get<double>())
                                                                 : std::string("-");
    };
    for (const VDJson& channel : described) {
        const std::string title = channel["title"];
        out.PutLine("Channel " + std::to_string(channel["number"].get<int>()) + (title.empty() ? "" : ": " + title));
        VDTextTable dataSets("rrl");
        dataSets.Add({"SET", "ROWS", "TITLE"});
        int position = 0;
        for (const VDJson& dataSet : channel["dataSets"])
            dataSets.Add(
                {std::to_string(++position), std::to_string(dataSet["rows"].get<std::int64_t>()), dataSet["title"]});
        dataSets.Print(out, 2);
        VDTextTable columns("rlllllrr");
        columns.Add({"COLUMN", "TITLE", "UNITS", "KEYWORD", "TYPE", "STATUS", "MIN", "MAX"});
        position = 0;
        for (const VDJson& column : channel["columns"])
            columns.Add({std::to_string(++position), column["title"], column["units"], column["keyword"], column["type"],
                         column["status"].get<bool>() ? "yes" : "-", limit(column, "min"), limit(column, "max")});
        columns.Print(out, 2);
    }
}

std::int64_t VDTableTest::CountValues(const VDChannel& channel, std::int64_t limit) const
{
    std::int64_t rows = 0;
    for (const VDDataSet& dataSet : GetTable(channel).dataSets)
        rows += std::min(dataSet.rows, limit);
    return rows;
}
