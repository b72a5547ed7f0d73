#include "ListingTest.h"

#include "daxlib/VDFileIdPreferences.h"
#include "vdbase/VDStringArray.h"

#include <sys/stat.h>
#include <unistd.h>

// What a folder, a pattern and its options list.

namespace {

using DirectoryListTest = ListingTest;

struct Row
{
    const char* text;
    const char* tests;
};

}  // namespace

TEST_F(DirectoryListTest, TextsMeanTests)
{
    Write("channels=3", "a.sta");
    Write("tests=3 subid=2", "b.dat");
    Write("fileid=29102", "hist.dat");
    Write("numbers=7 title=x", "a;b.dat");
    Write("", "sub/deep/a.sta");
    Channel("road01.dat");
    Channel("road02.dat");
    folder_.Write("text.txt", "nothing known");
    folder_.Write("empty.dat", "");
    for (const Row& row : {
             Row{"", "a.sta a;b.dat b.dat#1 b.dat#2 b.dat#3 hist.dat road;dat[1,2] text.txt?"},
             Row{"a.sta", "a.sta"},
             Row{"a.*|b.dat;R1, 3|nothing*", "a.sta b.dat#1 b.dat#3"},
             Row{"a;;b.dat", "a;b.dat"},
             Row{"*;ats;", "a.sta a;b.dat b.dat#1 b.dat#2 b.dat#3 road;dat[1,2]"},
             Row{"*; AHS ;q5", "hist.dat"},
             Row{"*;s;xST?", "a.sta sub/deep/a.sta"},
             Row{"a.sta;s", "a.sta sub/deep/a.sta"},
             Row{"sub/*;s", "sub/deep/a.sta"},
             Row{"road", "road;dat[1,2]"},
             Row{"road;xdat;c2", "road;dat[2]"},
             Row{"road01", ""},
             Row{"*.dat;c1-2000000000,-5--3,2-;b-1", "a;b.dat b.dat#1 b.dat#2 b.dat#3 hist.dat road;dat[1,2]"},
             Row{"*;tchannel 7", "a;b.dat"},
             Row{"a.sta;c9;tChannel  2", "a.sta"},
             Row{"*;cx,5-1;xsta", "a.sta"},
         }) {
        EXPECT_EQ(List(row.text), row.tests) << row.text;
        ExpectNoError();
    }
    EXPECT_EQ(List("a.sta;c9;tChannel 2"), "a.sta");
    EXPECT_EQ(TestNumbers(Test(0)), std::vector<long>{2});
    EXPECT_EQ(List("b.dat;dextra;nnear;pGain=2;p=3;pRate=x=y"), "b.dat#1 b.dat#2 b.dat#3");
    EXPECT_EQ(TestText<FIDGetExtraMetadataFilename>(Test(2)), "extra");
    EXPECT_EQ(TestText<FIDGetAssociatedFilename>(Test(2)), "near");
    VDString descriptor;
    TestGet<VDFileIdPreferences*, FIDGetPreferences>(Test(2), char(0))->AppendToTestDescriptor(descriptor);
    EXPECT_EQ(descriptor, ";pGain=2;pRate=x=y");

    // What stands in the object for the next scan is the pattern alone.
    EXPECT_EQ(List("a.*|b.dat;r2"), "a.sta b.dat#2");
    EXPECT_TRUE(VFDirListCreateList(list_.Get()));
    EXPECT_EQ(Listed(), "b.dat#1 b.dat#2 b.dat#3");
    EXPECT_TRUE(VFDirListSetPath(list_.Get(), folder_.Name("none")));
    EXPECT_TRUE(VFDirListCreateList(list_.Get()));
    EXPECT_EQ(Count(), 0);
}

TEST_F(DirectoryListTest, FiltersTakeTypes)
{
    Write("", "a.sta");
    Write("fileid=29102", "h.dat");
    folder_.Write("text.txt", "nothing known");
    EXPECT_TRUE(VFDirListSetFilterByAccessType(list_.Get(), VTFileAccessAll));
    EXPECT_EQ(List("*"), "a.sta h.dat text.txt?");
    EXPECT_TRUE(VFDirListSetFilterByAccessType(list_.Get(), VTFileAccessHistogram));
    EXPECT_EQ(List("*"), "h.dat");
    VDArray<VTFileAccessType> types;
    ExpectFailure(VFDirListSetFilterByAccessTypes(list_.Get(), types), -328783);
    types.AppendItem(VTFileAccessMetaData);
    types.AppendItem(VTFileAccessTimeSeries);
    EXPECT_TRUE(VFDirListSetFilterByAccessTypes(list_.Get(), types));
    EXPECT_EQ(List("*"), "a.sta");
    EXPECT_TRUE(VFDirListSetFilterByFileId(list_.Get(), StandIn::FileId, 1));
    EXPECT_EQ(List("*"), "a.sta");
    EXPECT_TRUE(VFDirListSetFilterByFileId(list_.Get(), StandIn::FileId, 2));
    EXPECT_EQ(List("*"), "");
    ExpectFailure(VFDirListSetFilterByFileIds(list_.Get(), VDArray<int>(), VDArray<int>()), -328782, "same \nsize");
    EXPECT_TRUE(VFDirListClearFilter(list_.Get()));
    EXPECT_EQ(List("*"), "a.sta h.dat text.txt?");
}

TEST_F(DirectoryListTest, AtFilesListNames)
{
    const std::string name = Write("", "a b.sta");
    Channel("road01.dat");
    Channel("road02.dat");
    const std::string list = folder_.Write("list.txt", "\xef\xbb\xbf  a b.sta \troad01.dat\r\n" + std::string(5000, 'x') +
                                                           "\nroad01.dat the first\nroad02.dat");
    // Names are taken under the path only if the list is.
    EXPECT_EQ(List("@list.txt"), "a b.sta road;dat[1,2]");
    folder_.Write("whole.txt", name + "\n");
    EXPECT_EQ(List(("@" + folder_.Name("whole.txt")).c_str()), "a b.sta");
    folder_.Write("wrong.txt", "nothing\n\n");
    const auto fails = [this](const char* text, int code) {
        EXPECT_TRUE(VFDirListSetFilesMatching(list_.Get(), text));
        ExpectFailure(VFDirListCreateList(list_.Get()), -328781, "", "VDDirList::CreateList");
        EXPECT_TRUE(VFErrorCheck(code));
    };
    fails("@wrong.txt", -328786);
    fails("@none.txt", -328785);
    EXPECT_TRUE(VFDirListSetPath(list_.Get(), ""));
    fails("@none.txt", -328786);
}

TEST_F(DirectoryListTest, ACallbackEndsTheScan)
{
    for (int index = 0; index < 45; ++index)
        Write("", std::to_string(index) + ".sta");
    int calls = 0;
    EXPECT_TRUE(VFDirListSetPath(list_.Get(), folder_.Path()));
    const auto stopAt = [](void* context) { return --*static_cast<int*>(context); };
    EXPECT_TRUE(VFDirListSetProgressCallback(list_.Get(), stopAt, &calls));
    for (calls = 1; calls < 8; ++calls) {
        const int wanted = calls;
        ExpectFailure(VFDirListCreateList(list_.Get()), -328781, "", "VDDirList::CreateList");
        const VDArray<VDErrorReport> reports = VFErrorGetReports(VFGetBaseLibError());
        EXPECT_EQ(reports.GetSize(), 2);
        EXPECT_EQ(reports[0].code, -328784);
        EXPECT_EQ(reports[0].routine, "VDDirList::CheckAbort");
        EXPECT_EQ(calls, 0);
        calls = wanted;
        if (wanted == 1) {
            EXPECT_EQ(Count(), 0);
        }
    }
    calls = 1000;
    EXPECT_TRUE(VFDirListCreateList(list_.Get()));
    EXPECT_EQ(Count(), 45);
}

TEST_F(DirectoryListTest, FilesThatCantBeReadDropOut)
{
    Write("infofail=1 lasterror=Broken", "bad.sta");
    Write("", "good.sta");
    EXPECT_TRUE(VFDirListSetPath(list_.Get(), folder_.Path()));
    ExpectFailure(VFDirListCreateListWithInfo(list_.Get()), -328781);
    EXPECT_TRUE(VFErrorCheck(-328689));

    std::filesystem::create_directories(folder_.Name("closed.d"));
    std::filesystem::create_symlink("nowhere", folder_.Name("dangling.sta"));
    std::filesystem::create_symlink(".", folder_.Name("circle"));
    std::filesystem::create_symlink("../sub", folder_.Name("alink"));
    Write("", "sub/inner.sta");
    std::filesystem::create_symlink("../../..", folder_.Name("sub/up"));
    ASSERT_EQ(mkfifo(folder_.Name("pipe.sta").c_str(), 0600), 0);
    const std::string odd = std::string(251, 'n') + "\xff\x01.s";
    Write("", odd);
    const std::string locked = Write("", "locked.sta");
    chmod(locked.c_str(), 0);
    chmod(folder_.Name("closed.d").c_str(), 0);
    folder_.Write("none.sta", "");
    const bool isRoot = geteuid() == 0;
    EXPECT_TRUE(VFDirListSetErrorOnLoadDetails(list_.Get(), 0, 1));
    EXPECT_TRUE(VFDirListSetRecurseSubDirs(list_.Get(), 1));
    EXPECT_EQ(List("*", true), "bad.sta? good.sta sub/inner.sta " + std::string(isRoot ? "locked.sta " : "") + odd);
    VDFileIdArrayHandle tests;
    VDStringArray texts;
    VDStringArray names;
    EXPECT_TRUE(VFDirListGetLoadErrorDetails(list_.Get(), tests.Out(), &texts));
    EXPECT_EQ(TestValue<FIAGetSize>(tests.Get()), 1);
    EXPECT_EQ(texts[0], "Broken");
    EXPECT_TRUE(VFDirListGetSkipped(list_.Get(), &names, &texts));
    EXPECT_EQ(names.GetSize(), isRoot ? 1 : 3);
    EXPECT_EQ(texts.GetSize(), names.GetSize());
    EXPECT_GE(names.Find(folder_.Name("none.sta").c_str()), 0);

    // With a filter what can't be loaded goes.
    EXPECT_TRUE(VFDirListSetFilterByAccessType(list_.Get(), VTFileAccessTimeSeries));
    EXPECT_EQ(List("?a*.sta", true), "");
    chmod(folder_.Name("closed.d").c_str(), 0700);
}
