#include "FaultStorageOs.h"
#include "support/TestSupport.h"
#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdarchive/Z4Manager.h"
#include "vdarchive/Z4Size.h"

namespace {

const char* const Name = "test.z4t";

/// All that a reader can see, or nothing if something of it is refused.
std::string ReadEverything(FaultStorageOs& os)
{
    Z4Manager manager(os);
    Z4File* const file = manager.OpenFile(Name, false);
    if (file == nullptr)
        return {};
    std::string seen = std::to_string(file->GetSubType());
    bool good = true;
    for (int i = 0; i < file->GetRoot()->GetNodeCount(); ++i) {
        Z4Node* const node = file->GetRoot()->GetNode(i);
        good = good && node != nullptr;
        for (int k = 0; good && k < node->GetStreamCount(); ++k) {
            Z4Stream& stream = *node->GetStream(k);
            std::string bytes(static_cast<std::size_t>(stream.GetLength()), ' ');
            good = stream.Read(0, stream.GetLength(), bytes.data());
            seen += node->GetName().Str() + node->GetContent() + bytes;
        }
    }
    manager.CloseFile(file, false);
    return good ? seen : std::string();
}

/// A file of several versions; gives where its data lie.
std::string MakeFile(FaultStorageOs& os, std::size_t* dataStart, std::size_t* dataEnd)
{
    std::string data(2'000, 'C');
    Z4Manager manager(os);
    Z4File* const file = manager.CreateFile(Name, nullptr);
    file->SetSubType(11);
    Z4Node* const node = file->GetRoot()->AdoptNode("Node", 1, nullptr);
    Z4Stream* const stream = node->AddStream(Z4Size::Record32K);
    for (const char* const content : {"first", "second", "third"}) {
        node->SetContent(content);
        data.assign(data.size(), static_cast<char>(data[0] + 1));
        EXPECT_TRUE(stream->Write(0, 2'000, data.data()) && node->Commit());
    }
    EXPECT_TRUE(manager.CloseFile(file, true));
    *dataStart = os.Content(Name).find(data);
    *dataEnd = *dataStart + data.size();
    return os.Content(Name);
}

}  // namespace

TEST(Damage, EveryByteThatGoesBadIsRefusedOrDoesNoHarm)
{
    FaultStorageOs os;
    std::size_t dataStart = 0;
    std::size_t dataEnd = 0;
    const std::string whole = MakeFile(os, &dataStart, &dataEnd);
    const std::string right = ReadEverything(os);
    ASSERT_FALSE(right.empty());
    ASSERT_NE(right.find("third"), std::string::npos);
    int refused = 0;
    VDStringArray findings;
    for (std::size_t i = 0; i < whole.size(); ++i)
        for (const int flip : {0x01, 0x80}) {
            os.Put(Name, whole);
            os.Content(Name)[i] = static_cast<char>(whole[i] ^ flip);
            VFErrorClear();
            const bool isData = i >= dataStart && i < dataEnd;
            const std::string seen = ReadEverything(os);
            if (isData)
                EXPECT_FALSE(Z4Manager(os).CheckFile(Name, &findings)) << i;
            else
                EXPECT_TRUE(seen.empty() || seen == right) << "byte " << i;
            if (!seen.empty())
                continue;
            ++refused;
            EXPECT_NE(VFErrorGetCode(VFGetBaseLibError()), 0);
        }
    EXPECT_GT(refused, 1'300) << "header, directory, table, index, content";
}

TEST(Damage, ATruncatedFileIsRefused)
{
    FaultStorageOs os;
    std::size_t unused = 0;
    const std::string whole = MakeFile(os, &unused, &unused);
    for (std::size_t size = 0; size < whole.size(); size += 64) {
        os.Put(Name, whole.substr(0, size));
        EXPECT_EQ(ReadEverything(os), "") << size;
        const int code = VFErrorGetCode(VFGetBaseLibError());
        EXPECT_EQ(code, size < 512 ? VDArchiveError::FileOpen : VDArchiveError::FileDamaged) << size;
        EXPECT_EQ(Z4Manager(os).OpenFile(Name, true), nullptr);
    }
}

TEST(Damage, CheckSaysWhatIsWrong)
{
    FaultStorageOs os;
    std::size_t start = 0;
    std::size_t end = 0;
    MakeFile(os, &start, &end);
    VDStringArray findings;
    EXPECT_TRUE(Z4Manager(os).CheckFile(Name, &findings));
    os.Content(Name)[start + 5] = 'X';
    EXPECT_FALSE(Z4Manager(os).CheckFile(Name, &findings));
    ASSERT_EQ(findings.GetSize(), 1);
    EXPECT_EQ(findings[0], "Object \"Node\", stream 0: the record at byte 0 doesn't match its checksum");
    EXPECT_FALSE(Z4Manager(os).CheckFile("nothing.z4t", &findings));
    EXPECT_NE(findings[0].Find("No such file"), -1);
}
