#include "ListedTest.h"

#include "DataTest.h"
#include "NumberText.h"
#include "TestListing.h"
#include "ToolError.h"

#include "daxlib/VFDaxMetaDataExpression.h"
#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFNumber.h"
#include "vdstore/LQChannelMapper.h"

#include <algorithm>

namespace {

constexpr int VVAllChannels = -1;

/// What header values say of a time series.
void VFTakeTimes(const std::vector<VDChannel>& channels, VDListedTest& listed)
{
    bool differ = false;
    for (const VDChannel& channel : channels) {
        listed.points = std::max(listed.points.value_or(0), channel.points);
        if (channel.sampleRate > 0)
            listed.duration =
                std::max(listed.duration.value_or(0), static_cast<double>(channel.points) / channel.sampleRate);
        differ = differ || channel.sampleRate != channels.front().sampleRate;
    }
    if (!channels.empty() && !differ)
        listed.sampleRate = channels.front().sampleRate;
}

/// Whether an expression is true of a test. An item that isn't there makes it false; throws if it can't be read.
bool VFMatches(LQChannelMapper* mapper, const std::string& where)
{
    VDString expression(where);
    VDString text;
    double number = 0;
    bool truth = false;
    VFErrorClear();
    if (!VFDaxEvaluateValueFromMeta(expression, mapper, VVAllChannels, &text, nullptr)) {
        if (VFErrorCheck(VDBaseError::ExpressionText))
            throw VDFailure();
        VFErrorClear();
        return false;
    }
    return VFAscToBoolean(text, &truth) ? truth : VFAscToNum(text, &number) && number != 0;
}

std::string VFValueOf(LQChannelMapper* mapper, const std::string& keyword)
{
    VDString text = "#" + VDString(keyword) + "#";
    VDString value;
    if (!VFDaxEvaluateStringFromMeta(text, mapper, VVAllChannels, 0, &value, 0, nullptr, nullptr, 0))
        VFErrorClear();
    return value.Str();
}

void VFAsk(VDTestAccess* access, const VDMetaDataQuestions& questions, VDListedTest& listed)
{
    if (questions.where.empty() && questions.keywords.empty())
        return;
    LQChannelMapper none(nullptr);
    LQChannelMapper* mapper = nullptr;
    if (access == nullptr || access->GetMetaData(&mapper) == 0 || mapper == nullptr)
        mapper = &none;
    VFErrorClear();
    listed.matches = questions.where.empty() || VFMatches(mapper, questions.where);
    for (const std::string& keyword : questions.keywords)
        listed.items.emplace_back(keyword, VFValueOf(mapper, keyword));
}

std::string VFWith(const std::string& number, const char* unit)
{
    return number.empty() ? "" : number + " " + unit;
}

template <class Number>
std::string VFTextOf(const std::optional<Number>& number)
{
    return number ? VFNumberText(*number) : "";
}

}  // namespace

VDListedTest VFLookInto(const VDRegistry& registry, const VDFileIdHandle& id, const VDMetaDataQuestions& questions)
{
    VDListedTest listed;
    listed.name = VFSpecOf(id.Get());
    int fileId = 0;
    int subId = 0;
    std::uint64_t size = 0;
    VFCheck(FIDGetFileId(id.Get(), &fileId, &subId));
    if (FIDGetTestFileSize(id.Get(), &size) != 0)
        listed.size = size;
    VFErrorClear();
    if (fileId == 0) {
        listed.matches = questions.where.empty();
        return listed;
    }
    try {
        listed.description.emplace(registry, VDIdentification(), id);
        VFCheck(FIDGetNumChans(id.Get(), &listed.channels));
        const std::unique_ptr<VDDataTest> test = VFOpenDataTest(id);
        listed.channels = static_cast<int>(test->GetChannels().size());
        if (listed.description->type.accessType == VTFileAccessTimeSeries)
            VFTakeTimes(test->GetChannels(), listed);
        VFAsk(test->Access(), questions, listed);
    } catch (const VDFailure&) {
        if (VFErrorCheck(VDBaseError::ExpressionText))
            throw;
        listed.errors = VFTakeErrors();
        listed.matches = questions.where.empty();
    }
    VFErrorClear();
    return listed;
}

VDJson VDListedTest::ToJson() const
{
    const auto orNull = [](const auto& value) { return value ? VDJson(*value) : VDJson(); };
    VDJson json = {{"name", name}};
    if (description)
        json.update(description->ToJson());
    else
        json["keyword"] = nullptr;
    json["channels"] = channels;
    json["points"] = orNull(points);
    json["sampleRate"] = orNull(sampleRate);
    json["duration"] = orNull(duration);
    json["size"] = orNull(size);
    for (const auto& [keyword, value] : items)
        json["items"][keyword] = value;
    return json;
}

std::vector<std::string> VDListedTest::ToRow(bool whole) const
{
    const bool isMixed = points && !sampleRate;
    std::vector<std::string> row = {name,
                                    description ? description->type.keyword : "?",
                                    VFWith(std::to_string(channels), "ch"),
                                    VFWith(VFTextOf(points), "pts"),
                                    isMixed ? "mixed" : VFWith(VFTextOf(sampleRate), "Hz"),
                                    VFWith(VFTextOf(duration), "s"),
                                    VFWith(VFTextOf(size), "B")};
    if (whole)
        row.insert(row.end(), {description ? description->type.accessName : "", description ? description->title : ""});
    for (const auto& [keyword, value] : items)
        row.push_back(value);
    return row;
}

std::vector<std::string> VDListedTest::Heading(bool whole, const std::vector<std::string>& keywords)
{
    std::vector<std::string> heading = {"NAME", "FORMAT", "CHANNELS", "POINTS", "RATE", "DURATION", "SIZE"};
    if (whole)
        heading.insert(heading.end(), {"DATA", "TITLE"});
    heading.insert(heading.end(), keywords.begin(), keywords.end());
    return heading;
}
