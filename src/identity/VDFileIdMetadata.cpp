#include "VDFileIdMetadata.h"

#include "MetadataValue.h"

#include "vdstore/LQChannelMapper.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace {

/// Where each keyword of a list first stands.
using Places = std::map<std::string, std::size_t, std::less<>>;

Places PlacesOf(const VDStringArray& keywords)
{
    Places places;
    for (const VDString& keyword : keywords)
        places.emplace(keyword.Str(), places.size());
    return places;
}

bool AreEqual(const VDFileIdMetadata::KeywordList& left, const VDFileIdMetadata::KeywordList& right)
{
    return left.keywords.AreEqual(right.keywords, 0) && left.types.AreEqual(right.types, 0);
}

std::vector<VDMetadataQuestion> QuestionsOf(const VDFileIdMetadata::KeywordList& list)
{
    std::vector<VDMetadataQuestion> questions;
    for (int i = 0; i < list.keywords.GetSize(); ++i)
        questions.emplace_back(list.keywords[i], list.types[i]);
    return questions;
}

}  // namespace

struct VDFileIdMetadata::Keywords
{
    KeywordList global;
    KeywordList channel;
    Places globalPlaces;
    Places channelPlaces;
};

struct VDFileIdMetadata::Values
{
    std::vector<VDVariant> global;   ///< by keyword
    std::vector<VDVariant> channel;  ///< by channel, then keyword
    int channelCount = 0;
};

VDFileIdMetadata::VDFileIdMetadata() : keywords_(std::make_shared<Keywords>()) {}

void VDFileIdMetadata::SetKeywords(KeywordList global, KeywordList channel)
{
    auto keywords = std::make_shared<Keywords>();
    keywords->globalPlaces = PlacesOf(global.keywords);
    keywords->channelPlaces = PlacesOf(channel.keywords);
    keywords->global = std::move(global);
    keywords->channel = std::move(channel);
    keywords_ = std::move(keywords);
    DropValues();
}

bool VDFileIdMetadata::AreKeywords(const KeywordList& global, const KeywordList& channel) const
{
    return AreEqual(keywords_->global, global) && AreEqual(keywords_->channel, channel);
}

bool VDFileIdMetadata::HasKeywords() const
{
    return !GetGlobalKeywords().IsEmpty() || !GetChannelKeywords().IsEmpty();
}

const VDStringArray& VDFileIdMetadata::GetGlobalKeywords() const
{
    return keywords_->global.keywords;
}

const VDStringArray& VDFileIdMetadata::GetChannelKeywords() const
{
    return keywords_->channel.keywords;
}

void VDFileIdMetadata::Load(LQChannelMapper& mapper)
{
    auto values = std::make_shared<Values>();
    for (const VDMetadataQuestion& question : QuestionsOf(keywords_->global))
        values->global.push_back(question.Ask(mapper, LQChannelMapper::GLOBAL));

    const std::vector<VDMetadataQuestion> questions = QuestionsOf(keywords_->channel);
    values->channelCount = mapper.GetChannelCount();
    values->channel.reserve(questions.size() * static_cast<std::size_t>(values->channelCount));
    for (int channel = 0; channel < values->channelCount; ++channel)
        for (const VDMetadataQuestion& question : questions)
            values->channel.push_back(question.Ask(mapper, channel));
    values_ = std::move(values);
}

const VDVariant* VDFileIdMetadata::GetValue(int channel, std::string_view keyword) const
{
    const bool isGlobal = channel == LQChannelMapper::GLOBAL;
    if (values_ == nullptr || (!isGlobal && (channel < 0 || channel >= values_->channelCount)))
        return nullptr;
    const Places& places = isGlobal ? keywords_->globalPlaces : keywords_->channelPlaces;
    const auto found = places.find(keyword);
    if (found == places.end())
        return nullptr;
    if (isGlobal)
        return &values_->global[found->second];
    const auto row = static_cast<std::size_t>(channel) * static_cast<std::size_t>(GetChannelKeywords().GetSize());
    return &values_->channel[row + found->second];
}
