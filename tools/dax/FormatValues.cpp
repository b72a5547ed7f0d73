#include "FormatValues.h"

#include "ToolError.h"

namespace {

VDVariant VFGetValue(const VDTestAccess& test, const char* name)
{
    VDVariant value;
    VFCheck(test.GetFormatValue(name, &value));
    return value;
}

}  // namespace

std::string VDFormatValue::Text() const
{
    VDString text;
    return value.ConvertToString(&text) ? text.Str() : std::string();
}

std::vector<VDFormatValue> VFGetFormatValues(const VDTestAccess& test)
{
    const VDVariant names = VFGetValue(test, DaxFormatValue::Names);
    std::vector<VDFormatValue> values;
    for (int index = 0; index < names.GetNumItems(); ++index) {
        VDString name;
        if (!names[index].GetString(&name) || name.CompareNoCase(DaxFormatValue::Damage) == 0)
            continue;
        VDFormatValue value{name.Str(), VFGetValue(test, name)};
        if (!value.Text().empty())
            values.push_back(std::move(value));
    }
    return values;
}

std::string VFGetFormatText(const VDTestAccess& test, const char* name)
{
    return VDFormatValue{name, VFGetValue(test, name)}.Text();
}
