#include "VDTsAccZ4.h"

#include "RecordSizeTuning.h"
#include "StorageFileTypes.h"
#include "access/AccessFamily.h"
#include "frame/DaxErrorCodes.h"

#include "daxlib/FID.h"
#include "daxlib/TimeSeriesPlugin.h"

#include <array>

namespace {

/// The kinds of channels, in the order in which a new object gets them.
constexpr std::array VVTypes = {DaxDataType::Float, DaxDataType::Double, DaxDataType::Digital32, DaxDataType::Digital64};

/// Which of the kinds a channel of a file id is; floats stand for all that the format doesn't have.
std::size_t VFGetKind(VDFileId* id, int index)
{
    int type = 0;
    FIDGetChanType(id, index, &type);
    for (std::size_t kind = 0; kind < VVTypes.size(); ++kind)
        if (DaxDataType::FromId(type) == VVTypes[kind])
            return kind;
    return 0;
}

}  // namespace

VDTsAccZ4::VDTsAccZ4() : data_(*LQGetDataManager()), channelIndex_(10)
{
    SetID(ClassId);
}

VDTsAccZ4::~VDTsAccZ4()
{
    fileId_.Reset();
    CloseAll(true);
}

bool VDTsAccZ4::SetId(VDFileId* id, char)
{
    fileId_.Reset();
    int fileId = 0;
    int subId = 0;
    int nameForm = 0;
    int count = 0;
    VDString filename;
    VDString extension;
    if (!FIDGetFileId(id, &fileId, &subId) || !FIDGetNameForm(id, &nameForm) || !FIDGetNumChans(id, &count) ||
        !FIDGetFilename(id, &filename, &extension) || !StorageFormat::IsTimeSeries(subId))
        return false;
    flex_ = subId == StorageFormat::FlexTimeSeries;
    if (fileId != DaxStorageFileId || nameForm != VTNameFormFile)
        return Report(0, DaxError::StorageFileId, "VDTsAccZ4::SetId");
    if (!FIDAddRef(id))
        return false;
    fileId_.Reset(id);
    filename_ = filename;
    return true;
}

bool VDTsAccZ4::Open(int mode)
{
    CloseAll(true);
    if (OpenFile(mode))
        return true;
    CloseAll(false);
    return false;
}

bool VDTsAccZ4::OpenFile(int mode)
{
    Z4Manager& files = *data_.GetFileManager();
    const bool creates = VFIsCreateMode(mode);
    file_ = creates ? files.CreateFile(filename_, nullptr) : files.OpenFile(filename_, mode == 2);
    if (file_ == nullptr)
        return Report(DaxChannel::WholeFile, DaxError::StorageOpen, "VDTsAccZ4::Open", 1);
    VDArrayWithSort<long> numbers;
    int fileId = 0;
    int subId = 0;
    if (!FIDGetChans(fileId_.Get(), &numbers) || !FIDGetFileId(fileId_.Get(), &fileId, &subId))
        return false;
    if (creates && !file_->SetSubType(subId))
        return false;
    // What the file says about itself counts, not the id.
    subId = file_->GetSubType();
    if (!StorageFormat::IsTimeSeries(subId))
        return false;
    flex_ = subId == StorageFormat::FlexTimeSeries;
    if (!AdoptObject(creates ? GetOptimumRecordSize() : Z4Size::Record32K))
        return false;
    return (creates ? MakeChannels(numbers) : FindChannels(numbers)) && TellTypes();
}

/// The access object goes by its id, so that gets the types that the channels of the object have.
bool VDTsAccZ4::TellTypes()
{
    for (int index = 0; index < channelIndex_.GetSize(); ++index)
        if (!FIDSetChanType(fileId_.Get(), index, object_->GetChannelDataType(GetChannel(index))))
            return false;
    return true;
}

bool VDTsAccZ4::AdoptObject(int recordSize)
{
    if (flex_) {
        object_ = data_.AdoptFlexTimeSeries(file_->GetRoot(), StorageFormat::TimeSeriesNode, nullptr, recordSize);
    } else {
        timeSeries_ = data_.AdoptTimeSeries(file_->GetRoot(), StorageFormat::TimeSeriesNode, nullptr, recordSize);
        object_ = timeSeries_;
    }
    return object_ != nullptr;
}

/// A new object gets its channels kind by kind, each kind in the order of the file id.
bool VDTsAccZ4::MakeChannels(const VDArrayWithSort<long>& numbers)
{
    const int count = numbers.GetSize();
    std::array<int, VVTypes.size()> counts{};
    std::vector<std::size_t> kinds(static_cast<std::size_t>(count), 0);
    for (int index = 0; index < count; ++index) {
        std::size_t& kind = kinds[static_cast<std::size_t>(index)];
        kind = flex_ ? 0 : VFGetKind(fileId_.Get(), index);
        ++counts[kind];
    }
    const bool made = flex_ ? object_->AdjustChannelCount(count)
                            : (counts[0] == 0 || timeSeries_->AdjustChannelCountSinglePrecision(counts[0])) &&
                                  (counts[1] == 0 || timeSeries_->AdjustChannelCountDoublePrecision(counts[1])) &&
                                  (counts[2] == 0 || timeSeries_->AdjustChannelCountDigital32(counts[2], 1)) &&
                                  (counts[3] == 0 || timeSeries_->AdjustChannelCountDigital64(counts[3], 1));
    if (!made)
        return false;
    channelIndex_.SetSize(count);
    int position = 0;
    for (std::size_t kind = 0; kind < VVTypes.size(); ++kind)
        for (int index = 0; index < count; ++index)
            if (kinds[static_cast<std::size_t>(index)] == kind) {
                // A channel whose kind comes later stands behind others that follow it in the file id.
                channelIndex_[index] = position;
                if (!object_->GetMapper()->SetChannelNumber(numbers[index], position++))
                    return Report(DaxChannel::WholeFile, DaxError::StorageChannelIndex, "VDTsAccZ4::Open");
            }
    return true;
}

bool VDTsAccZ4::FindChannels(const VDArrayWithSort<long>& numbers)
{
    channelIndex_.SetSize(numbers.GetSize());
    for (int index = 0; index < numbers.GetSize(); ++index) {
        const int found = object_->GetMapper()->IndexFromNumber(numbers[index], false);
        if (found < 0)
            return Report(DaxChannel::WholeFile, DaxError::StorageChannelIndex, "VDTsAccZ4::Open");
        channelIndex_[index] = found;
    }
    return true;
}

int VDTsAccZ4::GetOptimumRecordSize() const
{
    if (numberOfElements_ == -1 || elementsSize_ == -1)
        return Z4Size::Record32K;
    int count = 0;
    FIDGetNumChans(fileId_.Get(), &count);
    return VFGetOptimumRecordSize(file_, numberOfElements_, elementsSize_, count);
}

bool VDTsAccZ4::Close()
{
    return CloseAll(true);
}

bool VDTsAccZ4::CloseAll(bool save)
{
    LQObject* const object = object_;
    Z4File* const file = file_;
    object_ = nullptr;
    timeSeries_ = nullptr;
    file_ = nullptr;
    // An object that couldn't be saved leaves the file as of its last commit.
    const bool saved = object == nullptr || data_.Close(object, save);
    const bool closed = file == nullptr || data_.GetFileManager()->CloseFile(file, save && saved);
    return saved && closed;
}

bool VDTsAccZ4::Flush()
{
    return data_.Flush(object_);
}

bool VDTsAccZ4::GetCapability(int capability, char* answer)
{
    using namespace DaxTimeSeries;
    switch (capability) {
    case OneChannelAtATime:
    case 1:
    case Writable:
    case Extendable:
    case LargeFiles:
    case StoresStatistics:
    case KeepsMetaData:
    case ChannelTitles:
    case NoSerialisation:
        *answer = 1;
        break;
    default:
        *answer = 0;
        break;
    }
    return true;
}

bool VDTsAccZ4::LoadMetaData(LQChannelMapper** mapper)
{
    if (object_ == nullptr || !object_->RefreshMetadata(false, LQObject::ALL_CHANNELS))
        return false;
    *mapper = object_->GetMapper();
    return *mapper != nullptr;
}

void VDTsAccZ4::GetChanFileName(VDString& filename, long) const
{
    filename = filename_;
}

bool VDTsAccZ4::CheckCount(long channel, std::int64_t count, std::int64_t got, const char* routine) const
{
    return got == count || Report(channel, DaxError::StorageReadPastEnd, routine);
}

bool VDTsAccZ4::GetData(long channel, std::int64_t first, std::int64_t count, float* values)
{
    std::int64_t got = 0;
    return object_ != nullptr && object_->GetData(first - 1, count, &got, values, GetChannel(channel)) &&
           CheckCount(channel, count, got, "VDTsAccZ4::GetData");
}

bool VDTsAccZ4::PutData(long channel, std::int64_t first, std::int64_t count, const float* values)
{
    return object_ != nullptr && object_->SetData(first - 1, count, values, GetChannel(channel));
}

// The older kind of object has floats only: all else fails there, without a report.

template <auto Get, auto Map, class Value>
bool VDTsAccZ4::GetTyped(long channel, std::int64_t first, std::int64_t count, Value* values, const char* routine)
{
    std::int64_t got = 0;
    return timeSeries_ != nullptr &&
           (timeSeries_->*Get)(first - 1, count, &got, values, (timeSeries_->*Map)(GetChannel(channel))) &&
           CheckCount(channel, count, got, routine);
}

template <auto Set, class Value>
bool VDTsAccZ4::PutTyped(long channel, std::int64_t first, std::int64_t count, const Value* values)
{
    return timeSeries_ != nullptr && (timeSeries_->*Set)(first - 1, count, values, GetChannel(channel));
}

bool VDTsAccZ4::GetDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, double* values)
{
    return GetTyped<&LQTimeSeries::GetDataDoublePrecision, &LQTimeSeries::MapperToDouble>(
        channel, first, count, values, "VDTsAccZ4::GetDataDoublePrecision");
}

bool VDTsAccZ4::PutDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, const double* values)
{
    return PutTyped<&LQTimeSeries::SetDataDoublePrecision>(channel, first, count, values);
}

bool VDTsAccZ4::GetDataDigital32(long channel, std::int64_t first, std::int64_t count, std::uint32_t* values)
{
    return GetTyped<&LQTimeSeries::GetDataDigital32, &LQTimeSeries::MapperToDigital32>(channel, first, count, values,
                                                                                       "VDTsAccZ4::GetDataDigital");
}

bool VDTsAccZ4::PutDataDigital32(long channel, std::int64_t first, std::int64_t count, const std::uint32_t* values)
{
    return PutTyped<&LQTimeSeries::SetDataDigital32>(channel, first, count, values);
}

bool VDTsAccZ4::GetDataDigital64(long channel, std::int64_t first, std::int64_t count, std::uint64_t* values)
{
    return GetTyped<&LQTimeSeries::GetDataDigital64, &LQTimeSeries::MapperToDigital64>(channel, first, count, values,
                                                                                       "VDTsAccZ4::GetDataDigital64");
}

bool VDTsAccZ4::PutDataDigital64(long channel, std::int64_t first, std::int64_t count, const std::uint64_t* values)
{
    return PutTyped<&LQTimeSeries::SetDataDigital64>(channel, first, count, values);
}
