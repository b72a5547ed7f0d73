#include "daxlib/VDCanChanDefinition.h"

#include "frame/VFDaxReport.h"

namespace {

constexpr int VVFirstUnsupportedNumBits = 64;

}  // namespace

struct VDCanChanDefinition::State
{
    int numBits = 0;
    int frameBytes = 0;
    char isMultiplexSwitch = 0;
    char isMultiplexed = 0;
    char bigEndian = 0;
    char isSigned = 0;
    int multiplexId = 0;
    int startBit = 0;
    double minval = 0;
    double maxval = 0;
    VDString title;
    VDString units;
    VDString description;
    VDStringArray receivers;
    VDStringArray enumTexts;
    VDArrayWithSort<long> enumValues;
};

VDCanChanDefinition::VDCanChanDefinition() : state_(std::make_unique<State>()) {}

VDCanChanDefinition::~VDCanChanDefinition() = default;

VDCanChanDefinition::VDCanChanDefinition(const VDCanChanDefinition& other)
    : bits_(other.bits_), scaling_(other.scaling_), state_(std::make_unique<State>(*other.state_))
{
}

VDCanChanDefinition& VDCanChanDefinition::operator=(const VDCanChanDefinition& other)
{
    *state_ = State(*other.state_);
    bits_ = other.bits_;
    scaling_ = other.scaling_;
    return *this;
}

void VDCanChanDefinition::Init(const VDString& title, char isSwitch, char isMultiplexed, int multiplexId, int startBit,
                               int numBits, char bigEndian, char isSigned, double factor, double offset, double minval,
                               double maxval, const VDString& units, const VDStringArray& receivers, const int& frameBytes)
{
    State& state = *state_;
    bits_ = VDCanSignalBits(frameBytes, startBit, numBits, bigEndian != 0, isSigned != 0);
    scaling_ = {factor, offset};
    state.numBits = numBits;
    state.frameBytes = frameBytes;
    state.isMultiplexSwitch = isSwitch;
    state.isMultiplexed = isMultiplexed;
    state.bigEndian = bigEndian;
    state.isSigned = isSigned;
    state.multiplexId = multiplexId;
    state.startBit = startBit;
    state.minval = minval;
    state.maxval = maxval;
    state.title = title;
    state.units = units;
    state.receivers = receivers;
}

const VDString& VDCanChanDefinition::GetTitle() const
{
    return state_->title;
}

char VDCanChanDefinition::IsMultiplexSwitch() const
{
    return state_->isMultiplexSwitch;
}

char VDCanChanDefinition::IsMultiplexed() const
{
    return state_->isMultiplexed;
}

int VDCanChanDefinition::GetMultiplexId() const
{
    return state_->multiplexId;
}

int VDCanChanDefinition::GetStartBit() const
{
    return state_->startBit;
}

int VDCanChanDefinition::GetNumBits() const
{
    return state_->numBits;
}

char VDCanChanDefinition::GetBigEndian() const
{
    return state_->bigEndian;
}

char VDCanChanDefinition::GetIsSigned() const
{
    return state_->isSigned;
}

double VDCanChanDefinition::GetMinval() const
{
    return state_->minval;
}

double VDCanChanDefinition::GetMaxval() const
{
    return state_->maxval;
}

const VDString& VDCanChanDefinition::GetUnits() const
{
    return state_->units;
}

const VDStringArray& VDCanChanDefinition::GetReceivers() const
{
    return state_->receivers;
}

int VDCanChanDefinition::GetFrameBytes() const
{
    return state_->frameBytes;
}

void VDCanChanDefinition::SetDescription(const VDString& description)
{
    state_->description = description;
}

const VDString& VDCanChanDefinition::GetDescription() const
{
    return state_->description;
}

void VDCanChanDefinition::SetEnumOptions(VDArrayWithSort<long>& values, VDStringArray& texts)
{
    state_->enumValues = values;
    state_->enumTexts = texts;
}

void VDCanChanDefinition::GetEnumOptions(VDArrayWithSort<long>* values, VDStringArray* texts) const
{
    *values = state_->enumValues;
    *texts = state_->enumTexts;
}

bool VDCanChanDefinition::GetRareValue(const unsigned char* data, std::int64_t* value) const
{
    if (state_->numBits < VVFirstUnsupportedNumBits)
        return DecodeMethod2(data, value);
    const VDDaxReportDetail title = {.appended = state_->title};
    return VFDaxReport(DaxError::SignalTooLong, "VDCanChanDefinition::GetValueFromFrame", title) != 0;
}

bool VDCanChanDefinition::DecodeMethod2(const unsigned char* data, std::int64_t* value) const
{
    *value = bits_.Extract(data);
    return true;
}

void VDCanChanDefinition::SetValueType(int type)
{
    const int numBits = state_->numBits;
    if (type == VTCanValueInteger || (type == VTCanValueFloat && numBits == 32) ||
        (type == VTCanValueDouble && numBits == 64))
        scaling_.valueType = type;
}

bool VDCanChanDefinition::IsAnalogue() const
{
    const State& state = *state_;
    if (state.numBits == 1 || (state.minval == 0.0 && state.maxval == 0.0))
        return false;
    // Written so that NaN counts as a scaling.
    const bool scaled = !(scaling_.factor == 1.0) || !(scaling_.offset == 0.0);
    if (scaled)
        return true;
    return !state.units.IsEmpty() && state.units.CompareNoCase("TOR") != 0 && state.units.CompareNoCase("NIV") != 0;
}

bool VDCanChanDefinition::IsEnum() const
{
    return !state_->enumTexts.IsEmpty();
}

bool VDCanChanDefinition::GetEnumText(std::int64_t value, VDString* text) const
{
    const auto low = [](std::int64_t whole) { return static_cast<std::uint32_t>(whole); };
    for (int index = 0; index < state_->enumValues.GetSize(); ++index) {
        if (low(state_->enumValues[index]) == low(value)) {
            *text = state_->enumTexts[index];
            break;
        }
    }
    return true;
}
