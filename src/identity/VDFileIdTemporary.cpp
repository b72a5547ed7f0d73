// Temporary tests, whose files go with their last id.

#include "VDFileId.h"

#include "vdbase/VFError.h"

#include <optional>

/// A temporary test. Copies of its ids may come to stand for other tests, the finished output above all, so it knows itself
/// which files it deletes.
struct VDFileId::VDTemporaryTest
{
    std::optional<VDFileIdRecord> names;  ///< once the id that it goes by has another type or is gone
};

void VDFileId::StartTemporaryTest()
{
    LeaveTemporaryTest();
    EnterTemporaryTest(std::make_shared<VDTemporaryTest>());
    namesTemporaryTest_ = true;
}

void VDFileId::JoinTemporaryTest(const VDFileId& other)
{
    LeaveTemporaryTest();
    EnterTemporaryTest(other.temporaryTest_);
}

void VDFileId::LeaveTemporaryTest()
{
    if (!temporaryTest_)
        return;
    // A test whose first id never got a name goes by that of another id.
    if (namesTemporaryTest_ || !temporaryTest_->names)
        KeepTemporaryNames();
    namesTemporaryTest_ = false;
    const std::shared_ptr<VDTemporaryTest> test = temporaryTest_;
    EnterTemporaryTest(nullptr);
    if (test.use_count() > 1 || !test->names)
        return;

    // Files are deleted by the names as they stand, with no lazy step. One that can't be deleted is no failure of the
    // operation that gave the test up.
    const VDErrorMute mute;
    VDFileId leftOver;
    leftOver.checkRunning_ = true;
    leftOver.record_ = std::move(*test->names);
    leftOver.DeleteTest();
}

void VDFileId::EnterTemporaryTest(std::shared_ptr<VDTemporaryTest> test)
{
    if (test == temporaryTest_)
        return;
    if (temporaryTest_)
        VVAllTemporaryFileIds.Remove(temporaryPlace_);
    temporaryTest_ = std::move(test);
    if (temporaryTest_)
        temporaryPlace_ = VVAllTemporaryFileIds.Add(this);
}

void VDFileId::EndNamingTemporaryTest()
{
    if (namesTemporaryTest_)
        KeepTemporaryNames();
    namesTemporaryTest_ = false;
}

void VDFileId::KeepTemporaryNames()
{
    if (!IsTemporaryType() || record_.filename.IsEmpty())
        return;
    temporaryTest_->names = record_;
    temporaryTest_->names->extraData = {};
}
