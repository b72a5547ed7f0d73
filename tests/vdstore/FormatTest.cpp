#include "support/TestSupport.h"
#include "vdstore/LQDataManager.h"

#include <sstream>

// The worked example of docs/storage-format.md, byte for byte.

namespace {

/// The bytes of the dump in a document; what it leaves out is 0.
std::string ReadDump(const std::string& document)
{
    std::string bytes;
    std::istringstream lines(document);
    for (std::string line; std::getline(lines, line);) {
        std::size_t digits = 0;
        if (line.size() < 57 || line[8] != ':' || line.find_first_not_of("0123456789abcdef") != 8)
            continue;
        const std::size_t offset = std::stoul(line, &digits, 16);
        bytes.resize(offset);
        std::istringstream columns(line.substr(10, 47));
        for (std::string byte; columns >> byte;)
            bytes += static_cast<char>(std::stoi(byte, nullptr, 16));
    }
    return bytes;
}

}  // namespace

TEST(StorageFormat, IsAsDocumented)
{
    const std::string expected = ReadDump(TestReadFile(DAX_DOCS "/storage-format.md"));
    ASSERT_EQ(expected.size(), 0x41c0U);
    const TestFolder folder;
    const std::string name = folder.Name("example.z4t");
    LQDataManager& manager = *LQGetDataManager();
    Z4File* file = manager.GetFileManager()->CreateFile(name.c_str(), nullptr);
    ASSERT_TRUE(file->SetSubType(11));
    LQTimeSeries* series = manager.AdoptTimeSeries(file->GetRoot(), "TimeSeries", nullptr, Z4Size::Record32K);
    const float points[] = {1, 2, -2};
    ASSERT_TRUE(series->AdjustChannelCountSinglePrecision(1) && series->GetMapper()->SetChannelNumber(1, 0) &&
                series->SetChanTitle(0, "Force") && series->SetYUnits(0, "kN") && series->SetSampleRate(0, 100) &&
                series->SetData(0, 3, points, 0));
    series->GetMapper()->AdoptMetaDataSet("Sensor", nullptr, 0)->AddDouble("Gain", 2.5);
    ASSERT_TRUE(manager.Close(series, true) && manager.GetFileManager()->CloseFile(file, true));
    const std::string written = TestReadFile(name);
    ASSERT_EQ(written.size(), expected.size());
    for (std::size_t i = 0; i < written.size(); ++i)
        ASSERT_EQ(static_cast<int>(written[i]), static_cast<int>(expected[i])) << "offset " << std::hex << i;

    // And the documented bytes are read as what they say.
    folder.Write("example.z4t", expected);
    file = manager.GetFileManager()->OpenFile(name.c_str(), false);
    ASSERT_NE(file, nullptr);
    series = manager.OpenTimeSeries(file->GetRoot(), "TimeSeries");
    ASSERT_NE(series, nullptr);
    float read[3] = {};
    EXPECT_TRUE(series->GetData(0, 3, nullptr, read, 0));
    EXPECT_EQ(read[2], -2);
    double gain = 0;
    EXPECT_TRUE(series->GetMapper()->GetDoubleMetaDataItem("Gain", &gain, 0));
    EXPECT_EQ(gain, 2.5);
    EXPECT_TRUE(manager.Close(series, false) && manager.GetFileManager()->CloseFile(file, false));
}
