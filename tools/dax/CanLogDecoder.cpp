#include "CanLogDecoder.h"

#include "Json.h"
#include "NumberText.h"
#include "Printable.h"

#include <cstdio>
#include <sstream>

namespace {

/// Distinct unknown ids that are counted one by one; a log of noise has any number of them.
constexpr std::size_t VVMaxUnknown = 100'000;

std::string IdText(unsigned long id)
{
    char text[32];
    const bool extended = (id & VDCanDatabase::ExtendedBit) != 0;
    std::snprintf(text, sizeof text, extended ? "%08lX" : "%03lX", id & ~VDCanDatabase::ExtendedBit);
    return text;
}

}  // namespace

VDCanLogDecoder::VDCanLogDecoder(const VDCanDatabase& database, bool json, VDTextSink& out)
    : database_(database), json_(json), out_(out), states_(database.GetFrames().size())
{
    if (!json_)
        out_.Write("time,id,frame,signal,raw,physical,units,text\n");
    for (std::size_t index = 0; index < states_.size(); ++index) {
        const VDCanFrame& frame = database.GetFrames()[index];
        for (const VDCanChanDefinition* signal : frame.signals)
            states_[index].signals.push_back(MakeText(frame, *signal));
    }
}

std::string VDCanLogDecoder::Quoted(const VDString& text) const
{
    return json_ ? VFJsonText(text.Str(), -1) : VFCsvText(text.View());
}

VDCanLogDecoder::SignalText VDCanLogDecoder::MakeText(const VDCanFrame& frame, const VDCanChanDefinition& signal) const
{
    const std::string id = std::to_string(frame.definition->GetFrameId());
    const std::string name = Quoted(frame.definition->GetFrameName());
    const std::string title = Quoted(signal.GetTitle());
    const std::string units = Quoted(signal.GetUnits());
    SignalText text;
    if (json_) {
        text.front = ",\"id\":" + id + ",\"frame\":" + name + ",\"signal\":" + title + ",\"raw\":";
        text.units = ",\"units\":" + units + ",\"text\":";
    } else {
        text.front = "," + id + "," + name + "," + title + ",";
        text.units = "," + units + ",";
    }
    VDArrayWithSort<long> values;
    VDStringArray names;
    signal.GetEnumOptions(&values, &names);
    for (int index = 0; index < values.GetSize(); ++index)
        text.names.try_emplace(static_cast<std::uint32_t>(values[index]), Quoted(names[index]));
    return text;
}

void VDCanLogDecoder::AddLine(std::string_view line)
{
    if (!VFReadCanLogLine(line, &log_)) {
        ++noFrame_;
        return;
    }
    hasFrames_ = true;
    if (log_.isError) {
        ++errors_;
        return;
    }
    const VDCanFrame* const frame = database_.Find(log_.id);
    if (frame == nullptr) {
        if (unknown_.size() < VVMaxUnknown || unknown_.contains(log_.id))
            ++unknown_[log_.id];
        else
            ++unknownOthers_;
        return;
    }
    if (log_.isRemote) {
        ++remote_;
        return;
    }
    FrameState& state = states_[static_cast<std::size_t>(frame - database_.GetFrames().data())];
    if (log_.numBytes < frame->GetNumBytes()) {
        ++state.tooShort;
        ++tooShort_;
        return;
    }
    ++state.matched;
    ++matched_;
    values_.Decode(*frame, log_.data.data());
    NoteSwitch(*frame, state);
    for (std::size_t signal = 0; signal < state.signals.size(); ++signal)
        if (values_.present[signal] != 0)
            WriteValue(state.signals[signal], values_.raw[signal], values_.physical[signal]);
}

// Only values that the database knows are kept: a switch may be wide.
void VDCanLogDecoder::NoteSwitch(const VDCanFrame& frame, FrameState& state) const
{
    const int index = frame.decoder->GetSwitch();
    if (index < 0)
        return;
    const std::int64_t value = values_.raw[static_cast<std::size_t>(index)];
    for (const VDCanChanDefinition* signal : frame.signals)
        if (signal->IsMultiplexed() && signal->GetMultiplexId() == value) {
            state.seenSwitchValues.insert(value);
            break;
        }
}

void VDCanLogDecoder::WriteValue(const SignalText& text, std::int64_t raw, double physical)
{
    const auto number = [this](auto figure) {
        char* const at = out_.Reserve(NumberTextSize);
        out_.Commit(VFPutNumber(at, figure));
    };
    const std::string_view quote = json_ && log_.timeIsDate ? "\"" : "";
    if (json_)
        out_.Write("{\"time\":");
    out_.Write(quote);
    out_.Write(json_ && log_.time.empty() ? "null" : log_.time);
    out_.Write(quote);
    out_.Write(text.front);
    number(raw);
    out_.Write(json_ ? ",\"physical\":" : ",");
    if (json_)
        out_.Commit(VFPutJsonNumber(out_.Reserve(NumberTextSize), physical));
    else
        number(physical);
    out_.Write(text.units);
    const auto name = text.names.find(static_cast<std::uint32_t>(raw));
    if (name != text.names.end())
        out_.Write(name->second);
    else if (json_)
        out_.Write("\"\"");
    out_.Write(json_ ? "}\n" : "\n");
}

std::string VDCanLogDecoder::GetCoverage() const
{
    std::ostringstream text;
    std::int64_t unknownFrames = unknownOthers_;
    for (const auto& [id, count] : unknown_)
        unknownFrames += count;
    text << "Frames matched: " << matched_ << "\nFrames with unknown ids: " << unknownFrames << '\n';
    for (const auto& [id, count] : unknown_)
        text << "  " << IdText(id) << ": " << count << '\n';
    if (unknownOthers_ > 0)
        text << "  others: " << unknownOthers_ << '\n';

    std::ostringstream unseen;
    std::int64_t undecodable = 0;
    text << "Frames too short: " << tooShort_ << '\n';
    for (std::size_t index = 0; index < states_.size(); ++index) {
        const VDCanFrame& frame = database_.GetFrames()[index];
        const std::string label =
            "  " + IdText(frame.definition->GetFrameId()) + " " + VFPrintable(frame.definition->GetFrameName().View());
        if (states_[index].tooShort > 0)
            text << label << ": " << states_[index].tooShort << '\n';
        const std::string missing = GetMissingSwitchValues(frame, states_[index]);
        if (!missing.empty())
            unseen << '\n' << label << ':' << missing;
        for (int signal = 0; signal < frame.decoder->GetSignalCount(); ++signal)
            undecodable += frame.decoder->CanDecode(signal) ? 0 : 1;
    }
    text << "Multiplexer values never seen:" << (unseen.str().empty() ? " none" : unseen.str()) << '\n';
    text << "Lines that are no frame: " << noFrame_ << '\n';
    if (remote_ > 0)
        text << "Remote frames: " << remote_ << '\n';
    if (errors_ > 0)
        text << "Error frames: " << errors_ << '\n';
    if (undecodable > 0)
        text << "Signals of 64 bits or more, left out: " << undecodable << '\n';
    return text.str();
}

// Of frames that weren't there at all, nothing is said.
std::string VDCanLogDecoder::GetMissingSwitchValues(const VDCanFrame& frame, const FrameState& state)
{
    std::set<int> missing;
    for (const VDCanChanDefinition* signal : frame.signals)
        if (state.matched > 0 && signal->IsMultiplexed() && !state.seenSwitchValues.contains(signal->GetMultiplexId()))
            missing.insert(signal->GetMultiplexId());
    std::string text;
    for (const int value : missing)
        text += ' ' + std::to_string(value);
    return text;
}
