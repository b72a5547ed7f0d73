#include "VDDbcReader.h"

#include "VDDbcSignal.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VDTextIo.h"
#include "vdbase/VDUnicodeString.h"

#include <algorithm>

namespace {

constexpr const char* VVReadRoutine = "VDCanDefinition::ReadDatabase";
constexpr std::string_view VVNoNode = "Vector__XXX";
constexpr std::string_view VVPeriodName = "P\xE9riode";
constexpr std::string_view VVModeName = "ModeTransmission";
constexpr int VVMaxLineLength = 1000000;
// With fewer channels a search costs less than an index.
constexpr int VVIndexedChans = 16;

void ConvertFromUtf8(VDString* line)
{
    const std::string_view bytes = line->View();
    const bool plain = std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<signed char>(byte) > 0; });
    if (plain || bytes.find('\0') != std::string_view::npos)
        return;
    VDUnicodeString unicode;
    if (VFUtf8ToUnicode(*line, &unicode))
        unicode.GetVDStringViaEncoding(line);
}

int CountSwitches(const VDCanFrameDefinition& frame)
{
    int count = 0;
    for (int index = 0; index < frame.GetChanDefinitionCount(); ++index)
        count += frame.GetChanDefinition(index)->IsMultiplexSwitch() != 0 ? 1 : 0;
    return count;
}

}  // namespace

void VFReportFrameNotDefined(unsigned long id)
{
    VFDaxReport(DaxError::FrameNotDefined, "VDCanDefinition::GetFrameDefinitionForId",
                {.appended = VDString(std::to_string(id))});
}

VDDbcReader::VDDbcReader(FrameList& frames) : frames_(frames)
{
    for (int index = 0; index < frames_.GetSize(); ++index)
        frameById_.try_emplace(frames_[index]->GetFrameId(), index);
}

bool VDDbcReader::ReadFile(const char* filename, bool isUtf8)
{
    const bool read = ReadLines(filename, isUtf8);
    ApplyDefaults();
    return read && CheckFrames();
}

bool VDDbcReader::ReadLines(const char* filename, bool isUtf8)
{
    VDTextIo file(filename);
    if (!file.Open(VTOpenRead))
        return false;
    VDString line;
    for (int number = 1; file.ReadString(&line, VVMaxLineLength, nullptr); ++number) {
        if (isUtf8)
            ConvertFromUtf8(&line);
        const int code = ReadLine(VFDbcTrim(line.View()));
        if (code == 0)
            continue;
        VFDaxReport(code, VVReadRoutine, {.appended = VDString(detail_)});
        VDString where;
        where.FormatRuntime(VFDaxText(DaxError::DbcErrorAtLine), number, filename);
        VFDaxReport(DaxError::DbcErrorAtLine, VVReadRoutine, {.text = where, .chain = 1});
        return false;
    }
    return true;
}

int VDDbcReader::ReadLine(std::string_view line)
{
    detail_ = {};
    const std::string_view word = tokenizer_.Start(line);
    if (word == "SG_")
        return ReadSignal(line);
    if (word == "BO_")
        return ReadFrame();
    if (word == "CM_")
        return ReadComment();
    if (word == "BA_")
        return ReadAttribute();
    if (word == "VAL_")
        return ReadValues();
    if (word == "BA_DEF_DEF_")
        return ReadAttributeDefault();
    if (word == "BU_")
        return ReadNodes();
    if (word == "SIG_VALTYPE_")
        ReadValueType();
    return 0;
}

int VDDbcReader::ReadNodes()
{
    const auto& tokens = tokenizer_.ReadAll();
    if (tokens.size() < 2)
        return DaxError::DbcNodeLine;
    for (std::size_t index = 1; index < tokens.size(); ++index)
        nodes_.emplace(tokens[index]);
    return 0;
}

int VDDbcReader::ReadFrame()
{
    const auto& tokens = tokenizer_.ReadAll();
    if (tokens.size() < 5)
        return DaxError::DbcFrameLine;
    std::int64_t id = 0;
    if (!VFDbcNumber(tokens[1], &id))
        return DaxError::DbcFrameId;
    if (!frameNames_.emplace(tokens[2]).second)
        hasDuplicateNames_ = true;
    int numBytes = 0;
    if (!VFDbcNumber(tokens[3], &numBytes))
        return DaxError::DbcFrameBytes;
    auto frame = std::make_unique<VDCanFrameDefinition>();
    frame->Init(static_cast<unsigned long>(id), VDString(tokens[2]), numBytes,
                VDString(tokens[4] == VVNoNode ? std::string_view() : tokens[4]));
    current_ = frame.get();
    frameById_.try_emplace(frame->GetFrameId(), frames_.GetSize());
    frames_.AppendItem(std::move(frame));
    return 0;
}

int VDDbcReader::ReadSignal(std::string_view line)
{
    if (current_ == nullptr)
        return DaxError::DbcSignalBeforeFrame;
    VDDbcSignal signal;
    if (const int code = VFReadDbcSignal(line, &signal); code != 0)
        return code;
    VDStringArray receivers;
    if (const int code = ReadReceivers(signal.receivers, &receivers); code != 0)
        return code;
    auto chan = std::make_unique<VDCanChanDefinition>();
    chan->Init(VDString(signal.title), signal.isSwitch, signal.isMultiplexed, signal.multiplexId, signal.startBit,
               signal.numBits, signal.bigEndian, signal.isSigned, signal.factor, signal.offset, signal.minval, signal.maxval,
               signal.units, receivers, current_->GetNumBytes());
    current_->AppendChan(chan.release());
    return 0;
}

int VDDbcReader::ReadReceivers(std::string_view list, VDStringArray* receivers)
{
    receivers->Reserve(1);
    for (bool more = true; more;) {
        const std::size_t comma = list.find(',');
        VDString name = VFDbcSqueeze(list.substr(0, comma));
        more = comma != std::string_view::npos;
        list.remove_prefix(more ? comma + 1 : list.size());
        if (name.IsEmpty() || name.View() == VVNoNode)
            continue;
        if (!nodes_.contains(name.Str())) {
            scratch_ = name.Str();
            detail_ = scratch_;
            return DaxError::DbcReceiver;
        }
        receivers->AppendItem(std::move(name));
    }
    return 0;
}

int VDDbcReader::ReadComment()
{
    const auto& tokens = tokenizer_.ReadAll();
    if (tokens.size() < 4 || (tokens[1] != "BO_" && tokens[1] != "SG_"))
        return 0;
    int index = -1;
    if (const int code = FindFrame(tokens[2], &index); code != 0 || index < 0)
        return code;
    VDCanFrameDefinition* const frame = frames_[index].get();
    if (tokens[1] == "BO_")
        frame->SetDescription(VDString(tokens[3]));
    else if (tokens.size() >= 5)
        if (VDCanChanDefinition* chan = FindChan(frame, tokens[3]); chan != nullptr)
            chan->SetDescription(VDString(tokens[4]));
    return 0;
}

int VDDbcReader::ReadAttribute()
{
    const auto& tokens = tokenizer_.ReadAll();
    if (tokens.size() < 5 || tokens[2] != "BO_" || (tokens[1] != VVPeriodName && tokens[1] != VVModeName))
        return 0;
    int index = -1;
    if (const int code = FindFrame(tokens[3], &index); code != 0 || index < 0)
        return code;
    double period = 0;
    if (tokens[1] == VVModeName) {
        frames_[index]->SetTransmissionMode(tokens[4] == "0" ? "P" : tokens[4] == "1" ? "P+E" : "E");
        defaultMode_.ownStep[index] = ++step_;
    } else if (VFDbcNumber(tokens[4], &period)) {
        frames_[index]->SetSamplePeriod(period);
        defaultPeriod_.ownStep[index] = ++step_;
    }
    return 0;
}

int VDDbcReader::ReadAttributeDefault()
{
    const auto& tokens = tokenizer_.ReadAll();
    if (tokens.size() < 3)
        return 0;
    double period = 0;
    if (tokens[1] == VVModeName) {
        defaultMode_.value = VDString(tokens[2]);
        defaultMode_.end = frames_.GetSize();
        defaultMode_.step = ++step_;
    } else if (tokens[1] == VVPeriodName && VFDbcNumber(tokens[2], &period)) {
        defaultPeriod_.value = period;
        defaultPeriod_.end = frames_.GetSize();
        defaultPeriod_.step = ++step_;
    }
    return 0;
}

// A later default covers every frame that an earlier one did, so that the last one alone need be given out, once.
void VDDbcReader::ApplyDefaults()
{
    const auto apply = [this](auto& attribute, auto set) {
        for (int index = 0; index < attribute.end; ++index) {
            const auto own = attribute.ownStep.find(index);
            if (own == attribute.ownStep.end() || own->second < attribute.step)
                set(*frames_[index], attribute.value);
        }
    };
    apply(defaultMode_, [](VDCanFrameDefinition& frame, const VDString& mode) { frame.SetTransmissionMode(mode); });
    apply(defaultPeriod_, [](VDCanFrameDefinition& frame, double period) { frame.SetSamplePeriod(period); });
}

int VDDbcReader::ReadValues()
{
    const auto& tokens = tokenizer_.ReadAll();
    if (tokens.size() < 5)
        return 0;
    int index = -1;
    if (const int code = FindFrame(tokens[1], &index); code != 0 || index < 0)
        return code;
    VDCanChanDefinition* const chan = FindChan(frames_[index].get(), tokens[2]);
    if (chan == nullptr)
        return 0;
    VDArrayWithSort<long> values;
    VDStringArray texts;
    for (std::size_t position = 3; position + 1 < tokens.size(); position += 2) {
        std::int64_t value = 0;
        if (!VFDbcNumber(tokens[position], &value))
            return 0;
        std::string_view text = tokens[position + 1];
        if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
            text = text.substr(1, text.size() - 2);
        values.AppendItem(static_cast<long>(value));
        texts.AppendItem(VDString(text));
    }
    chan->SetEnumOptions(values, texts);
    return 0;
}

// A line that says nothing of use changes nothing.
void VDDbcReader::ReadValueType()
{
    const auto& tokens = tokenizer_.ReadAll();
    std::int64_t id = 0;
    int type = 0;
    if (tokens.size() < 4 || !VFDbcNumber(tokens[1], &id) || !VFDbcNumber(tokens[3], &type))
        return;
    const auto frame = frameById_.find(static_cast<unsigned long>(id));
    if (frame == frameById_.end())
        return;
    if (VDCanChanDefinition* const chan = FindChan(frames_[frame->second].get(), tokens[2]); chan != nullptr)
        chan->SetValueType(type);
}

int VDDbcReader::FindFrame(std::string_view token, int* frame)
{
    std::int64_t id = 0;
    if (!VFDbcNumber(token, &id))
        return DaxError::DbcFrameId;
    const auto found = frameById_.find(static_cast<unsigned long>(id));
    *frame = found == frameById_.end() ? -1 : found->second;
    if (*frame < 0)
        VFReportFrameNotDefined(static_cast<unsigned long>(id));
    return 0;
}

VDCanChanDefinition* VDDbcReader::FindChan(VDCanFrameDefinition* frame, std::string_view title)
{
    const int count = frame->GetChanDefinitionCount();
    if (count <= VVIndexedChans) {
        for (int index = 0; index < count; ++index)
            if (frame->GetChanDefinition(index)->GetTitle().View() == title)
                return frame->GetChanDefinition(index);
        return nullptr;
    }
    auto& [chans, indexed] = chanByTitle_[frame];
    for (; indexed < count; ++indexed)
        chans.try_emplace(frame->GetChanDefinition(indexed)->GetTitle().View(), frame->GetChanDefinition(indexed));
    const auto found = chans.find(title);
    return found == chans.end() ? nullptr : found->second;
}

bool VDDbcReader::CheckFrames()
{
    if (frames_.IsEmpty())
        return VFDaxReportError(DaxError::DbcNoFrames, VVReadRoutine) != 0;
    if (hasDuplicateNames_)
        return VFDaxReportError(DaxError::DbcDuplicateFrameNames, VVReadRoutine) != 0;
    FrameList kept;
    const VDCanFrameDefinition* offender = nullptr;
    for (auto& frame : frames_) {
        if (offender == nullptr && CountSwitches(*frame) > 1)
            offender = frame.get();
        if (offender != nullptr || frame->GetChanDefinitionCount() > 0)
            kept.AppendItem(std::move(frame));
    }
    frames_ = std::move(kept);
    if (offender == nullptr)
        return true;
    return VFDaxReport(DaxError::DbcMultiplexSwitches, VVReadRoutine, {.appended = offender->GetFrameName()}) != 0;
}
