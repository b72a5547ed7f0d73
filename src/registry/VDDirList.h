#pragma once

#include "ChannelFile.h"
#include "FolderTests.h"
#include "TestIndex.h"
#include "TestSpecText.h"

#include "daxlib/DaxHandle.h"
#include "daxlib/VDChanSep.h"
#include "daxlib/VDFileIdPreferences.h"
#include "vdbase/VDCompBase.h"
#include "vdbase/VDFileSystem.h"

#include <chrono>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

/// A scan for tests. The operations that the `VFDirList` functions forward to have the function's name without the prefix;
/// VFDirList.h says what each does.
class VDDirList final : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::DirList;
    static constexpr bool GuardedHandle = true;

    /// @name Life and settings (VDDirList.cpp)
    /// @{
    VDDirList();
    ~VDDirList() override;
    int SetPath(const VDString& path);
    int SetFilesMatching(const VDString& text);
    int SetRecurseSubDirs(char recurse);
    int SetFilterByAccessType(VTFileAccessType type);
    int SetFilterByAccessTypes(const VDArray<VTFileAccessType>& types);
    int SetFilterByFileId(int fileId, int subId);
    int SetFilterByFileIds(const VDArray<int>& fileIds, const VDArray<int>& subIds);
    int ClearFilter();
    int GetFileIdArray(VDFileIdArray** tests) const;
    int SetProgressCallback(VDDirListProgress* progress, void* context);
    int SetChanSep(const VDChanSep* chanSep);
    int SetErrorOnLoadDetails(char errorOnLoad, char recordDetails);
    int GetLoadErrorDetails(VDFileIdArray** tests, VDStringArray* texts) const;
    int GetSkipped(VDStringArray* names, VDStringArray* texts) const;
    /// @}

    /// @name The scan as a whole (VDDirListCreate.cpp)
    /// @{
    int CreateList(bool withInfo);
    /// @}

private:
    using Batch = std::vector<VDFileIdHandle>;

    /// @name The scan as a whole (VDDirListCreate.cpp)
    /// All give false, recorded, when the scan can't go on.
    /// @{
    bool Create(bool withInfo);
    bool ScanPieces();
    bool ScanPiece(std::string_view piece);
    void ReadOptions(std::string_view piece);
    /// Adds what finds the channel files of a test that is named without extension.
    VDString CompletePattern();
    bool LoadAll();
    /// @param index  moves on to the next test, unless this one went
    bool LoadOne(int* index);
    bool CheckAbort();
    bool CheckAbortIfDue();
    /// The same, and also at every 20th element.
    bool CheckAbortAt(std::size_t index);
    /// Keeps what the last report says of a file or folder that is left out.
    void Skip(const VDString& name);
    /// Whether the file that the last report is about is gone since it was listed.
    static bool IsGone(VDFileId* id);
    bool IsWithoutFilter() const;
    /// @}

    /// @name Folders (VDDirListScan.cpp)
    /// @{
    bool ScanFolders(const VDString& patternPath);
    bool IsRecursive() const { return recurse_ || options_.recurse; }
    /// Links that lead back up lead round in a circle: the folders in which this one lies count as visited.
    void VisitParents(const VDString& folder);
    bool ScanFolder(const VDString& folder, const VDString& pattern, VDFolderContent* content);
    /// The files that weren't listed as those of a folder test already.
    VDStringArray TakeUncovered(VDStringArray& files) const;
    void AddFolderTests(const VDStringArray& folders, VDStringArray* files);
    /// Whether the folder is a test that stands in the output.
    bool IsListedTest(const VDString& folder) const;
    /// Puts files together, filters them and appends them to the output.
    bool TakeFiles(const VDStringArray& names);
    /// @}

    /// @name What a file is (VDDirListIdentify.cpp)
    /// @{
    bool IdentifyList(const VDStringArray& names, Batch* batch);
    VDFileIdHandle NewFile(const VDString& name) const;
    bool IdentifyFile(const VDString& name, Batch* batch);
    enum class Verdict { Known, AskContent, PassOver, Fails };
    /// These leave what they find in `found_`.
    Verdict IdentifyByExtension(const VDString& name);
    bool IdentifyByContent(VDFileId* id);
    /// Decides about a file that failed to be identified.
    bool TakeFailure(VDFileId* id);
    /// Takes over what was found and passes the filter.
    bool TakeFound(Batch* batch);
    bool PassesFilter(VDFileId* test, bool* passes) const;
    void SetFileOptions(VDFileId* id) const;
    /// @}

    /// @name Grouping (VDDirListGroup.cpp)
    /// @{
    bool GroupBatch(const Batch& batch);
    bool GroupFile(VDFileId* file, VDChannelFileReader& reader, VDTestIndex& tests);
    enum class Fate { Joined, StartsTest, StaysAlone, Dropped, Fails };
    /// Looks for the test that a file is a part of.
    Fate JoinTest(VDFileId* file, const VDChannelFile& channel, const VDTestType& type, VDTestIndex& tests);
    /// @}

    /// @name Filtering a batch (VDDirListFilter.cpp)
    /// @{
    bool FilterBatch(int start);
    bool KeepsTest(VDFileId* test);
    bool KeepsName(VDFileId* test) const;
    bool KeepsSubTest(VDFileId* test) const;
    bool KeepsChannels(VDFileId* test) const;
    /// @}

    /// @name Lists of names in a file (VDDirListAtFile.cpp)
    /// @{
    bool ProcessAtFile();
    bool ReadAtFile(VDStringArray* names);
    /// @}

    int GetOutputSize() const;

    VDFileInfoHandle info_{FINFCreate()};
    VDFileIdArrayHandle output_{FIACreate()};
    VDString path_;
    VDString pattern_;
    VDString nameFilter_;
    VDTestSpecOptions options_;
    VDFileIdPreferences preferences_;
    bool recurse_ = false;
    bool acceptUnknown_ = true;
    VDChanSep chanSep_;
    bool useExtensions_ = true;
    VDDirListProgress* progress_ = nullptr;
    void* context_ = nullptr;
    std::chrono::steady_clock::time_point lastCheck_;
    VDFileIdArrayHandle loadErrors_{FIACreate()};
    VDStringArray loadErrorTexts_;
    VDStringArray skippedNames_;
    VDStringArray skippedTexts_;
    bool errorOnLoad_ = true;
    bool recordDetails_ = false;
    VDArray<VTFileAccessType> accessTypes_;
    VDArray<int> fileIds_;
    VDArray<int> subIds_;
    VDFolderTestRows folderTests_ = VFGetFolderTestRows();

    /// @name Of the present scan
    /// @{
    std::set<VDFilePlace> visited_;                ///< folders of the present piece
    std::unordered_set<std::string> covered_;      ///< files that were listed as those of a folder test
    std::unordered_set<std::string> listedTests_;  ///< folder tests in the output, by their full names
    VDFileIdHandle asking_{FIDCreate()};           ///< asks what extensions tell
    VDFileIdArrayHandle found_{FIACreate()};       ///< what identification makes of one file
    /// @}
};
