#include "daxlib/VDCanFrameDefinition.h"

struct VDCanFrameDefinition::State
{
    State() = default;
    State(const State& other)
        : id(other.id),
          name(other.name),
          numBytes(other.numBytes),
          transmitter(other.transmitter),
          description(other.description),
          transmissionMode(other.transmissionMode),
          samplePeriod(other.samplePeriod)
    {
        chans.Reserve(other.chans.GetSize());
        for (const auto& chan : other.chans)
            chans.AppendItem(std::make_unique<VDCanChanDefinition>(*chan));
    }
    State& operator=(State&&) = default;

    unsigned long id = 0;
    VDString name;
    int numBytes = 0;
    VDString transmitter;
    VDString description;
    VDString transmissionMode;
    double samplePeriod = 0;
    VDArray<std::unique_ptr<VDCanChanDefinition>> chans{10};
};

VDCanFrameDefinition::VDCanFrameDefinition() : state_(std::make_unique<State>()) {}

VDCanFrameDefinition::~VDCanFrameDefinition() = default;

VDCanFrameDefinition::VDCanFrameDefinition(const VDCanFrameDefinition& other)
    : state_(std::make_unique<State>(*other.state_))
{
}

VDCanFrameDefinition& VDCanFrameDefinition::operator=(const VDCanFrameDefinition& other)
{
    *state_ = State(*other.state_);
    return *this;
}

void VDCanFrameDefinition::Init(unsigned long id, const VDString& name, int numBytes, const VDString& transmitter)
{
    state_->id = id;
    state_->name = name;
    state_->numBytes = numBytes;
    state_->transmitter = transmitter;
}

unsigned long VDCanFrameDefinition::GetFrameId() const
{
    return state_->id;
}

const VDString& VDCanFrameDefinition::GetFrameName() const
{
    return state_->name;
}

int VDCanFrameDefinition::GetNumBytes() const
{
    return state_->numBytes;
}

const VDString& VDCanFrameDefinition::GetTransmitterName() const
{
    return state_->transmitter;
}

void VDCanFrameDefinition::SetDescription(const VDString& description)
{
    state_->description = description;
}

const VDString& VDCanFrameDefinition::GetDescription() const
{
    return state_->description;
}

void VDCanFrameDefinition::SetTransmissionMode(const VDString& mode)
{
    state_->transmissionMode = mode;
}

const VDString& VDCanFrameDefinition::GetTransmissionMode() const
{
    return state_->transmissionMode;
}

void VDCanFrameDefinition::SetSamplePeriod(double period)
{
    state_->samplePeriod = period;
}

double VDCanFrameDefinition::GetSamplePeriod() const
{
    return state_->samplePeriod;
}

void VDCanFrameDefinition::AppendChan(VDCanChanDefinition* chan)
{
    if (chan != nullptr)
        state_->chans.AppendItem(std::unique_ptr<VDCanChanDefinition>(chan));
}

void VDCanFrameDefinition::ClearChans()
{
    state_->chans.Clear();
}

int VDCanFrameDefinition::GetChanDefinitionCount() const
{
    return state_->chans.GetSize();
}

VDCanChanDefinition* VDCanFrameDefinition::GetChanDefinition(int index) const
{
    return state_->chans.IsIndex(index) ? state_->chans[index].get() : nullptr;
}
