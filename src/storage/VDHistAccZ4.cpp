#include "VDHistAccZ4.h"

#include "StorageFileTypes.h"
#include "access/AccessFamily.h"
#include "frame/DaxErrorCodes.h"

#include "daxlib/HistogramPlugin.h"

namespace {

/// The type of the values of a format's bins.
std::int32_t VFDataTypeOf(int format)
{
    switch (format) {
    case VTHistFormatHuge:
        return DaxDataType::Huge;
    case VTHistFormatLong:
        return DaxDataType::Long;
    case VTHistFormatFloat:
        return DaxDataType::Float;
    default:
        return DaxDataType::Double;
    }
}

}  // namespace

VDHistAccZ4::VDHistAccZ4() : data_(*LQGetDataManager()), channelIndex_(10)
{
    SetID(ClassId);
}

VDHistAccZ4::~VDHistAccZ4()
{
    fileId_.Reset();
    CloseAll(true);
}

bool VDHistAccZ4::SetId(VDFileId* id, char)
{
    fileId_.Reset();
    int fileId = 0;
    int subId = 0;
    VDString filename;
    VDString extension;
    if (!FIDGetFileId(id, &fileId, &subId) || !FIDGetFilename(id, &filename, &extension))
        return false;
    if (fileId != DaxStorageFileId || !StorageFormat::IsHistogram(subId))
        return Report(0, DaxError::HistInvalidFileId, "VDHistAccZ4::SetId");
    if (!FIDAddRef(id))
        return false;
    fileId_.Reset(id);
    filename_ = filename;
    return true;
}

bool VDHistAccZ4::Open(int mode)
{
    CloseAll(true);
    configured_ = false;
    if (OpenFile(mode))
        return true;
    CloseAll(false);
    return false;
}

bool VDHistAccZ4::OpenFile(int mode)
{
    Z4Manager& files = *data_.GetFileManager();
    const bool creates = VFIsCreateMode(mode);
    file_ = creates ? files.CreateFile(filename_, nullptr) : files.OpenFile(filename_, mode == 2);
    if (file_ == nullptr)
        return false;
    int fileId = 0;
    int subId = 0;
    if (!FIDGetFileId(fileId_.Get(), &fileId, &subId) || (creates && !file_->SetSubType(subId)))
        return false;
    if (!StorageFormat::IsHistogram(file_->GetSubType()))
        return Report(DaxChannel::WholeFile, DaxError::StorageHistSubType, "VDHistAccZ4::Open");
    histograms_ = data_.AdoptHistogram(file_->GetRoot(), StorageFormat::HistogramNode, nullptr, nullptr);
    VDArrayWithSort<long> numbers;
    if (histograms_ == nullptr || !FIDGetChans(fileId_.Get(), &numbers))
        return false;
    // Histograms that are there keep their type, and stay.
    configured_ = HasHistograms();
    return creates ? MakeChannels(numbers) : FindChannels(numbers);
}

bool VDHistAccZ4::MakeChannels(const VDArrayWithSort<long>& numbers)
{
    if (!histograms_->AdjustChannelCount(numbers.GetSize()))
        return false;
    channelIndex_.SetSize(numbers.GetSize());
    for (int index = 0; index < numbers.GetSize(); ++index) {
        channelIndex_[index] = index;
        if (!histograms_->GetMapper()->SetChannelNumber(numbers[index], index))
            return Report(DaxChannel::WholeFile, DaxError::StorageChannelIndex, "VDHistAccZ4::Open");
    }
    return true;
}

bool VDHistAccZ4::FindChannels(const VDArrayWithSort<long>& numbers)
{
    channelIndex_.SetSize(numbers.GetSize());
    for (int index = 0; index < numbers.GetSize(); ++index) {
        const int found = histograms_->GetMapper()->IndexFromNumber(numbers[index], false);
        if (found < 0)
            return Report(DaxChannel::WholeFile, DaxError::StorageChannelIndex, "VDHistAccZ4::Open");
        channelIndex_[index] = found;
    }
    return true;
}

bool VDHistAccZ4::HasHistograms() const
{
    for (int channel = 0; channel < histograms_->GetChannelCount(); ++channel)
        if (histograms_->HasHistogram(channel))
            return true;
    return false;
}

bool VDHistAccZ4::Close()
{
    return CloseAll(true);
}

bool VDHistAccZ4::CloseAll(bool save)
{
    LQHistogram* const object = histograms_;
    Z4File* const file = file_;
    histograms_ = nullptr;
    file_ = nullptr;
    // An object that couldn't be saved leaves the file as of its last commit.
    const bool saved = object == nullptr || data_.Close(object, save);
    const bool closed = file == nullptr || data_.GetFileManager()->CloseFile(file, save && saved);
    return saved && closed;
}

bool VDHistAccZ4::Flush()
{
    return data_.Flush(histograms_);
}

bool VDHistAccZ4::GetCapability(int capability, char* answer)
{
    using namespace DaxHistogram;
    switch (capability) {
    case 0:
    case Writable:
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

bool VDHistAccZ4::LoadMetaData(LQChannelMapper** mapper)
{
    if (histograms_ == nullptr || !histograms_->RefreshMetadata(false, LQObject::ALL_CHANNELS))
        return false;
    *mapper = histograms_->GetMapper();
    return true;
}

void VDHistAccZ4::GetChanFileName(VDString& filename, long channel) const
{
    filename.Empty();
    if (fileId_)
        FIDGetChanFilename(fileId_.Get(), static_cast<int>(channel), &filename);
}

bool VDHistAccZ4::FindChannel(long channel, int* own, const char* routine) const
{
    const int index = static_cast<int>(channel);
    if (histograms_ == nullptr || !channelIndex_.IsIndex(index))
        return Report(DaxChannel::WholeFile, DaxError::StorageChannelIndex, routine);
    *own = static_cast<int>(channelIndex_[index]);
    return true;
}

bool VDHistAccZ4::GetValue(long channel, int key, VDVariant* value)
{
    int own = 0;
    if (key != DaxHistogram::ChanTitle)
        return true;
    if (!FindChannel(channel, &own, "VDHistAccZ4::GetValue"))
        return false;
    VDString title;
    if (histograms_->GetChanTitle(title, own))
        *value = VDVariant(title);
    return true;
}

bool VDHistAccZ4::PutValue(long channel, int key, VDVariant* value)
{
    int own = 0;
    VDString title;
    if (key != DaxHistogram::ChanTitle)
        return true;
    value->GetString(&title);
    return FindChannel(channel, &own, "VDHistAccZ4::PutValue") && histograms_->SetChanTitle(title, own);
}

bool VDHistAccZ4::GetHistogram(long channel, VDHist** histogram)
{
    *histogram = nullptr;
    int own = 0;
    VDHistHandle made(VFHistCreate());
    if (!made || !FindChannel(channel, &own, "VDHistAccZ4::GetHistogram") || !histograms_->SaveTo(made.Get(), own))
        return false;
    *histogram = made.Detach();
    return true;
}

bool VDHistAccZ4::PutHistogram(long channel, VDHist* histogram)
{
    int own = 0;
    int format = 0;
    if (!FindChannel(channel, &own, "VDHistAccZ4::PutHistogram"))
        return false;
    if (!VFHistGetFormat(histogram, &format)) {
        format = VTHistFormatDouble;
        if (!VFHistSetFormat(histogram, format))
            return false;
    }
    // All channels get the type of what is put first; titles and metadata that they have already stay.
    if (!configured_ && !histograms_->SetDefaultDataType(VFDataTypeOf(format)))
        return false;
    configured_ = true;
    return histograms_->LoadFrom(histogram, own);
}
