#pragma once

#include "vdstore/LQChannelMapper.h"

#include <string>

/// Everything in a slot: "Set(item=value item=value) Set()". With types the last digits of the type's id stand behind the
/// item: "Set(item:6c=value)".
inline std::string DumpMetaData(const LQChannelMapper& mapper, int index, bool withTypes = false)
{
    std::string text;
    for (int i = 0; i < mapper.GetMetaDataSetCount(index); ++i) {
        const Z4PropertySet& set = *mapper.GetMetaDataSet(i, index);
        text += (i == 0 ? "" : " ") + set.GetName().Str() + "(";
        for (int j = 0; j < set.GetSize(); ++j) {
            const Z4Property& item = *set.GetProperty(j);
            VDString type;
            if (withTypes)
                type.Format(":%02x", static_cast<unsigned>(item.GetType()) & 0xffU);
            text += (j == 0 ? "" : " ") + item.GetName().Str() + type.Str() + "=" + item.ToString().Str();
        }
        text += ")";
    }
    return text;
}
