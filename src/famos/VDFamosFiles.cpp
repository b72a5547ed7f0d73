#include "VDFamosFiles.h"

#include "frame/VFDaxReport.h"

#include "daxlib/FID.h"

#include <algorithm>

namespace {

// A test may have more channel files than a process may have open.
constexpr std::size_t VVMostOpen = 64;

}  // namespace

void VDFamosFiles::Clear()
{
    open_.clear();
    fileByName_.clear();
    files_.clear();
}

std::string VDFamosFiles::GetDamage() const
{
    std::string all;
    for (const File& file : files_)
        if (const std::string& damage = file.recording->GetDamage(); !damage.empty())
            all += (all.empty() ? "" : " ") + damage;
    return all;
}

/// An id may name some channels of its file only, in any order. A file that is one of many usually holds one channel,
/// whatever the test's number for it is.
bool VDFamosFiles::FindChannel(VDFileId* id, int index, std::size_t* file, std::size_t* channel)
{
    VDString filename;
    int nameForm = 0;
    int number = 0;
    if (!FIDGetChanFilename(id, index, &filename) || !FindFile(filename, file) || !FIDGetNameForm(id, &nameForm) ||
        !FIDGetFileChanNumber(id, index, &number))
        return false;
    if (number < 1 && nameForm == VTNameFormTestPlusChannels)
        number = 1;
    if (number < 1 && !FIDGetChanNumber(id, index, &number))
        return false;
    if (number < 1 || static_cast<std::size_t>(number) > Get(*file).GetChannelCount())
        return VFDaxReport(DaxError::FamosChannelRange, "VDFamosFiles::FindChannel",
                           {.label = DaxText::File, .name = filename}) != 0;
    *channel = static_cast<std::size_t>(number) - 1;
    return true;
}

bool VDFamosFiles::FindFile(const VDString& filename, std::size_t* file)
{
    if (const auto found = fileByName_.find(filename.Str()); found != fileByName_.end()) {
        *file = found->second;
        return true;
    }
    std::unique_ptr<VDFamosRecording> recording = VDFamosRecording::Open(filename, content_);
    if (recording == nullptr)
        return false;
    *file = files_.size();
    fileByName_.emplace(filename.Str(), *file);
    files_.push_back({std::move(recording), {}});
    return Use(*file) != nullptr;
}

VDIo* VDFamosFiles::Use(std::size_t file)
{
    if (std::find(open_.begin(), open_.end(), file) == open_.end()) {
        if (open_.size() >= VVMostOpen) {
            files_[open_.front()].recording->Rest();
            files_[open_.front()].values = {};
            open_.pop_front();
        }
        open_.push_back(file);
    }
    return files_[file].recording->Use();
}
