#include "TestMetaData.h"

#include "ToolError.h"

#include "vdbase/VFError.h"
#include "vdstore/LQAttributeNames.h"
#include "vdstore/LQChannelMapper.h"

#include <algorithm>
#include <iterator>

namespace {

/// What the library reports for a format that keeps no metadata.
constexpr int VVKeepsNone = -327992;

constexpr const char* VVInputInfo = "InputTestInfo";

/// Attributes that are header values and statistics under other names.
bool VFIsDerived(const VDString& set, const char* name)
{
    using namespace LQAttribute;
    static constexpr const char* header[] = {XTitle, XUnits, ChanTitle, YTitle, YUnits, SampleRate, BaseTime, NumPoints};
    const auto isOneOf = [&](const auto& names) {
        return std::any_of(std::begin(names), std::end(names), [&](const char* each) { return VDString(name) == each; });
    };
    return set == LQChannelMapper::ATTRIBUTES &&
           (isOneOf(header) || isOneOf(Stats) || isOneOf(StatPoints) || isOneOf(StatTimes));
}

}  // namespace

LQChannelMapper* VFGetMetaData(const VDTestAccess& test)
{
    LQChannelMapper* mapper = nullptr;
    if (test.GetMetaData(&mapper) != 0)
        return mapper;
    if (VFErrorGetCode(VFGetBaseLibError()) != VVKeepsNone)
        throw VDFailure();
    VFErrorClear();
    return nullptr;
}

LQChannelMapper& VFNeedMetaData(const VDTestAccess& test)
{
    LQChannelMapper* const mapper = VFGetMetaData(test);
    if (mapper == nullptr)
        VFFail(DaxToolError::NoItem, "There are no metadata, and the format has no place for them", "VFNeedMetaData");
    return *mapper;
}

void VFForEachSet(const LQChannelMapper& mapper, int slot, const std::function<void(const Z4PropertySet& set)>& visit)
{
    for (int index = 0; index < mapper.GetMetaDataSetCount(slot); ++index)
        if (const Z4PropertySet* set = mapper.GetMetaDataSet(index, slot))
            visit(*set);
}

bool VFIsOwnItem(const std::string& set, const char* item)
{
    return set != VVInputInfo && !VFIsDerived(set.c_str(), item);
}

void VFForEachOwnItem(const LQChannelMapper& mapper, int slot,
                      const std::function<void(const std::string& set, const Z4Property& item)>& visit)
{
    VFForEachSet(mapper, slot, [&](const Z4PropertySet& set) {
        for (int index = 0; index < set.GetSize(); ++index)
            if (const Z4Property& item = *set.GetProperty(index); VFIsOwnItem(set.GetName().Str(), item.GetName()))
                visit(set.GetName().Str(), item);
    });
}

std::string VFItemName(const std::string& set, const Z4Property& item)
{
    return "metadata " + set + "/" + item.GetName().Str();
}

void VFCopyItems(const LQChannelMapper& from, int fromSlot, LQChannelMapper& to, int toSlot)
{
    VFForEachOwnItem(from, fromSlot, [&](const std::string& set, const Z4Property& item) {
        if (fromSlot == LQChannelMapper::GLOBAL && set == VVExtraDetails && item.IsDefined())
            return;
        if (Z4PropertySet* target = to.AdoptMetaDataSet(set.c_str(), nullptr, toSlot))
            target->Copy(&item);
    });
}

void VFDropInputInfo(LQChannelMapper& mapper)
{
    for (int slot = LQChannelMapper::GLOBAL; slot < mapper.GetChannelCount(); ++slot)
        mapper.DeleteMetaDataSet(VVInputInfo, slot);
}
