#include "RegistryTest.h"

#include "daxlib/VDGeneralFiles.h"

namespace {

std::string Extensions(const VDGeneralFileType* type)
{
    std::string all;
    for (const VDString& extension : type->GetExtensions())
        all += extension.Str() + " ";
    return all;
}

class GeneralFilesTest : public testing::Test
{
protected:
    bool Merge(const std::string& xml) { return files_.MergeConfigurationFile(folder_.Write("g.sys", xml).c_str()) != 0; }

    TestFolder folder_;
    VDGeneralFiles files_;
};

}  // namespace

TEST_F(GeneralFilesTest, EntriesAreAddedMergedOrRefused)
{
    VDGeneralFileAccessType* access = files_.AddAccessType(1000, "Documents", 0);
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(files_.AddAccessType(1000, "DOCUMENTS", 1), access);
    EXPECT_EQ(access->GetEnabled(), 1);
    EXPECT_EQ(files_.AddAccessType(1000, "Other", 1), nullptr);
    EXPECT_EQ(files_.AddAccessType(1001, "documents", 1), nullptr);

    VDGeneralFileType* type = access->AddFileType("Report", 28000, "doc;DOC", 1, 0);
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(access->AddFileType("REPORT", 28000, "Doc;pdf;PDF", 0, 1), type);
    EXPECT_EQ(Extensions(type), "doc DOC pdf ");
    EXPECT_EQ(type->GetIdentifyAsStandard(), 0);
    EXPECT_EQ(access->AddFileType("Report", 28001, "x", 1, 0), nullptr);
    EXPECT_EQ(access->AddFileType("Other", 28000, "x", 1, 0), nullptr);
    EXPECT_EQ(access->GetFileType(1), nullptr);
    EXPECT_EQ(files_.GetAccessType(-1), nullptr);
}

TEST_F(GeneralFilesTest, CopiesAreDeepAndLaterAccessTypesWin)
{
    files_.AddAccessType(1000, "One", 1)->AddFileType("First", 28000, "a", 1, 0);
    VDGeneralFileType* second = files_.AddAccessType(1001, "Two", 1)->AddFileType("Second", 28000, "b", 1, 0);
    EXPECT_EQ(files_.GetFileTypeFromFileId(28000), second);

    VDGeneralFiles copy(files_);
    copy = static_cast<const VDGeneralFiles&>(copy);
    VDGeneralFiles assigned;
    assigned.AddAccessType(1005, "Gone", 1);
    assigned = copy;
    second->SetKeyword("Changed");
    files_.ClearAccessTypes();
    for (const VDGeneralFiles* other : {&copy, &assigned}) {
        ASSERT_EQ(other->GetAccessTypes(), 2);
        EXPECT_EQ(other->GetFileTypeFromFileId(28000)->GetKeyword(), "Second");
    }
}

TEST_F(GeneralFilesTest, FileIsReadAndMergedWithACustomOne)
{
    ASSERT_TRUE(Merge(GeneralFilesXml));
    EXPECT_EQ(files_.GetVersion(), 1.5);
    ASSERT_EQ(files_.GetAccessTypes(), 2);
    VDGeneralFileAccessType* documents = files_.GetAccessTypeFromId(1000);
    EXPECT_EQ(documents->GetEnabled(), 1);
    EXPECT_EQ(files_.GetAccessTypeFromId(1001)->GetEnabled(), 0);
    ASSERT_EQ(documents->GetFileTypes(), 2);
    EXPECT_EQ(Extensions(documents->GetFileType(0)), "doc Pdf PDF ");
    EXPECT_EQ(documents->GetFileType(0)->GetIdentifyAsStandard(), 1);
    EXPECT_EQ(documents->GetFileType(1)->GetEnabled(), 0);

    EXPECT_TRUE(Merge(R"(<GeneralFiles Version="2"><AccessType Id="1000" Name="documents" Enabled="False">
        <FileType Keyword="report" FileId="28000" Extensions="DOC;odt" Enabled="False"/>
        <FileType Keyword="Low" FileId="27999"/><FileType Keyword="High" FileId="29000"/>
        <FileType Keyword="New" FileId="28999" Extensions="new"/></AccessType>
        <AccessType Id="1001" Name="Conflict"><FileType Keyword="Lost"/></AccessType></GeneralFiles>)"));
    EXPECT_EQ(documents->GetEnabled(), 0);
    EXPECT_EQ(documents->GetFileTypes(), 3);
    EXPECT_EQ(Extensions(documents->GetFileType(0)), "doc Pdf PDF odt ");
    EXPECT_EQ(documents->GetFileType(0)->GetEnabled(), 1);
    EXPECT_EQ(files_.GetAccessTypeFromId(1001)->GetFileTypes(), 1);
}

TEST_F(GeneralFilesTest, BadFileFailsSilentlyAndKeepsWhatCameBefore)
{
    for (const char* bad : {"no xml", "<generalfiles Version='1'/>", "<GeneralFiles/>", "<GeneralFiles Version='one'/>"})
        EXPECT_FALSE(Merge(bad)) << bad;
    EXPECT_EQ(files_.GetAccessTypes(), 0);
    const std::string good =
        "<AccessType Id='1000' Name='A'><FileType Keyword='K' FileId='28000' Extensions='x'/></AccessType>";
    for (const char* bad : {"<AccessType Name='B'/>", "<AccessType Id='1x' Name='B'/>", "<AccessType Id='1001'/>",
                            "<AccessType Id='1001' Name='B'><FileType FileId='28001' Extensions='y'/></AccessType>",
                            "<AccessType Id='1001' Name='B'><FileType Keyword='L' Extensions='y'/></AccessType>",
                            "<AccessType Id='1001' Name='B'><FileType Keyword='L' FileId='28001'/></AccessType>"}) {
        files_.ClearAccessTypes();
        EXPECT_FALSE(Merge("<GeneralFiles Version='1'>" + good + bad + "</GeneralFiles>")) << bad;
        EXPECT_NE(files_.GetFileTypeFromFileId(28000), nullptr) << bad;
    }
    EXPECT_FALSE(files_.MergeConfigurationFile(folder_.Name("missing.sys").c_str()));
    ExpectNoError();
}
