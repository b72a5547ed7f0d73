#include "DataWriter.h"
#include "Interrupt.h"
#include "TableTest.h"

#include <algorithm>

namespace {

/// Copies tables, block by block over all columns.
class TableWriter : public VDDataWriter
{
public:
    explicit TableWriter(const VDCopyPlan& plan) : plan_(plan), source_(static_cast<const VDTableTest&>(plan.source)) {}

    VDTestAccess& Access() override { return access_; }
    void WriteHeader(std::int64_t limit) override;
    void WriteData(std::int64_t limit, VDProgressBar& progress) override;

private:
    void WriteColumn(int channel, const VDColumn& column);
    void WriteDataSet(int channel, const VDTable& table, int dataSet, std::int64_t limit);
    void WriteStatusTexts(int channel, int sourceChannel, int dataSet, const VDColumn& column);
    void WriteRows(int channel, const VDChannel& from, int dataSet, std::int64_t limit, VDProgressBar& progress);
    void WriteBlock(int channel, int dataSet, const VDColumn& column, std::int64_t first, VDColumnBlock& block);
    /// Whether the target keeps status words for the column.
    bool HasStatus(int channel, int dataSet, const VDColumn& column) const;
    /// An enumeration where there are none becomes a column of its texts.
    bool BecomesText(const VDColumn& column) const
    {
        return column.type == DaxColumnType::Enumeration && !access_.Can(DaxMultiColumn::Enumerations);
    }

    const VDCopyPlan& plan_;
    const VDTableTest& source_;
    VDTestAccessOf<VDTableCalls> access_;
};

/// Texts that the format has no place for are found by a comparison later, and so is a status that it doesn't keep.
void TableWriter::WriteColumn(int channel, const VDColumn& column)
{
    const int type = BecomesText(column) ? DaxColumnType::Text : column.type;
    if (!column.status || XYAccAppendColWithStatus(access_.Get(), channel, type) == 0) {
        VFErrorClear();
        VFCheck(XYAccAppendCol(access_.Get(), channel, type));
    }
    XYAccSetColTitle(access_.Get(), channel, column.index, column.title.c_str());
    XYAccSetColUnits(access_.Get(), channel, column.index, column.units.c_str());
    XYAccSetColKeyword(access_.Get(), channel, column.index, column.keyword.c_str());
    VFErrorClear();
    if (column.type != DaxColumnType::Enumeration || BecomesText(column))
        return;
    VDArrayWithSort<long> values;
    VDStringArray texts;
    for (std::size_t option = 0; option < column.optionValues.size(); ++option) {
        values.AppendItem(column.optionValues[option]);
        texts.AppendItem(column.optionTexts[option].c_str());
    }
    VFCheck(XYAccSetColEnumOptions(access_.Get(), channel, column.index, &values, &texts));
}

bool TableWriter::HasStatus(int channel, int dataSet, const VDColumn& column) const
{
    char enabled = 0;
    return column.status && XYAccGetStatusWordEnabled(access_.Get(), channel, dataSet, column.index, &enabled) != 0 &&
           enabled != 0;
}

void TableWriter::WriteStatusTexts(int channel, int sourceChannel, int dataSet, const VDColumn& column)
{
    for (int bit = 0; bit < DaxStatusWord::NumBits && HasStatus(channel, dataSet, column); ++bit) {
        VDString text;
        if (XYAccGetStatusWordBitText(source_.Get(), sourceChannel, dataSet, column.index, bit, &text) != 0 &&
            !text.IsEmpty())
            XYAccSetStatusWordBitText(access_.Get(), channel, dataSet, column.index, bit, text);
    }
    VFErrorClear();
}

void TableWriter::WriteDataSet(int channel, const VDTable& table, int dataSet, std::int64_t limit)
{
    const VDDataSet& from = table.dataSets[static_cast<std::size_t>(dataSet)];
    VFCheck(XYAccAppendDataSet(access_.Get(), channel));
    XYAccSetDataSetTitle(access_.Get(), channel, dataSet, from.title.c_str());
    VFErrorClear();
    if (!access_.Can(DaxMultiColumn::Extendable))
        VFCheck(XYAccSetNumRows(access_.Get(), channel, dataSet, std::min(from.rows, limit)));
}

void TableWriter::WriteHeader(std::int64_t limit)
{
    const bool titled = access_.Can(DaxMultiColumn::ChannelTitles);
    for (int index = 0; index < static_cast<int>(plan_.channels.size()); ++index) {
        const VDChannel& channel = plan_.channels[static_cast<std::size_t>(index)];
        const VDTable& table = source_.GetTable(channel);
        if (titled)
            VFCheck(XYAccSetChanTitle(access_.Get(), index, channel.title.c_str()));
        for (const VDColumn& column : table.columns)
            WriteColumn(index, column);
        for (int dataSet = 0; dataSet < static_cast<int>(table.dataSets.size()); ++dataSet) {
            WriteDataSet(index, table, dataSet, limit);
            for (const VDColumn& column : table.columns)
                if (column.status)
                    WriteStatusTexts(index, channel.index, dataSet, column);
        }
    }
}

void TableWriter::WriteBlock(int channel, int dataSet, const VDColumn& column, std::int64_t first, VDColumnBlock& block)
{
    VDVariant texts;
    VDVariant* values = &block.Values();
    if (BecomesText(column)) {
        const std::int64_t count = values->GetBufferSize();
        texts.SetBufferSizeAndAllocate(VTVariantStringBuffer, count);
        for (std::int64_t index = 0; index < count; ++index)
            texts.SetStringAt(index, block.Text(index).c_str());
        values = &texts;
    }
    VFCheck(XYAccPutData(access_.Get(), channel, dataSet, column.index, first, values));
    const auto count = static_cast<std::int64_t>(block.Words().size());
    if (count > 0 && HasStatus(channel, dataSet, column))
        VFCheck(XYAccPutStatusWordData(access_.Get(), channel, dataSet, column.index, first, count, block.Words().data()));
}

void TableWriter::WriteRows(int channel, const VDChannel& from, int dataSet, std::int64_t limit, VDProgressBar& progress)
{
    const VDTable& table = source_.GetTable(from);
    const std::int64_t rows = std::min(table.dataSets[static_cast<std::size_t>(dataSet)].rows, limit);
    const std::int64_t block = source_.GetBlockRows(table.columns.size());
    std::vector<VDColumnBlock> blocks;
    for (const VDColumn& column : table.columns)
        blocks.emplace_back(source_.Get(), from.index, column);
    for (std::int64_t first = 1; first <= rows; first += block) {
        VDInterruptGuard::Check();
        const std::int64_t count = std::min(block, rows - first + 1);
        for (std::size_t column = 0; column < blocks.size(); ++column) {
            blocks[column].Read(dataSet, first, count);
            WriteBlock(channel, dataSet, table.columns[column], first, blocks[column]);
        }
        progress.Advance(count);
    }
}

void TableWriter::WriteData(std::int64_t limit, VDProgressBar& progress)
{
    for (int index = 0; index < static_cast<int>(plan_.channels.size()); ++index) {
        const VDChannel& from = plan_.channels[static_cast<std::size_t>(index)];
        for (int dataSet = 0; dataSet < static_cast<int>(source_.GetTable(from).dataSets.size()); ++dataSet)
            WriteRows(index, from, dataSet, limit, progress);
    }
}

}  // namespace

std::unique_ptr<VDDataWriter> VFMakeTableWriter(const VDCopyPlan& plan)
{
    return std::make_unique<TableWriter>(plan);
}
