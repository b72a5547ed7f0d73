#include "FaultStorageOs.h"
#include "support/TestSupport.h"
#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdarchive/Z4Manager.h"
#include "vdarchive/Z4Size.h"

#include <cerrno>

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

/// What a version holds: the node's content and its two streams.
struct Model
{
    std::string content;
    std::string streams[2];
    bool operator==(const Model&) const = default;
};

/// Works on a file and remembers what it committed.
class Writer
{
public:
    explicit Writer(FaultStorageOs& os) : manager_(os) {}
    ~Writer() { Close(false); }

    bool Start(bool create)
    {
        file_ = create ? manager_.CreateFile(Name, nullptr) : manager_.OpenFile(Name, true);
        node_ = file_ == nullptr ? nullptr : file_->GetRoot()->AdoptNode("Node", 1, nullptr);
        while (node_ != nullptr && node_->GetStreamCount() < 2)
            node_->AddStream(Z4Size::Record32K);
        return node_ != nullptr;
    }
    bool Write(int stream, std::size_t at, std::size_t count)
    {
        const std::string bytes = Bytes(count, ++seed_);
        std::string& text = now_.streams[stream];
        text.resize(std::max(text.size(), at + count));
        text.replace(at, count, bytes);
        return node_->GetStream(stream)->Write(static_cast<std::int64_t>(at), static_cast<std::int64_t>(count),
                                               bytes.data());
    }
    bool Resize(int stream, std::size_t size)
    {
        now_.streams[stream].resize(size);
        return node_->GetStream(stream)->SetLength(static_cast<std::int64_t>(size));
    }
    bool Commit()
    {
        now_.content = Bytes(300, ++seed_);
        node_->SetContent(now_.content);
        attempted_ = now_;
        if (!node_->Commit())
            return false;
        committed_ = now_;
        hasCommit_ = true;
        return true;
    }
    /// What somebody does who doesn't look at failures.
    void WriteOn()
    {
        const std::string bytes(200'000, 'w');
        for (int i = 0; node_ != nullptr && i < node_->GetStreamCount(); ++i)
            node_->GetStream(i)->Write(0, 200'000, bytes.data());
    }
    bool Close(bool save)
    {
        node_ = nullptr;
        const bool good = file_ == nullptr || manager_.CloseFile(file_, save);
        file_ = nullptr;
        return good;
    }

    /// All that the tests do to a file; false at the first failure.
    bool Run()
    {
        return Start(true) && Write(0, 0, 100) && Write(1, 0, 70'000) && Commit() && Write(0, 100, 9'000) &&
               Write(1, 20'000, 50'000) && Commit() && Resize(1, 40'000) && Write(1, 150'000, 10) &&
               Write(0, 9'100, 100'000) && Commit() && Write(0, 32'768, 65'536) && Write(1, 3, 5) && Resize(0, 90'000) &&
               Commit() && Close(true) && Start(false) && Write(0, 90'000, 40'000) && Resize(1, 0) && Write(1, 0, 33'000) &&
               Commit() && Close(true);
    }

    const Model& Committed() const { return committed_; }
    const Model& Attempted() const { return attempted_; }
    bool HasCommit() const { return hasCommit_; }

private:
    Z4Manager manager_;
    Z4File* file_ = nullptr;
    Z4Node* node_ = nullptr;
    unsigned seed_ = 0;
    Model now_;
    Model attempted_;
    Model committed_;
    bool hasCommit_ = false;
};

bool ReadModel(FaultStorageOs& os, Model* model)
{
    Z4Manager manager(os);
    Z4File* const file = manager.OpenFile(Name, false);
    if (file == nullptr)
        return false;
    Z4Node* const node = file->GetRoot()->GetNode("Node");
    bool good = node != nullptr && node->GetStreamCount() == 2;
    for (int i = 0; good && i < 2; ++i) {
        Z4Stream& stream = *node->GetStream(i);
        model->streams[i].resize(static_cast<std::size_t>(stream.GetLength()));
        good = stream.Read(0, stream.GetLength(), model->streams[i].data());
    }
    if (good)
        model->content = node->GetContent();
    return manager.CloseFile(file, false) && good;
}

/// Stops a writer at an operation, and looks at what the disk has then.
void CrashAt(int operation, FaultStorageOs::After after, unsigned seed)
{
    SCOPED_TRACE("operation " + std::to_string(operation) + ", seed " + std::to_string(seed));
    FaultStorageOs os;
    Writer writer(os);
    os.FailAt(operation, EIO, true);
    ASSERT_FALSE(writer.Run());
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
            continue;  // cutting the file at its end or removing what is left may fail
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
