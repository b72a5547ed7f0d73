#include "ObjectFaults.h"

#include "support/TestSupport.h"
#include "vdarchive/FaultStorageOs.h"
#include "vdbase/VFChecksum.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

const char* const Name = "test.z4x";

/// Reads the file of a disk; gives the version that it holds, or -1, recorded, for one that can't be read.
int ReadVersion(FaultStorageOs& os, const ObjectScenario& scenario)
{
    LQDataManager manager(os);
    Z4File* const file = manager.GetFileManager()->OpenFile(Name, false);
    const bool isEmpty = file != nullptr && file->GetRoot()->GetNodeCount() == 0;
    LQObject* const object = file == nullptr || isEmpty ? nullptr : scenario.adopt(manager, file->GetRoot());
    int found = isEmpty ? 0 : -1;
    for (int version = 0; object != nullptr && found < 0 && version <= scenario.versions; ++version)
        found = scenario.holds(*object, version) ? version : -1;
    if (object != nullptr)
        manager.Close(object, false);
    if (file != nullptr)
        manager.GetFileManager()->CloseFile(file, false);
    return found;
}

/// Writes one version after the other, the second half of them in a file that is opened again.
/// @param committed  the last one whose flush succeeded
bool WriteAll(FaultStorageOs& os, const ObjectScenario& scenario, int* committed)
{
    LQDataManager manager(os);
    bool good = true;
    for (int part = 0; good && part < 2; ++part) {
        Z4Manager& files = *manager.GetFileManager();
        Z4File* const file = part == 0 ? files.CreateFile(Name, nullptr) : files.OpenFile(Name, true);
        LQObject* const object = file == nullptr ? nullptr : scenario.adopt(manager, file->GetRoot());
        good = object != nullptr;
        for (int version = *committed; good && version < scenario.versions / (2 - part); ++version) {
            good = scenario.write(*object, version) && manager.Flush(object);
            *committed += good ? 1 : 0;
        }
        good = (object == nullptr || manager.Close(object, good)) && good;
        good = (file == nullptr || files.CloseFile(file, good)) && good;
    }
    return good;
}

/// Stops or fails one operation. Gives false when there is none of this number.
bool TryAt(const ObjectScenario& scenario, int operation, bool dead, FaultStorageOs::After after, unsigned seed)
{
    SCOPED_TRACE("operation " + std::to_string(operation) + (dead ? ", seed " + std::to_string(seed) : ", full disk"));
    FaultStorageOs os;
    os.FailAt(operation, dead ? EIO : ENOSPC, dead);
    int committed = 0;
    if (WriteAll(os, scenario, &committed) && os.GetOperations() <= operation)
        return false;
    if (dead)
        os.LosePower(after, seed);
    if (!os.Exists(Name)) {
        EXPECT_EQ(committed, 0);
        return true;
    }
    const int found = ReadVersion(os, scenario);
    // A commit of which nobody knows how it ended may have happened.
    EXPECT_TRUE(found == committed || found == committed + 1)
        << found << " and not " << committed << VFErrorGetText(VFGetBaseLibError());
    VDStringArray findings;
    EXPECT_TRUE(LQDataManager(os).GetFileManager()->CheckFile(Name, &findings)) << findings[0];
    return true;
}

}  // namespace

std::string OfOtherByteOrder(std::string file)
{
    const auto mirror = [&file](std::ptrdiff_t offset, std::ptrdiff_t size) {
        std::reverse(file.begin() + offset, file.begin() + offset + size);
    };
    file[8] = 1;
    for (const int offset : {12, 16, 20, 80})
        mirror(offset, 4);
    const std::uint64_t sum = VFChecksum(file.data(), 504);
    std::memcpy(file.data() + 504, &sum, sizeof sum);
    mirror(504, 8);
    return file;
}

void ExpectSurvivesFaults(const ObjectScenario& scenario)
{
    using After = FaultStorageOs::After;
    for (int operation = 0; TryAt(scenario, operation, true, After::Keep, 0) && !testing::Test::HasFailure(); ++operation) {
        TryAt(scenario, operation, true, After::Drop, 0);
        TryAt(scenario, operation, true, After::Tear, 1);
        TryAt(scenario, operation, true, After::Tear, 2);
        TryAt(scenario, operation, false, After::Keep, 0);
    }

    FaultStorageOs os;
    int committed = 0;
    ASSERT_TRUE(WriteAll(os, scenario, &committed)) << VFErrorGetText(VFGetBaseLibError());
    const std::string whole = os.Content(Name);
    for (std::size_t at = 0; at < whole.size(); at += at < 12288 || whole.size() < 40'000 ? 1 : 7) {
        os.Put(Name, whole);
        os.Content(Name)[at] = static_cast<char>(whole[at] ^ 0x10);
        VFErrorClear();
        VDStringArray findings;
        EXPECT_TRUE(ReadVersion(os, scenario) == scenario.versions || VFErrorGetCode(VFGetBaseLibError()) != 0 ||
                    !LQDataManager(os).GetFileManager()->CheckFile(Name, &findings))
            << "byte " << at;
    }
}
