#include "Commands.h"
#include "InputTest.h"
#include "Interrupt.h"
#include "TableTest.h"
#include "ToolError.h"

#include <algorithm>
#include <map>

namespace {

/// `dax append IN INTO`: the rows of a table behind those of another one.
class VDAppendCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDTestArguments input_;
    VDTestArguments target_;
    int dataSet_ = 1;
};

constexpr const char* VVRoutine = "VDAppendCommand::Run";

/// The one table that a file has.
const VDTableTest& VFNeedTable(const VDInputTest& test)
{
    const auto* const table = dynamic_cast<const VDTableTest*>(&test.GetTest());
    if (table == nullptr || table->GetChannels().size() != 1)
        VFFail(DaxToolError::NotTimeSeries,
               "The test is no table of one channel but " + test.DescribeFormat() + ": " + test.GetPath(), VVRoutine);
    return *table;
}

/// For each column of the target the one of the input that has its title, or else its keyword; throws if one has none.
std::vector<const VDColumn*> VFMatchColumns(const VDTable& from, const VDTable& into)
{
    std::map<std::string, const VDColumn*> known;
    for (const VDColumn& column : from.columns)
        known.try_emplace(column.keyword, &column);
    for (const VDColumn& column : from.columns)
        known[column.title] = &column;
    std::vector<const VDColumn*> matched;
    for (const VDColumn& column : into.columns) {
        auto found = known.find(column.title);
        if (found == known.end())
            found = known.find(column.keyword);
        if (found == known.end())
            VFFail(DaxToolError::UnknownColumn, "The input has no column '" + column.title + "'", VVRoutine);
        if (found->second->units != column.units)
            VFFail(DaxToolError::UnknownColumn,
                   "The column '" + column.title + "' has the units '" + found->second->units + "' in place of '" +
                       column.units + "'",
                   VVRoutine);
        matched.push_back(found->second);
    }
    return matched;
}

/// A table that is open for rows to be put behind its last one. Unless it is told to keep them, they go again.
class GrowingTable
{
public:
    GrowingTable(VDFileId* id, const VDTable& table, int dataSet)
        : dataSet_(dataSet), rows_(table.dataSets[static_cast<std::size_t>(dataSet)].rows)
    {
        VFCheck(access_.SetId(id, false));
        VFCheck(access_.Open(VTTestOpen::Update));
    }

    ~GrowingTable()
    {
        if (kept_)
            return;
        const VDErrorMute mute;
        XYAccSetNumRows(access_.Get(), 0, dataSet_, rows_);
    }

    /// @param done  rows that were put before
    void Put(const VDColumn& column, std::int64_t done, VDColumnBlock& block)
    {
        VDVariant converted;
        VDVariant* values = &block.Values();
        const int type = DaxColumnType::BufferType(column.type);
        if (type != values->GetType() && (type == VTVariantStringBuffer || values->GetType() == VTVariantStringBuffer))
            values = Convert(column, type, block, &converted);
        VFCheck(XYAccPutData(access_.Get(), 0, dataSet_, column.index, rows_ + done + 1, values));
        PutStatus(column, rows_ + done + 1, block, values->GetBufferSize());
    }

    void Keep()
    {
        kept_ = true;
        VFCheck(access_.Close());
    }

private:
    /// Between texts and numbers; a text that is no number of the column ends the work.
    VDVariant* Convert(const VDColumn& column, int type, VDColumnBlock& block, VDVariant* converted) const
    {
        const std::int64_t count = block.Values().GetBufferSize();
        converted->SetBufferSizeAndAllocate(type, count);
        for (std::int64_t index = 0; index < count; ++index) {
            const std::string text = block.Text(index);
            const auto option = std::find(column.optionTexts.begin(), column.optionTexts.end(), text);
            if (type == VTVariantStringBuffer)
                converted->SetStringAt(index, text.c_str());
            else if (option == column.optionTexts.end())
                VFFail(DaxToolError::ItemValue, "'" + text + "' is no value of the column '" + column.title + "'",
                       VVRoutine);
            else
                converted->SetLongAt(
                    index, column.optionValues[static_cast<std::size_t>(std::distance(column.optionTexts.begin(), option))]);
        }
        return converted;
    }

    /// Values that aren't valid have to stay so; a column without status words can't say it.
    void PutStatus(const VDColumn& column, std::int64_t first, VDColumnBlock& block, std::int64_t count)
    {
        std::vector<std::uint16_t>& words = block.Words();
        const bool allPlain = std::all_of(words.begin(), words.end(), [](std::uint16_t word) { return word == 0; });
        if (!column.status && !allPlain)
            VFFail(DaxToolError::ItemValue,
                   "The column '" + column.title + "' has values that aren't valid, which its table can't tell", VVRoutine);
        if (column.status && !words.empty())
            VFCheck(XYAccPutStatusWordData(access_.Get(), 0, dataSet_, column.index, first, count, words.data()));
    }

    VDTestAccessOf<VDTableCalls> access_;
    int dataSet_;
    std::int64_t rows_;
    bool kept_ = false;
};

/// Gives the rows that were put.
std::int64_t VFAppendRows(const VDTableTest& source, const VDTable& into, const std::vector<const VDColumn*>& columns,
                          GrowingTable& target)
{
    const std::int64_t rows = source.GetTable(source.GetChannels().front()).dataSets.front().rows;
    const std::int64_t block = source.GetBlockRows(columns.size());
    std::vector<VDColumnBlock> blocks;
    for (const VDColumn* column : columns)
        blocks.emplace_back(source.Get(), 0, *column);
    for (std::int64_t done = 0; done < rows; done += block) {
        VDInterruptGuard::Check();
        for (std::size_t column = 0; column < columns.size(); ++column) {
            blocks[column].Read(0, done + 1, std::min(block, rows - done));
            target.Put(into.columns[column], done, blocks[column]);
        }
    }
    return rows;
}

CLI::App* VDAppendCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("append", "Put the rows of a table behind those of another one");
    input_.Register(*command, "IN");
    command->add_option("INTO", target_.file, "The table that gets longer")->required()->type_name("");
    command->add_option("--set", dataSet_, "The data set that gets longer, from 1 (default: the first one)")
        ->check(CLI::PositiveNumber.description(""))
        ->type_name("N");
    command->footer(
        "Columns are matched by their titles, or else by their keywords; units must agree. Either all rows are put, "
        "or INTO keeps those that it has.");
    return command;
}

VDJson VDAppendCommand::Run(VDCommandContext& context)
{
    const VDInputTest input(context, input_);
    const VDTableTest& source = VFNeedTable(input);
    VDFileIdHandle id = VFChooseTest(context.Registry(), target_);
    VDTable into;
    std::string path;
    {
        // Reading ends before writing begins.
        const VDInputTest target(context, target_, std::move(id));
        path = target.GetPath();
        into = VFNeedTable(target).GetTable(target.GetTest().GetChannels().front());
    }
    id = VFChooseTest(context.Registry(), target_);
    if (dataSet_ > static_cast<int>(into.dataSets.size()))
        VFFail(DaxToolError::UnknownColumn, "There is no data set " + std::to_string(dataSet_) + " in " + path, VVRoutine);
    const VDTable& from = source.GetTable(source.GetChannels().front());
    if (from.dataSets.size() != 1)
        VFFail(DaxToolError::UnknownColumn,
               "The input has " + std::to_string(from.dataSets.size()) + " data sets in place of one", VVRoutine);
    const std::vector<const VDColumn*> columns = VFMatchColumns(from, into);
    GrowingTable target(id.Get(), into, dataSet_ - 1);
    const std::int64_t rows = VFAppendRows(source, into, columns, target);
    target.Keep();

    VDJson unused = VDJson::array();
    for (const VDColumn& column : from.columns)
        if (std::find(columns.begin(), columns.end(), &column) == columns.end())
            unused.push_back(column.title);
    const std::int64_t total = into.dataSets[static_cast<std::size_t>(dataSet_ - 1)].rows + rows;
    if (context.IsJson())
        return {{"path", path}, {"rows", rows}, {"total", total}, {"unusedColumns", unused}};
    context.Out().PutLine(path + ": " + std::to_string(rows) + (rows == 1 ? " row more, " : " rows more, ") +
                          std::to_string(total) + " in all");
    for (const VDJson& title : unused)
        context.Out().PutLine("lost: column " + title.get<std::string>() + " has no place in the table");
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeAppendCommand()
{
    return std::make_unique<VDAppendCommand>();
}
