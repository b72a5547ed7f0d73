#pragma once

#include "CanDatabase.h"
#include "CanLog.h"
#include "TextSink.h"

#include <map>
#include <set>

/// Decodes the frames of a log one after the other to lines of text, and keeps count of how well log and database fit. Its
/// memory depends on the database and on the distinct ids alone.
class VDCanLogDecoder
{
public:
    /// @param json  a JSON object a value instead of a line of CSV
    VDCanLogDecoder(const VDCanDatabase& database, bool json, VDTextSink& out);

    void AddLine(std::string_view line);
    /// Writes the counts for people.
    std::string GetCoverage() const;
    /// Whether any line was a frame.
    bool HasFrames() const { return hasFrames_; }

private:
    /// What is the same in all lines of one signal.
    struct SignalText
    {
        std::string front;  ///< between time and raw value
        std::string units;  ///< between physical value and name of the value
        std::map<std::uint32_t, std::string> names;
    };
    struct FrameState
    {
        std::vector<SignalText> signals;
        std::int64_t matched = 0;
        std::int64_t tooShort = 0;
        std::set<std::int64_t> seenSwitchValues;
    };

    std::string Quoted(const VDString& text) const;
    SignalText MakeText(const VDCanFrame& frame, const VDCanChanDefinition& signal) const;
    void WriteValue(const SignalText& text, std::int64_t raw, double physical);
    static std::string GetMissingSwitchValues(const VDCanFrame& frame, const FrameState& state);
    void NoteSwitch(const VDCanFrame& frame, FrameState& state) const;

    const VDCanDatabase& database_;
    bool json_;
    VDTextSink& out_;
    VDCanLogFrame log_;
    std::vector<FrameState> states_;
    VDCanValues values_;
    std::map<unsigned long, std::int64_t> unknown_;
    std::int64_t unknownOthers_ = 0;
    std::int64_t matched_ = 0;
    std::int64_t tooShort_ = 0;
    std::int64_t remote_ = 0;
    std::int64_t errors_ = 0;
    bool hasFrames_ = false;
    std::int64_t noFrame_ = 0;
};
