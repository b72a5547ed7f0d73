#include "FormatValues.h"

#include "ToolError.h"

namespace {

VDVariant VFGetValue(VDTsAcc* acc, const char* name)
{
    VDVariant value;
    VFCheck(TSAccGetFormatSpecificValue(acc, static_cast<int>(DaxChannel::WholeFile), name, &value));
    return value;
}

}  // namespace

std::string VDFormatValue::Text() const
{
    VDString text;
    return value.ConvertToString(&text) ? text.Str() : std::string();
}

std::vector<VDFormatValue> VFGetFormatValues(VDTsAcc* acc)
{
    const VDVariant names = VFGetValue(acc, DaxFormatValue::Names);
    std::vector<VDFormatValue> values;
    for (int index = 0; index < names.GetNumItems(); ++index) {
        VDString name;
        if (!names[index].GetString(&name) || name.CompareNoCase(DaxFormatValue::Damage) == 0)
            continue;
        VDFormatValue value{name.Str(), VFGetValue(acc, name)};
        if (!value.Text().empty())
            values.push_back(std::move(value));
    }
    return values;
}

std::string VFGetFormatText(VDTsAcc* acc, const char* name)
{
    return VDFormatValue{name, VFGetValue(acc, name)}.Text();
}
