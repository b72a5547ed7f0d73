#include "Json.h"

std::string VFJsonText(const VDJson& document, int indent)
{
    return document.dump(indent, ' ', false, VDJson::error_handler_t::replace);
}

VDJson VFJsonErrors(const std::vector<VDErrorReport>& reports)
{
    VDJson errors = VDJson::array();
    for (const VDErrorReport& report : reports)
        errors.push_back({{"code", report.code}, {"text", report.text.Str()}, {"routine", report.routine.Str()}});
    return errors;
}
