#pragma once

#include "MetaDataKeyword.h"

/// Replaces the `#keyword#` tokens of one text; the rules stand at `VFDaxEvaluateStringFromMeta`. An object serves one text.
class VDMetaDataExpansion
{
public:
    struct Options
    {
        int channel;
        bool failOnUnresolved;
        bool keepUnresolved;
        bool quoteAfterBracket;
        VDMetaDataSources sources;
    };

    VDMetaDataExpansion(LQChannelMapper& mapper, const Options& options) : mapper_(mapper), options_(options) {}

    /// False, with a report, if the text can't be expanded.
    bool Expand(std::string_view text);
    const std::string& GetResult() const { return result_; }

private:
    bool ExpandToken(std::string_view token, bool isExistenceTest);
    bool ExpandTime(std::string_view token, bool* isDone);
    bool Find(std::string_view keyword, Z4Property** item) const;
    void AppendItem(const Z4Property& item);
    void Append(std::string_view text);

    LQChannelMapper& mapper_;
    Options options_;
    std::string result_;
    bool hasEval_ = false;
    char lastNonBlank_ = 0;  // of the result
};
