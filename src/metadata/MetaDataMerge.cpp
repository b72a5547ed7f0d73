#include "MetaDataMerge.h"

#include "vdstore/LQChannelMapper.h"

namespace {

bool MergeSlot(LQChannelMapper& target, int targetIndex, LQChannelMapper& source, int sourceIndex, bool overwrite)
{
    for (int i = 0; i < source.GetMetaDataSetCount(sourceIndex); ++i) {
        const Z4PropertySet* const set = source.GetMetaDataSet(i, sourceIndex);
        if (set == nullptr)
            return false;
        if (set->GetName() == LQChannelMapper::ATTRIBUTES)
            continue;
        Z4PropertySet* const targetSet = target.AdoptMetaDataSet(set->GetName(), nullptr, targetIndex);
        if (targetSet == nullptr)
            return false;
        if (targetSet == set)
            continue;
        // What is overwritten goes at once, and all that is new comes behind what is left.
        if (overwrite)
            targetSet->RemovePropertiesOf(*set);
        if (!targetSet->Copy(set, true))
            return false;
    }
    return true;
}

bool CloneSlot(LQChannelMapper& target, LQChannelMapper& source, int index)
{
    for (int i = 0; i < source.GetMetaDataSetCount(index); ++i) {
        const Z4PropertySet* const set = source.GetMetaDataSet(i, index);
        if (set == nullptr)
            return false;
        Z4PropertySet* const targetSet = target.AdoptMetaDataSet(set->GetName(), nullptr, index);
        if (targetSet == nullptr || !targetSet->Copy(set, false))
            return false;
    }
    return true;
}

bool CloneChannel(LQChannelMapper& target, LQChannelMapper& source, int index)
{
    LQChannelEntry* const entry = target.Append();
    long number = -1;
    if (entry == nullptr || !source.GetChannelNumber(number, index))
        return false;
    if (number < 0)
        return true;
    VDString title;
    return source.GetChanTitle(title, index) && target.SetChanTitle(title, entry) &&
           target.SetChannelNumber(number, index) && CloneSlot(target, source, index);
}

}  // namespace

bool VFMergeMetaData(LQChannelMapper& target, LQChannelMapper& source, bool overwrite)
{
    if (!MergeSlot(target, LQChannelMapper::GLOBAL, source, LQChannelMapper::GLOBAL, overwrite))
        return false;
    for (int i = 0; i < source.GetChannelCount(); ++i) {
        const long number = source.NumberFromIndex(i, false);
        if (number < 0)
            return false;
        const int targetIndex = target.IndexFromNumber(number, false);
        if (targetIndex >= 0 && !MergeSlot(target, targetIndex, source, i, overwrite))
            return false;
    }
    return true;
}

std::unique_ptr<LQChannelMapper> VFCloneMapper(LQChannelMapper& source)
{
    auto clone = std::make_unique<LQChannelMapper>(nullptr);
    clone->Clear();
    for (int i = 0; i < source.GetChannelCount(); ++i)
        if (!CloneChannel(*clone, source, i))
            return nullptr;
    return CloneSlot(*clone, source, LQChannelMapper::GLOBAL) ? std::move(clone) : nullptr;
}
