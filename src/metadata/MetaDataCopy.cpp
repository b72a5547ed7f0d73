#include "MetaDataCopy.h"

#include "MetaDataNames.h"
#include "frame/VFDaxReport.h"

#include "vdstore/LQChannelMapper.h"

#include <string>
#include <string_view>
#include <unordered_set>

namespace {

enum class VTCopyResult { Done, Failed, NotAdopted };

bool IsPrivate(const VDString& name)
{
    return name.View().starts_with("__");
}

/// The name under which a set goes to the target; null if it is left out.
const char* TargetSetName(const VDString& name, const VDMetaDataCopyOptions& options)
{
    if (name == LQChannelMapper::ATTRIBUTES && !options.attributes)
        return nullptr;
    if (name == DaxSetName::InputTestInfo && !options.testInfo)
        return nullptr;
    if (name == DaxSetName::LegacyExtraDetails)
        return DaxSetName::ExtraDetails;
    if (options.mode == VTMetaDataCopyPublic && (name == DaxSetName::PropertyOverrides || IsPrivate(name)))
        return nullptr;
    return name;
}

void CopyItems(const Z4PropertySet& source, Z4PropertySet& target, const VDMetaDataCopyOptions& options)
{
    for (int i = 0; i < source.GetSize(); ++i) {
        const Z4Property* const item = source.GetProperty(i);
        if (item == nullptr || (options.mode == VTMetaDataCopyPublic && IsPrivate(item->GetName())))
            continue;
        if (options.overwrite || !target.Exists(item->GetName(), false))
            target.Copy(item);
    }
}

/// @param only  the names of the sets to copy; null for all
VTCopyResult CopySets(LQChannelMapper& source, int sourceIndex, LQChannelMapper& target, int targetIndex,
                      const VDMetaDataCopyOptions& options, const std::unordered_set<std::string_view>* only = nullptr)
{
    // The number of sets is taken once: in a copy within one mapper the target may be the slot that is read.
    const int count = source.GetMetaDataSetCount(sourceIndex);
    for (int i = 0; i < count; ++i) {
        const Z4PropertySet* const set = source.GetMetaDataSet(i, sourceIndex);
        if (set == nullptr)
            return VTCopyResult::Failed;
        if (only != nullptr && !only->contains(set->GetName().View()))
            continue;
        const char* const targetName = TargetSetName(set->GetName(), options);
        if (targetName == nullptr)
            continue;
        Z4PropertySet* const targetSet = target.AdoptMetaDataSet(targetName, nullptr, targetIndex);
        if (targetSet == nullptr)
            return VTCopyResult::NotAdopted;
        CopyItems(*set, *targetSet, options);
    }
    return VTCopyResult::Done;
}

/// A negative source index means the global slot, and that goes to no channel.
void NormaliseIndexes(int& sourceIndex, int& targetIndex)
{
    if (sourceIndex < 0)
        sourceIndex = targetIndex = LQChannelMapper::GLOBAL;
    else if (targetIndex < 0)
        targetIndex = LQChannelMapper::GLOBAL;
}

std::string WithoutCase(VDString name)
{
    name.MakeLower();
    return name.Str();
}

/// The names of a list that match no set of a slot, white space around them and case aside, each with "; " behind it.
VDString UnmatchedNames(LQChannelMapper& mapper, int index, const VDStringArray& names)
{
    std::unordered_set<std::string> present;
    for (int i = 0; i < mapper.GetMetaDataSetCount(index); ++i)
        present.insert(WithoutCase(mapper.GetMetaDataSet(i, index)->GetName()));
    VDString unmatched;
    for (const VDString& name : names) {
        VDString trimmed = name;
        trimmed.Trim();
        if (!present.contains(WithoutCase(trimmed)))
            unmatched += name + "; ";
    }
    return unmatched;
}

/// Index in the target of the channel of this number, which is made if there is none; negative on failure.
int AdoptChannel(LQChannelMapper& target, long number)
{
    if (number < 0)
        return -1;
    if (const int present = target.IndexFromNumber(number, false); present >= 0)
        return present;
    LQChannelEntry* const entry = target.Append();
    return entry != nullptr && target.SetChannelNumber(number, entry) ? target.IndexFromNumber(number, false) : -1;
}

}  // namespace

bool VFCopyMetaDataSlot(LQChannelMapper& source, int sourceIndex, LQChannelMapper& target, int targetIndex,
                        VDMetaDataCopyOptions options)
{
    if (options.mode == VTMetaDataCopyWithAttributes && sourceIndex >= 0)
        options.attributes = true;
    NormaliseIndexes(sourceIndex, targetIndex);
    return CopySets(source, sourceIndex, target, targetIndex, options) == VTCopyResult::Done;
}

bool VFCopyMetaDataSelectedSets(LQChannelMapper& source, int sourceIndex, LQChannelMapper& target, int targetIndex,
                                VDMetaDataCopyOptions options, const char* routine)
{
    NormaliseIndexes(sourceIndex, targetIndex);
    if (options.sets == nullptr || options.sets->IsEmpty()) {
        if (options.check)
            VFDaxReportError(DaxError::NoSetNames, routine);
        return false;
    }
    if (options.check) {
        const VDString unmatched = UnmatchedNames(source, sourceIndex, *options.sets);
        if (!unmatched.IsEmpty()) {
            VDString text;
            text.FormatRuntime(VFDaxText(DaxError::UnmatchedSetNames), unmatched.c_str());
            VFDaxReport(DaxError::UnmatchedSetNames, routine, {.text = text});
            return false;
        }
    }
    std::unordered_set<std::string_view> only;
    for (const VDString& name : *options.sets)
        only.insert(name.View());
    const VTCopyResult result = CopySets(source, sourceIndex, target, targetIndex, options, &only);
    if (result == VTCopyResult::NotAdopted && options.check)
        VFDaxReportError(DaxError::AdoptSet, routine);
    return result == VTCopyResult::Done;
}

bool VFCopyMetaDataMapper(LQChannelMapper& source, LQChannelMapper& target, VDMetaDataCopyOptions options)
{
    const bool addChannels = options.mode == VTMetaDataCopyAddChannels;
    options.attributes = options.attributes || options.mode == VTMetaDataCopyWithAttributes;
    if (options.mode != VTMetaDataCopyPublic)
        options.mode = VTMetaDataCopyMatching;

    if (!VFCopyMetaDataSlot(source, LQChannelMapper::GLOBAL, target, LQChannelMapper::GLOBAL, options))
        return false;
    for (int i = 0; i < source.GetChannelCount(); ++i) {
        const long number = source.NumberFromIndex(i, false);
        const int targetIndex = addChannels ? AdoptChannel(target, number) : target.IndexFromNumber(number, false);
        if (targetIndex < 0) {
            if (addChannels)
                return false;
            continue;
        }
        if (!VFCopyMetaDataSlot(source, i, target, targetIndex, options))
            return false;
    }
    return true;
}
