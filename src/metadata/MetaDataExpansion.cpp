#include "MetaDataExpansion.h"

#include "frame/VFDaxReport.h"

#include "vdarchive/Z4Property.h"
#include "vdbase/VDCalculator.h"
#include "vdbase/VFNumber.h"

namespace {

constexpr std::string_view VVExistenceTest = "var_exist(#";

struct TimeToken
{
    const char* token;
    const char* point;  ///< name of the item with the point
};

constexpr TimeToken VVTimeTokens[] = {{"TMin", "PMin"}, {"TMax", "PMax"}, {"TAbs", "PAbs"}};

}  // namespace

bool VDMetaDataExpansion::Expand(std::string_view text)
{
    hasEval_ = text.find("eval(") != std::string_view::npos;
    result_.reserve(text.size());
    std::size_t copied = 0;  // what lies in front of it is done
    for (std::size_t opening = text.find('#'); opening != std::string_view::npos; opening = text.find('#', copied)) {
        std::size_t closing = opening + 1;
        for (int depth = 0; closing < text.size() && (text[closing] != '#' || depth != 0); ++closing)
            depth += text[closing] == '(' ? 1 : text[closing] == ')' ? -1 : 0;
        if (closing == text.size())
            break;
        Append(text.substr(copied, opening - copied));
        if (!ExpandToken(text.substr(opening + 1, closing - opening - 1),
                         text.substr(0, opening + 1).ends_with(VVExistenceTest)))
            return false;
        copied = closing + 1;
    }
    Append(text.substr(copied));
    return true;
}

void VDMetaDataExpansion::Append(std::string_view text)
{
    result_ += text;
    if (const std::size_t place = text.find_last_not_of(' '); place != std::string_view::npos)
        lastNonBlank_ = text[place];
}

bool VDMetaDataExpansion::Find(std::string_view keyword, Z4Property** item) const
{
    VDMetaDataKeyword parsed;
    return parsed.Read(mapper_, keyword, options_.sources) && parsed.Find(options_.channel, true, item);
}

bool VDMetaDataExpansion::ExpandToken(std::string_view token, bool isExistenceTest)
{
    if (!isExistenceTest) {
        Z4Property* item = nullptr;
        if (!Find(token, &item))
            return false;
        if (item != nullptr) {
            AppendItem(*item);
            return true;
        }
        bool isDone = false;
        if (!ExpandTime(token, &isDone) || isDone)
            return isDone;
    }
    const std::string marked = '#' + std::string(token) + '#';
    if (options_.failOnUnresolved && !isExistenceTest)
        return VFDaxReport(DaxError::MetaDataItemMissing, "VFDaxEvaluateStringFromMeta", {.appended = marked}) != 0;
    if (options_.keepUnresolved || isExistenceTest)
        Append(marked);
    return true;
}

bool VDMetaDataExpansion::ExpandTime(std::string_view token, bool* isDone)
{
    const VDString name(token);
    const TimeToken* time = nullptr;
    for (const TimeToken& each : VVTimeTokens)
        if (name.CompareNoCase(each.token) == 0)
            time = &each;
    if (time == nullptr)
        return true;
    Z4Property* rateItem = nullptr;
    Z4Property* baseItem = nullptr;
    Z4Property* pointItem = nullptr;
    if (!Find("SampleRate", &rateItem) || !Find("BaseTime", &baseItem) || !Find(time->point, &pointItem))
        return false;
    if (rateItem == nullptr || baseItem == nullptr || pointItem == nullptr)
        return true;
    double rate = 1;
    double base = 0;
    double point = 0;
    VFAscToNum(rateItem->ToString(), &rate);
    VFAscToNum(baseItem->ToString(), &base);
    if (!(rate > 0))
        return true;
    if (!pointItem->IsDefined())
        AppendItem(*pointItem);
    else if (VFAscToNum(pointItem->ToString(), &point))
        Append(VFFormatDouble((point - 1) / rate + base, 6, -3, 4, 0, 40).View());
    else
        return true;
    *isDone = true;
    return true;
}

void VDMetaDataExpansion::AppendItem(const Z4Property& item)
{
    const VDString text = item.ToString();
    double number = 0;
    const bool isQuoted = (hasEval_ || (options_.quoteAfterBracket && lastNonBlank_ == '(')) && item.IsDefined() &&
                          item.GetType() == Z4TypeString && !VFAscToNum(text, &number);
    Append((isQuoted ? VDCalculator::Quoted(text) : text).View());
}
