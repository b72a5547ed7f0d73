// Test specs: one line of text that names tests.

#include "TestSpecs.h"
#include "VDFileId.h"
#include "VDFileIdArray.h"
#include "WholeTests.h"

#include "frame/ExportedWrapper.h"
#include "frame/VFDaxReport.h"
#include "registry/FormatDescriptors.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFFilename.h"

#include <optional>

namespace {

bool AskPlugins(const char* text, const char* routine, VDFileIdArray* tests)
{
    bool handled = false;
    const bool succeeded = VFRegistryTestDescToFileIdArray(text, tests, &handled);
    return handled || VFDaxReport(DaxError::DecodeDescriptor, routine, {.appended = text, .chain = succeeded ? 0 : 1}) != 0;
}

int ReportNumber(int code, const VDString& text)
{
    constexpr int specifier = -328606;
    return VFDaxReport(code, "VDFileId::CreateFromTestSpec", {.label = specifier, .name = text});
}

}  // namespace

bool VFListSpecTests(const char* text, const VDChanSep* rules, const char* routine, VDSpecTests& result)
{
    const VDString spec = text;
    result.fromPlugin = spec.Find("://") >= 0;
    if (result.fromPlugin) {
        *result.tests.Out() = FIACreate();
        return result.tests && AskPlugins(spec, routine, result.tests.Get());
    }
    const VDDirListHandle list(VFDirListCreate());
    return list && (rules == nullptr || VFDirListSetChanSep(list.Get(), rules) != 0) &&
           VFDirListSetFilesMatching(list.Get(), spec) != 0 && VFDirListCreateListWithInfo(list.Get()) != 0 &&
           VFDirListGetFileIdArray(list.Get(), result.tests.Out()) != 0;
}

int VDFileId::CreateFromTestSpec(const char* text)
{
    // A copy, as the id takes what it finds.
    const std::optional<VDChanSep> rules = record_.chanSep;
    VDSpecTests found;
    int count = 0;
    if (!VFListSpecTests(text, rules ? &*rules : nullptr, "VDFileId::CreateFromTestSpec", found) ||
        FIAGetSize(found.tests.Get(), &count) == 0)
        return 0;
    if (count == 0 && !found.fromPlugin) {
        // A temporary test may have no file yet.
        const VDString spec = text;
        const int end = spec.Find(';');
        if (const VDFileId* const temporary = VVAllTemporaryFileIds.Find(end < 0 ? spec : spec.Left(end))) {
            Assign(*temporary);
            return 1;
        }
    }
    if (count != 1)
        return ReportNumber(count == 0 ? DaxError::NoTestMatches : DaxError::SeveralTestsMatch, text);
    VDFileIdHandle test;
    if (FIAGetAt(found.tests.Get(), 0, test.Out()) == 0)
        return 0;
    if (!found.fromPlugin && ((rules && FIDSetChanSep(test.Get(), &*rules) == 0) || FIDFixTestPlusChannels(test.Get()) == 0))
        return 0;
    return Copy(test.Get(), ~std::uint32_t{VTFileIdCopySelectedChannels});
}

int VDFileIdArray::CreateFromTestSpec(const char* text)
{
    constexpr const char* routine = "VDFileIdArray::CreateFromTestSpec";
    VDSpecTests found;
    int count = 0;
    if (!VFListSpecTests(text, nullptr, routine, found)) {
        if (found.fromPlugin)
            Clear();
        return 0;
    }
    VDFileIdArray& tests = *found.tests.Get();
    tests.GetSize(&count);
    if (!found.fromPlugin && count == 0)
        return VFDaxReport(DaxError::NoTestMatches, routine, {.appended = VDString("\nTest spec: ") + text});
    if ((!found.fromPlugin && !VFFixTestsPlusChannels(tests)) || Clear() == 0)
        return 0;
    // Nobody else has the list, so its entries are as good as copies.
    for (const VDListedId& entry : tests.entries_)
        if (AppendItem(entry.Get()) == 0)
            return 0;
    return 1;
}

int FIDGetFilenamesForTestDescriptor(const char* text, char withMetadata, VDStringArray* filenames)
{
    return VFExport(__func__, [&] {
        if (filenames == nullptr)
            return 0;
        filenames->Clear();
        const VDFileIdHandle id(FIDCreate());
        if (!id || FIDCreateFromTestSpec(id.Get(), text) == 0)
            return 0;
        const VDFileIdRecord& record = id.Get()->GetRecord();
        VDString filename;
        if (record.nameForm == VTNameFormFile) {
            filenames->AppendItem(VFBuildFilename("", record.filename));
        } else {
            VDArrayWithSort<long> channels;
            if (FIDGetChans(id.Get(), &channels) == 0)
                return 0;
            for (int index = 0; index < channels.GetSize(); ++index) {
                if (FIDGetChanFilename(id.Get(), index, &filename) == 0)
                    return 0;
                filenames->AppendItem(filename);
            }
        }
        if (withMetadata == 0)
            return 1;
        if (VMDCreateFilenameFromFileId(id.Get(), &filename) == 0)
            return 0;
        if (VDFileSystem::FileExists(filename))
            filenames->AppendItem(filename);
        return 1;
    });
}
