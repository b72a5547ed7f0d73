#include "DbcText.h"

namespace {

constexpr VDByteSet VVBlanks(" \t\r\n");
constexpr VDByteSet VVSeparators(" :;\"");

}  // namespace

std::string_view VFDbcTrim(std::string_view text)
{
    const auto isBlank = [](char byte) { return byte == ' ' || byte == '\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

VDString VFDbcSqueeze(std::string_view text)
{
    VDString squeezed(text);
    if (VVBlanks.FindIn(text) < text.size())
        VFSqueeze(&squeezed, 8);
    return squeezed;
}

std::string_view VDDbcTokens::Start(std::string_view line)
{
    rest_ = line;
    tokens_.clear();
    joined_.clear();
    return ReadOne() ? tokens_.front() : std::string_view();
}

const std::vector<std::string_view>& VDDbcTokens::ReadAll()
{
    while (ReadOne()) {
    }
    return tokens_;
}

bool VDDbcTokens::ReadOne()
{
    while (!rest_.empty()) {
        const std::size_t stop = VVSeparators.FindIn(rest_);
        const std::string_view plain = rest_.substr(0, stop);
        if (stop < rest_.size() && rest_[stop] == '"') {
            // What stands directly before the opening quote is the front of the quoted token.
            const std::size_t close = rest_.find('"', stop + 1);
            const bool closed = close != std::string_view::npos;
            std::string_view token = rest_.substr(stop + 1, closed ? close - stop - 1 : close);
            if (!plain.empty()) {
                joined_.push_back(std::string(plain) + std::string(token));
                token = joined_.back();
            }
            rest_ = closed ? rest_.substr(close + 1) : std::string_view();
            if (!closed)
                token = VFDbcTrim(token);
            if (!closed && token.empty())
                return false;
            tokens_.push_back(token);
            return true;
        }
        rest_.remove_prefix(std::min(stop + 1, rest_.size()));
        const std::string_view token = VFDbcTrim(plain);
        if (!token.empty()) {
            tokens_.push_back(token);
            return true;
        }
    }
    return false;
}
