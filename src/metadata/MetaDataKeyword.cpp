#include "MetaDataKeyword.h"

#include "VFMetaDataCalculator.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VFNumber.h"
#include "vdstore/LQChannelMapper.h"

#include <optional>
#include <utility>

namespace {

constexpr std::string_view VVTestSelector = "test.";
constexpr std::string_view VVQuerySelector = "chan?(";
constexpr const char* VVRoutine = "VFDaxGetMetaDataItem";

bool BeginsWith(std::string_view text, std::string_view word)
{
    return text.size() >= word.size() && VDString(text.substr(0, word.size())).CompareNoCase(VDString(word)) == 0;
}

/// What stands between a word at the beginning of the text and the first dot; nothing if it doesn't begin so.
std::optional<VDString> SelectorOf(std::string_view text, std::string_view word)
{
    const std::size_t dot = text.find('.');
    if (dot == std::string_view::npos || !BeginsWith(text, word))
        return std::nullopt;
    return VDString(text.substr(word.size(), dot - word.size()));
}

void DropSelector(std::string_view* rest)
{
    rest->remove_prefix(rest->find('.') + 1);
}

}  // namespace

bool VDMetaDataKeyword::Read(LQChannelMapper& mapper, std::string_view keyword, const VDMetaDataSources& sources)
{
    given_ = working_ = &mapper;
    where_ = Where::Argument;
    ReadData(&keyword, sources);
    if (where_ == Where::Nowhere)
        return true;
    if (BeginsWith(keyword, VVQuerySelector)) {
        if (!ReadChannelQuery(&keyword))
            return false;
    } else {
        ReadChannel(&keyword);
    }
    if (where_ == Where::Nowhere)
        return true;
    mayBeTest_ = BeginsWith(keyword, VVTestSelector);
    if (mayBeTest_)
        namesInTest_ = ReadNames(keyword.substr(VVTestSelector.size()));
    if (keyword.starts_with(VVTestSelector))
        where_ = Where::Test;
    else
        names_ = ReadNames(keyword);
    return true;
}

void VDMetaDataKeyword::ReadData(std::string_view* rest, const VDMetaDataSources& sources)
{
    const std::optional<VDString> selector = SelectorOf(*rest, "data");
    int number = 0;
    if (!selector.has_value() || !VFAscToNum(*selector, &number))
        return;
    const bool isListed = number >= 1 && sources.mappers != nullptr && sources.mappers->IsIndex(number - 1);
    LQChannelMapper* const mapper = isListed ? (*sources.mappers)[number - 1] : nullptr;
    if (mapper == nullptr) {
        // With no list there is but the one mapper, and the first of it is no selector.
        if (sources.mappers != nullptr || number != 1)
            where_ = Where::Nowhere;
        return;
    }
    DropSelector(rest);
    working_ = mapper;
    if (sources.channels != nullptr && sources.channels->IsIndex(number - 1) && (*sources.channels)[number - 1] >= 0) {
        where_ = Where::Channel;
        channel_ = (*sources.channels)[number - 1];
    }
}

bool VDMetaDataKeyword::ReadChannelQuery(std::string_view* rest)
{
    const std::size_t end = rest->find(')');
    if (end == std::string_view::npos)
        return VFDaxReportError(DaxError::MetaDataQuerySyntax, VVRoutine) != 0;
    const VDString expression(rest->substr(VVQuerySelector.size(), end - VVQuerySelector.size()));
    rest->remove_prefix(std::min(end + 2, rest->size()));
    VFMetaDataCalculator calculator(given_, 0, false);
    if (!calculator.SetExpression(expression))
        return VFDaxReport(DaxError::MetaDataQueryExpression, VVRoutine, {.chain = 1}) != 0;
    // A channel without the items of the expression is passed over, which is no error.
    const VDErrorMute mute;
    where_ = Where::Nowhere;
    for (int index = 0; index < given_->GetChannelCount() && where_ == Where::Nowhere; ++index) {
        bool isTrue = false;
        calculator.SetChannel(index);
        if (calculator.EvaluateExpressionToBoolean(&isTrue) && isTrue) {
            where_ = Where::Channel;
            channel_ = index;
        }
    }
    return true;
}

void VDMetaDataKeyword::ReadChannel(std::string_view* rest)
{
    const std::optional<VDString> selector = SelectorOf(*rest, "chan");
    int number = 0;
    if (!selector.has_value())
        return;
    if (VFAscToNum(*selector, &number)) {
        channel_ = working_->IndexFromNumber(number, false);
        where_ = channel_ < 0 ? Where::Nowhere : Where::Channel;
    } else if (selector->CompareNoCase("current") == 0) {
        where_ = Where::Current;
    } else {
        return;
    }
    DropSelector(rest);
}

VDMetaDataKeyword::Names VDMetaDataKeyword::ReadNames(std::string_view rest)
{
    const std::size_t dot = rest.find('.');
    if (dot == std::string_view::npos || dot == 0)
        return {{}, std::string(rest)};
    std::string_view set = rest.substr(0, dot);
    std::string_view item = rest.substr(dot + 1);
    if (set.size() > 1 && set.front() == '#')
        set.remove_prefix(1);
    if (item.size() > 1 && item.back() == '#')
        item.remove_suffix(1);
    return {std::string(set), std::string(item)};
}

bool VDMetaDataKeyword::IsNowhere(int channel) const
{
    return where_ == Where::Nowhere || (where_ == Where::Current && channel < 0);
}

bool VDMetaDataKeyword::Find(int channel, bool searchGlobal, Z4Property** item) const
{
    *item = nullptr;
    if (IsNowhere(channel))
        return true;
    if (!FindInChannels(channel, item))
        return false;
    return *item != nullptr ||
           FindInTest(searchGlobal || (where_ == Where::Argument && channel == VDMetaDataChannel::Test), item);
}

bool VDMetaDataKeyword::FindInChannels(int channel, Z4Property** item) const
{
    *item = nullptr;
    if (where_ == Where::Test)
        return true;
    if (where_ != Where::Argument || channel != VDMetaDataChannel::Every)
        return FindInSlot(names_, where_ == Where::Channel ? channel_ : channel, item);
    for (int index = 0; index < given_->GetChannelCount(); ++index)
        if (!FindInSlot(names_, index, item) || *item != nullptr)
            return *item != nullptr;
    return true;
}

bool VDMetaDataKeyword::FindInTest(bool searchGlobal, Z4Property** item) const
{
    *item = nullptr;
    if (where_ != Where::Test && searchGlobal && !FindInSlot(names_, LQChannelMapper::GLOBAL, item))
        return false;
    return *item != nullptr || !mayBeTest_ || FindInSlot(namesInTest_, LQChannelMapper::GLOBAL, item);
}

bool VDMetaDataKeyword::FindInSlot(const Names& names, long slot, Z4Property** item) const
{
    if (!std::in_range<int>(slot))
        return true;
    const int index = static_cast<int>(slot);
    const int count = working_->GetMetaDataSetCount(index);
    for (int at = 0; at < count; ++at) {
        Z4PropertySet* const set = working_->GetMetaDataSet(at, index);
        if (set == nullptr)
            return false;
        if ((names.set.empty() || set->GetName().CompareNoCase(names.set.c_str()) == 0) &&
            set->Lookup(names.item.c_str(), item, false))
            return true;
    }
    return true;
}
