#include "ResultsFile.h"

#include "ResultsError.h"

bool ResultsFile::Report(int code, const char* routine, const char* detail) const
{
    return PluginReport(code, routine, filename_.Str(), detail) != 0;
}

bool ResultsFile::SetId(VDFileId* id, const char* accessClass, const char* routine)
{
    int fileId = 0;
    int subId = 0;
    int nameForm = 0;
    VDString extension;
    if (!FIDGetFileId(id, &fileId, &subId) || !FIDGetNameForm(id, &nameForm) || !FIDGetFilename(id, &filename_, &extension))
        return false;
    const ResultsFormat::Type* const type = ResultsFormat::FindType(fileId, subId);
    if (type == nullptr || VDString(type->accessClass) != accessClass || nameForm != VTNameFormFile)
        return Report(ResultsError::InvalidFileId, routine);
    id_ = id;
    return true;
}

bool ResultsFile::Open(int mode, const char* accessClass, const char* routine)
{
    Z4Manager& files = *data_.GetFileManager();
    int fileId = 0;
    int subId = 0;
    created_ = mode == 3 || mode == 4;
    if (!FIDGetFileId(id_, &fileId, &subId))
        return false;
    file_ = created_ ? files.CreateFile(filename_, nullptr) : files.OpenFile(filename_, mode == 2);
    if (file_ == nullptr)
        return PluginReport(ResultsError::Open, routine, filename_.Str(), {}, 1) != 0;
    if (created_ && !file_->SetSubType(subId))
        return false;
    // What the file says about itself counts, not the id.
    const ResultsFormat::Type* const type = ResultsFormat::FindType(fileId, file_->GetSubType());
    return (type != nullptr && VDString(type->accessClass) == accessClass) || Report(ResultsError::WrongType, routine);
}

bool ResultsFile::Close(LQObject* object, bool save)
{
    Z4File* const file = std::exchange(file_, nullptr);
    // An object that couldn't be saved leaves the file as of its last commit.
    const bool saved = object == nullptr || data_.Close(object, save);
    const bool closed = file == nullptr || data_.GetFileManager()->CloseFile(file, save && saved);
    return saved && closed;
}

bool ResultsFile::MatchChannels(LQObject& object, const char* routine)
{
    VDArrayWithSort<long> numbers;
    if (!FIDGetChans(id_, &numbers))
        return false;
    if (created_ && !object.AdjustChannelCount(numbers.GetSize()))
        return false;
    LQChannelMapper& mapper = *object.GetMapper();
    channels_.clear();
    for (int index = 0; index < numbers.GetSize(); ++index) {
        if (created_ && !mapper.SetChannelNumber(numbers[index], index))
            return Report(ResultsError::ChannelNumber, routine);
        channels_.push_back(mapper.IndexFromNumber(numbers[index], false));
        if (channels_.back() < 0 || channels_.back() >= object.GetChannelCount())
            return Report(ResultsError::ChannelNumber, routine);
    }
    return true;
}

bool ResultsListChannels(VDFileId* id, LQObject& object, const VDString& filename, int noChannels, const char* routine)
{
    for (int channel = 0; channel < object.GetChannelCount(); ++channel) {
        const long number = object.GetMapper()->NumberFromIndex(channel, false);
        if (number < 0 || !std::in_range<int>(number))
            return PluginReport(ResultsError::ChannelNumber, routine, filename.Str(), {}) != 0;
        VDString title;
        int index = 0;
        object.GetChanTitle(title, channel);
        if (!FIDAddChannel(id, static_cast<int>(number), &index) || !FIDSetChanTitle(id, index, title))
            return false;
    }
    return object.GetChannelCount() > 0 || PluginReport(noChannels, routine, filename.Str(), {}) != 0;
}
