#include "CanDatabase.h"

#include "ToolError.h"

namespace {

constexpr int VVFirstUndecodable = 64;
constexpr unsigned long VVLastStandardId = 0x7FF;

}  // namespace

VDCanDatabase::VDCanDatabase(const std::string& filename)
{
    VFErrorClear();
    VFCheck(database_.ReadDatabase(filename.c_str()));
    // Lines about frames that aren't there leave a report behind and are no failure.
    VFErrorClear();
    for (int index = 0; index < database_.GetFrameDefinitionCount(); ++index) {
        VDCanFrame frame;
        frame.definition = database_.GetFrameDefinition(index);
        for (int chan = 0; chan < frame.definition->GetChanDefinitionCount(); ++chan) {
            frame.signals.push_back(frame.definition->GetChanDefinition(chan));
            if (frame.signals.back()->IsMultiplexSwitch())
                frame.switchSignal = frame.signals.back();
        }
        frameById_.try_emplace(frame.definition->GetFrameId(), frames_.size());
        frames_.push_back(std::move(frame));
    }
}

const VDCanFrame* VDCanDatabase::Find(unsigned long id) const
{
    auto found = frameById_.find(id);
    // Databases don't agree on whether an extended id bears its mark.
    if (found == frameById_.end() && (id & ~ExtendedBit) > VVLastStandardId)
        found = frameById_.find(id ^ ExtendedBit);
    return found == frameById_.end() ? nullptr : &frames_[found->second];
}

bool VDCanDatabase::IsDecodable(const VDCanChanDefinition& signal)
{
    return signal.GetNumBits() < VVFirstUndecodable;
}

double VDCanDatabase::GetPhysical(const VDCanChanDefinition& signal, std::int64_t raw)
{
    return static_cast<double>(raw) * signal.GetFactor() + signal.GetOffset();
}

void VDCanDatabase::Decode(const VDCanFrame& frame, const unsigned char* data, std::vector<VDCanValue>* values)
{
    values->clear();
    std::int64_t switchValue = 0;
    const bool hasSwitch = frame.switchSignal != nullptr && IsDecodable(*frame.switchSignal) &&
                           frame.switchSignal->GetValueFromFrame(data, &switchValue);
    for (std::size_t index = 0; index < frame.signals.size(); ++index) {
        const VDCanChanDefinition& signal = *frame.signals[index];
        if (!IsDecodable(signal))
            continue;
        if (signal.IsMultiplexed() && (!hasSwitch || switchValue != signal.GetMultiplexId()))
            continue;
        VDCanValue value;
        value.signal = index;
        if (signal.GetValueFromFrame(data, &value.raw))
            values->push_back(value);
    }
}
