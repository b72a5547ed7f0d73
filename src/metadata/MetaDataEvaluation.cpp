#include "MetaDataEvaluation.h"

#include "VFMetaDataCalculator.h"
#include "frame/VFDaxReport.h"

#include "vdarchive/Z4ValueProperty.h"
#include "vdbase/VFNumber.h"
#include "vdstore/LQChannelMapper.h"

#include <utility>

namespace {

bool FindItem(LQChannelMapper& mapper, std::string_view keyword, int channel, Z4Property** item)
{
    VDMetaDataKeyword parsed;
    return parsed.Read(mapper, keyword, {}) && parsed.Find(channel, true, item);
}

/// The channels in which an expression is tried in turn: first and behind the last.
std::pair<int, int> ChannelRange(const LQChannelMapper& mapper, int channel)
{
    if (channel == VDMetaDataChannel::Every)
        return {0, mapper.GetChannelCount()};
    return {channel, channel == VDMetaDataChannel::Test ? channel : channel + 1};
}

/// The value in the first channel of the range that has one, or else for the channel argument `last`, whose failure is the
/// one that stays recorded.
bool EvaluateExpression(LQChannelMapper& mapper, const VDString& expression, int channel, int last, double* value)
{
    VFMetaDataCalculator calculator(&mapper, last, true);
    if (!calculator.SetExpression(expression))
        return false;
    {
        const VDErrorMute mute;
        for (auto [index, end] = ChannelRange(mapper, channel); index < end; ++index) {
            calculator.SetChannel(index);
            if (calculator.EvaluateToDouble(value))
                return true;
        }
    }
    calculator.SetChannel(last);
    calculator.ForgetFailures();
    return calculator.EvaluateToDouble(value);
}

/// @param chain  1 if the cause is recorded
bool ReportFailure(const VDString& expression, const char* routine, int chain)
{
    return VFDaxReport(DaxError::MetaDataExpression, routine, {.appended = expression, .chain = chain}) != 0;
}

}  // namespace

bool VFEvaluateMetaDataValue(LQChannelMapper& mapper, const VDString& expression, int channel, VDString* result, int* type)
{
    const std::string_view text = expression.View();
    Z4Property* item = nullptr;
    if (!FindItem(mapper, text, channel, &item))
        return false;
    if (item == nullptr && text.size() > 2 && text.front() == '#' && text.back() == '#' &&
        !FindItem(mapper, text.substr(1, text.size() - 2), channel, &item))
        return false;
    int foundType = Z4TypeString;
    double value = 0;
    if (item == nullptr) {
        if (!EvaluateExpression(mapper, expression, channel, VDMetaDataChannel::Test, &value))
            return ReportFailure(expression, "VFDaxEvaluateValueFromMeta", 1);
        *result = VFFormatDouble(value, 10, -10, 10, 0, 40);
    } else if (!item->IsDefined()) {
        return true;
    } else {
        foundType = item->GetType();
        *result = item->ToString();
    }
    if (type != nullptr)
        *type = foundType;
    return true;
}

bool VFEvaluateMetaDataDouble(LQChannelMapper& mapper, const VDString& expression, int channel, double* result)
{
    const char* const routine = "VFDaxEvaluateDoubleFromMeta";
    Z4Property* item = nullptr;
    if (!FindItem(mapper, expression.View(), channel, &item))
        return false;
    if (item == nullptr)
        return EvaluateExpression(mapper, expression, channel, channel, result) || ReportFailure(expression, routine, 1);
    if (!item->IsDefined())
        return ReportFailure(expression, routine, 0);
    if (item->GetType() == Z4TypeDouble)
        *result = static_cast<const Z4DoubleProperty*>(item)->Get();
    else if (item->GetType() == Z4TypeFloat)
        *result = static_cast<double>(static_cast<const Z4FloatProperty*>(item)->Get());
    else if (!VFAscToNum(item->ToString(), result))
        return ReportFailure(expression, routine, 0);
    return true;
}
