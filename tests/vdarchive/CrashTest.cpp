#include "FaultStorageOs.h"
#include "support/TestSupport.h"
#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdarchive/Z4Manager.h"
#include "vdarchive/Z4Size.h"

#include <cerrno>
#include <random>

// What a storage file is worth after its writer was stopped anywhere: exactly the last commit.

namespace {

const char* const Name = "test.z4t";

std::string Bytes(std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

constexpr int Streams = 3;

/// What a version holds: two objects, the first with two streams.
struct Model
{
    std::string content[2];
    std::string streams[Streams];
    bool operator==(const Model&) const = default;
};

/// The object that a stream belongs to.
constexpr int NodeOf(int stream)
{
    return stream / 2;
}

std::string NodeName(int node)
{
    return node == 0 ? "Node" : "Other";
}

bool ReadModel(Z4File& file, Model* model)
{
    bool good = true;
    for (int i = 0; good && i < Streams; ++i) {
        Z4Node* const node = file.GetRoot()->GetNode(NodeName(NodeOf(i)).c_str());
        Z4Stream* const stream = node == nullptr ? nullptr : node->GetStream(i % 2);
        model->streams[i].clear();
        if (stream == nullptr)
            return i == 2 && file.GetRoot()->GetNodeCount() == 1;  // not committed yet
        model->streams[i].resize(static_cast<std::size_t>(stream->GetLength()));
        model->content[NodeOf(i)] = node->GetContent();
        good = stream->Read(0, stream->GetLength(), model->streams[i].data());
    }
    return good;
}

bool ReadModel(FaultStorageOs& os, Model* model)
{
    Z4Manager manager(os);
    Z4File* const file = manager.OpenFile(Name, false);
    const bool good = file != nullptr && ReadModel(*file, model);
    return manager.CloseFile(file, false) && good;
}

/// Works on a file and remembers what it committed.
class Writer
{
public:
    explicit Writer(FaultStorageOs& os) : manager_(os) {}
    ~Writer()
    {
        Unwatch();
        Close(false);
    }

    bool Start(bool create)
    {
        file_ = create ? manager_.CreateFile(Name, nullptr) : manager_.OpenFile(Name, true);
        for (int i = 0; file_ != nullptr && i < 2; ++i) {
            nodes_[i] = file_->GetRoot()->AdoptNode(NodeName(i).c_str(), 1, nullptr);
            while (nodes_[i] != nullptr && nodes_[i]->GetStreamCount() < 2 - i)
                nodes_[i]->AddStream(Z4Size::Record32K);
        }
        return nodes_[0] != nullptr && nodes_[1] != nullptr;
    }
    Z4Stream* Stream(int stream) const { return nodes_[NodeOf(stream)]->GetStream(stream % 2); }
    bool Write(int stream, std::size_t at, std::size_t count)
    {
        const std::string bytes = Bytes(count, ++seed_);
        std::string& text = now_.streams[stream];
        text.resize(std::max(text.size(), at + count));
        text.replace(at, count, bytes);
        return Stream(stream)->Write(static_cast<std::int64_t>(at), static_cast<std::int64_t>(count), bytes.data());
    }
    bool Append(int stream, std::size_t count) { return Write(stream, now_.streams[stream].size(), count); }
    bool Resize(int stream, std::size_t size)
    {
        now_.streams[stream].resize(size);
        return Stream(stream)->SetLength(static_cast<std::int64_t>(size));
    }
    /// Commits one object; what was done to the other one isn't part of the version.
    bool Commit(int node = 0)
    {
        now_.content[node] = Bytes(300, ++seed_);
        nodes_[node]->SetContent(now_.content[node]);
        attempted_ = committed_;
        attempted_.content[node] = now_.content[node];
        for (int i = 0; i < Streams; ++i)
            if (NodeOf(i) == node)
                attempted_.streams[i] = now_.streams[i];
        if (!nodes_[node]->Commit())
            return false;
        committed_ = attempted_;
        hasCommit_ = true;
        return true;
    }
    /// What somebody does who doesn't look at failures.
    void WriteOn()
    {
        const std::string bytes(200'000, 'w');
        for (int i = 0; nodes_[1] != nullptr && i < Streams; ++i)
            if (Z4Stream* const stream = Stream(i))
                stream->Write(0, 200'000, bytes.data());
    }
    bool Close(bool save)
    {
        nodes_[0] = nodes_[1] = nullptr;
        const bool good = file_ == nullptr || manager_.CloseFile(file_, save);
        file_ = nullptr;
        return good;
    }
    /// Lets somebody read the last version until `Unwatch`.
    bool Watch()
    {
        watched_ = committed_;
        watcher_ = manager_.OpenFile(Name, false);
        return watcher_ != nullptr;
    }
    bool Unwatch()
    {
        Model seen;
        EXPECT_TRUE(watcher_ == nullptr || (ReadModel(*watcher_, &seen) && seen == watched_)) << "a reader's own version";
        const bool good = watcher_ == nullptr || manager_.CloseFile(watcher_, false);
        watcher_ = nullptr;
        return good;
    }

    /// All that the tests do to a file; false at the first failure.
    bool Run()
    {
        return Start(true) && Append(0, 100) && Append(1, 70'000) && Commit() && Watch() && Append(0, 9'000) &&
               Write(1, 20'000, 50'000) && Append(2, 500) && Commit() && Append(0, 700) && Append(2, 40'000) && Commit(1) &&
               Append(0, 90) && Resize(1, 40'000) && Commit() && Unwatch() && Write(1, 150'000, 10) && Append(0, 100'000) &&
               Commit() && Append(2, 30) && Commit(1) && Watch() && Write(0, 32'768, 65'536) && Resize(2, 40'010) &&
               Write(1, 3, 5) && Resize(0, 90'000) && Append(2, 90) && Commit(1) && Commit() && Append(2, 60) && Commit(1) &&
               Unwatch() && Close(true) && Start(false) && Append(0, 40'000) && Resize(1, 0) && Write(1, 0, 33'000) &&
               Append(2, 7) && Commit() && Commit(1) && Append(1, 7) && Commit() && Close(true);
    }

    const Model& Committed() const { return committed_; }
    const Model& Attempted() const { return attempted_; }
    bool HasCommit() const { return hasCommit_; }

private:
    Z4Manager manager_;
    Z4File* file_ = nullptr;
    Z4Node* nodes_[2] = {};
    Z4File* watcher_ = nullptr;
    unsigned seed_ = 0;
    Model now_;
    Model attempted_;
    Model committed_;
    Model watched_;
    bool hasCommit_ = false;
};

/// Stops a writer at an operation, and looks at what the disk has then.
void CrashAt(int operation, FaultStorageOs::After after, unsigned seed)
{
    SCOPED_TRACE("operation " + std::to_string(operation) + ", seed " + std::to_string(seed));
    FaultStorageOs os;
    Writer writer(os);
    os.FailAt(operation, EIO, true);
    ASSERT_FALSE(writer.Run());
    writer.Unwatch();
    os.LosePower(after, seed);

    Model found;
    if (!os.Exists(Name)) {
        EXPECT_FALSE(writer.HasCommit());
        return;
    }
    ASSERT_TRUE(ReadModel(os, &found)) << VFErrorGetText(VFGetBaseLibError());
    EXPECT_TRUE(found == writer.Attempted() || (writer.HasCommit() && found == writer.Committed()));
    VDStringArray findings;
    EXPECT_TRUE(Z4Manager(os).CheckFile(Name, &findings)) << findings[0];

    // No repair: the next writer just goes on, and what it leaves alone stays.
    Z4Manager manager(os);
    Z4File* const file = manager.OpenFile(Name, true);
    ASSERT_NE(file, nullptr);
    Z4Node* const node = file->GetRoot()->GetNode("Node");
    const std::string more = Bytes(60'000, 99);
    const std::size_t at = found.streams[1].size() / 2;
    found.streams[1].resize(std::max(found.streams[1].size(), at + more.size()));
    found.streams[1].replace(at, more.size(), more);
    EXPECT_TRUE(node->GetStream(1)->Write(static_cast<std::int64_t>(at), 60'000, more.data()) && node->Commit());
    EXPECT_TRUE(manager.CloseFile(file, true));
    Model again;
    EXPECT_TRUE(ReadModel(os, &again) && again == found);
}

int CountOperations()
{
    FaultStorageOs os;
    os.FailAt(-1, 0, false);
    EXPECT_TRUE(Writer(os).Run());
    return os.GetOperations();
}

}  // namespace

TEST(Crash, LeavesTheLastCommitWhereverItHappens)
{
    const int operations = CountOperations();
    ASSERT_GT(operations, 40);
    for (int operation = 0; operation < operations - 1; ++operation) {
        CrashAt(operation, FaultStorageOs::After::Keep, 0);
        CrashAt(operation, FaultStorageOs::After::Drop, 0);
        for (unsigned seed = 0; seed < 4; ++seed)
            CrashAt(operation, FaultStorageOs::After::Tear, seed);
        if (HasFailure())
            return;
    }
}

TEST(Crash, AFailedOperationIsReportedAndTheFileStaysWhole)
{
    const int operations = CountOperations();
    for (int operation = 0; operation < operations; ++operation) {
        SCOPED_TRACE(operation);
        FaultStorageOs os;
        Writer writer(os);
        os.FailAt(operation, ENOSPC, false);
        if (writer.Run())
            continue;  // cutting the file at its end may fail
        EXPECT_NE(VFErrorGetText(VFGetBaseLibError()).Find("No space left on device"), -1);
        writer.WriteOn();
        writer.Close(false);
        Model found;
        EXPECT_EQ(ReadModel(os, &found), os.Exists(Name));
        EXPECT_TRUE(!writer.HasCommit() || found == writer.Committed() || found == writer.Attempted());
        VDStringArray findings;
        EXPECT_TRUE(!os.Exists(Name) || Z4Manager(os).CheckFile(Name, &findings)) << findings[0];
    }
}

TEST(Crash, AfterAFullDiskTheSameWriterMayCommitWhatItHas)
{
    FaultStorageOs os;
    Writer writer(os);
    ASSERT_TRUE(writer.Start(true) && writer.Write(0, 0, 50'000) && writer.Commit());
    os.FailAt(0, ENOSPC, false);
    Writer copy(os);
    const Model before = writer.Committed();
    EXPECT_FALSE(writer.Write(0, 50'000, 100'000));
    ExpectError(VDArchiveError::FileWrite, "No space left on device");
    EXPECT_FALSE(copy.Start(true)) << "the file is in use";
    ExpectError(VDArchiveError::FileInUse, "another writer");
    ASSERT_TRUE(writer.Resize(0, 50'000) && writer.Commit() && writer.Close(true));
    Model found;
    ASSERT_TRUE(ReadModel(os, &found));
    EXPECT_EQ(found.streams[0], before.streams[0]);
}
