#include "support/TestTimeSeries.h"

#include "daxlib/Z4FF.h"
#include "vdbase/VDHeader.h"
#include "vdstore/LQDataManager.h"

namespace {

std::string MakeHeader(int type, int subType)
{
    std::string bytes(VDHeader::Size, '\0');
    VDHeader(type, subType, VDHeader::Size).GetHeader(bytes.data());
    return bytes;
}

/// The sub id that identification finds; -1 if it doesn't claim the file.
int Identify(const std::string& bytes)
{
    const VDFileIdHandle id(FIDCreate());
    VDIo io("test.z4t");
    char claimed = 1;
    int fileId = 0;
    int subId = -1;
    EXPECT_TRUE(Z4FFIdentifyFile(id.Get(), bytes.data(), static_cast<int>(bytes.size()), &io, nullptr, &claimed));
    if (claimed != 0) {
        EXPECT_TRUE(FIDGetFileId(id.Get(), &fileId, &subId));
        EXPECT_EQ(fileId, 154);
    }
    return subId;
}

/// The answer as text; "none" if there is none.
std::string Ask(const char* key, long fileId, long subId)
{
    const VDVariant arguments = VDVariant::FromList({VDVariant(fileId), VDVariant(subId), VDVariant("")});
    VDVariant answer;
    Z4FFGetValue(key, &arguments, &answer);
    VDString text("none");
    answer[0].ConvertToString(&text);
    return text.Str();
}

/// A file with an object of two float channels, of which the first has no title.
std::string MakeFile(const TestFolder& folder, int subType, int channels)
{
    const std::string name = folder.Name("made.z4t");
    LQDataManager& data = *LQGetDataManager();
    Z4File* const file = data.GetFileManager()->CreateFile(name.c_str(), nullptr);
    EXPECT_TRUE(file->SetSubType(subType));
    LQTimeSeries* const series = data.AdoptTimeSeries(file->GetRoot(), "TimeSeries", nullptr, Z4Size::Record32K);
    EXPECT_TRUE(series->AdjustChannelCountSinglePrecision(channels));
    for (int index = 0; index < channels; ++index)
        EXPECT_TRUE(series->GetMapper()->SetChannelNumber(10 + index, index));
    if (channels > 1) {
        EXPECT_TRUE(series->SetChanTitle(1, "Force"));
        EXPECT_TRUE(series->SetYUnits(1, "kN"));
    }
    EXPECT_TRUE(data.Close(series, true));
    EXPECT_TRUE(data.GetFileManager()->CloseFile(file, true));
    return name;
}

}  // namespace

TEST(StorageIdentificationTest, ClaimsWhatTheHeaderSays)
{
    for (const int subId : {2, 4, 5, 6, 7, 10, 11, 12})
        EXPECT_EQ(Identify(MakeHeader(154, subId)), subId);
    for (const int subId : {0, 3, 13, 14, 15, 16, -1})
        EXPECT_EQ(Identify(MakeHeader(154, subId)), -1) << subId;
    EXPECT_EQ(Identify(MakeHeader(153, 11)), -1);
    EXPECT_EQ(Identify(MakeHeader(154, 11).substr(0, 511)), -1);
    EXPECT_EQ(Identify(std::string(512, 'x')), -1);
}

TEST(StorageIdentificationTest, AnswersAboutItsTypes)
{
    EXPECT_EQ(Ask("FormatKeyword", 154, 4), "Z4TimeSeries(VG4.0)");
    EXPECT_EQ(Ask("FormatKeyword", 154, 12), "none");
    EXPECT_EQ(Ask("DefaultExtension", 154, 12), "z4m");
    EXPECT_EQ(Ask("FormatKeyword", 7, 11), "none");
    EXPECT_EQ(Ask("DefaultExtension", 7, 11), "z4t");
    EXPECT_EQ(Ask("DefaultExtension", 154, 3), "none");
    EXPECT_EQ(Ask("NameForm", 154, 3), "0");
    EXPECT_EQ(Ask("Colour", 154, 11), "none");

    int index = 0;
    VDString name;
    int value = 0;
    char more = 0;
    std::string capabilities;
    for (const int subId : {5, 11})
        for (index = 0; Z4FFGetNextCapability(154, subId, &index, &name, &value, &more), more != 0;)
            capabilities += name.Str() + std::to_string(value) + " ";
    EXPECT_EQ(capabilities, "Readable1 Writable0 Readable1 Writable1 ");
    EXPECT_EQ(index, 3);

    int type[3] = {};
    VDString text[2];
    std::string types;
    for (index = 0; Z4FFGetNextSupportedType(&index, &type[0], &type[1], &type[2], &text[0], &text[1], &more), more != 0;)
        types += std::to_string(type[1]) + " " + std::to_string(type[2]) + " " + text[0].Left(8).Str() + " " +
                 text[1].Str() + "\n";
    EXPECT_EQ(types, "4 1 8F517AAA Vardo Z4 time series(VG4.0)\n"
                     "11 1 8F517AAA Vardo Z4 time series\n"
                     "6 2 FB3DAE1E Vardo Z4 histogram\n");
}

TEST(StorageIdentificationTest, LoadsTheChannelList)
{
    const TestFolder folder;
    const VDFileIdHandle id = IdentifyTest(MakeFile(folder, 11, 2));
    EXPECT_EQ(TestValue<FIDGetChanNumber>(id.Get(), 0), 10);
    EXPECT_EQ(TestValue<FIDGetChanTitle>(id.Get(), 0), "");
    EXPECT_EQ(TestValue<FIDGetChanTitle>(id.Get(), 1), "Force");
    EXPECT_EQ(TestValue<FIDGetChanUnits>(id.Get(), 1), "kN");

    const auto load = [](const std::string& name) {
        const VDFileIdHandle other(FIDCreate());
        const VDFileInfoHandle info(FINFCreate());
        VDFileIdArrayHandle tests;
        EXPECT_TRUE(FIDSetFilename(other.Get(), VTNameFormFile, name.c_str(), ""));
        return FINFIdentifyFile(info.Get(), other.Get(), 1, tests.Out());
    };
    EXPECT_FALSE(load(MakeFile(folder, 11, 0)));
    ExpectError(-329288, "Z4 time series file contains no channels" + folder.Name("made.z4t"), "Z4FFLoadFileInfo");
    VDIo io(MakeFile(folder, 5, 1).c_str());
    FIDSetFileId(id.Get(), 154, 5);
    EXPECT_FALSE(Z4FFLoadFileInfo(id.Get(), nullptr, 0, &io));
    ExpectError(-329281, "This is an unsupported Z4 file type" + folder.Name("made.z4t"), "Z4FFLoadFileInfo");
}
