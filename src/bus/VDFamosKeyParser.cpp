#include "VDFamosKeyParser.h"

#include "frame/VFDaxReport.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr std::int64_t VVFirstKeyWithin = 64 * 1024;

}  // namespace

const VDFamosKeyParser::KeyType VDFamosKeyParser::VVKeyTypes[] = {
    {"CF", &VDFamosKeyParser::ReadId},
    {"DF", &VDFamosKeyParser::ReadId},
    {"CK", &VDFamosKeyParser::ReadStatus},
    {"NO", &VDFamosKeyParser::ReadOrigin},
    {"CB", &VDFamosKeyParser::ReadGroupDefinition},
    {"CT", &VDFamosKeyParser::ReadTextDefinition},
    {"CG", &VDFamosKeyParser::ReadData},
    {"CD", &VDFamosKeyParser::ReadScaling},
    {"NT", &VDFamosKeyParser::ReadTriggerTime},
    {"CC", &VDFamosKeyParser::ReadComponent},
    {"CP", &VDFamosKeyParser::ReadPacket},
    {"Cb", &VDFamosKeyParser::ReadBufferDescription},
    {"CR", &VDFamosKeyParser::ReadRange},
    {"CN", &VDFamosKeyParser::ReadChannelName},
    {"CS", &VDFamosKeyParser::ReadSamples},
};

VDFamosKeyParser::VDFamosKeyParser(VDIo& file, std::int64_t fileSize, VDFamosHeader& header)
    : fields_(file, fileSize), fileSize_(fileSize), header_(header)
{
}

bool VDFamosKeyParser::Run()
{
    if (fileSize_ <= 0)
        return false;
    do {
        // A long file that doesn't begin like this format is not gone through to its end for a key.
        if (!fields_.SkipPast('|', keyNumber_ == 0 ? VVFirstKeyWithin : fileSize_))
            return fields_.IsAtEnd();
        Key key;
        if (!ReadKey(&key))
            return false;
        if (const int code = Dispatch(key); code != 0)
            return VFDaxReport(code, "VDFamosUtil::ParseFile", {.chain = fields_.HasReported() ? 1 : 0}) != 0;
        ++keyNumber_;
        previousKey_ = key.name;
    } while (!fields_.IsAtEnd());
    return true;
}

// A negative length would have the parser go back, perhaps for ever.
bool VDFamosKeyParser::ReadKey(Key* key)
{
    if (!fields_.ReadField(&key->name) || !fields_.ReadInteger(&key->version) || !fields_.ReadInteger(&key->length))
        return false;
    key->dataStart = fields_.GetPosition();
    return key->length >= 0;
}

int VDFamosKeyParser::Dispatch(const Key& key)
{
    for (const KeyType& type : VVKeyTypes)
        if (key.name.View() == type.name)
            return (this->*type.read)(key);
    HopOver(key);
    return 0;
}

// To behind the ";" that closes the key.
void VDFamosKeyParser::HopOver(const Key& key)
{
    const std::int64_t inFile = std::max<std::int64_t>(fileSize_ - key.dataStart, 0);
    fields_.SetPosition(key.dataStart + std::min(key.length, inFile) + 1);
}

bool VDFamosKeyParser::ReadIntegers(std::initializer_list<int*> values)
{
    return std::all_of(values.begin(), values.end(), [this](int* value) { return fields_.ReadInteger(value); });
}

VDFamosScaling* VDFamosKeyParser::CurrentScaling()
{
    if (group_ == nullptr)
        return nullptr;
    std::unique_ptr<VDFamosScaling>& scaling = component_ != nullptr ? component_->scaling : group_->scaling;
    if (scaling == nullptr)
        scaling = std::make_unique<VDFamosScaling>();
    return scaling.get();
}

int VDFamosKeyParser::ReadId(const Key& key)
{
    if (keyNumber_ != 0 || !fields_.ReadInteger(&header_.processor))
        return DaxError::FamosIdKey;
    header_.idKeyName = key.name;
    return 0;
}

int VDFamosKeyParser::ReadStatus(const Key&)
{
    VDString unused;
    const bool follows = keyNumber_ == 1 && (previousKey_ == "CF" || previousKey_ == "DF");
    if (!follows || !fields_.ReadField(&unused) || !fields_.ReadInteger(&header_.status))
        return DaxError::FamosStatusKey;
    return 0;
}

// Writers put this key in other places too, and with other fields; then it is passed over.
int VDFamosKeyParser::ReadOrigin(const Key& key)
{
    if (keyNumber_ == 2 && previousKey_ == "CK" && fields_.ReadInteger(&header_.origin) &&
        fields_.ReadString(&header_.program) && fields_.ReadString(&header_.comment))
        return 0;
    fields_.SetPosition(key.dataStart);
    return fields_.SkipField() ? 0 : DaxError::FamosOriginKey;
}

int VDFamosKeyParser::ReadGroupDefinition(const Key&)
{
    VDFamosDefinition definition;
    if (!fields_.ReadInteger(&definition.index) || !fields_.ReadString(&definition.name) ||
        !fields_.ReadString(&definition.comment))
        return DaxError::FamosGroupDefinitionKey;
    header_.groupDefinitions.push_back(std::move(definition));
    return 0;
}

int VDFamosKeyParser::ReadTextDefinition(const Key&)
{
    VDFamosTextDefinition definition;
    if (!fields_.ReadInteger(&definition.index) || !fields_.ReadString(&definition.name) ||
        !fields_.ReadString(&definition.text) || !fields_.ReadString(&definition.comment))
        return DaxError::FamosTextDefinitionKey;
    header_.textDefinitions.push_back(std::move(definition));
    return 0;
}

int VDFamosKeyParser::ReadData(const Key&)
{
    if (group_ != nullptr) {
        if (group_->components.empty())
            return DaxError::FamosNoComponent;
        for (const VDFamosComponent& component : group_->components)
            if (component.packet == nullptr)
                return DaxError::FamosNoPacket;
    }
    VDFamosGroup group;
    if (!ReadIntegers({&group.numComponents, &group.fieldType, &group.dimension}))
        return DaxError::FamosDataKey;
    group_ = &header_.groups.emplace_back(std::move(group));
    component_ = nullptr;
    return 0;
}

int VDFamosKeyParser::ReadScaling(const Key& key)
{
    double dx = 0;
    int calibrated = -1;
    VDString unit;
    int integers[3];  // version 2: reduction, multi-event flag, sort buffer
    double x0 = 0;
    int pretriggerUsage = 0;
    const bool isLong = key.version == 2;
    if ((key.version != 1 && !isLong) || !fields_.ReadDouble(&dx) || !fields_.ReadInteger(&calibrated) ||
        !fields_.ReadString(&unit) || !ReadIntegers({&integers[0], &integers[1], &integers[2]}) ||
        (isLong && (!fields_.ReadDouble(&x0) || !fields_.ReadInteger(&pretriggerUsage))))
        return DaxError::FamosScalingKey;
    VDFamosScaling* const scaling = CurrentScaling();
    if (scaling == nullptr)
        return DaxError::FamosNoDataField;
    scaling->hasScaling = 1;
    scaling->dx = dx;
    scaling->calibrated = calibrated;
    scaling->unit = unit;
    if (!isLong)
        return 0;
    scaling->x0 = x0;
    if (component_ == nullptr) {
        scaling->reduction = integers[0];
        scaling->multiEvent = integers[1] != 0;
        scaling->sortBuffer = integers[2];
        scaling->pretriggerUsage = pretriggerUsage;
    }
    return 0;
}

int VDFamosKeyParser::ReadTriggerTime(const Key&)
{
    int day = 0;
    int month = 0;
    int year = 0;
    int hour = 0;
    int minute = 0;
    double seconds = 0;
    if (!ReadIntegers({&day, &month, &year, &hour, &minute}) || !fields_.ReadDouble(&seconds))
        return DaxError::FamosTriggerTimeKey;
    VDFamosScaling* const scaling = CurrentScaling();
    if (scaling == nullptr)
        return DaxError::FamosNoDataField;
    scaling->hasTriggerTime = 1;
    // A time that doesn't exist leaves the trigger time unset.
    if (!(seconds >= 0 && seconds < 60))
        return 0;
    const double whole = std::floor(seconds);
    scaling->triggerTime.LoadVDTIME(year, month, day, hour, minute, static_cast<int>(whole),
                                    static_cast<int>((seconds - whole) * 1000));
    return 0;
}

int VDFamosKeyParser::ReadComponent(const Key&)
{
    VDFamosComponent component;
    if (!ReadIntegers({&component.componentIndex, &component.analogDigital}))
        return DaxError::FamosComponentKey;
    if (group_ == nullptr)
        return DaxError::FamosNoDataField;
    component_ = &group_->components.emplace_back(std::move(component));
    return 0;
}

int VDFamosKeyParser::ReadPacket(const Key&)
{
    VDFamosPacket packet;
    if (!ReadIntegers({&packet.bufferReference, &packet.bytes, &packet.numberFormat, &packet.significantBits, &packet.mask,
                       &packet.offset, &packet.directSequence, &packet.bytesBetween}))
        return DaxError::FamosPacketKey;
    if (component_ == nullptr)
        return DaxError::FamosNoComponent;
    component_->packet = std::make_unique<VDFamosPacket>(packet);
    return 0;
}

// Recorders write nine fields a buffer: a number that nobody needs comes between the integers and the times. Which it is
// shows in where the key ends.
int VDFamosKeyParser::ReadBufferDescription(const Key& key)
{
    VDFamosBufferDescription description;
    bool good = false;
    for (const int numTimes : {2, 3}) {
        const VDErrorMute mute;
        good = good || (ReadBuffers(key, numTimes, &description) && fields_.GetPosition() >= key.dataStart + key.length &&
                        fields_.GetPosition() <= key.dataStart + key.length + 1);
    }
    if (!good && !ReadBuffers(key, 2, &description))
        return DaxError::FamosBufferKey;
    description.numGroups = header_.groups.size();
    description.numComponents = group_ != nullptr ? group_->components.size() : 0;
    header_.bufferDescriptions.push_back(std::move(description));
    return 0;
}

bool VDFamosKeyParser::ReadBuffers(const Key& key, int numTimes, VDFamosBufferDescription* description)
{
    *description = {};
    fields_.SetPosition(key.dataStart);
    bool good = ReadIntegers({&description->bufferCount, &description->userInfoBytes}) && description->userInfoBytes >= 0;
    for (int index = 0; good && index < description->bufferCount; ++index)
        good = ReadBuffer(numTimes, description);
    return good;
}

bool VDFamosKeyParser::ReadBuffer(int numTimes, VDFamosBufferDescription* description)
{
    VDFamosBuffer buffer;
    for (std::int64_t& value : buffer.integers)
        if (!fields_.ReadInteger(&value))
            return false;
    double times[3];
    for (int index = 0; index < numTimes; ++index)
        if (!fields_.ReadDouble(&times[index]))
            return false;
    buffer.times[0] = times[0];
    buffer.times[1] = times[1];
    buffer.x0 = times[numTimes - 2];
    buffer.addTime = times[numTimes - 1];
    fields_.SetPosition(fields_.GetPosition() + description->userInfoBytes);
    char mark = 0;
    const std::int64_t behind = fields_.GetPosition();
    if (numTimes == 2 || !fields_.ReadByte(&mark) || mark != ',')
        fields_.SetPosition(behind + (numTimes == 2 ? 1 : 0));
    description->buffers.push_back(buffer);
    return true;
}

int VDFamosKeyParser::ReadRange(const Key&)
{
    VDFamosRange range;
    if (!fields_.ReadInteger(&range.transform) || !fields_.ReadDouble(&range.factor) || !fields_.ReadDouble(&range.offset) ||
        !fields_.ReadInteger(&range.calibrated) || !fields_.ReadString(&range.unit))
        return DaxError::FamosRangeKey;
    if (component_ == nullptr)
        return DaxError::FamosNoComponent;
    component_->range = std::make_unique<VDFamosRange>(std::move(range));
    return 0;
}

int VDFamosKeyParser::ReadChannelName(const Key&)
{
    VDFamosChannelName name;
    int unused = 0;
    if (!ReadIntegers({&name.groupIndex, &unused, &name.bitIndex}) || !fields_.ReadString(&name.name) ||
        !fields_.ReadString(&name.comment))
        return DaxError::FamosChannelKey;
    if (component_ == nullptr)
        return DaxError::FamosNoComponent;
    component_->channelNames.push_back(std::move(name));
    return 0;
}

int VDFamosKeyParser::ReadSamples(const Key& key)
{
    VDFamosDataBlock block;
    if (!fields_.ReadInteger(&block.index))
        return DaxError::FamosSamplesKey;
    block.numGroups = header_.groups.size();
    block.start = fields_.GetPosition();
    block.length = key.length;
    // May lie behind the end of a file that was cut off.
    block.end = key.dataStart + std::min(key.length, std::numeric_limits<std::int64_t>::max() - key.dataStart);
    header_.dataBlocks.push_back(block);
    HopOver(key);
    return 0;
}
