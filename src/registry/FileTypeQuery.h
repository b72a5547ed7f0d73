#pragma once

#include "frame/VDDaxLib.h"
#include "VDFormatRegistry.h"

#include "daxlib/FID.h"

#include <mutex>

/// The shape of every question to the tables: have them filled, then look at them under the library lock.

/// @param answer  takes the registry and gives the result of the question
template <class Answer>
bool VFAskRegistry(Answer&& answer)
{
    VDFormatRegistry& registry = VDFormatRegistry::Get();
    if (!registry.LoadPlugIns())
        return false;
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    return answer(registry);
}

/// The same about one file type. An unknown type is recorded and fails.
/// @param answer  takes the registry and the row of the type
template <class Answer>
bool VFAskFileType(int fileId, int subId, Answer&& answer)
{
    return VFAskRegistry([&](VDFormatRegistry& registry) {
        const VDFileInfoFileIdInfo* type = registry.GetFileType(fileId, subId);
        return type != nullptr && answer(registry, *type);
    });
}

/// The same about the file type of an id or, for a null id, that of the two numbers.
template <class Answer>
bool VFAskFileType(VDFileId* id, int fileId, int subId, Answer&& answer)
{
    // The id may have to be identified for this, which reads a file, so it is asked before the lock is taken.
    return VDFormatRegistry::Get().LoadPlugIns() && (id == nullptr || FIDGetFileId(id, &fileId, &subId)) &&
           VFAskFileType(fileId, subId, answer);
}
