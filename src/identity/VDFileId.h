#pragma once

#include "VDFileIdRecord.h"
#include "VDTemporaryFileIds.h"
#include "VFGive.h"
#include "frame/VDValueGuard.h"

#include "daxlib/FID.h"

#include <memory>

/// One test: its name, its format, its channels, and how far these are known. The operations that the `FID` functions
/// forward to have the function's name without the prefix; FID.h says what each does.
class VDFileId final : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::FileId;
    static constexpr bool GuardedHandle = true;

    VDFileId();
    ~VDFileId() override;

    /// What the id says at present, with no lazy step made.
    const VDFileIdRecord& GetRecord() const { return record_; }

    /// @name Life and copying (VDFileId.cpp)
    /// @{
    /// Keeps the id as it is, to come back to it. Of a temporary test that the id shares in meanwhile nothing is deleted
    /// then.
    class VDSnapshot;
    VDSnapshot Save() const;
    void Restore(const VDSnapshot& snapshot);
    /// Becomes a copy of the other id as a whole.
    void Assign(const VDFileId& source);
    int Copy(VDFileId* source, std::uint32_t mask);
    int Clear();
    int SetExtraDataObject(VDCompBase* object) { return record_.extraData.Set(object); }
    int GetExtraDataObject(VDCompBase** object) const;
    int GetPreferences(char create, VDFileIdPreferences** preferences);
    /// @}

    /// @name Name (VDFileIdNames.cpp)
    /// @{
    int SetFilename(int nameForm, const char* filename, const char* extension);
    int GetFilename(VDString* filename, VDString* extension) const;
    int GetNameForm(int* nameForm) const { return VFGive(nameForm, record_.nameForm); }
    int SetTestname(const char* name, const char* keyword, const char* extension);
    int SetTestTitle(const char* title);
    int GetTestTitle(VDString* title) const { return VFGive(title, record_.title); }
    int SetRunNumber(int run);
    int GetRunNumber(int* run) const { return VFGive(run, record_.run); }
    int SetBurstNumber(int burst);
    int GetBurstNumber(int* burst) const { return VFGive(burst, record_.burst); }
    int SetModeNumber(int mode, const char* title);
    int GetModeNumber(int* mode, VDString* title) const { return VFGiveTwo(mode, record_.mode, title, record_.modeTitle); }
    int SetExtraMetadataFilename(const char* filename);
    int GetExtraMetadataFilename(VDString* filename) const { return VFGive(filename, record_.extraMetadataFilename); }
    int SetAssociatedFilename(const char* filename);
    int GetAssociatedFilename(VDString* filename) const { return VFGive(filename, record_.associatedFilename); }
    int SetOriginalExtension(const char* extension);
    int GetOriginalExtension(VDString* extension) const { return VFGive(extension, record_.originalExtension); }
    int SetNumChanDigits(int digits);
    int GetNumChanDigits(int* digits) const { return VFGive(digits, record_.chanDigits); }
    int SetDataSource(int source);
    int GetDataSource(int* source) const { return VFGive(source, record_.dataSource); }
    int SetDataPath(const char* path);
    int GetDataPath(VDString* path) const { return VFGive(path, record_.dataPath); }
    int SetObjectReference(const char* reference);
    int GetObjectReference(VDString* reference) const { return VFGive(reference, record_.objectReference); }
    int SetChanSep(const VDChanSep* chanSep);
    int SetFolderTest();
    int SetFolderTestManual(char folderTest);
    int GetFolderTest(char* folderTest) const { return VFGive(folderTest, record_.folderTest); }
    /// @}

    /// @name Format and flags (VDFileIdFormat.cpp)
    /// @{
    int SetFileId(int fileId, int subId);
    /// Takes a type that a file's name suggests. The test isn't identified by that, and its files are nobody's to delete.
    void SuggestFileId(int fileId, int subId);
    int GetFileId(int* fileId, int* subId) const { return VFGiveTwo(fileId, record_.fileId, subId, record_.subId); }
    int SetVer(int version, int subVersion);
    int GetVer(int* version, int* subVersion);
    int SetOpSys(int opSys);
    int GetOpSys(int* opSys);
    int GetFileTypeDesc(char withVersion, VDString* description);
    int GetAccessInfo(int* accessType, VDString* accessClass, VDString* description);
    int IsTemporary(char* temporary) const;
    int SetSelected(char selected) { return SetFlag(record_.selected, selected); }
    int GetSelected(char* selected) const { return VFGive(selected, record_.selected); }
    int SetShowChannels(char show) { return SetFlag(record_.showChannels, show); }
    int GetShowChannels(char* show) const { return VFGive(show, record_.showChannels); }
    int SetIdentified(char identified) { return SetFlag(record_.identified, identified); }
    int GetIdentified(char* identified) const { return VFGive(identified, record_.identified); }
    int SetInIdent(char inIdent) { return SetFlag(inIdent_, inIdent); }
    int GetInIdent(char* inIdent) const { return VFGive(inIdent, inIdent_); }
    int SetIdentByExtension(char byExtension);
    int GetIdentByExtension(char* byExtension) const;
    int SetLoadInfoWhenNeeded() { return SetFlag(record_.loadInfoWhenNeeded, 1); }
    int GetLoadInfoWhenNeeded(char* whenNeeded) const { return VFGive(whenNeeded, record_.loadInfoWhenNeeded); }
    int SetInfoLoaded(char loaded);
    int GetInfoLoaded(char* loaded) const { return VFGive(loaded, record_.infoLoaded); }
    /// @}

    /// @name Channels (VDFileIdChans.cpp)
    /// @{
    int AddChannel(int number, int* index);
    int AddChannelByTitle(const VDString* title, int* index);
    int GetNumChans(int* count);
    int GetChanIndex(int number, int* index);
    int GetChanNumber(int index, int* number);
    int SetChanNumber(int index, int number);
    int GetFileChanNumber(int index, int* number);
    int SetFileChanNumber(int index, int number);
    int GetChanType(int index, int* type);
    int SetChanType(int index, int type);
    int GetChanSelected(int index, char* selected);
    int SetChanSelect(int index, char selected);
    int GetChanTitle(int index, VDString* title);
    int SetChanTitle(int index, const char* title);
    int GetChanUnits(int index, VDString* units);
    int SetChanUnits(int index, const char* units);
    int SetChanFilename(int index, const char* filename);
    int SetAllChanSelect(char selected);
    int GetSomeChansSelected(char* some);
    int GetAllChansSelected(char* all);
    int GetChans(VDArrayWithSort<long>* numbers);
    int GetSelectedChanList(VDArrayWithSort<long>* numbers);
    int GetChanSelText(int maxLength, VDString* text);
    int SortChans(char ascending);
    int RemoveChan(int index);
    int ClearAllChans();
    int RemoveAllSelectedChans(char selected);
    /// @}

    /// @name Metadata in memory (VDFileIdMetadataCache.cpp)
    /// @{
    int SetMetadataKeywords(VDStringArray* global, VDStringArray* globalTypes, VDStringArray* channel,
                            VDStringArray* channelTypes, char load);
    int HasMetadata(char* hasKeywords, char* loaded) const;
    int GetMetadataKeywords(VDStringArray* global, VDStringArray* channel) const;
    int LoadMetadata();
    int GetMetadata(int channel, const char* keyword, VDVariant* value);
    int ClearMetadata(char keepKeywords);
    /// @}

    /// @name Lazy steps (VDFileIdLazy.cpp)
    /// @{
    /// Brings the id up to date as far as it was told that it may: identifies a test that is known by its extension only,
    /// loads the channels, and does what was put off until they are there. A step that fails leaves the id as it was.
    /// @param loadInfo  false leaves the channels to a later call
    /// @return 0, recorded, on failure
    int CheckIdentLoad(bool loadInfo);
    /// Says for the length of a scope that a plug-in loads the channels.
    [[nodiscard]] VDValueGuard<bool> MarkLoading() { return {loading_, true}; }
    /// @}

    /// @name Descriptor (VDFileIdDescriptor.cpp, TestSpecs.cpp)
    /// @{
    int GetTestDescriptor(int type, VDString* text);
    int CreateFromTestSpec(const char* text);
    /// @}

    /// @name The test on disk (VDFileIdDisk.cpp)
    /// @{
    int GetChanFilename(int index, VDString* filename);
    int CompareTestNames(VDFileId* other, char* same);
    int GetTestFileSize(std::uint64_t* size);
    int DoesTestExist(char selectedOnly, char* exists);
    int DeleteTest();
    /// @}

    /// @name Output names (VDFileIdOutput.cpp)
    /// @{
    int CreateOutputFromId(VDFileId* source, std::uint32_t mask, int nameForm, const char* text);
    /// @}

    /// @name One channel's file (WholeTests.cpp)
    /// @{
    int FixTestPlusChannels();
    /// @}

    /// @name Stored forms (VDFileIdXml.cpp, VDFileIdSerialise.cpp)
    /// @{
    int ToXml(VDString* xml) const;
    int FromXml(const VDString* xml);
    int Serialise(VDIo* io, char reading, std::int64_t* context);
    /// @}

    /// @name Lists of ids (VDFileId.cpp)
    /// @{
    /// Is told of each entry of a list that refers to this id.
    void CountListing(int change) { listings_ += change; }
    /// Changes when an id gets another full path name while a list refers to it.
    static std::uint64_t GetListedNameChanges();
    /// @}

private:
    static int SetFlag(bool& flag, char value);

    /// Records a failure of an operation under "VDFileId::" and its name.
    /// @param text  the message; empty for the catalogue text of the code
    /// @return 0 always
    int ReportWithStem(int code, const char* operation, const VDString& text = {}) const;
    /// Whether there is a channel of this index; if not, that is reported for the operation.
    bool CheckIndex(int index, const char* operation) const;
    /// The two in one: the channel of this index is known by now. Null, recorded, if not.
    const VDFileIdChanInfo* LoadChannel(int index, const char* operation);
    /// The channel of this index for a change, with nothing put off any longer; null, recorded, if there is none.
    VDFileIdChanInfo* EditChannel(int index, const char* operation);

    void UpdateFullPathName();

    struct VDTemporaryTest;

    bool IsTemporaryType() const;
    /// @name Sharing in a temporary test (VDFileIdTemporary.cpp)
    /// @{
    /// Becomes the first id of a temporary test: the one whose name the test goes by.
    void StartTemporaryTest();
    /// Leaves the present temporary test, if any, and shares in that of the other id, if any. Comes before any change of the
    /// names.
    void JoinTemporaryTest(const VDFileId& other);
    void LeaveTemporaryTest();
    /// Holds another temporary test, or none; with the present one nothing is done.
    void EnterTemporaryTest(std::shared_ptr<VDTemporaryTest> test);
    /// From here on the temporary test goes by the name that it has, whatever this id is called.
    void EndNamingTemporaryTest();
    void KeepTemporaryNames();
    /// @}

    bool Identify(bool loadInfo);
    bool LoadInfo();
    bool IsChannelListToCome() const;
    /// The channels are others from here on, or stand in another order.
    void DropMetadataValues();
    void DoPending();
    /// The list is about to be changed by the host, which takes it as it stands: nothing is put off any longer, unless a
    /// list is still to come all by itself.
    void SettlePending();

    bool WriteDescriptor(int type, VDString& text);
    bool FindOriginalExtension(const VDFileIdChanInfo& channel);
    bool ReadXml(const VDString& xml);
    bool ReadFields(VDIo& io);

    /// Tells the lists that refer to an id if the full path name is another one at the end of the scope.
    class NameWatch;

    VDFileIdRecord record_;
    bool inIdent_ = false;       ///< this id is being identified
    bool checkRunning_ = false;  ///< guards `CheckIdentLoad` against plug-ins that ask the id while they fill it
    bool loading_ = false;       ///< a plug-in adds the channels
    int listings_ = 0;           ///< entries of lists that refer to this id

    std::shared_ptr<VDTemporaryTest> temporaryTest_;  ///< its holders are the test's ids
    VDTemporaryFileIds::Place temporaryPlace_;        ///< in the list of them all, while there is a test
    bool namesTemporaryTest_ = false;                 ///< the test goes by the name of this id
};

class VDFileId::VDSnapshot
{
private:
    friend class VDFileId;
    VDFileIdRecord record_;
    std::shared_ptr<VDTemporaryTest> temporaryTest_;
    bool namesTemporaryTest_ = false;
};
