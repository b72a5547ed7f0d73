#include "support/TestSupport.h"
#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdarchive/Z4Manager.h"
#include "vdarchive/Z4Size.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <random>
#include <thread>

// The storage on a real file system, among real processes.

namespace {

constexpr std::int64_t Step = 5'000;

char ByteAt(std::int64_t place)
{
    return static_cast<char>(place * 31 >> 3);
}

std::string BytesAt(std::int64_t place, std::int64_t count)
{
    std::string bytes;
    for (std::int64_t i = 0; i < count; ++i)
        bytes += ByteAt(place + i);
    return bytes;
}

/// Appends and commits for ever, and says through a pipe what is committed.
[[noreturn]] void WriteUntilKilled(const std::string& name, int pipe)
{
    Z4Manager manager;
    for (;;) {
        Z4File* const file = manager.AdoptFile(name.c_str(), nullptr, nullptr);
        if (file == nullptr)
            _exit(1);
        Z4Node* const node = file->GetRoot()->AdoptNode("Node", 1, nullptr);
        Z4Stream* const stream = node->GetStreamCount() > 0 ? node->GetStream(0) : node->AddStream(Z4Size::Record32K);
        for (int i = 0; i < 5; ++i) {
            const std::int64_t place = stream->GetLength();
            const std::string bytes = BytesAt(place, Step);
            if (!stream->Write(place, Step, bytes.data()) || !node->Commit())
                _exit(1);
            const std::int64_t length = stream->GetLength();
            if (write(pipe, &length, sizeof length) != sizeof length)
                _exit(1);
        }
        manager.CloseFile(file, true);
    }
}

/// The last length that a killed writer promised.
std::int64_t LastPromise(int pipe)
{
    std::int64_t length = 0;
    for (std::int64_t next = 0; read(pipe, &next, sizeof next) == sizeof next;)
        length = next;
    return length;
}

}  // namespace

TEST(Process, AKilledWriterKeepsItsPromises)
{
    const TestFolder folder;
    const std::string name = folder.Name("killed.z4t");
    Z4Manager manager;
    std::mt19937 random(7);
    std::int64_t promised = 0;
    for (int round = 0; round < 200; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            close(ends[0]);
            WriteUntilKilled(name, ends[1]);
        }
        close(ends[1]);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 25'000));
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer failed";
        promised = std::max(promised, LastPromise(ends[0]));
        close(ends[0]);
        if (promised == 0)
            continue;
        Z4File* const file = manager.OpenFile(name.c_str(), false);
        ASSERT_NE(file, nullptr) << VFErrorGetText(VFGetBaseLibError());
        Z4Stream* const stream = file->GetRoot()->GetNode("Node")->GetStream(0);
        ASSERT_TRUE(stream->GetLength() == promised || stream->GetLength() == promised + Step) << stream->GetLength();
        promised = stream->GetLength();
        std::string bytes(static_cast<std::size_t>(promised), ' ');
        ASSERT_TRUE(stream->Read(0, promised, bytes.data()));
        ASSERT_TRUE(bytes == BytesAt(0, promised));
        manager.CloseFile(file, false);
    }
    VDStringArray findings;
    EXPECT_GT(promised, 0);
    EXPECT_TRUE(manager.CheckFile(name.c_str(), &findings)) << findings[0];
}

TEST(Process, AFullDiskFailsTheWriteAndKeepsTheCommit)
{
    const TestFolder folder;
    const std::string name = folder.Name("full.z4t");
    Z4Manager manager;
    Z4File* file = manager.CreateFile(name.c_str(), nullptr);
    Z4Node* node = file->GetRoot()->AdoptNode("Node", 1, nullptr);
    Z4Stream* stream = node->AddStream(Z4Size::Record32K);
    const std::string bytes = BytesAt(0, 300'000);
    ASSERT_TRUE(stream->Write(0, 300'000, bytes.data()) && node->Commit());

    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {700'000, RLIM_INFINITY};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_TRUE(stream->Write(300'000, 100'000, bytes.data()));
    EXPECT_FALSE(stream->Write(400'000, 300'000, bytes.data()) && stream->Write(700'000, 300'000, bytes.data()) &&
                 node->Commit());
    ExpectError(VDArchiveError::FileWrite, "too large");
    manager.CloseFile(file, false);
    const rlimit none = {RLIM_INFINITY, RLIM_INFINITY};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);

    file = manager.OpenFile(name.c_str(), true);
    ASSERT_NE(file, nullptr);
    stream = file->GetRoot()->GetNode("Node")->GetStream(0);
    std::string read(300'000, ' ');
    ASSERT_EQ(stream->GetLength(), 300'000);
    EXPECT_TRUE(stream->Read(0, 300'000, read.data()) && read == bytes);
    manager.CloseFile(file, true);
}

TEST(Process, OneWriterAndReadersOfTheLastCommit)
{
    const TestFolder folder;
    const std::string name = folder.Write("a.z4t", "some other file");
    Z4Manager manager;
    EXPECT_EQ(manager.OpenFile(name.c_str(), true), nullptr);
    ExpectError(VDArchiveError::FileOpen, "isn't a storage file\nFile : " + name);
    Z4File* const writer = manager.CreateFile(name.c_str(), nullptr);
    ASSERT_NE(writer, nullptr);
    Z4Node* const node = writer->GetRoot()->AdoptNode("Node", 1, nullptr);
    EXPECT_TRUE(writer->SetSubType(11));
    node->SetContent("one");
    EXPECT_EQ(TestReadFile(name), "some other file") << "until the first commit";
    ASSERT_TRUE(node->Commit());

    Z4File* const reader = manager.OpenFile(name.c_str(), false);
    ASSERT_NE(reader, nullptr);
    node->SetContent("two");
    ASSERT_TRUE(node->Commit());
    EXPECT_FALSE(writer->SetSubType(4)) << "readers have seen the other";
    EXPECT_EQ(reader->GetRoot()->GetNode("Node")->GetContent(), "one");
    EXPECT_EQ(reader->GetSubType(), 11);
    for (const bool create : {false, true}) {
        EXPECT_EQ(create ? manager.CreateFile(name.c_str(), nullptr) : manager.AdoptFile(name.c_str(), nullptr, nullptr),
                  nullptr);
        ExpectError(VDArchiveError::FileInUse, "another writer has it open\nFile : " + name);
    }
    EXPECT_TRUE(manager.CloseFile(writer, true));
    bool created = true;
    Z4File* const next = manager.AdoptFile(name.c_str(), nullptr, &created);
    ASSERT_NE(next, nullptr);
    EXPECT_FALSE(created);
    EXPECT_EQ(next->GetRoot()->GetNode("Node")->GetContent(), "two");
    manager.CloseFile(next, false);
    manager.CloseFile(reader, false);

    manager.CloseFile(manager.CreateFile(folder.Name("gone.z4t").c_str(), nullptr), false);
    EXPECT_EQ(manager.OpenFile(folder.Name("gone.z4t").c_str(), false), nullptr) << "nothing was to be kept";
    EXPECT_TRUE(manager.CloseFile(manager.CreateFile(folder.Name("empty.z4t").c_str(), nullptr), true));
    Z4File* const empty = manager.OpenFile(folder.Name("empty.z4t").c_str(), false);
    ASSERT_NE(empty, nullptr);
    manager.CloseFile(empty, false);
}
