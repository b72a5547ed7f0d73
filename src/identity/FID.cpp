#include "daxlib/FID.h"

#include "VDFileId.h"

#include "frame/ExportedWrapper.h"

VDFileId* FIDCreate()
{
    return VFCreate<VDFileId>(__func__);
}

int FIDAddRef(VDFileId* id)
{
    return VFAddRef(id, __func__);
}

int FIDRelease(VDFileId* id)
{
    return VFRelease(id, __func__);
}

int FIDCopy(VDFileId* target, VDFileId* source, std::uint32_t mask)
{
    return VFForwardPair<&VDFileId::Copy>(target, source, __func__, mask);
}

int FIDCreateOutputFromId(VDFileId* target, VDFileId* source, std::uint32_t mask, int nameForm, const char* text)
{
    return VFForwardPair<&VDFileId::CreateOutputFromId>(target, source, __func__, mask, nameForm, text);
}

int FIDCreateFromTestSpec(VDFileId* id, const char* text)
{
    return VFForward<&VDFileId::CreateFromTestSpec>(id, __func__, text);
}

int FIDClear(VDFileId* id)
{
    return VFForward<&VDFileId::Clear>(id, __func__);
}

int FIDSetFilename(VDFileId* id, int nameForm, const char* filename, const char* extension)
{
    return VFForward<&VDFileId::SetFilename>(id, __func__, nameForm, filename, extension);
}

int FIDGetFilename(VDFileId* id, VDString* filename, VDString* extension)
{
    return VFForward<&VDFileId::GetFilename>(id, __func__, filename, extension);
}

int FIDGetNameForm(VDFileId* id, int* nameForm)
{
    return VFForward<&VDFileId::GetNameForm>(id, __func__, nameForm);
}

int FIDSetTestname(VDFileId* id, const char* name, const char* keyword, const char* extension)
{
    return VFForward<&VDFileId::SetTestname>(id, __func__, name, keyword, extension);
}

int FIDGetTestDescriptor(VDFileId* id, int type, VDString* text)
{
    return VFForward<&VDFileId::GetTestDescriptor>(id, __func__, type, text);
}

int FIDSetTestTitle(VDFileId* id, const char* title)
{
    return VFForward<&VDFileId::SetTestTitle>(id, __func__, title);
}

int FIDGetTestTitle(VDFileId* id, VDString* title)
{
    return VFForward<&VDFileId::GetTestTitle>(id, __func__, title);
}

int FIDSetRunNumber(VDFileId* id, int run)
{
    return VFForward<&VDFileId::SetRunNumber>(id, __func__, run);
}

int FIDGetRunNumber(VDFileId* id, int* run)
{
    return VFForward<&VDFileId::GetRunNumber>(id, __func__, run);
}

int FIDSetBurstNumber(VDFileId* id, int burst)
{
    return VFForward<&VDFileId::SetBurstNumber>(id, __func__, burst);
}

int FIDGetBurstNumber(VDFileId* id, int* burst)
{
    return VFForward<&VDFileId::GetBurstNumber>(id, __func__, burst);
}

int FIDSetModeNumber(VDFileId* id, int mode, const char* title)
{
    return VFForward<&VDFileId::SetModeNumber>(id, __func__, mode, title);
}

int FIDGetModeNumber(VDFileId* id, int* mode, VDString* title)
{
    return VFForward<&VDFileId::GetModeNumber>(id, __func__, mode, title);
}

int FIDSetExtraMetadataFilename(VDFileId* id, const char* filename)
{
    return VFForward<&VDFileId::SetExtraMetadataFilename>(id, __func__, filename);
}

int FIDGetExtraMetadataFilename(VDFileId* id, VDString* filename)
{
    return VFForward<&VDFileId::GetExtraMetadataFilename>(id, __func__, filename);
}

int FIDSetAssociatedFilename(VDFileId* id, const char* filename)
{
    return VFForward<&VDFileId::SetAssociatedFilename>(id, __func__, filename);
}

int FIDGetAssociatedFilename(VDFileId* id, VDString* filename)
{
    return VFForward<&VDFileId::GetAssociatedFilename>(id, __func__, filename);
}

int FIDSetOriginalExtension(VDFileId* id, const char* extension)
{
    return VFForward<&VDFileId::SetOriginalExtension>(id, __func__, extension);
}

int FIDGetOriginalExtension(VDFileId* id, VDString* extension)
{
    return VFForward<&VDFileId::GetOriginalExtension>(id, __func__, extension);
}

int FIDSetNumChanDigits(VDFileId* id, int digits)
{
    return VFForward<&VDFileId::SetNumChanDigits>(id, __func__, digits);
}

int FIDGetNumChanDigits(VDFileId* id, int* digits)
{
    return VFForward<&VDFileId::GetNumChanDigits>(id, __func__, digits);
}

int FIDSetDataSource(VDFileId* id, int source)
{
    return VFForward<&VDFileId::SetDataSource>(id, __func__, source);
}

int FIDGetDataSource(VDFileId* id, int* source)
{
    return VFForward<&VDFileId::GetDataSource>(id, __func__, source);
}

int FIDSetDataPath(VDFileId* id, const char* path)
{
    return VFForward<&VDFileId::SetDataPath>(id, __func__, path);
}

int FIDGetDataPath(VDFileId* id, VDString* path)
{
    return VFForward<&VDFileId::GetDataPath>(id, __func__, path);
}

int FIDSetObjectReference(VDFileId* id, const char* reference)
{
    return VFForward<&VDFileId::SetObjectReference>(id, __func__, reference);
}

int FIDGetObjectReference(VDFileId* id, VDString* reference)
{
    return VFForward<&VDFileId::GetObjectReference>(id, __func__, reference);
}

int FIDSetChanSep(VDFileId* id, const VDChanSep* chanSep)
{
    return VFForward<&VDFileId::SetChanSep>(id, __func__, chanSep);
}

int FIDSetFolderTest(VDFileId* id)
{
    return VFForward<&VDFileId::SetFolderTest>(id, __func__);
}

int FIDSetFolderTestManual(VDFileId* id, char folderTest)
{
    return VFForward<&VDFileId::SetFolderTestManual>(id, __func__, folderTest);
}

int FIDGetFolderTest(VDFileId* id, char* folderTest)
{
    return VFForward<&VDFileId::GetFolderTest>(id, __func__, folderTest);
}

int FIDSetFileId(VDFileId* id, int fileId, int subId)
{
    return VFForward<&VDFileId::SetFileId>(id, __func__, fileId, subId);
}

int FIDGetFileId(VDFileId* id, int* fileId, int* subId)
{
    return VFForward<&VDFileId::GetFileId>(id, __func__, fileId, subId);
}

int FIDSetVer(VDFileId* id, int version, int subVersion)
{
    return VFForward<&VDFileId::SetVer>(id, __func__, version, subVersion);
}

int FIDGetVer(VDFileId* id, int* version, int* subVersion)
{
    return VFForward<&VDFileId::GetVer>(id, __func__, version, subVersion);
}

int FIDSetOpSys(VDFileId* id, int opSys)
{
    return VFForward<&VDFileId::SetOpSys>(id, __func__, opSys);
}

int FIDGetOpSys(VDFileId* id, int* opSys)
{
    return VFForward<&VDFileId::GetOpSys>(id, __func__, opSys);
}

int FIDGetFileTypeDesc(VDFileId* id, char withVersion, VDString* description)
{
    return VFForward<&VDFileId::GetFileTypeDesc>(id, __func__, withVersion, description);
}

int FIDGetAccessInfo(VDFileId* id, int* accessType, VDString* accessClass, VDString* description)
{
    return VFForward<&VDFileId::GetAccessInfo>(id, __func__, accessType, accessClass, description);
}

int FIDIsTemporary(VDFileId* id, char* temporary)
{
    return VFForward<&VDFileId::IsTemporary>(id, __func__, temporary);
}

int FIDSetSelected(VDFileId* id, char selected)
{
    return VFForward<&VDFileId::SetSelected>(id, __func__, selected);
}

int FIDGetSelected(VDFileId* id, char* selected)
{
    return VFForward<&VDFileId::GetSelected>(id, __func__, selected);
}

int FIDSetShowChannels(VDFileId* id, char show)
{
    return VFForward<&VDFileId::SetShowChannels>(id, __func__, show);
}

int FIDGetShowChannels(VDFileId* id, char* show)
{
    return VFForward<&VDFileId::GetShowChannels>(id, __func__, show);
}

int FIDSetIdentified(VDFileId* id, char identified)
{
    return VFForward<&VDFileId::SetIdentified>(id, __func__, identified);
}

int FIDGetIdentified(VDFileId* id, char* identified)
{
    return VFForward<&VDFileId::GetIdentified>(id, __func__, identified);
}

int FIDSetInIdent(VDFileId* id, char inIdent)
{
    return VFForward<&VDFileId::SetInIdent>(id, __func__, inIdent);
}

int FIDGetInIdent(VDFileId* id, char* inIdent)
{
    return VFForward<&VDFileId::GetInIdent>(id, __func__, inIdent);
}

int FIDSetIdentByExtension(VDFileId* id, char byExtension)
{
    return VFForward<&VDFileId::SetIdentByExtension>(id, __func__, byExtension);
}

int FIDGetIdentByExtension(VDFileId* id, char* byExtension)
{
    return VFForward<&VDFileId::GetIdentByExtension>(id, __func__, byExtension);
}

int FIDSetLoadInfoWhenNeeded(VDFileId* id)
{
    return VFForward<&VDFileId::SetLoadInfoWhenNeeded>(id, __func__);
}

int FIDGetLoadInfoWhenNeeded(VDFileId* id, char* whenNeeded)
{
    return VFForward<&VDFileId::GetLoadInfoWhenNeeded>(id, __func__, whenNeeded);
}

int FIDSetInfoLoaded(VDFileId* id, char loaded)
{
    return VFForward<&VDFileId::SetInfoLoaded>(id, __func__, loaded);
}

int FIDGetInfoLoaded(VDFileId* id, char* loaded)
{
    return VFForward<&VDFileId::GetInfoLoaded>(id, __func__, loaded);
}

int FIDAddChannel(VDFileId* id, int number, int* index)
{
    return VFForward<&VDFileId::AddChannel>(id, __func__, number, index);
}

int FIDAddChannelByTitle(VDFileId* id, const VDString* title, int* index)
{
    return VFForward<&VDFileId::AddChannelByTitle>(id, __func__, title, index);
}

int FIDGetNumChans(VDFileId* id, int* count)
{
    return VFForward<&VDFileId::GetNumChans>(id, __func__, count);
}

int FIDGetChanIndex(VDFileId* id, int number, int* index)
{
    return VFForward<&VDFileId::GetChanIndex>(id, __func__, number, index);
}

int FIDGetChanNumber(VDFileId* id, int index, int* number)
{
    return VFForward<&VDFileId::GetChanNumber>(id, __func__, index, number);
}

int FIDSetChanNumber(VDFileId* id, int index, int number)
{
    return VFForward<&VDFileId::SetChanNumber>(id, __func__, index, number);
}

int FIDGetFileChanNumber(VDFileId* id, int index, int* number)
{
    return VFForward<&VDFileId::GetFileChanNumber>(id, __func__, index, number);
}

int FIDSetFileChanNumber(VDFileId* id, int index, int number)
{
    return VFForward<&VDFileId::SetFileChanNumber>(id, __func__, index, number);
}

int FIDGetChanType(VDFileId* id, int index, int* type)
{
    return VFForward<&VDFileId::GetChanType>(id, __func__, index, type);
}

int FIDSetChanType(VDFileId* id, int index, int type)
{
    return VFForward<&VDFileId::SetChanType>(id, __func__, index, type);
}

int FIDGetChanSelected(VDFileId* id, int index, char* selected)
{
    return VFForward<&VDFileId::GetChanSelected>(id, __func__, index, selected);
}

int FIDSetChanSelect(VDFileId* id, int index, char selected)
{
    return VFForward<&VDFileId::SetChanSelect>(id, __func__, index, selected);
}

int FIDGetChanTitle(VDFileId* id, int index, VDString* title)
{
    return VFForward<&VDFileId::GetChanTitle>(id, __func__, index, title);
}

int FIDSetChanTitle(VDFileId* id, int index, const char* title)
{
    return VFForward<&VDFileId::SetChanTitle>(id, __func__, index, title);
}

int FIDGetChanUnits(VDFileId* id, int index, VDString* units)
{
    return VFForward<&VDFileId::GetChanUnits>(id, __func__, index, units);
}

int FIDSetChanUnits(VDFileId* id, int index, const char* units)
{
    return VFForward<&VDFileId::SetChanUnits>(id, __func__, index, units);
}

int FIDGetChanFilename(VDFileId* id, int index, VDString* filename)
{
    return VFForward<&VDFileId::GetChanFilename>(id, __func__, index, filename);
}

int FIDSetChanFilename(VDFileId* id, int index, const char* filename)
{
    return VFForward<&VDFileId::SetChanFilename>(id, __func__, index, filename);
}

int FIDSetAllChanSelect(VDFileId* id, char selected)
{
    return VFForward<&VDFileId::SetAllChanSelect>(id, __func__, selected);
}

int FIDGetSomeChansSelected(VDFileId* id, char* some)
{
    return VFForward<&VDFileId::GetSomeChansSelected>(id, __func__, some);
}

int FIDGetAllChansSelected(VDFileId* id, char* all)
{
    return VFForward<&VDFileId::GetAllChansSelected>(id, __func__, all);
}

int FIDGetChans(VDFileId* id, VDArrayWithSort<long>* numbers)
{
    return VFForward<&VDFileId::GetChans>(id, __func__, numbers);
}

int FIDGetSelectedChanList(VDFileId* id, VDArrayWithSort<long>* numbers)
{
    return VFForward<&VDFileId::GetSelectedChanList>(id, __func__, numbers);
}

int FIDGetChanSelText(VDFileId* id, int maxLength, VDString* text)
{
    return VFForward<&VDFileId::GetChanSelText>(id, __func__, maxLength, text);
}

int FIDSortChans(VDFileId* id, char ascending)
{
    return VFForward<&VDFileId::SortChans>(id, __func__, ascending);
}

int FIDRemoveChan(VDFileId* id, int index)
{
    return VFForward<&VDFileId::RemoveChan>(id, __func__, index);
}

int FIDRemoveAllChans(VDFileId* id)
{
    return VFForward<&VDFileId::ClearAllChans>(id, __func__);
}

int FIDClearAllChans(VDFileId* id)
{
    return VFForward<&VDFileId::ClearAllChans>(id, __func__);
}

int FIDRemoveAllSelectedChans(VDFileId* id, char selected)
{
    return VFForward<&VDFileId::RemoveAllSelectedChans>(id, __func__, selected);
}

int FIDSetExtraDataObject(VDFileId* id, VDCompBase* object)
{
    return VFForward<&VDFileId::SetExtraDataObject>(id, __func__, object);
}

int FIDGetExtraDataObject(VDFileId* id, VDCompBase** object)
{
    return VFForward<&VDFileId::GetExtraDataObject>(id, __func__, object);
}

int FIDGetPreferences(VDFileId* id, char create, VDFileIdPreferences** preferences)
{
    return VFForward<&VDFileId::GetPreferences>(id, __func__, create, preferences);
}

int FIDSetMetadataKeywords(VDFileId* id, VDStringArray* globalKeywords, VDStringArray* globalTypes,
                           VDStringArray* channelKeywords, VDStringArray* channelTypes, char load)
{
    return VFForward<&VDFileId::SetMetadataKeywords>(id, __func__, globalKeywords, globalTypes, channelKeywords,
                                                     channelTypes, load);
}

int FIDHasMetadata(VDFileId* id, char* hasKeywords, char* loaded)
{
    return VFForward<&VDFileId::HasMetadata>(id, __func__, hasKeywords, loaded);
}

int FIDGetMetadataKeywords(VDFileId* id, VDStringArray* globalKeywords, VDStringArray* channelKeywords)
{
    return VFForward<&VDFileId::GetMetadataKeywords>(id, __func__, globalKeywords, channelKeywords);
}

int FIDLoadMetadata(VDFileId* id)
{
    return VFForward<&VDFileId::LoadMetadata>(id, __func__);
}

int FIDGetMetadata(VDFileId* id, int channel, const char* keyword, VDVariant* value)
{
    return VFForward<&VDFileId::GetMetadata>(id, __func__, channel, keyword, value);
}

int FIDClearMetadata(VDFileId* id, char keepKeywords)
{
    return VFForward<&VDFileId::ClearMetadata>(id, __func__, keepKeywords);
}

int FIDToXml(VDFileId* id, VDString* xml)
{
    return VFForward<&VDFileId::ToXml>(id, __func__, xml);
}

int FIDFromXml(VDFileId* id, const VDString* xml)
{
    return VFForward<&VDFileId::FromXml>(id, __func__, xml);
}

int FIDSerialise(VDFileId* id, VDIo* io, char reading, std::int64_t* context)
{
    return VFForward<&VDFileId::Serialise>(id, __func__, io, reading, context);
}

int FIDCompareTestNames(VDFileId* left, VDFileId* right, char* same)
{
    return VFForwardPair<&VDFileId::CompareTestNames>(left, right, __func__, same);
}

int FIDGetTestFileSize(VDFileId* id, std::uint64_t* size)
{
    return VFForward<&VDFileId::GetTestFileSize>(id, __func__, size);
}

int FIDDoesTestExist(VDFileId* id, char selectedOnly, char* exists)
{
    return VFForward<&VDFileId::DoesTestExist>(id, __func__, selectedOnly, exists);
}

int FIDFixTestPlusChannels(VDFileId* id)
{
    return VFForward<&VDFileId::FixTestPlusChannels>(id, __func__);
}

int FIDDeleteTest(VDFileId* id)
{
    return VFForward<&VDFileId::DeleteTest>(id, __func__);
}
