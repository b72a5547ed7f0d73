#include "VDVmdFile.h"

#include "frame/VFDaxReport.h"
#include "identity/SidecarName.h"
#include "identity/VFGive.h"

#include "vdbase/VDFileSystem.h"
#include "vdstore/LQDataManager.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr const char* NodeName = "MetaData";

bool IsLink(const VDString& filename)
{
    std::error_code ignored;
    return std::filesystem::is_symlink(std::filesystem::symlink_status(filename.Str(), ignored));
}

}  // namespace

VDVmdFile::~VDVmdFile()
{
    const VDErrorMute mute;
    Close();
}

bool VDVmdFile::CheckNotAdopted() const
{
    return !opened_ || VFDaxReportError(DaxError::AlreadyOpen, "VDVmdFile::Adopt") != 0;
}

bool VDVmdFile::CheckOpened(const char* routine) const
{
    return opened_ || VFDaxReportError(DaxError::SidecarNotOpen, VDString("VDVmdFile::") + routine) != 0;
}

bool VDVmdFile::ReportFile(const char* reason) const
{
    return VFDaxReport(DaxError::StorageOpen, "VDVmdFile::Adopt",
                       {.appended = VDString(": ") + reason, .label = DaxText::File, .name = filename_}) != 0;
}

bool VDVmdFile::Adopt(const char* filename, bool readMode)
{
    if (!CheckNotAdopted())
        return false;
    filename_ = filename;
    if (filename_.IsEmpty())
        return VFDaxReportError(DaxError::BlankFilename, "VDVmdFile::Adopt") != 0;
    if (manager_ == nullptr)
        manager_ = LQGetDataManager();
    opened_ = readMode ? OpenToRead() : OpenToWrite();
    if (!opened_)
        Abandon();
    return opened_;
}

bool VDVmdFile::AdoptTestVmd(VDFileId* id, bool readMode)
{
    VDString filename;
    if (!CheckNotAdopted() || !VFSidecarFilename(id, &filename) || FIDAddRef(id) == 0)
        return false;
    fileId_.Reset(id);
    return Adopt(filename, readMode);
}

/// A test without a sidecar is nothing unusual: the memory host answers for it.
bool VDVmdFile::OpenToRead()
{
    if (!VDFileSystem::FileExists(filename_))
        return true;
    file_ = manager_->GetFileManager()->OpenFile(filename_, false);
    return file_ != nullptr && AdoptHost();
}

bool VDVmdFile::OpenToWrite()
{
    // A link could lead anywhere, and what is written must lie beside the data.
    if (IsLink(filename_))
        return ReportFile("a link isn't written through");
    bool isNew = false;
    file_ = manager_->GetFileManager()->AdoptFile(filename_, nullptr, &isNew);
    return file_ != nullptr && (isNew || CheckContent()) && AdoptHost();
}

/// A storage file with other things in it isn't ours to add to.
bool VDVmdFile::CheckContent() const
{
    const Z4Storage& root = *file_->GetRoot();
    for (int i = 0; i < root.GetNodeCount(); ++i)
        if (root.GetNodeName(i) == NodeName)
            return true;
    return root.GetNodeCount() == 0 || ReportFile("it holds something other than metadata");
}

bool VDVmdFile::AdoptHost()
{
    host_ = manager_->AdoptMetaDataHost(file_->GetRoot(), NodeName, &created_);
    if (host_ == nullptr || (created_ && !host_->RemoveChannel(0)))
        return false;
    return !fileId_ || AddChannelsOfTest();
}

bool VDVmdFile::AddChannelsOfTest()
{
    LQChannelMapper& mapper = *host_->GetMapper();
    VDArrayWithSort<long> numbers;
    if (!FIDGetChans(fileId_.Get(), &numbers))
        return false;
    for (int index = 0; index < numbers.GetSize(); ++index) {
        if (mapper.IndexFromNumber(numbers[index], false) >= 0)
            continue;
        LQChannelEntry* const entry = mapper.Append();
        VDString title;
        if (!mapper.SetChannelNumber(numbers[index], entry) || !FIDGetChanTitle(fileId_.Get(), index, &title) ||
            !mapper.SetChanTitle(title, entry))
            return false;
    }
    return true;
}

bool VDVmdFile::GetMetaData(LQChannelMapper** mapper)
{
    if (VFGive(mapper, nullptr) == 0)
        return false;
    if (!CheckOpened("GetMetaData") || (host_ == nullptr && memoryHost_ == nullptr && !MakeMemoryHost()))
        return false;
    *mapper = host_ != nullptr ? host_->GetMapper() : memoryHost_->GetMapper();
    return true;
}

bool VDVmdFile::MakeMemoryHost()
{
    auto host = std::make_unique<VDMemMetaDataHost>();
    LQChannelMapper& mapper = *host->GetMapper();
    mapper.Clear();
    if (fileId_) {
        VDArrayWithSort<long> numbers;
        if (!FIDGetChans(fileId_.Get(), &numbers) || !host->AdjustChannelCount(numbers.GetSize()))
            return false;
        for (int index = 0; index < numbers.GetSize(); ++index) {
            VDString title;
            if (!FIDGetChanTitle(fileId_.Get(), index, &title) || !mapper.SetChannelNumber(numbers[index], index) ||
                !host->SetChanTitle(title, index))
                return false;
        }
    }
    memoryHost_ = std::move(host);
    return true;
}

bool VDVmdFile::SetChannelNumberList(const VDArrayWithSort<long>& numbers)
{
    numbers_ = numbers;
    return true;
}

bool VDVmdFile::Flush()
{
    return CheckOpened("Flush") && Save();
}

bool VDVmdFile::Clear()
{
    if (!CheckOpened("Clear"))
        return false;
    if (host_ == nullptr || !file_->IsWritable())
        return true;
    host_->GetMapper()->Clear();
    created_ = true;
    return !fileId_ || AddChannelsOfTest();
}

/// Titles come into the attributes, but not in the place of those that somebody put there.
bool VDVmdFile::Save()
{
    return host_ == nullptr || !file_->IsWritable() ||
           (host_->RefreshMetadata(true, LQObject::ALL_CHANNELS) && manager_->Flush(host_));
}

bool VDVmdFile::Close()
{
    if (!opened_) {
        Abandon();
        return true;
    }
    Renumber();
    const bool saved = Save();
    // A new file whose metadata could not be written is given up whole.
    const bool closed = host_ == nullptr || manager_->Close(std::exchange(host_, nullptr), false);
    const bool ended = file_ == nullptr || manager_->GetFileManager()->CloseFile(std::exchange(file_, nullptr), saved);
    opened_ = false;
    memoryHost_.reset();
    fileId_.Reset();
    return saved && closed && ended;
}

/// After a failed adopt everything is as before it: nothing is written. The failure's report stays.
void VDVmdFile::Abandon()
{
    const VDErrorMute mute;
    if (host_ != nullptr)
        manager_->Close(std::exchange(host_, nullptr), false);
    if (file_ != nullptr)
        manager_->GetFileManager()->CloseFile(std::exchange(file_, nullptr), false);
    created_ = false;
    fileId_.Reset();
}

/// Whether the first channels can have the numbers of the list, all of them, with the numbers above `largest` as a
/// stepping stone.
bool VDVmdFile::CanRenumber(const LQChannelMapper& mapper, long largest) const
{
    const int count = numbers_.GetSize();
    if (count > mapper.GetChannelCount() || largest > std::numeric_limits<long>::max() - count)
        return false;
    std::vector<long> numbers(numbers_.begin(), numbers_.end());
    for (int index = count; index < mapper.GetChannelCount(); ++index)
        numbers.push_back(mapper.NumberFromIndex(index, false));
    std::sort(numbers.begin(), numbers.end());
    const auto firstNumber = std::lower_bound(numbers.begin(), numbers.end(), 0);
    return std::all_of(numbers_.begin(), numbers_.end(), [](long number) { return number >= 0; }) &&
           std::adjacent_find(firstNumber, numbers.end()) == numbers.end();
}

/// In two passes, so that no two channels have one number at any time.
void VDVmdFile::Renumber()
{
    if (host_ == nullptr || !created_ || numbers_.IsEmpty())
        return;
    LQChannelMapper& mapper = *host_->GetMapper();
    long largest = -1;
    for (int index = 0; index < mapper.GetChannelCount(); ++index)
        largest = std::max(largest, mapper.NumberFromIndex(index, false));
    if (!CanRenumber(mapper, largest))
        return;
    for (int index = 0; index < numbers_.GetSize(); ++index)
        mapper.SetChannelNumber(largest + 1 + index, index);
    for (int index = 0; index < numbers_.GetSize(); ++index)
        mapper.SetChannelNumber(numbers_[index], index);
}
