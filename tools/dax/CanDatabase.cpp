#include "CanDatabase.h"

#include "ToolError.h"

namespace {

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
        for (int chan = 0; chan < frame.definition->GetChanDefinitionCount(); ++chan)
            frame.signals.push_back(frame.definition->GetChanDefinition(chan));
        frame.decoder = std::make_shared<VDCanFrameDecoder>(*frame.definition);
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

void VDCanValues::Decode(const VDCanFrame& frame, const unsigned char* data)
{
    raw.resize(frame.signals.size());
    physical.resize(raw.size());
    present.resize(raw.size());
    frame.decoder->DecodeFrame(data, raw.data(), physical.data(), present.data());
}
