#include "UffAccess.h"

#include "UffMetaData.h"

#include "vdstore/LQChannelMapper.h"

namespace {

constexpr const char* VVPassedOver = "PassedOver";
constexpr const char* VVForm = "Form";

bool IsName(const VDString& name, const char* known)
{
    return name.CompareNoCase(known) == 0;
}

}  // namespace

bool UffAccess::Fail(int code, const char* routine, const std::string& detail, int chain) const
{
    return PluginReport(code, routine, filename_, detail, chain) != 0;
}

bool UffAccess::SetId(VDFileId* id)
{
    int fileId = 0;
    int subId = 0;
    VDString filename;
    if (!FIDGetFileId(id, &fileId, &subId) || !FIDGetChanFilename(id, 0, &filename))
        return false;
    id_ = id;
    filename_ = filename.Str();
    type_ = UffFormat::Find(fileId, subId);
    if (type_ != nullptr && type_->isSpectra == isSpectra_)
        return true;
    type_ = nullptr;
    return Fail(UffError::InvalidFileId, routine_);
}

bool UffAccess::OpenRead()
{
    int run = -1;
    file_ = UffFile::Open(filename_.c_str(), routine_);
    if (!file_ || !FIDGetRunNumber(id_, &run))
        return false;
    test_ = file_->FindTest(isSpectra_, run);
    if (test_ == nullptr || !MapChannels()) {
        file_.reset();
        return Fail(UffError::Open, routine_, "The file has other functions than it had.");
    }
    return true;
}

/// An id may name some of the channels only, in any order.
bool UffAccess::MapChannels()
{
    int count = 0;
    if (!FIDGetNumChans(id_, &count))
        return false;
    channels_.clear();
    for (int index = 0; index < count; ++index) {
        int number = -1;
        if (!FIDGetFileChanNumber(id_, index, &number) || (number < 1 && !FIDGetChanNumber(id_, index, &number)) ||
            number < 1 || static_cast<std::size_t>(number) > test_->channels.size())
            return false;
        channels_.push_back(test_->channels[static_cast<std::size_t>(number) - 1]);
    }
    return true;
}

bool UffAccess::StartWriting(std::unique_ptr<UffWriter> writer)
{
    writer_ = std::move(writer);
    for (int index = 0; writer_ && index < writer_->GetNumChannels(); ++index) {
        VDString title;
        VDString units;
        UffHeader& header = GetOwnHeader(index);
        if (FIDGetChanTitle(id_, index, &title))
            header.ids[0] = UffFitText(title.Str(), 80);
        if (FIDGetChanUnits(id_, index, &units))
            header.axes[UffHeader::Ordinate].units = UffFitText(units.Str(), 20);
    }
    return writer_ != nullptr;
}

bool UffAccess::Flush()
{
    return !writer_ || writer_->Flush() || Fail(UffError::NotWritable, routine_, "The file can't be written.", 1);
}

/// The library flushes what is to be kept.
bool UffAccess::Close()
{
    file_.reset();
    writer_.reset();
    return true;
}

int UffAccess::GetNumChannels() const
{
    return file_ ? static_cast<int>(channels_.size()) : writer_ ? writer_->GetNumChannels() : 0;
}

bool UffAccess::CheckChannel(long channel) const
{
    return (channel >= 0 && channel < GetNumChannels()) || Fail(UffError::ChannelIndexRange, routine_);
}

bool UffAccess::CheckWriting() const
{
    return writer_ || Fail(UffError::NotWritable, routine_);
}

const UffHeader& UffAccess::GetHeader(long channel) const
{
    return file_ ? GetDataset(channel).header : writer_->GetHeader(static_cast<std::size_t>(channel));
}

bool UffAccess::AddMetaData(LQChannelMapper& mapper)
{
    VDArrayWithSort<long> numbers;
    if (!file_ || !FIDGetChans(id_, &numbers))
        return true;
    for (int index = 0; index < GetNumChannels(); ++index) {
        const int entry = mapper.IndexFromNumber(numbers[index], false);
        if (entry >= 0 && !UffMetaData::Add(mapper, entry, GetHeader(index), GetDataset(index).number))
            return false;
    }
    return true;
}

/// What the library keeps beside a file that is made says what the columns of its headers are to hold.
bool UffAccess::TakeMetaData(const VDVariant& value)
{
    VDString name;
    void* pointer = nullptr;
    VDArrayWithSort<long> numbers;
    if (!writer_ || !value.GetNamedPointer(&name, &pointer) || !IsName(name, "MetaDataMapper") ||
        !FIDGetChans(id_, &numbers))
        return true;
    const auto& mapper = *static_cast<const LQChannelMapper*>(pointer);
    for (int index = 0; index < GetNumChannels(); ++index) {
        UffHeader fields = GetOwnHeader(index);
        const int entry = mapper.IndexFromNumber(numbers[index], false);
        if (entry >= 0)
            UffMetaData::Take(mapper, entry, fields);
        writer_->TakeFields(static_cast<std::size_t>(index), fields);
    }
    return true;
}

bool UffAccess::GetFormatValue(VDVariant& list) const
{
    VDString name;
    list[0].GetString(&name);
    const auto answer = [&list](const std::string& text) { list.AppendItem(VDVariant(text.c_str())); };
    if (!file_ && !writer_)
        return true;
    if (IsName(name, DaxFormatValue::Names)) {
        VDVariant names;
        if (file_ && !file_->GetPassedOver().empty())
            names.AppendItem(VDVariant(VVPassedOver));
        list.AppendItem(names);
    } else if (IsName(name, DaxFormatValue::Damage)) {
        answer(file_ ? file_->GetIndex().GetDamage() : "");
    } else if (IsName(name, VVPassedOver)) {
        answer(file_ ? file_->GetPassedOver() : "");
    } else if (IsName(name, VVForm)) {
        answer((file_ ? test_->isText : type_->isText) ? "58" : "58b");
    } else if (IsName(name, DaxFormatValue::Unfit)) {
        answer("");
    } else if (IsName(name, DaxFormatValue::GapsAreZero)) {
        list.AppendItem(VDVariant(true));
    }
    return true;
}

bool UffAccess::PutFormatValue(const VDVariant& list) const
{
    VDString name;
    list[0].GetString(&name);
    // Whoever copies a file hands over what the source said about itself; the form is the type's.
    return IsName(name, VVForm) || IsName(name, VVPassedOver) ||
           Fail(UffError::NotWritable, routine_, "A universal file can't hold the value " + name.Str() + ".");
}
