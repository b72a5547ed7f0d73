#include "VDTsAcc.h"

#include "frame/VFDaxReport.h"

#include <algorithm>
#include <tuple>

using namespace DaxTimeSeries;

bool VDTsAcc::GetFullScaleLimits(int index, float* low, float* high)
{
    constexpr const char* routine = "GetFullScaleLimits";
    VDVariant list;
    if (!CheckOpenAndChannel(index, false, routine) || !core_.GetValue(index, FullScale, &list))
        return false;
    float first = 0;
    float second = 0;
    if (list.GetNumItems() != 2 || !list[0].GetFloat(&first) || !list[1].GetFloat(&second))
        return core_.Report(index, DaxError::FullScaleUnknown, routine);
    std::tie(*low, *high) = std::minmax(first, second);
    if (!AddsOffsets())
        return true;
    if (!core_.GetOffsets().Need())
        return false;
    *low += GetOffset(index);
    *high += GetOffset(index);
    return true;
}

bool VDTsAcc::SetFullScaleLimits(int index, float limit, float otherLimit)
{
    constexpr const char* routine = "SetFullScaleLimits";
    if (!CheckOpenAndChannel(index, false, routine) || !core_.CheckWritable(routine))
        return false;
    const auto [low, high] = std::minmax(limit, otherLimit);
    return core_.PutValue(index, FullScale, VDVariant::FromList({VDVariant(low), VDVariant(high)}));
}

bool VDTsAcc::GetFullScaleValid(int index, char* valid)
{
    *valid = 0;
    VDVariant answer;
    if (!CheckOpenAndChannel(index, false, "GetFullScaleValid") || !core_.GetValue(index, FullScaleValid, &answer))
        return false;
    bool isValid = false;
    answer.GetBoolean(&isValid);
    *valid = isValid ? 1 : 0;
    return true;
}
