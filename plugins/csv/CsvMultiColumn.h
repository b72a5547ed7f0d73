#pragma once

#include "CsvFormat.h"
#include "CsvTable.h"
#include "CsvWriter.h"

#include "daxlib/FID.h"
#include "daxlib/MultiColumnPlugin.h"

class LQChannelMapper;

/// A table as text that is open for multi-column access: one channel with one data set. Every failure is recorded.
class CsvMultiColumn
{
public:
    bool SetId(VDFileId* id);
    bool Open(int mode);
    bool Close();
    bool Flush() { return !writer_ || writer_->Publish("CsvXY::Flush"); }
    bool GetCapability(int capability) const;
    bool GetValue(long dataSet, long column, int key, VDVariant& value);
    bool PutValue(long dataSet, long column, int key, const VDVariant& value);

    bool AppendColumn(int type, bool withStatus, const char* routine);
    bool AppendDataSet();
    bool GetFloats(long column, std::int64_t first, std::int64_t count, float* values);
    bool PutFloats(long column, std::int64_t first, std::int64_t count, const float* values);
    /// @param values  a buffer of `count` elements of the column's type
    bool GetData(long column, std::int64_t first, std::int64_t count, VDVariant& values);
    bool PutData(long column, std::int64_t first, const VDVariant& values);
    bool GetElement(long column, std::int64_t row, VDVariant& value);
    bool PutElement(long column, std::int64_t row, const VDVariant& value);
    bool GetValid(long column, std::int64_t first, std::int64_t count, char* valid);
    bool GetWords(long column, std::int64_t first, std::int64_t count, std::uint16_t* words);
    bool PutWords(long column, std::int64_t first, std::int64_t count, const std::uint16_t* words);
    bool AddMetaData(LQChannelMapper& mapper) const;
    bool Fail(int code, const char* routine, const std::string& detail = {}) const;

private:
    bool Create(const char* routine);
    bool Update(const char* routine);
    const std::vector<CsvColumn>& GetColumns() const;
    const CsvDialect& GetDialect() const;
    std::int64_t GetNumRows() const;
    bool Check(long column, std::int64_t first, std::int64_t count, const char* routine) const;
    bool CheckPut(long column, std::int64_t first, std::int64_t count, const char* routine);
    /// How many of the rows lie in the file that was there, the others in the writer.
    std::int64_t CountInFile(std::int64_t first, std::int64_t count) const;
    template <class Value>
    bool GetNumbers(std::size_t column, std::int64_t first, std::int64_t count, Value* values, const char* routine);
    bool GetTexts(std::size_t column, std::int64_t first, std::int64_t count, VDString* values, const char* routine);
    template <class Value>
    bool PutNumbers(std::size_t column, std::int64_t first, std::int64_t count, const Value* values, const char* routine);
    bool PutTexts(std::size_t column, std::int64_t first, std::int64_t count, const VDString* values, const char* routine);
    VDVariant GetFileValue(int key) const;
    VDVariant GetColumnValue(const CsvColumn& column, int key) const;
    bool PutText(long column, int key, const VDString& text);

    VDFileId* id_ = nullptr;
    std::string filename_;
    CsvSettings settings_;
    std::unique_ptr<CsvTable> table_;    ///< of a file that is there
    std::unique_ptr<CsvWriter> writer_;  ///< while the table can be written
    bool hasDataSet_ = false;
    std::string unfit_;
};
