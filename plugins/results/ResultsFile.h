#pragma once

#include "ResultsFormat.h"

#include "daxlib/FID.h"
#include "vdstore/LQDataManager.h"

#include <vector>

/// What access to a storage file of results needs whatever object is in it: the file, and which channel of the object an
/// index of the access object stands for.
class ResultsFile
{
public:
    ResultsFile() = default;
    ~ResultsFile() { Close(nullptr, false); }
    ResultsFile(const ResultsFile&) = delete;
    ResultsFile& operator=(const ResultsFile&) = delete;

    /// @param accessClass  which types of files are the right ones
    /// @return false, recorded
    bool SetId(VDFileId* id, const char* accessClass, const char* routine);
    /// @param mode  1 read, 2 read and write an existing file, 3 and 4 create
    bool Open(int mode, const char* accessClass, const char* routine);
    /// Ends the object, if there is one, and the file.
    bool Close(LQObject* object, bool save);

    /// Finds the channels of the id in the object, or gives those of a new object their numbers.
    bool MatchChannels(LQObject& object, const char* routine);
    int GetChannel(long channel) const { return channels_[static_cast<std::size_t>(channel)]; }

    Z4Storage* GetRoot() const { return file_->GetRoot(); }
    bool IsOpen() const { return file_ != nullptr; }
    bool IsCreated() const { return created_; }
    const VDString& GetFilename() const { return filename_; }
    /// Records a report that names the file; gives false.
    bool Report(int code, const char* routine, const char* detail = "") const;

private:
    LQDataManager& data_ = *LQGetDataManager();
    VDFileId* id_ = nullptr;  // the access object's, which outlives the instance
    VDString filename_;
    Z4File* file_ = nullptr;
    bool created_ = false;
    std::vector<int> channels_;
};

/// Lists the channels of an object as those of an id.
/// @param noChannels  code of the report if there are none
bool ResultsListChannels(VDFileId* id, LQObject& object, const VDString& filename, int noChannels, const char* routine);
