#include "FaultStorageOs.h"
#include "support/TestSupport.h"
#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdarchive/Z4Manager.h"
#include "vdarchive/Z4Size.h"

#include <algorithm>
#include <random>

namespace {

const char* const Name = "test.z4t";

std::string ReadAll(Z4Stream& stream)
{
    std::string bytes(static_cast<std::size_t>(stream.GetLength()), 'x');
    EXPECT_TRUE(stream.Read(0, stream.GetLength(), bytes.data())) << VFErrorGetText(VFGetBaseLibError());
    return bytes;
}

/// Streams in a file beside texts that ought to say the same.
class Model
{
public:
    explicit Model(unsigned seed) : random_(seed)
    {
        Z4FileInfo info;
        info.SetDefaultStreamIndexSize(16);
        file_ = manager_.CreateFile(Name, &info);
        node_ = file_->GetRoot()->AdoptNode("Node", 1, nullptr);
        for (std::string& text : now_) {
            node_->AddStream(Z4Size::Record32K);
            text.clear();
        }
    }
    ~Model() { manager_.CloseFile(file_, true); }

    void Step()
    {
        const auto what = random_() % 20;
        const std::size_t which = random_() % std::size(now_);
        std::string& text = now_[which];
        Z4Stream& stream = *node_->GetStream(static_cast<int>(which));
        if (what < 14) {
            const std::size_t gap = random_() % 8 == 0 ? random_() % 600'000 : 0;
            const std::size_t at = random_() % 2 == 0 ? text.size() + gap : random_() % (text.size() + 1);
            const std::size_t count = random_() % 3 == 0 ? random_() % 200 : random_() % 150'000;
            std::string bytes(count, static_cast<char>('a' + random_() % 26));
            ASSERT_TRUE(stream.Write(static_cast<std::int64_t>(at), static_cast<std::int64_t>(count), bytes.data()));
            if (count > 0)
                text.resize(std::max(text.size(), at + count));
            text.replace(std::min(at, text.size()), count, bytes);
        } else if (what < 16) {
            text.resize(random_() % 2 == 0 ? random_() % (text.size() + 1) : text.size() + random_() % 70'000);
            ASSERT_TRUE(stream.SetLength(static_cast<std::int64_t>(text.size())));
        } else if (what < 19) {
            ASSERT_TRUE(node_->Commit()) << VFErrorGetText(VFGetBaseLibError());
            for (std::size_t i = 0; i < std::size(now_); ++i)
                committed_[i] = now_[i];
        } else {
            node_->Disclaim();
            ASSERT_TRUE(manager_.CloseFile(file_, false));
            VDStringArray findings;
            EXPECT_TRUE(!os_.Exists(Name) || manager_.CheckFile(Name, &findings)) << findings[0];
            Reopen();
        }
        Compare(node_, now_);
    }

    /// What a reader sees that opened the file before the last steps.
    void ReadWhile(int steps)
    {
        Z4File* const reader = os_.Exists(Name) ? manager_.OpenFile(Name, false) : nullptr;
        std::string seen[2] = {committed_[0], committed_[1]};
        for (int i = 0; i < steps && !testing::Test::HasFatalFailure(); ++i)
            Step();
        if (reader == nullptr)
            return;
        Compare(reader->GetRoot()->GetNode("Node"), seen);
        manager_.CloseFile(reader, false);
    }

    std::size_t FileSize() { return os_.Exists(Name) ? os_.Content(Name).size() : 0; }

private:
    void Reopen()
    {
        const bool isThere = os_.Exists(Name);
        file_ = isThere ? manager_.OpenFile(Name, true) : manager_.CreateFile(Name, nullptr);
        ASSERT_NE(file_, nullptr) << VFErrorGetText(VFGetBaseLibError());
        node_ = file_->GetRoot()->AdoptNode("Node", 1, nullptr);
        while (node_->GetStreamCount() < 2)
            node_->AddStream(Z4Size::Record32K);
        for (std::size_t i = 0; i < std::size(now_); ++i)
            now_[i] = committed_[i];
    }
    static void Compare(Z4Node* node, const std::string (&expected)[2])
    {
        for (int i = 0; i < 2; ++i)
            ASSERT_TRUE(ReadAll(*node->GetStream(i)) == expected[i]);
    }

    FaultStorageOs os_;
    Z4Manager manager_{os_};
    std::mt19937 random_;
    Z4File* file_ = nullptr;
    Z4Node* node_ = nullptr;
    std::string now_[2];
    std::string committed_[2];
};

}  // namespace

TEST(Stream, KeepsWhatIsWrittenInAnyOrderAndReadersSeeTheirCommit)
{
    for (unsigned seed = 0; seed < 12 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Model model(seed);
        for (int i = 0; i < 12 && !HasFailure(); ++i)
            model.ReadWhile(10);
    }
}

TEST(Stream, SpaceOfOlderVersionsIsUsedAgain)
{
    FaultStorageOs os;
    Z4Manager manager(os);
    Z4File* const file = manager.CreateFile(Name, nullptr);
    Z4Node* const node = file->GetRoot()->AdoptNode("Node", 1, nullptr);
    Z4Stream* const stream = node->AddStream(Z4Size::Record32K);
    const std::string bytes(1'000'000, 'b');
    for (int i = 0; i < 30; ++i)
        ASSERT_TRUE(stream->Write(0, 1'000'000, bytes.data()) && stream->Write(i, 1, "c") && node->Commit());
    EXPECT_LT(os.Content(Name).size(), 3'500'000u);
    manager.CloseFile(file, true);
}

TEST(Stream, AFileThatIsFlushedOftenTakesLittleMoreThanItsData)
{
    for (const std::size_t piece : {400U, 4'000U, 32'768U, 400'000U}) {
        FaultStorageOs os;
        Z4Manager manager(os);
        Z4File* const file = manager.CreateFile(Name, nullptr);
        Z4Node* const node = file->GetRoot()->AdoptNode("Node", 1, nullptr);
        const std::string bytes(piece, 'b');
        std::size_t data = 0;
        for (int i = 0; i < 8; ++i)
            node->AddStream(Z4Size::Record32K);
        while (data < 4'000'000) {
            for (int i = 0; i < 8; ++i)
                ASSERT_TRUE(
                    node->GetStream(i)->Write(node->GetStream(i)->GetLength(), static_cast<int>(piece), bytes.data()));
            ASSERT_TRUE(node->Commit());
            data += 8 * piece;
            ASSERT_LT(os.Content(Name).size(), data + data / 10 * 3 + 1'048'576) << data;
        }
        ASSERT_TRUE(manager.CloseFile(file, true));
        EXPECT_LT(os.Content(Name).size(), data + data / 10) << piece;
    }
    // Room in the middle of a file is used when it grows again, and room at its end given back.
    FaultStorageOs os;
    Z4Manager manager(os);
    Z4File* file = manager.CreateFile(Name, nullptr);
    Z4Node* node = file->GetRoot()->AdoptNode("Node", 1, nullptr);
    const std::string bytes(1'000'000, 'b');
    for (int i = 0; i < 4; ++i)
        ASSERT_TRUE(node->AddStream(Z4Size::Record32K)->Write(0, 1'000'000, bytes.data()) && node->Commit());
    ASSERT_TRUE(node->RemoveStream(0) && node->RemoveStream(0) && node->Commit());
    ASSERT_TRUE(node->AddStream(Z4Size::Record32K)->Write(0, 1'000'000, bytes.data()) && node->Commit());
    EXPECT_LT(os.Content(Name).size(), 4'300'000U);
    ASSERT_TRUE(node->RemoveStream(1) && node->Commit() && manager.CloseFile(file, true));
    EXPECT_LT(os.Content(Name).size(), 3'300'000U);
}

TEST(Stream, ManySmallStreamsAndHugeGapsTakeLittleRoom)
{
    const TestFolder folder;
    const std::string name = folder.Name("many.z4t");
    Z4Manager manager;
    Z4File* file = manager.CreateFile(name.c_str(), nullptr);
    Z4Node* node = file->GetRoot()->AdoptNode("Node", 1, nullptr);
    for (int i = 0; i < 10'000; ++i)
        ASSERT_TRUE(node->AddStream(Z4Size::Record32K)->Write(0, 4, &i));
    Z4Stream* huge = node->AddStream(Z4Size::Record32K);
    constexpr std::int64_t End = std::int64_t(12'000'000'000);
    ASSERT_TRUE(huge->SetLength(End) && huge->Write(End / 2, 3, "abc") && node->Commit());
    ASSERT_TRUE(manager.CloseFile(file, true));
    EXPECT_LT(TestReadFile(name).size(), 50'000'000u);

    file = manager.OpenFile(name.c_str(), false);
    node = file->GetRoot()->GetNode("Node");
    int value = 0;
    ASSERT_TRUE(node->GetStream(9'999)->Read(0, 4, &value));
    EXPECT_EQ(value, 9'999);
    char text[5] = {};
    ASSERT_TRUE(node->GetStream(10'000)->Read(End / 2 - 1, 5, text));
    EXPECT_EQ(std::string(text, 5), std::string("\0abc\0", 5));
    EXPECT_FALSE(node->GetStream(10'000)->Read(End - 2, 5, text));
    ExpectError(VDArchiveError::WrongUse);
    EXPECT_FALSE(node->GetStream(0)->Write(0, 4, &value));
    ExpectError(VDArchiveError::WrongUse, "open for reading");
    manager.CloseFile(file, false);
}
