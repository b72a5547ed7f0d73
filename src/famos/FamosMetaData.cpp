#include "VDFamosRecording.h"

#include "vdbase/VDUnicodeString.h"
#include "vdstore/LQChannelMapper.h"

#include <chrono>
#include <unordered_map>

// What a recording says besides its values.

namespace {

constexpr const char* VVExtraDetails = "ExtraDetails";

/// Puts texts into a set. Those that are empty aren't put; of several of one name each but the first gets a number.
class TextSet
{
public:
    TextSet(LQChannelMapper& mapper, int index) : set_(*mapper.AdoptMetaDataSet(VVExtraDetails, nullptr, index)) {}

    Z4PropertySet* operator->() const { return &set_; }

    void Add(const VDString& name, const VDString& text)
    {
        if (text.IsEmpty())
            return;
        const VDString plain = name.IsEmpty() ? VDString("Text") : VFTextAsUtf8(name);
        VDString free = plain;
        while (set_.Exists(free, false))
            free = plain + " " + std::to_string(++numbers_.try_emplace(plain.Str(), 1).first->second).c_str();
        set_.AddString(free, VFTextAsUtf8(text));
    }

private:
    Z4PropertySet& set_;
    std::unordered_map<std::string, int> numbers_;
};

/// A time of the file with seconds added; empty where that is none of the usual years.
VDString IsoText(const VDTime& time, double seconds)
{
    using namespace std::chrono;
    VDTimecode code;
    code.SetVDTime(time);
    if (!(seconds > -1e11 && seconds < 1e11))
        return {};
    const sys_time<milliseconds> moment(
        milliseconds(code.GetUTCTimeInMicroSeconds() / 1000 + static_cast<std::int64_t>(seconds * 1000)));
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss clock(moment - day);
    VDTime result;
    if (!result.LoadVDTIME(static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
                           static_cast<int>(static_cast<unsigned>(date.day())), static_cast<int>(clock.hours().count()),
                           static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()),
                           static_cast<int>(clock.subseconds().count())))
        return {};
    return result.ToIsoText();
}

}  // namespace

void VDFamosRecording::AddTo(LQChannelMapper& mapper) const
{
    TextSet set(mapper, LQChannelMapper::GLOBAL);
    set.Add("Program", header_.program);
    set.Add("Comment", header_.comment);
    for (const VDFamosDefinition& definition : header_.groupDefinitions) {
        set.Add("Group", definition.name);
        set.Add("GroupComment", definition.comment);
    }
    for (const VDFamosTextDefinition& definition : header_.textDefinitions) {
        set.Add(definition.name, definition.text);
        set.Add(definition.name + " (comment)", definition.comment);
    }
    // The time of the test is that of its first channel that has one.
    for (std::size_t channel = 0; channel < channels_.size(); ++channel)
        if (const VDTime* const trigger = TriggerOf(channel); trigger != nullptr) {
            set.Add("TriggerTime", trigger->ToIsoText());
            break;
        }
}

void VDFamosRecording::AddChannelTo(LQChannelMapper& mapper, int index, std::size_t channel,
                                    const VDFamosLayout& layout) const
{
    const VDFamosComponent& component = ComponentOf(channel);
    TextSet set(mapper, index);
    const bool isDigital = GetDataType(channel) == DaxDataType::Digital32;
    for (const VDFamosChannelName& name : component.channelNames) {
        set.Add("Comment", name.comment);
        const auto group = groupDefinitions_.find(name.groupIndex);
        if (group != groupDefinitions_.end() && !set->Exists("Group", false))
            set.Add("Group", group->second->name);
        if (isDigital && name.bitIndex > 0)
            set.Add(VDString("Bit" + std::to_string(name.bitIndex)), name.name);
    }
    set.Add("XUnits", GetXUnits(channel));
    if (const VDTime* const trigger = TriggerOf(channel); trigger != nullptr) {
        set.Add("TriggerTime", trigger->ToIsoText());
        set.Add("TimeStamp", IsoText(*trigger, layout.buffers.empty() ? 0 : layout.buffers[0]->addTime));
    }
    if (component.packet != nullptr) {
        set->AddLong("NumberFormat", component.packet->numberFormat);
        set->AddLong("SignificantBits", component.packet->significantBits);
    }
    if (IsScaled(component)) {
        set->AddDouble("Factor", component.range->factor);
        set->AddDouble("Offset", component.range->offset);
    }
    // Pieces that don't follow each other in time: where each begins.
    std::int64_t point = layout.rings.empty() ? 0 : layout.rings[0].count;
    for (std::size_t piece = 1; piece < layout.rings.size(); ++piece) {
        const std::string name = "Piece" + std::to_string(piece + 1);
        set->AddHuge((name + "Point").c_str(), point + 1);
        set->AddDouble((name + "X0").c_str(), layout.buffers[piece]->x0);
        point += layout.rings[piece].count;
    }
}
