#include "Json.h"

#include "NumberText.h"
#include "Printable.h"

#include <charconv>
#include <cmath>

namespace {

/// Makes every value of a document one that JSON can hold.
void VFMakeFit(VDJson& value)
{
    if (value.is_structured()) {
        for (VDJson& item : value)
            VFMakeFit(item);
    } else if (value.is_string()) {
        value = VFAsUtf8(value.get_ref<const std::string&>());
    } else if (value.is_number_float() && !std::isfinite(value.get<double>())) {
        value = VFNotFiniteText(value.get<double>());
    }
}

}  // namespace

std::string VFJsonText(VDJson document, int indent)
{
    VFMakeFit(document);
    return VFEscapeJson(document.dump(indent));
}

VDJson VFJsonNumber(std::string_view text)
{
    VDJson number = VDJson::parse(text, nullptr, false);
    if (number.is_number())
        return number;
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool notFinite = error == std::errc() && end == text.data() + text.size() && !std::isfinite(value);
    return notFinite ? VDJson(value) : VDJson(text);
}

VDJson VFJsonErrors(const std::vector<VDErrorReport>& reports)
{
    VDJson errors = VDJson::array();
    for (const VDErrorReport& report : reports)
        errors.push_back({{"code", report.code}, {"text", report.text.Str()}, {"routine", report.routine.Str()}});
    return errors;
}
