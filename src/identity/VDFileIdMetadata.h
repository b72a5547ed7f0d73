#pragma once

#include "vdbase/VDStringArray.h"
#include "vdbase/VDVariant.h"

#include <memory>
#include <string_view>

class LQChannelMapper;

/// Chosen metadata of a test in memory: the keywords that a host asks for, and the values that the test has for them. Copies
/// share what never changes: keywords and values are only ever replaced as a whole.
class VDFileIdMetadata
{
public:
    VDFileIdMetadata();

    /// Keywords of the test as a whole or of each channel; `types` has a "string", "integer" or "real" for each.
    struct KeywordList
    {
        VDStringArray keywords;
        VDStringArray types;
    };

    /// Takes other keywords and drops the values.
    void SetKeywords(KeywordList global, KeywordList channel);
    bool AreKeywords(const KeywordList& global, const KeywordList& channel) const;
    bool HasKeywords() const;
    const VDStringArray& GetGlobalKeywords() const;
    const VDStringArray& GetChannelKeywords() const;

    bool IsLoaded() const { return values_ != nullptr; }
    /// Fetches the values of all keywords for the test and each of its channels.
    void Load(LQChannelMapper& mapper);
    /// The keywords stay.
    void DropValues() { values_.reset(); }
    /// @param channel  a place in the test's channel list, or `LQChannelMapper::GLOBAL`
    /// @return null for a keyword that wasn't asked for, for a place outside the list, and before the values are loaded
    const VDVariant* GetValue(int channel, std::string_view keyword) const;

private:
    struct Keywords;
    struct Values;

    std::shared_ptr<const Keywords> keywords_;
    std::shared_ptr<const Values> values_;  ///< null: not loaded
};
