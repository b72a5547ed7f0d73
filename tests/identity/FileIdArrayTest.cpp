#include "support/TestFileId.h"

namespace {

VDFileIdArrayHandle MakeArray(const std::vector<std::string>& filenames)
{
    VDFileIdArrayHandle array(FIACreate());
    for (const std::string& filename : filenames)
        EXPECT_NE(0, FIAAppendItem(array.Get(), TestId(filename).Get()));
    return array;
}

VDFileIdHandle At(const VDFileIdArrayHandle& array, int index)
{
    VDFileIdHandle id;
    EXPECT_NE(0, FIAGetAt(array.Get(), index, id.Out()));
    return id;
}

std::vector<std::string> Names(const VDFileIdArrayHandle& array)
{
    int size = -1;
    EXPECT_NE(0, FIAGetSize(array.Get(), &size));
    std::vector<std::string> names;
    for (int index = 0; index < size; ++index)
        names.push_back(TestFilename(At(array, index)));
    return names;
}

}  // namespace

TEST(FileIdArray, SharesItemsAndCopiesArrays)
{
    VDFileIdArrayHandle array = MakeArray({"/d/a.dat"});
    VDFileIdArrayHandle copies(FIACreate());
    EXPECT_NE(0, FIAAppend(copies.Get(), array.Get()));
    const VDFileIdHandle shared = At(array, 0);
    EXPECT_NE(0, FIASelectAt(array.Get(), 0, 1));
    EXPECT_EQ(1, TestFlag<FIDGetSelected>(shared));
    char selected = 1;
    EXPECT_NE(0, FIAGetSelectAt(copies.Get(), 0, &selected));
    EXPECT_EQ(0, selected);

    EXPECT_NE(0, FIAAppend(copies.Get(), copies.Get()));
    EXPECT_EQ((std::vector<std::string>{"/d/a.dat", "/d/a.dat"}), Names(copies));
    EXPECT_NE(0, FIACopy(copies.Get(), copies.Get()));
    EXPECT_TRUE(Names(copies).empty()) << "the target is emptied first";
    EXPECT_NE(0, FIARemoveAt(array.Get(), 0));
    EXPECT_EQ("/d/a.dat", TestFilename(shared));
}

TEST(FileIdArray, IndexErrorsNameTheIndex)
{
    VDFileIdArrayHandle array = MakeArray({"/d/a.dat"});
    VDFileId* id = nullptr;
    char selected = 0;
    EXPECT_EQ(0, FIAGetAt(array.Get(), 1, &id));
    ExpectReport(-328595, "Index out of range  (1)", "VDFileIdArray::GetAt");
    for (const bool done : {FIARemoveAt(array.Get(), -1) != 0, FIASelectAt(array.Get(), -1, 1) != 0,
                            FIAGetSelectAt(array.Get(), -1, &selected) != 0}) {
        EXPECT_FALSE(done);
        ExpectError(-328595, "(-1)", "VDFileIdArray::GetAt");
    }
}

TEST(FileIdArray, RemovesBySelection)
{
    VDFileIdArrayHandle array = MakeArray({"/d/a.dat", "/d/b.dat", "/d/c.dat", "/d/b.dat"});
    EXPECT_NE(0, FIARemoveSelected(array.Get(), 1));
    EXPECT_EQ(4U, Names(array).size());
    for (const int index : {0, 2})
        FIASelectAt(array.Get(), index, 1);
    EXPECT_NE(0, FIARemoveSelected(array.Get(), 1));
    EXPECT_EQ((std::vector<std::string>{"/d/b.dat", "/d/b.dat"}), Names(array));
    EXPECT_NE(0, FIARemoveSelected(array.Get(), 0));
    int index = -5;
    EXPECT_NE(0, FIAFind(array.Get(), TestId("/d/b.dat").Get(), &index));
    EXPECT_EQ(-1, index);
}

TEST(FileIdArray, FindsTestsWhateverHappenedToTheListAndTheNames)
{
    VDFileIdArrayHandle array(FIACreate());
    std::vector<std::string> names;
    for (int number = 0; number < 40; ++number) {
        names.push_back("/d/" + std::to_string(number % 25) + ".dat");
        FIAAppendItem(array.Get(), TestId(names.back()).Get());
    }
    const auto expectAllFound = [&] {
        for (const std::string& name : names) {
            int index = -5;
            FIAFind(array.Get(), TestId(name).Get(), &index);
            EXPECT_EQ(std::find(names.begin(), names.end(), name) - names.begin(), index);
        }
    };
    expectAllFound();
    while (names.size() > 2) {
        const std::size_t gone = names.size() / 3;
        FIARemoveAt(array.Get(), static_cast<int>(gone));
        names.erase(names.begin() + static_cast<std::ptrdiff_t>(gone));
        names.front() = "/d/x" + std::to_string(names.size());
        FIDSetFilename(At(array, 0).Get(), VTNameFormFile, names.front().c_str(), "dat");
        names.front() += ".dat";
        expectAllFound();
        FIAAppendItem(array.Get(), TestId("/d/behind.dat").Get());
        names.push_back("/d/behind.dat");
        expectAllFound();
        FIARemoveAt(array.Get(), static_cast<int>(names.size()) - 1);
        names.pop_back();
    }
}

TEST(FileIdArray, SortsTestsAndChannels)
{
    const std::vector<std::string> names = {"/z/b.dat", "/a/C.dat", "/y/A.xyz", "/x/b.dat"};
    VDFileIdArrayHandle array = MakeArray(names);
    FIDSetRunNumber(At(array, 0).Get(), 2);
    FIDSetRunNumber(At(array, 3).Get(), 2);
    FIDSetModeNumber(At(array, 3).Get(), -2, nullptr);
    TestAddChannels(At(array, 0), {1, 3, 2});
    FIASort(array.Get(), 0);
    FIASort(array.Get(), VTFileIdArraySortTestsDescending);
    EXPECT_EQ(names, Names(array));
    FIASort(array.Get(), VTFileIdArraySortTests | VTFileIdArraySortChannels);
    EXPECT_EQ((std::vector<std::string>{"/y/A.xyz", "/x/b.dat", "/z/b.dat", "/a/C.dat"}), Names(array));
    EXPECT_EQ((std::vector<long>{1, 2, 3}), TestNumbers(At(array, 2)));
    FIASort(array.Get(), VTFileIdArraySortTests | VTFileIdArraySortTestsDescending | VTFileIdArraySortChannels |
                             VTFileIdArraySortChannelsDescending);
    EXPECT_EQ((std::vector<std::string>{"/a/C.dat", "/z/b.dat", "/x/b.dat", "/y/A.xyz"}), Names(array));
    EXPECT_EQ((std::vector<long>{3, 2, 1}), TestNumbers(At(array, 1)));
}
