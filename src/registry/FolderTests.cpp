#include "FolderTests.h"

#include "ExtensionList.h"

#include "vdbase/VDPreferenceSystem.h"

#include <cstdint>
#include <initializer_list>

namespace {

VDStringArray VFExtensions(std::initializer_list<const char*> builtIn, const char* preferenceKey = nullptr)
{
    VDStringArray all;
    for (const char* extension : builtIn)
        all.AppendItem(extension);
    if (preferenceKey != nullptr)
        all.Append(VFSplitExtensions(VDPreferenceSystem().GetStringValue(preferenceKey, ""), ","));
    return all;
}

VDFolderTestRows VFReadFolderTestRows()
{
    return {{{VFExtensions({"mes", "mas", "ess"}), VFExtensions({"sig"})},
             {VFExtensions({"sig", "dsf"}, "/FileFormats/Qac/FolderExtensions"), VFExtensions({"qac"})},
             {VFExtensions({"fsf"}, "/FileFormats/Famos/FolderExtensions"), VFExtensions({"raw", "dat"})}}};
}

/// Rows with the state of the preferences that they were read from.
struct VDFolderTestCache
{
    std::uint64_t generation = VDPreferenceSystem::GetGeneration();
    VDFolderTestRows rows = VFReadFolderTestRows();
};

}  // namespace

const VDFolderTestRows& VFGetFolderTestRows()
{
    // One cache a thread: every name that is set asks here, and must neither wait nor copy.
    thread_local VDFolderTestCache cache;
    if (cache.generation != VDPreferenceSystem::GetGeneration())
        cache = VDFolderTestCache();
    return cache.rows;
}

bool VFIsFolderTestName(const VDString& folderExtensionLower, const VDString& fileExtensionLower, bool folderHasExtension)
{
    for (const VDFolderTestRow& row : VFGetFolderTestRows())
        if (row.folderExtensions.FindNoCase(folderExtensionLower) >= 0 &&
            (!folderHasExtension || row.fileExtensions.FindNoCase(fileExtensionLower) >= 0))
            return true;
    return false;
}
