// Tables in storage files. The input is the content of a table, as bytes or as changes of a sound one, and what the streams
// of the file hold: a byte that chooses, a byte that says how the rest is divided, the content, the streams. A file is made
// of it whose checksums are right, and used through the data object and as a host does.

#include "FuzzFile.h"

#include "daxlib/DaxHandle.h"
#include "vdstore/LQDataManager.h"

#include <algorithm>
#include <vector>

namespace {

constexpr int Streams = 6;
constexpr std::int64_t MostRows = 3'000;

/// A file with a table whose content and streams are given.
bool MakeFile(const char* filename, std::string_view content, std::string_view streams)
{
    LQDataManager& manager = *LQGetDataManager();
    Z4File* const file = manager.GetFileManager()->CreateFile(filename, nullptr);
    if (file == nullptr || !file->SetSubType(12))
        std::abort();
    Z4Node* const node = file->GetRoot()->AdoptNode("MultiColumn", LQObject::KindResultsTable, nullptr);
    node->SetContent(std::string(content));
    const std::size_t part = streams.size() / Streams;
    for (std::size_t i = 0; i < Streams; ++i) {
        const std::string_view bytes = streams.substr(i * part, part);
        node->AddStream(Z4Size::Record32K)->Write(0, static_cast<std::int64_t>(bytes.size()), bytes.data());
    }
    return node->Commit() && manager.GetFileManager()->CloseFile(file, false);
}

/// The content of a table with a column of each type, two data sets and no streams, which the input changes.
std::string SoundContent(const char* filename)
{
    LQDataManager& manager = *LQGetDataManager();
    Z4File* const file = manager.GetFileManager()->CreateFile(filename, nullptr);
    LQResultsTable* const table = manager.AdoptResultsTable(file->GetRoot(), "MultiColumn", nullptr, Z4Size::Record32K);
    for (const std::int32_t type : {std::int32_t(Z4TypeString), std::int32_t(Z4TypeShort), std::int32_t(LQTypeEnumeration)})
        table->AddColumn(type, "Title", "s", "Key", true);
    table->GetColumn(2, 0)->SetEnumOptions({{1, "one"}});
    table->GetColumn(0, 0)->SetStatusBitText(3, "late");
    table->AppendDataSet(0, "Set");
    table->SetRowCount(100, 0, 0);
    table->GetMapper()->SetChannelNumber(1, 0);
    manager.Flush(table);
    std::string content = file->GetRoot()->GetNode("MultiColumn")->GetContent();
    manager.Close(table, false);
    manager.GetFileManager()->CloseFile(file, false);
    // The streams of the cells, which stand at the end in front of the mapper: values, bytes and status words.
    const std::size_t cells = content.find("Set") + 3;
    for (std::size_t cell = 0; cell < Streams; ++cell)
        content[cells + cell * 4] = static_cast<char>(cell + 1);
    return content;
}

void UseCell(LQResultsTable& table, int channel, int column, int dataSet)
{
    LQArrayChannel* const access = table.GetArrayChannel(column, channel, dataSet);
    const std::int64_t rows = table.GetRowCount(dataSet, channel);
    for (const std::int64_t first : {std::int64_t(0), rows / 2, std::max<std::int64_t>(rows - 7, 0)}) {
        const std::int64_t count = std::min(MostRows, rows - first);
        std::vector<std::uint16_t> words(static_cast<std::size_t>(MostRows));
        std::vector<std::int64_t> numbers(static_cast<std::size_t>(MostRows));
        std::vector<VDString> texts(static_cast<std::size_t>(MostRows));
        access->GetStatus(first, count, words.data());
        if (auto* const all = dynamic_cast<LQTextArrayChannel*>(access))
            all->GetTexts(first, count, texts.data());
        else if (auto* const shorts = dynamic_cast<LQArrayChannelEx<std::int16_t>*>(access))
            shorts->GetArray(first, count, reinterpret_cast<std::int16_t*>(words.data()));
        else if (auto* const huges = dynamic_cast<LQArrayChannelEx<std::int64_t>*>(access))
            huges->GetArray(first, count, numbers.data());
    }
}

void UseTable(const char* filename, bool writable)
{
    LQDataManager& manager = *LQGetDataManager();
    Z4File* const file = manager.GetFileManager()->OpenFile(filename, writable);
    if (file == nullptr)
        return;
    if (LQResultsTable* const table = manager.OpenResultsTable(file->GetRoot(), "MultiColumn")) {
        for (int channel = 0; channel < std::min(table->GetChannelCount(), 5); ++channel)
            for (int dataSet = 0; dataSet < std::min(table->GetDataSetCount(channel), 5); ++dataSet)
                for (int column = 0; column < std::min(table->GetColumnCount(channel), 10); ++column) {
                    UseCell(*table, channel, column, dataSet);
                    const VDString text = "a text";
                    auto* const texts = dynamic_cast<LQTextArrayChannel*>(table->GetArrayChannel(column, channel, dataSet));
                    if (writable && texts != nullptr)
                        texts->PutTexts(5, 1, &text);
                }
        if (writable && table->GetChannelCount() > 0 && table->SetRowCount(3, 0, 0))
            table->RemoveChannel(0);
        table->RefreshMetadata(false, LQObject::ALL_CHANNELS);
        manager.Close(table, writable);
    }
    manager.GetFileManager()->CloseFile(file, writable);
}

/// The way of a host: identified, opened, read.
void UseAsTest(const char* filename)
{
    const VDFileIdHandle file(FIDCreate());
    const VDFileInfoHandle info(FINFCreate());
    const VDXYAccHandle acc(XYAccCreate());
    VDFileIdArrayHandle tests;
    VDFileIdHandle test;
    if (!FIDSetFilename(file.Get(), VTNameFormFile, filename, "") ||
        !FINFIdentifyFile(info.Get(), file.Get(), 1, tests.Out()) || !FIAGetAt(tests.Get(), 0, test.Out()) ||
        !XYAccSetId(acc.Get(), test.Get(), 0) || !XYAccOpen(acc.Get(), VTXyAccOpenRead))
        return;
    int columns = 0;
    std::int64_t rows = 0;
    std::vector<float> floats(static_cast<std::size_t>(MostRows));
    std::vector<char> valid(static_cast<std::size_t>(MostRows));
    XYAccGetNumCols(acc.Get(), 0, &columns);
    XYAccGetNumRows(acc.Get(), 0, 0, &rows);
    for (int column = 0; column < std::min(columns, 10); ++column) {
        std::int64_t numRead = 0;
        VDVariant values;
        VDVariant other;
        VDStringArray texts;
        VDArrayWithSort<long> options;
        char isValid = 0;
        char hasStatus = 0;
        XYAccGetData(acc.Get(), 0, 0, column, 1, MostRows, &values);
        XYAccGetDataF(acc.Get(), 0, 0, column, 1, MostRows, &numRead, floats.data());
        XYAccGetDataValidData(acc.Get(), 0, 0, column, 1, MostRows, &numRead, valid.data());
        XYAccGetStatusElement(acc.Get(), 0, 0, column, 4, &values, &isValid, &hasStatus, &texts);
        XYAccGetColEnumOptions(acc.Get(), 0, column, &options, &texts);
        if (rows < 100'000)  // rows that were never written cost time alone
            XYAccGetColLimits(acc.Get(), 0, 0, column, &values, &other);
    }
    LQChannelMapper* mapper = nullptr;
    XYAccGetMetaData(acc.Get(), &mapper);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file(".z4m");
    if (size < 2)
        return 0;
    const char* const filename = file.Write("");
    static const std::string sound = SoundContent(filename);
    std::string_view input = FuzzText(data, size);
    const bool isChange = (input[0] & 1) == 0;
    const std::size_t divided = std::min<std::size_t>(static_cast<std::uint8_t>(input[1]) * 4U, size - 2);
    const std::string_view given = input.substr(2, divided);
    std::string content = isChange ? sound : std::string(given);
    // A change is a place, counted in four bytes or less, and a byte there.
    for (std::size_t at = 0; isChange && at + 2 < given.size(); at += 3)
        content[(static_cast<std::uint8_t>(given[at]) + static_cast<std::uint8_t>(given[at + 1]) * 256U) % content.size()] =
            given[at + 2];
    if (!MakeFile(filename, content, input.substr(2 + divided)))
        return 0;
    UseTable(filename, false);
    if ((input[0] & 2) != 0)
        UseAsTest(filename);
    if ((input[0] & 4) != 0)
        UseTable(filename, true);
    VDStringArray findings;
    if (!LQGetDataManager()->GetFileManager()->CheckFile(filename, &findings))
        std::abort();
    return 0;
}
