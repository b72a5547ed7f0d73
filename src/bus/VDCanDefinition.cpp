#include "daxlib/VDCanDefinition.h"

#include "VDDbcReader.h"

#include "vdbase/VDPreferenceSystem.h"

struct VDCanDefinition::State
{
    State() : isUtf8(VDPreferenceSystem().GetBooleanValue("/FileFormats/DBC/DBCIsUtf8", false)) {}
    State(const State& other) : isUtf8(other.isUtf8)
    {
        for (const auto& frame : other.frames)
            frames.AppendItem(std::make_unique<VDCanFrameDefinition>(*frame));
    }
    State& operator=(State&&) = default;

    VDDbcReader::FrameList frames{10};
    char isUtf8;
};

VDCanDefinition::VDCanDefinition() : state_(std::make_unique<State>()) {}

VDCanDefinition::~VDCanDefinition() = default;

VDCanDefinition::VDCanDefinition(const VDCanDefinition& other) : state_(std::make_unique<State>(*other.state_)) {}

VDCanDefinition& VDCanDefinition::operator=(const VDCanDefinition& other)
{
    *state_ = State(*other.state_);
    return *this;
}

bool VDCanDefinition::ReadDatabase(const char* filename)
{
    return VDDbcReader(state_->frames).ReadFile(filename, state_->isUtf8 != 0);
}

void VDCanDefinition::ClearFrames()
{
    state_->frames.Clear();
}

int VDCanDefinition::GetFrameDefinitionCount() const
{
    return state_->frames.GetSize();
}

VDCanFrameDefinition* VDCanDefinition::GetFrameDefinition(int index) const
{
    return state_->frames.IsIndex(index) ? state_->frames[index].get() : nullptr;
}

VDCanFrameDefinition* VDCanDefinition::GetFrameDefinitionForId(unsigned long id) const
{
    for (const auto& frame : state_->frames)
        if (frame->GetFrameId() == id)
            return frame.get();
    VFReportFrameNotDefined(id);
    return nullptr;
}
