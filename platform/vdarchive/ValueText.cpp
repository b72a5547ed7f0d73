#include "ValueText.h"

#include "vdbase/VDStringArray.h"

VDString VFValueToText(const std::vector<double>& value)
{
    VDString text;
    for (const double each : value) {
        if (!text.IsEmpty())
            text += ' ';
        text += VFValueToText(each);
    }
    return text;
}

bool VFTextToValue(const char* text, std::vector<double>* value)
{
    VDStringArray parts;
    parts.SplitString(text, " \t\r\n\v\f");
    std::vector<double> read;
    for (const VDString& part : parts) {
        if (part.IsEmpty())
            continue;
        if (!VFTextToValue(part, &read.emplace_back()))
            return false;
    }
    *value = std::move(read);
    return true;
}
