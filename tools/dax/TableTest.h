#pragma once

#include "DataTest.h"
#include "TestAccessOf.h"

#include "vdbase/VDStringArray.h"

/// A column of a channel's table.
struct VDColumn
{
    int index = 0;
    std::string title;
    std::string units;
    std::string keyword;
    int type = 0;         ///< a `DaxColumnType`
    bool status = false;  ///< it keeps a status word for each value
    std::vector<long> optionValues;
    std::vector<std::string> optionTexts;  ///< of an enumeration
};

struct VDDataSet
{
    std::string title;
    std::int64_t rows = 0;
};

/// The table of one channel.
struct VDTable
{
    std::vector<VDColumn> columns;
    std::vector<VDDataSet> dataSets;
};

/// Data types of columns as words: "float", "text", "enumeration" ...
std::string VFColumnTypeWord(int type);

/// Values of one column, a block at a time, with what their status says.
class VDColumnBlock
{
public:
    VDColumnBlock(VDXYAcc* acc, int channel, const VDColumn& column) : acc_(acc), channel_(channel), column_(column) {}

    /// Reads so many rows of a data set; throws if there are fewer.
    void Read(int dataSet, std::int64_t first, std::int64_t count);
    bool IsValid(std::int64_t index) const { return valid_.empty() || valid_[static_cast<std::size_t>(index)] != 0; }
    /// A cell of CSV, empty for a value that isn't valid; the text of an enumeration's value.
    void PutCsv(VDTextSink& out, std::int64_t index) const;
    /// The value as JSON, null if it isn't valid; the number of an enumeration's value.
    void PutJson(VDTextSink& out, std::int64_t index) const;
    /// The same as a document.
    VDJson ToJson(std::int64_t index) const;
    /// The value as text, whatever its type.
    std::string Text(std::int64_t index) const;
    VDVariant& Values() { return values_; }
    /// Status words whose bit `DaxStatusWord::Invalid` tells which values aren't valid; empty for a column without.
    std::vector<std::uint16_t>& Words() { return words_; }

private:
    bool IsText() const { return column_.type == DaxColumnType::Text || column_.type == DaxColumnType::DateTime; }
    char* PutNumber(char* at, std::int64_t index, bool json) const;
    const std::string* FindOption(std::int64_t index) const;

    VDXYAcc* acc_;
    int channel_;
    const VDColumn& column_;
    VDVariant values_;
    std::vector<char> valid_;
    std::vector<std::uint16_t> words_;
};

/// A multi-column test that is open for reading.
class VDTableTest : public VDDataTest
{
public:
    explicit VDTableTest(VDFileId* id);

    VDTestAccess* Access() const override { return &access_; }
    VDXYAcc* Get() const { return access_.Get(); }
    const VDTable& GetTable(const VDChannel& channel) const { return tables_[static_cast<std::size_t>(channel.index)]; }
    /// Rows that suit the format for blocks of so many columns together, in bounds of memory.
    std::int64_t GetBlockRows(std::size_t columns) const;
    /// Rows of the longest data set.
    std::int64_t CountRows(const VDChannel& channel) const;

    VDJson DescribeChannel(const VDChannel& channel) const override;
    std::int64_t CountValues(const VDChannel& channel, std::int64_t limit) const override;
    const char* ValueWord() const override { return "rows"; }
    VDJson Sample(const VDChannel& channel) const override;
    void AddLimits(const VDChannel& channel, bool always, VDJson& described) const override;
    void PrintChannels(const VDJson& described, VDTextSink& out) const override;

private:
    VDTable ReadTable(int channel) const;
    VDColumn ReadColumn(int channel, int index, bool hasDataSets) const;

    mutable VDTestAccessOf<VDTableCalls> access_;
    std::vector<VDTable> tables_;
};
