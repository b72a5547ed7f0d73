#include "FaultStorageOs.h"
#include "support/TestSupport.h"
#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdarchive/Z4Manager.h"
#include "vdarchive/Z4Size.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

// Storage files among others who move, replace, link and lock.

namespace {

namespace fs = std::filesystem;

const char* const Name = "test.z4t";

/// A writer of one object that has no data.
class ContentWriter
{
public:
    explicit ContentWriter(VDStorageOs& os = VDStorageOs::System()) : manager_(os) {}
    ~ContentWriter() { Close(false); }

    bool Create(const std::string& name) { return Take(manager_.CreateFile(name.c_str(), nullptr)); }
    bool Open(const std::string& name) { return Take(manager_.OpenFile(name.c_str(), true)); }
    bool Commit(const char* content)
    {
        file_->GetRoot()->AdoptNode("Node", 1, nullptr)->SetContent(content);
        return file_->GetRoot()->GetNode("Node")->Commit();
    }
    bool Close(bool save) { return manager_.CloseFile(std::exchange(file_, nullptr), save); }

private:
    bool Take(Z4File* file)
    {
        file_ = file;
        return file != nullptr;
    }

    Z4Manager manager_;
    Z4File* file_ = nullptr;
};

/// The content of the one object; empty if it can't be read.
std::string ContentOf(const std::string& name, VDStorageOs& os = VDStorageOs::System())
{
    Z4Manager manager(os);
    Z4File* const file = manager.OpenFile(name.c_str(), false);
    Z4Node* const node = file == nullptr ? nullptr : file->GetRoot()->GetNode("Node");
    const std::string content = node == nullptr ? std::string() : node->GetContent();
    manager.CloseFile(file, false);
    return content;
}

std::size_t CountEntries(const std::string& folder)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

mode_t ModeOf(const std::string& name)
{
    struct stat status = {};
    EXPECT_EQ(stat(name.c_str(), &status), 0);
    return status.st_mode & 07777;
}

}  // namespace

TEST(Place, AWriterThatLostItsNameSaysSoAndKeepsItsData)
{
    FaultStorageOs os;
    ContentWriter writer(os);
    ASSERT_TRUE(writer.Create(Name) && writer.Commit("one"));
    os.Move(Name, "moved.z4t");
    EXPECT_FALSE(writer.Commit("two"));
    ExpectError(VDArchiveError::FileMoved, "went with it\nFile : test.z4t");
    EXPECT_EQ(ContentOf("moved.z4t", os), "two");
    os.Put(Name, "somebody else's");
    EXPECT_FALSE(writer.Commit("three"));
    EXPECT_FALSE(writer.Commit("three")) << "nothing is to be written, and yet it isn't where it is looked for";
    ExpectError(VDArchiveError::FileMoved);
    EXPECT_EQ(os.Content(Name), "somebody else's");
    os.Move("moved.z4t", Name);
    EXPECT_TRUE(writer.Commit("four") && writer.Close(true));
    EXPECT_EQ(ContentOf(Name, os), "four");
}

TEST(Place, AFirstCommitReplacesOnlyTheFileThatItWasMadeFor)
{
    for (const bool wasThere : {false, true}) {
        FaultStorageOs os;
        if (wasThere)
            os.Put(Name, "old");
        ContentWriter first(os);
        ContentWriter second(os);
        ASSERT_TRUE(first.Create(Name));
        EXPECT_EQ(second.Create(Name), !wasThere) << "the old file has its writer";
        os.Put(Name, "came up meanwhile");
        for (const char* const content : {"one", "two"}) {
            EXPECT_FALSE(first.Commit(content));
            ExpectError(VDArchiveError::FileMoved, "what was written is in test (2).z4t");
        }
        EXPECT_EQ(os.Content(Name), "came up meanwhile");
        EXPECT_EQ(ContentOf("test (2).z4t", os), "two");
        EXPECT_TRUE(wasThere || !second.Commit("second"));
        EXPECT_EQ(ContentOf("test (3).z4t", os), wasThere ? "" : "second");
    }
    FaultStorageOs os;
    ContentWriter writer(os);
    os.Put(Name, "old");
    ASSERT_TRUE(writer.Create(Name));
    EXPECT_EQ(os.GetNameCount(), 1U);
    EXPECT_TRUE(writer.Commit("new") && writer.Close(true));
    EXPECT_EQ(ContentOf(Name, os), "new");
    EXPECT_EQ(os.GetNameCount(), 1U);
}

TEST(Place, ANewFileIsSafeWithTwoSyncs)
{
    FaultStorageOs os;
    os.FailAt(-1, 0, false);
    ContentWriter writer(os);
    ASSERT_TRUE(writer.Create(Name) && writer.Commit("one"));
    EXPECT_EQ(os.GetSyncs(), 2);
    ASSERT_TRUE(writer.Close(true));
    EXPECT_EQ(os.GetSyncs(), 2);
}

TEST(Place, AStoppedWriterKeepsNobodyFromReading)
{
    FaultStorageOs os;
    Z4Manager manager(os);
    ContentWriter writer(os);
    ASSERT_TRUE(writer.Create(Name) && writer.Commit("one"));
    std::unique_ptr<VDStorageFile> stopped;
    ASSERT_EQ(os.Open(Name, VTStorageOpen::Update, &stopped), 0);
    ASSERT_EQ(stopped->Lock(VTStorageLock::NoReaders), 0);
    EXPECT_EQ(ContentOf(Name, os), "one");
    // As soon as it is let in, a reader is like any other. One that wasn't gives up when its version may be written over.
    for (const bool letIn : {true, false}) {
        ASSERT_EQ(stopped->Lock(VTStorageLock::NoReaders), 0);
        Z4File* const reader = manager.OpenFile(Name, false);
        ASSERT_NE(reader, nullptr);
        if (letIn) {
            stopped->Unlock(VTStorageLock::NoReaders);
            EXPECT_NE(reader->GetRoot()->GetNode("Node"), nullptr);
            EXPECT_EQ(stopped->Lock(VTStorageLock::NoReaders), EWOULDBLOCK);
        }
        ASSERT_TRUE(writer.Commit(letIn ? "two" : "three"));
        Z4Node* const node = reader->GetRoot()->GetNode("Node");
        EXPECT_EQ(node == nullptr ? VDString() : VDString(node->GetContent()), letIn ? "one" : "");
        if (!letIn)
            ExpectError(VDArchiveError::FileInUse, "has gone on since it was opened");
        manager.CloseFile(reader, false);
    }
}

TEST(Place, LocksEndWithTheirWriterThoughAChildHasTheFileOpen)
{
    const TestFolder folder;
    const std::string name = folder.Name("a.z4t");
    ContentWriter writer;
    ASSERT_TRUE(writer.Create(name) && writer.Commit("one"));
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(ends[1]);
        char byte = 0;
        _exit(static_cast<int>(read(ends[0], &byte, 1)));
    }
    EXPECT_TRUE(writer.Commit("two") && writer.Close(true));
    EXPECT_EQ(ContentOf(name), "two");
    ContentWriter next;
    EXPECT_TRUE(next.Open(name) && next.Commit("three"));
    close(ends[0]);
    close(ends[1]);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
}

TEST(Place, WhoReplacesAFileHoldsItsWriterOff)
{
    const TestFolder folder;
    const std::string name = folder.Name("a.z4t");
    Z4Manager manager;
    ContentWriter writer;
    EXPECT_NE(manager.HoldFile(name.c_str()), nullptr) << "there is none yet";
    ASSERT_TRUE(writer.Create(name) && writer.Commit("one"));
    EXPECT_EQ(manager.HoldFile(name.c_str()), nullptr);
    ExpectError(VDArchiveError::FileInUse, "another writer has it open\nFile : " + name);
    ASSERT_TRUE(writer.Close(true));
    auto hold = manager.HoldFile(name.c_str());
    EXPECT_NE(hold, nullptr);
    EXPECT_FALSE(writer.Open(name));
    EXPECT_FALSE(writer.Create(name));
    hold.reset();
    EXPECT_TRUE(writer.Open(name));
}

TEST(Place, NewFilesHaveNoOtherNameAndFollowNoLink)
{
    const TestFolder folder;
    const std::string victim = folder.Write("victim", "precious");
    for (const std::string& name : {std::string("a.z4t"), std::string(251, 'n') + ".z4t"}) {
        const std::string full = folder.Name(name);
        const std::size_t before = CountEntries(folder.Path());
        ContentWriter writer;
        ASSERT_TRUE(writer.Create(full)) << VFErrorGetText(VFGetBaseLibError());
        EXPECT_EQ(CountEntries(folder.Path()), before) << "a writer that dies now leaves nothing";
        ASSERT_TRUE(writer.Commit("one") && writer.Close(true)) << VFErrorGetText(VFGetBaseLibError());
        ASSERT_TRUE(writer.Create(full) && writer.Commit("two") && writer.Close(true));
        EXPECT_EQ(CountEntries(folder.Path()), before + 1);
        EXPECT_EQ(ContentOf(full), "two");
    }
    EXPECT_EQ(TestReadFile(victim), "precious");
    ContentWriter writer;
    EXPECT_FALSE(writer.Create(folder.Path() + "/no/such.z4t"));
    ExpectError(VDArchiveError::FileOpen, "No such file");
    EXPECT_FALSE(writer.Create(folder.Path()));
    ExpectError(VDArchiveError::FileOpen, "directory");
}

TEST(Place, ANewFileTakesOverModeAndLink)
{
    const TestFolder folder;
    const std::string link = folder.Name("link.z4t");
    const std::string target = folder.Name("target.z4t");
    fs::create_symlink("target.z4t", link);
    const mode_t mask = umask(0022);
    for (const mode_t mode : {mode_t(0644), mode_t(0600), mode_t(0664)}) {
        ContentWriter writer;
        ASSERT_TRUE(writer.Create(link) && writer.Commit("one") && writer.Close(true));
        EXPECT_TRUE(fs::is_symlink(link));
        EXPECT_EQ(ModeOf(target), mode);
        ASSERT_EQ(chmod(target.c_str(), mode == 0644 ? 0600 : 0664), 0);
    }
    umask(mask);
    EXPECT_EQ(ContentOf(target), "one");
    EXPECT_EQ(CountEntries(folder.Path()), 2U);
    const std::string circle = folder.Name("circle.z4t");
    fs::create_symlink(circle, circle);
    ContentWriter writer;
    EXPECT_FALSE(writer.Create(circle));
    ExpectError(VDArchiveError::FileOpen, "symbolic links");
}
