#include "TestMetaData.h"

#include "vdbase/VFError.h"
#include "vdstore/LQChannelMapper.h"

LQChannelMapper* VFGetMetaData(VDTsAcc* acc)
{
    const VDErrorMute mute;
    LQChannelMapper* mapper = nullptr;
    return TSAccGetMetaData(acc, &mapper) != 0 ? mapper : nullptr;
}

void VFForEachItem(const LQChannelMapper& mapper, int slot,
                   const std::function<void(const std::string& set, const Z4Property& item)>& visit)
{
    for (int index = 0; index < mapper.GetMetaDataSetCount(slot); ++index) {
        const Z4PropertySet* set = mapper.GetMetaDataSet(index, slot);
        if (set == nullptr || set->GetName() == "InputTestInfo")
            continue;
        for (int item = 0; item < set->GetSize(); ++item)
            if (set->GetProperty(item)->IsDefined())
                visit(set->GetName().Str(), *set->GetProperty(item));
    }
}

void VFCopyItems(const LQChannelMapper& from, int fromSlot, LQChannelMapper& to, int toSlot)
{
    VFForEachItem(from, fromSlot, [&](const std::string& set, const Z4Property& item) {
        if (Z4PropertySet* target = to.AdoptMetaDataSet(set.c_str(), nullptr, toSlot))
            target->Copy(&item);
    });
}
