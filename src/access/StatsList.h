#pragma once

#include "vdbase/VDVariant.h"

#include <array>
#include <type_traits>

/// The statistics of a channel as they travel between the library and an access plug-in: a list of eight.
template <class Value>
struct VDStatsList
{
    std::array<Value, 5> values{};         ///< max, min, mean, sdev, rms
    std::array<std::int64_t, 3> points{};  ///< of max, min and largest absolute value

    void AppendTo(VDVariant& list) const
    {
        for (const Value value : values)
            list.AppendItem(VDVariant(value));
        for (const std::int64_t point : points)
            list.AppendItem(VDVariant::FromHuge(point));
    }

    /// False for a list of another length or precision; some fields may have changed then.
    bool TakeFrom(const VDVariant& list)
    {
        if (list.GetNumItems() != static_cast<int>(values.size() + points.size()))
            return false;
        int item = 0;
        for (Value& value : values)
            if (!Get(list[item++], &value))
                return false;
        for (std::int64_t& point : points)
            if (!list[item++].GetHuge(&point))
                return false;
        return true;
    }

private:
    static bool Get(const VDVariant& item, Value* value)
    {
        if constexpr (std::is_same_v<Value, double>)
            return item.GetDouble(value);
        else
            return item.GetFloat(value);
    }
};
