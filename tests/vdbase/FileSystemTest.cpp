#include "support/TestSupport.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDFileSystem.h"
#include "vdbase/VDStoredRelativePath.h"
#include "vdbase/VFFilename.h"

#include <unistd.h>

#include <filesystem>
#include <memory>

namespace {

// The names in a list without the folder, joined; "null" for no list.
std::string Names(VDStringArray* list)
{
    const std::unique_ptr<VDStringArray> owner(list);
    std::string names = list == nullptr ? "null" : "";
    for (int index = 0; list != nullptr && index < list->GetSize(); ++index)
        names += std::filesystem::path((*list)[index].Str()).filename().string() + ' ';
    return names;
}

}  // namespace

TEST(FileSystem, ListsFoldersInByteOrder)
{
    const TestFolder folder;
    for (const char* name : {"b.dat", "B.dat", "a.dat", ".hidden.dat", "c.txt", "sub/x.dat", "z.sig/1.raw", ".git/config"})
        folder.Write(name, "x");
    std::filesystem::create_symlink("b.dat", folder.Name("link.dat"));
    std::filesystem::create_symlink("nowhere", folder.Name("broken.dat"));
    std::filesystem::create_directory_symlink("sub", folder.Name("linked"));

    const std::string path = folder.Path() + '/';
    const auto files = [&](const char* pattern) { return Names(VDFileSystem::GetFileList((path + pattern).c_str(), 167)); };
    EXPECT_EQ(Names(VDFileSystem::GetDirectory((path + "*.dat").c_str(), 167, 0, nullptr)), files("*.dat"));
    EXPECT_EQ(files("*.dat"), "B.dat a.dat b.dat link.dat ");
    EXPECT_EQ(files(".*.dat"), ".hidden.dat ");
    EXPECT_EQ(files("a.dat"), "a.dat ");
    for (const char* nothing : {"sub", "nothing*", "none/*"})
        EXPECT_EQ(files(nothing), "null") << nothing;
    EXPECT_EQ(Names(VDFileSystem::GetFileList((path + "*").c_str(), 16)), "linked sub z.sig ");
    EXPECT_EQ(Names(VDFileSystem::GetSubdirList(path.c_str(), 0)), ".git linked sub z.sig ");

    const std::unique_ptr<VDStringArray> whole(VDFileSystem::GetSubdirList(folder.Path().c_str(), 1));
    ASSERT_TRUE(whole != nullptr && whole->GetSize() == 3);
    EXPECT_EQ((*whole)[1].Str(), path + "sub");
    ExpectNoError();
}

TEST(FileSystem, FilesAndTheirFailures)
{
    const TestFolder folder;
    const std::string file = folder.Write("a.dat", "12345");
    std::int64_t size = 0;
    EXPECT_TRUE(VDFileSystem::GetFileSize(file.c_str(), &size) && size == 5);
    EXPECT_TRUE(VDFileSystem::FileExists(file.c_str()) && !VDFileSystem::FileExists(folder.Path().c_str()));
    EXPECT_TRUE(!VDFileSystem::DirectoryExists(file.c_str()) && VDFileSystem::DirectoryExists(folder.Path().c_str()));

    const std::string other = folder.Write("b.dat", "old");
    EXPECT_TRUE(VDFileSystem::RenameFile(file.c_str(), other.c_str()));
    EXPECT_EQ(TestReadFile(other), "12345");
    EXPECT_FALSE(VDFileSystem::RenameFile(file.c_str(), other.c_str()));
    ExpectErrorText(VDBaseError::FileWrite, "The file can't be written: No such file or directory\nFile : " + other);
    EXPECT_FALSE(VDFileSystem::GetFileSize(file.c_str(), &size));
    ExpectError(VDBaseError::FileRead, file, "VDFileSystem::GetFileSize");
    EXPECT_TRUE(VDFileSystem::DelFile(other.c_str()));
    EXPECT_FALSE(VDFileSystem::DelFile(other.c_str()));
    ExpectError(VDBaseError::FileDelete, "No such file", "VDFileSystem::DelFile");
}

TEST(FileSystem, FullPathsAreTextOnly)
{
    const TestFolder folder;
    const std::string current = folder.Name("in/here");
    std::filesystem::create_directories(current);
    std::filesystem::current_path(current);
    const auto full = [](const char* name) { return VDFileSystem::GetFullPath(name).Str(); };
    EXPECT_EQ(VDFileSystem::GetCurDirectory().Str(), current);
    EXPECT_EQ(full("./b//..///../a.dat"), folder.Path() + "/in/a.dat");
    using Row = std::pair<const char*, const char*>;
    for (const auto& [name, plain] :
         {Row("/x/./y/../z/", "/x/z"), Row("/../..", "/"), Row("/..a/.b", "/..a/.b"), Row("", "")})
        EXPECT_EQ(full(name), plain);
    const auto compare = &VDFileSystem::CompareFilenames;
    EXPECT_TRUE(compare("a.dat", "../here/a.dat") == 0 && compare("a.dat", "A.dat") != 0 && compare("a", "b") < 0);

    std::filesystem::remove(current);
    EXPECT_EQ(full("a.dat"), "a.dat");
    std::filesystem::current_path("/");
    EXPECT_EQ(full("a.dat"), "/a.dat");
}

TEST(FileSystem, StoredNamesAreRelativeBelowTheBase)
{
    const VDStoredRelativePath store("/data/tests/");
    EXPECT_EQ(store.GetRelativeName("/data/tests/a/road01.dat", 1).Str(), "a/road01.dat");
    EXPECT_EQ(store.GetRelativeNameNoCopyFail("/data/x/../tests/road", 0).Str(), "road");
    EXPECT_EQ(store.GetRelativeName("/data/tests2/road.dat", 1).Str(), "/data/tests2/road.dat");
    EXPECT_EQ(store.GetRelativeName("/data/tests", 1).Str(), "/data/tests");
    EXPECT_EQ(VDStoredRelativePath().GetRelativeName("sub/../road.dat", 1).Str(), "road.dat");
}
