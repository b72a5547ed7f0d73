#include "TestIndex.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFByteOrder.h"

#include <algorithm>

namespace {

/// The format whose files go together whatever their byte order is.
constexpr int VVAnyByteOrder = 11;

/// Whether a name that differs in case leads to the same file, as it does where case doesn't count.
bool VFLeadsToSameFile(const VDChannelFile& file, const VDChannelFile& test)
{
    VDChannelFile named = test;
    named.channel = file.channel;
    named.title = file.title;
    const auto place = VDFileSystem::FindPlace(VFNameOfChannelFile(named));
    return place && place == VDFileSystem::FindPlace(VFNameOfChannelFile(file));
}

}  // namespace

bool VDTestIndex::HasName(const VDChannelFile& channel) const
{
    return foldedNames_.contains(FoldedKeyOf(channel));
}

VDFileId* VDTestIndex::Find(const VDChannelFile& channel, const VDTestType& type) const
{
    const Name* const name = FindName(channel);
    if (name == nullptr)
        return nullptr;
    const auto tests = std::find_if(name->tests.begin(), name->tests.end(), [&](const Tests& candidate) {
        return candidate.fileId == type.fileId && candidate.subId == type.subId;
    });
    if (tests == name->tests.end())
        return nullptr;
    const ByteOrder order = OrderOf(type);
    int found = -1;
    for (int candidate = Unknown; candidate < NumByteOrders; ++candidate) {
        const auto at = static_cast<std::size_t>(candidate);
        const bool fits = candidate == Unknown || order == Unknown || candidate == order;
        if (fits && tests->first[at] != nullptr &&
            (found < 0 || tests->position[at] < tests->position[static_cast<std::size_t>(found)]))
            found = candidate;
    }
    return found < 0 ? nullptr : tests->first[static_cast<std::size_t>(found)];
}

void VDTestIndex::Enter(const VDChannelFile& channel, const VDTestType& type, VDFileId* test)
{
    const std::string key = KeyOf(channel);
    foldedNames_.try_emplace(FoldedKeyOf(channel), key);
    Name& name = names_.try_emplace(key, Name{channel, {}}).first->second;
    auto tests = std::find_if(name.tests.begin(), name.tests.end(), [&](const Tests& candidate) {
        return candidate.fileId == type.fileId && candidate.subId == type.subId;
    });
    if (tests == name.tests.end())
        tests = name.tests.insert(tests, {.fileId = type.fileId, .subId = type.subId});
    const auto order = static_cast<std::size_t>(OrderOf(type));
    if (tests->first[order] != nullptr)
        return;
    tests->first[order] = test;
    tests->position[order] = count_++;
}

std::string VDTestIndex::KeyOf(const VDChannelFile& channel)
{
    std::string key = channel.testName.Str();
    key += '\0';
    key += channel.testExtension.Str();
    key += '\0';
    key += channel.originalExtension.Str();
    return key;
}

std::string VDTestIndex::FoldedKeyOf(const VDChannelFile& channel)
{
    VDString key = KeyOf(channel);
    key.MakeLower();
    return key.Str();
}

VDTestIndex::ByteOrder VDTestIndex::OrderOf(const VDTestType& type)
{
    if (type.fileId == VVAnyByteOrder || !VFIsValidOpSys(type.opSys))
        return Unknown;
    return VFNeedSwap(type.opSys, VTOpSysLittleEndian, 0) ? Big : Little;
}

const VDTestIndex::Name* VDTestIndex::FindName(const VDChannelFile& channel) const
{
    if (const auto found = names_.find(KeyOf(channel)); found != names_.end())
        return &found->second;
    const auto folded = foldedNames_.find(FoldedKeyOf(channel));
    if (folded == foldedNames_.end())
        return nullptr;
    const Name& name = names_.find(folded->second)->second;
    return VFLeadsToSameFile(channel, name.channel) ? &name : nullptr;
}
