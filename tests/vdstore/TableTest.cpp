#include "ObjectFaults.h"
#include "support/TestSupport.h"
#include "vdstore/LQDataManager.h"
#include "vdstore/VDStoreErrorCodes.h"

#include <algorithm>
#include <utility>

namespace {

/// A table in a file of its own; ended with the object.
class Store
{
public:
    Store(const std::string& name, bool create)
        : file_(create ? manager_.GetFileManager()->CreateFile(name.c_str(), nullptr)
                       : manager_.GetFileManager()->OpenFile(name.c_str(), false))
    {
        if (file_ != nullptr)
            table_ = create ? manager_.AdoptResultsTable(file_->GetRoot(), "Table", nullptr, Z4Size::Record32K)
                            : manager_.OpenResultsTable(file_->GetRoot(), "Table");
    }
    ~Store()
    {
        if (table_ != nullptr)
            manager_.Close(table_, false);
        if (file_ != nullptr)
            manager_.GetFileManager()->CloseFile(file_, false);
    }
    LQResultsTable* operator->() const { return table_; }
    LQResultsTable* Get() const { return table_; }
    bool Flush() const { return manager_.Flush(table_); }
    Z4File* File() const { return file_; }

private:
    LQDataManager& manager_ = *LQGetDataManager();
    Z4File* file_;
    LQResultsTable* table_ = nullptr;
};

constexpr std::int32_t AllTypes[] = {Z4TypeShort,  Z4TypeLong,   Z4TypeHuge,     Z4TypeFloat,
                                     Z4TypeDouble, Z4TypeString, LQTypeDateTime, LQTypeEnumeration};

VDString TextOf(std::int64_t row)
{
    const auto length = static_cast<std::size_t>(row % 97 + (row == 500 ? 300'000 : 0));
    return row % 7 == 0 ? VDString() : VDString(std::string(length, 'x') + std::to_string(row));
}

/// Writes, or compares, rows of a column whose values go by their rows.
bool Each(LQArrayChannel* access, std::int64_t first, std::int64_t count, bool write)
{
    const auto numbers = [&]<class T>(LQArrayChannelEx<T>* channel) {
        std::vector<T> expected(static_cast<std::size_t>(count));
        for (std::size_t i = 0; i < expected.size(); ++i)
            expected[i] = static_cast<T>((first + static_cast<std::int64_t>(i)) * 3 - 5);
        std::vector<T> found(expected.size());
        return write ? channel->PutArray(first, count, expected.data())
                     : channel->GetArray(first, count, found.data()) && found == expected;
    };
    if (auto* const texts = dynamic_cast<LQTextArrayChannel*>(access)) {
        std::vector<VDString> expected;
        for (std::int64_t row = first; row < first + count; ++row)
            expected.push_back(TextOf(row));
        std::vector<VDString> found(expected.size());
        return write ? texts->PutTexts(first, count, expected.data())
                     : texts->GetTexts(first, count, found.data()) && found == expected;
    }
    if (auto* const shorts = dynamic_cast<LQArrayChannelEx<std::int16_t>*>(access))
        return numbers(shorts);
    if (auto* const longs = dynamic_cast<LQArrayChannelEx<std::int32_t>*>(access))
        return numbers(longs);
    if (auto* const huges = dynamic_cast<LQArrayChannelEx<std::int64_t>*>(access))
        return numbers(huges);
    if (auto* const floats = dynamic_cast<LQArrayChannelEx<float>*>(access))
        return numbers(floats);
    auto* const doubles = dynamic_cast<LQArrayChannelEx<double>*>(access);
    return doubles != nullptr && numbers(doubles);
}

}  // namespace

TEST(ResultsTable, KeepsColumnsOfAllTypes)
{
    const TestFolder folder;
    const std::string name = folder.Name("t.z4m");
    {
        const Store store(name, true);
        ASSERT_NE(store.Get(), nullptr);
        for (const std::int32_t type : AllTypes)
            ASSERT_TRUE(store->AddColumn(type, ("T" + std::to_string(type)).c_str(), "kN", "K", type != Z4TypeLong));
        store->GetColumn(7, 0)->SetEnumOptions({{-3, "low"}, {9, ""}});
        EXPECT_TRUE(store->GetColumn(0, -1)->SetStatusBitText(14, "late"));
        EXPECT_FALSE(store->GetColumn(0, -1)->SetStatusBitText(15, "x"));
        ASSERT_TRUE(store->AdjustChannelCount(2) && store->AppendDataSet(0, "first") && store->AppendDataSet(0, "second"));
        store->GetMapper()->SetChannelNumber(4, 0);
        // Two data sets of different rows, grown in turn.
        for (std::int64_t first = 0; first < 5000; first += 1000)
            for (int column = 0; column < 8; ++column)
                ASSERT_TRUE(Each(store->GetArrayChannel(column, 0, 0), first, 1000, true) &&
                            Each(store->GetArrayChannel(column, 0, 1), first / 10, 100, true)) << column;
        const std::uint16_t words[] = {0x8001, 0, 5};
        ASSERT_TRUE(store->GetArrayChannel(5, 0, 1)->PutStatus(10, 3, words));
        ASSERT_TRUE(store->GetDoubleArrayChannel(4, 1) != nullptr && store->SetRowCount(3, 0, 1) && store.Flush());
        EXPECT_EQ(store->GetLongArrayChannel(0, 0), nullptr);
        ExpectError(VDStoreError::WrongDataType);
    }
    const Store store(name, false);
    ASSERT_NE(store.Get(), nullptr);
    EXPECT_EQ(store->GetRowCount(0, 0), 5000);
    EXPECT_EQ(store->GetRowCount(1, 0), 500);
    VDString title;
    EXPECT_TRUE(store->GetDataSetTitle(title, 1, 0) && title == "second");
    EXPECT_EQ(store->GetMapper()->IndexFromNumber(4, false), 0);
    for (int column = 0; column < 8; ++column) {
        EXPECT_EQ(store->GetColumn(column, 1)->GetDataType(0), AllTypes[column]);
        EXPECT_TRUE(Each(store->GetArrayChannel(column, 0, 0), 0, 5000, false)) << column;
        EXPECT_TRUE(Each(store->GetArrayChannel(column, 0, 1), 3, 490, false)) << column;
    }
    EXPECT_EQ(store->GetColumn(7, 0)->GetEnumOptions()[0].text, "low");
    EXPECT_EQ(store->GetColumn(0, 0)->GetStatusBitText(14), "late");
    std::uint16_t words[5] = {};
    EXPECT_TRUE(store->GetArrayChannel(5, 0, 1)->GetStatus(9, 5, words));
    EXPECT_TRUE(words[0] == 0 && words[1] == 0x8001 && words[3] == 5 && words[4] == 0);
    double zeros[3] = {1, 1, 1};
    EXPECT_TRUE(store->GetDoubleArrayChannel(4, 1)->GetArray(0, 3, zeros) && zeros[0] == 0 && zeros[2] == 0);
    ExpectFailure(store->GetDoubleArrayChannel(4, 1)->GetArray(1, 3, zeros), VDStoreError::OutOfRange);
}

TEST(ResultsTable, WritesOverAndCuts)
{
    const TestFolder folder;
    const Store store(folder.Name("t.z4m"), true);
    ASSERT_TRUE(store->AddColumn(Z4TypeString, "", "", "", false) && store->AddShortColumn("", "", "", 0));
    LQTextArrayChannel* const texts = store->GetTextArrayChannel(0, 0);
    const VDString first[] = {"one", "two", "three"};
    const VDString second[] = {"a longer one", "2", ""};
    ASSERT_TRUE(texts->PutTexts(0, 3, first) && texts->PutTexts(5, 3, second) && texts->PutTexts(0, 3, second) &&
                store.Flush() && texts->PutTexts(1, 1, first + 1));
    VDString found[8];
    ASSERT_TRUE(texts->GetTexts(0, 8, found));
    const VDString expected[] = {"a longer one", "two", "", "", "", "a longer one", "2", ""};
    for (int row = 0; row < 8; ++row)
        EXPECT_EQ(found[row], expected[row]) << row;
    // A cut is a cut: what comes behind it later is empty.
    ASSERT_TRUE(store->SetRowCount(1, 0, 0) && store->SetRowCount(8, 0, 0) && texts->GetTexts(0, 8, found));
    EXPECT_TRUE(found[0] == "a longer one" && found[1].IsEmpty() && found[6].IsEmpty());
    EXPECT_FALSE(store->SetRowCount(LQResultsTable::LargestRows + 1, 0, 0));
    EXPECT_TRUE(store->AdjustChannelCount(3) && Each(store->GetArrayChannel(1, 2), 0, 10, true) && store->RemoveChannel(0));
    EXPECT_TRUE(store.Flush() && Each(store->GetArrayChannel(1, 1), 0, 10, false));
}

TEST(ResultsTable, RefusesWhatContradictsItself)
{
    const TestFolder folder;
    const std::string name = folder.Name("t.z4m");
    // A content whose bytes are changed one after the other is read or refused, and what is read can be used.
    std::string content;
    {
        const Store store(name, true);
        ASSERT_TRUE(store->AddColumn(Z4TypeString, "Title", "s", "Key", true) && store->AddShortColumn("", "", "", 0) &&
                    Each(store->GetArrayChannel(0, 0), 0, 50, true) && Each(store->GetArrayChannel(1, 0), 0, 50, true) &&
                    store.Flush());
        content = store.File()->GetRoot()->GetNode("Table")->GetContent();
    }
    int refused = 0;
    for (std::size_t at = 0; at < content.size(); ++at)
        for (const char value : {'\0', '\x01', '\x7f', '\xff'}) {
            LQDataManager& manager = *LQGetDataManager();
            Z4File* const file = manager.GetFileManager()->OpenFile(name.c_str(), false);
            std::string changed = content;
            changed[at] = value;
            file->GetRoot()->GetNode("Table")->SetContent(changed);
            LQResultsTable* const table = manager.OpenResultsTable(file->GetRoot(), "Table");
            refused += table == nullptr ? 1 : 0;
            if (table != nullptr && table->GetChannelCount() > 0 && table->GetColumnCount() > 0 &&
                table->GetRowCount(0, 0) >= 50)
                if (auto* const texts = dynamic_cast<LQTextArrayChannel*>(table->GetArrayChannel(0, 0))) {
                    VDString found[50];
                    texts->GetTexts(0, 50, found);
                }
            if (table != nullptr)
                manager.Close(table, false);
            manager.GetFileManager()->CloseFile(file, false);
        }
    EXPECT_GT(refused, 60);
}

namespace {

/// With every version columns of both kinds grow and a status word changes; the first two bring a data set each.
constexpr ObjectScenario Scenario = {
    .adopt = [](LQDataManager& manager, Z4Storage* storage) -> LQObject* {
        return manager.AdoptResultsTable(storage, "Table", nullptr, Z4Size::Record32K);
    },
    .write =
        [](LQObject& object, int version) {
            auto& table = static_cast<LQResultsTable&>(object);
            const bool isSetUp = version > 0 || (table.AddColumn(Z4TypeString, "", "", "", true) &&
                                                 table.AddDoubleColumn("", "", "", 0));
            bool good = isSetUp && (version > 1 || table.AppendDataSet(0, std::to_string(version).c_str()));
            const std::uint16_t word = static_cast<std::uint16_t>(version);
            for (int set = 0; good && set < std::min(version + 1, 2); ++set)
                good = Each(table.GetArrayChannel(0, 0, set), (version - set) * 8, 8, true) &&
                       Each(table.GetArrayChannel(1, 0, set), (version - set) * 8, 8, true) &&
                       table.GetArrayChannel(0, 0, set)->PutStatus(3, 1, &word);
            return good;
        },
    .holds =
        [](LQObject& object, int version) {
            auto& table = static_cast<LQResultsTable&>(object);
            if (version == 0 || table.GetChannelCount() == 0)
                return version == 0 && table.GetChannelCount() == 0;
            bool good = table.GetDataSetCount(0) == std::min(version, 2);
            for (int set = 0; good && set < std::min(version, 2); ++set) {
                const std::int64_t rows = (version - set) * 8;
                std::uint16_t word = 0;
                good = table.GetRowCount(set, 0) == rows && Each(table.GetArrayChannel(0, 0, set), 0, rows, false) &&
                       Each(table.GetArrayChannel(1, 0, set), 0, rows, false) &&
                       table.GetArrayChannel(0, 0, set)->GetStatus(3, 1, &word) && word == version - 1;
            }
            return good;
        },
    .versions = 2,
};

}  // namespace

TEST(ResultsTable, SurvivesFaults)
{
    ExpectSurvivesFaults(Scenario);
}
