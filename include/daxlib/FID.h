#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDArray.h"
#include "vdbase/VDCompBase.h"
#include "vdbase/VDString.h"

class VDChanSep;
class VDFileIdPreferences;
class VDIo;
class VDStringArray;
class VDVariant;

/// File ids: one `VDFileId` describes one test: its name, its format, its channels and what of it is selected.
///
/// A file id goes through two lazy steps, identification and the load of its channel list. Getters that need one of them run
/// it on first use, as far as the id was told that it may (`FIDSetIdentByExtension`, `FIDSetLoadInfoWhenNeeded`); they fail
/// when that step fails. An `index` is a position in the channel list, from 0; a `number` is the channel's own. An index
/// outside the list fails with -328595 "Index out of range ".

extern "C" {

/// @name Life and copying
/// @{
/// A new id with one reference; null with -327681 "Out of memory " when memory is short.
DAX_API VDFileId* FIDCreate();
DAX_API int FIDAddRef(VDFileId* id);
/// Gives a reference back. The last one destroys the id and, for the last id of a temporary test, deletes the test's files.
DAX_API int FIDRelease(VDFileId* id);
/// Copies what the mask of `VTFileIdCopyFlag` bits says; 0 stands for `VTFileIdCopyDefault`. An id copied onto itself stays.
DAX_API int FIDCopy(VDFileId* target, VDFileId* source, std::uint32_t mask);
DAX_API int FIDClear(VDFileId* id);
/// Makes the target the description of a test that is to be written, named after the source: its folder, its base name with
/// "_r02_", "_b02_" and "_m02_" for the run, burst and mode that it has, and the extension, which is the format's default
/// where the target's file type isn't the source's. Each is changed as the form says. The format says the name form; a test
/// of several files gets a "_" at the end of its stem.
/// @param mask      as for `FIDCopy`, which comes first. The file type of the output is the target's own unless the mask
///                  copies it
/// @param nameForm  a `VTOutputNameForm`, else -328594
/// @param text      empty fails with -328596, -328592, -328593 and -328602 for the forms 2 to 5. The extension of form 1 must
///                  differ from the source's, else -328591
DAX_API int FIDCreateOutputFromId(VDFileId* target, VDFileId* source, std::uint32_t mask, int nameForm, const char* text);
/// @}

/// @name Name
/// @{
/// Sets the name. A disk test's name is made absolute with the current folder.
/// @param nameForm   0 or 1, else -328582
/// @param filename   form 0: whole path; form 1: stem with folder. Empty fails with -328583
/// @param extension  without dot; form 0 takes it from the filename if it is empty
DAX_API int FIDSetFilename(VDFileId* id, int nameForm, const char* filename, const char* extension);
DAX_API int FIDGetFilename(VDFileId* id, VDString* filename, VDString* extension);
DAX_API int FIDGetNameForm(VDFileId* id, int* nameForm);
/// Sets the name of a test of the id's format, which says the name form and the default extension. Needs a file id, else
/// -328601.
/// @param keyword    hint for the default extension, or empty
/// @param extension  for a name without one; empty for the format's default
DAX_API int FIDSetTestname(VDFileId* id, const char* name, const char* keyword, const char* extension);
/// One line of text about the test.
/// @param type  a `VTTestDescriptorType`, else -328608
DAX_API int FIDGetTestDescriptor(VDFileId* id, int type, VDString* text);
/// Becomes the one test that a spec names. VFDirList.h says what a spec may be; a test descriptor is one, and one with "://"
/// in it belongs to a plug-in. The name of one channel's file gives the test that it is part of, with that channel alone.
/// -328605 for a spec that no test matches, -328604 for more than one, -328614 for a text with "://" that no plug-in takes;
/// the id is then as it was.
DAX_API int FIDCreateFromTestSpec(VDFileId* id, const char* text);
/// The files of the test that a spec names.
/// @param withMetadata  gives the file with its metadata, too, if there is one beside the data
DAX_API int FIDGetFilenamesForTestDescriptor(const char* text, char withMetadata, VDStringArray* filenames);
DAX_API int FIDSetTestTitle(VDFileId* id, const char* title);
DAX_API int FIDGetTestTitle(VDFileId* id, VDString* title);
/// Run, burst and mode tell apart the sub-tests of one file; -1 means not divided that way.
DAX_API int FIDSetRunNumber(VDFileId* id, int run);
DAX_API int FIDGetRunNumber(VDFileId* id, int* run);
DAX_API int FIDSetBurstNumber(VDFileId* id, int burst);
DAX_API int FIDGetBurstNumber(VDFileId* id, int* burst);
/// @param title  null leaves the mode title
DAX_API int FIDSetModeNumber(VDFileId* id, int mode, const char* title);
/// @param title  may be null
DAX_API int FIDGetModeNumber(VDFileId* id, int* mode, VDString* title);
DAX_API int FIDSetExtraMetadataFilename(VDFileId* id, const char* filename);
DAX_API int FIDGetExtraMetadataFilename(VDFileId* id, VDString* filename);
DAX_API int FIDSetAssociatedFilename(VDFileId* id, const char* filename);
DAX_API int FIDGetAssociatedFilename(VDFileId* id, VDString* filename);
/// The extension of the channel files of a folder test.
DAX_API int FIDSetOriginalExtension(VDFileId* id, const char* extension);
DAX_API int FIDGetOriginalExtension(VDFileId* id, VDString* extension);
/// Width of the channel number in channel file names, 1 to 10, else -328607.
DAX_API int FIDSetNumChanDigits(VDFileId* id, int digits);
DAX_API int FIDGetNumChanDigits(VDFileId* id, int* digits);
/// @param source  a `VTDataSource`, else -328610
DAX_API int FIDSetDataSource(VDFileId* id, int source);
DAX_API int FIDGetDataSource(VDFileId* id, int* source);
DAX_API int FIDSetDataPath(VDFileId* id, const char* path);
DAX_API int FIDGetDataPath(VDFileId* id, VDString* path);
DAX_API int FIDSetObjectReference(VDFileId* id, const char* reference);
DAX_API int FIDGetObjectReference(VDFileId* id, VDString* reference);
/// Keeps a copy of the rules that split file names into stem and channel number.
DAX_API int FIDSetChanSep(VDFileId* id, const VDChanSep* chanSep);
/// Works out whether the name is that of a file in a folder test.
DAX_API int FIDSetFolderTest(VDFileId* id);
/// Sets the folder test flag; a true flag makes the name form 1.
DAX_API int FIDSetFolderTestManual(VDFileId* id, char folderTest);
DAX_API int FIDGetFolderTest(VDFileId* id, char* folderTest);
/// @}

/// @name Format
/// @{
/// Sets the file type. File id 154 with sub id 13 to 16 makes this the id of a temporary test, which goes by the name that
/// this id has as long as it is of such a type: those are the files that go with the last copy of the id, whatever other
/// tests the copies stand for by then. Nothing is deleted of a file that is only being identified, by its extension or by
/// its content.
DAX_API int FIDSetFileId(VDFileId* id, int fileId, int subId);
DAX_API int FIDGetFileId(VDFileId* id, int* fileId, int* subId);
DAX_API int FIDSetVer(VDFileId* id, int version, int subVersion);
DAX_API int FIDGetVer(VDFileId* id, int* version, int* subVersion);
/// @param opSys  a code that `VFIsValidOpSys` accepts, else -328584
DAX_API int FIDSetOpSys(VDFileId* id, int opSys);
DAX_API int FIDGetOpSys(VDFileId* id, int* opSys);
/// The format's description, with " Ver %d.%d" behind it if asked for and known.
DAX_API int FIDGetFileTypeDesc(VDFileId* id, char withVersion, VDString* description);
/// @param accessType   a `VTFileAccessType`
/// @param accessClass  class id text of the access plug-in
DAX_API int FIDGetAccessInfo(VDFileId* id, int* accessType, VDString* accessClass, VDString* description);
DAX_API int FIDIsTemporary(VDFileId* id, char* temporary);
/// @}

/// @name Flags
/// @{
DAX_API int FIDSetSelected(VDFileId* id, char selected);
DAX_API int FIDGetSelected(VDFileId* id, char* selected);
DAX_API int FIDSetShowChannels(VDFileId* id, char show);
DAX_API int FIDGetShowChannels(VDFileId* id, char* show);
/// The file id, sub id, version and writing system are known.
DAX_API int FIDSetIdentified(VDFileId* id, char identified);
DAX_API int FIDGetIdentified(VDFileId* id, char* identified);
DAX_API int FIDSetInIdent(VDFileId* id, char inIdent);
DAX_API int FIDGetInIdent(VDFileId* id, char* inIdent);
/// The id is known by its extension only; the real identification may follow when a getter needs it.
DAX_API int FIDSetIdentByExtension(VDFileId* id, char byExtension);
/// False as soon as the id is identified and its channels are known.
DAX_API int FIDGetIdentByExtension(VDFileId* id, char* byExtension);
DAX_API int FIDSetLoadInfoWhenNeeded(VDFileId* id);
DAX_API int FIDGetLoadInfoWhenNeeded(VDFileId* id, char* whenNeeded);
/// The channel list is known. A false value empties it.
DAX_API int FIDSetInfoLoaded(VDFileId* id, char loaded);
DAX_API int FIDGetInfoLoaded(VDFileId* id, char* loaded);
/// @}

/// @name Channels
/// @{
/// Gives the index of the channel of this number, which is appended if there is none. A null `index` fails and adds nothing.
DAX_API int FIDAddChannel(VDFileId* id, int number, int* index);
/// The same by title; a new channel gets the number count + 1.
DAX_API int FIDAddChannelByTitle(VDFileId* id, const VDString* title, int* index);
DAX_API int FIDGetNumChans(VDFileId* id, int* count);
/// Index of the first channel of this number, else -328587.
DAX_API int FIDGetChanIndex(VDFileId* id, int number, int* index);
DAX_API int FIDGetChanNumber(VDFileId* id, int index, int* number);
DAX_API int FIDSetChanNumber(VDFileId* id, int index, int number);
/// Number of the channel inside its file; -1 if it has none of its own.
DAX_API int FIDGetFileChanNumber(VDFileId* id, int index, int* number);
DAX_API int FIDSetFileChanNumber(VDFileId* id, int index, int number);
/// Type of the channel's values, see `DaxDataType`.
DAX_API int FIDGetChanType(VDFileId* id, int index, int* type);
DAX_API int FIDSetChanType(VDFileId* id, int index, int type);
DAX_API int FIDGetChanSelected(VDFileId* id, int index, char* selected);
DAX_API int FIDSetChanSelect(VDFileId* id, int index, char selected);
/// Line ends in the title come back as blanks.
DAX_API int FIDGetChanTitle(VDFileId* id, int index, VDString* title);
DAX_API int FIDSetChanTitle(VDFileId* id, int index, const char* title);
DAX_API int FIDGetChanUnits(VDFileId* id, int index, VDString* units);
DAX_API int FIDSetChanUnits(VDFileId* id, int index, const char* units);
/// Name of the channel's file. Form 0: the test's file, whatever the index. Form 1 needs a channel in the list, else
/// -328598. A channel of a folder test whose name would lead out of the folder, or has control characters, fails with -327704.
DAX_API int FIDGetChanFilename(VDFileId* id, int index, VDString* filename);
/// Name of the channel's file in a folder test where it differs from the title.
DAX_API int FIDSetChanFilename(VDFileId* id, int index, const char* filename);
/// Selects all channels or none; put off while the channel list is still to come by a load. A list that is filled by hand is
/// taken as it is.
DAX_API int FIDSetAllChanSelect(VDFileId* id, char selected);
DAX_API int FIDGetSomeChansSelected(VDFileId* id, char* some);
/// True on an empty list.
DAX_API int FIDGetAllChansSelected(VDFileId* id, char* all);
/// All channel numbers in list order.
DAX_API int FIDGetChans(VDFileId* id, VDArrayWithSort<long>* numbers);
/// The selected channels' numbers in list order.
DAX_API int FIDGetSelectedChanList(VDFileId* id, VDArrayWithSort<long>* numbers);
/// "None", "All", a range list of the selected numbers or, where that is longer than `maxLength`, their count.
DAX_API int FIDGetChanSelText(VDFileId* id, int maxLength, VDString* text);
/// Sorts by channel number; put off in the same way.
DAX_API int FIDSortChans(VDFileId* id, char ascending);
DAX_API int FIDRemoveChan(VDFileId* id, int index);
/// Both empty the channel list, which then counts as not loaded.
DAX_API int FIDRemoveAllChans(VDFileId* id);
DAX_API int FIDClearAllChans(VDFileId* id);
/// Removes the selected channels, or with a false flag the others.
DAX_API int FIDRemoveAllSelectedChans(VDFileId* id, char selected);
/// @}

/// @name Attached objects
/// @{
/// Hangs a host's object on the id, which takes a reference of its own; null takes the present one off.
DAX_API int FIDSetExtraDataObject(VDFileId* id, VDCompBase* object);
/// @param object  gets a new reference for the caller, or null
DAX_API int FIDGetExtraDataObject(VDFileId* id, VDCompBase** object);
/// The named strings of this test, which stay the id's.
/// @param create  makes the object if there is none; otherwise null is given out
DAX_API int FIDGetPreferences(VDFileId* id, char create, VDFileIdPreferences** preferences);
/// @}

/// @name Metadata in memory
/// A host names keywords; the id fetches their values for the test and all its channels at once and answers from memory. A
/// keyword is "Item" or "Set.Item" (of "ExtraDetails", what stands in "LegacyExtraDetails" comes first). A change of the
/// channel list drops the values, and the next question fetches them again; an emptied list takes the keywords, too.
/// @{
/// Sets the keywords for the test as a whole and for each channel, with a type for each: "string", "integer" (a huge
/// variant) or "real" (a double), without regard to case; any other type gives empty values. A null list is an empty one.
/// The same lists as before leave the values as they are; a list of types of another length than its keywords leaves the
/// keywords.
/// @param load  fetches the values, as `FIDLoadMetadata` does
DAX_API int FIDSetMetadataKeywords(VDFileId* id, VDStringArray* globalKeywords, VDStringArray* globalTypes,
                                   VDStringArray* channelKeywords, VDStringArray* channelTypes, char load);
/// @param loaded  whether the values are present
DAX_API int FIDHasMetadata(VDFileId* id, char* hasKeywords, char* loaded);
/// Either may be null, but not both; fails without keywords set.
DAX_API int FIDGetMetadataKeywords(VDFileId* id, VDStringArray* globalKeywords, VDStringArray* channelKeywords);
/// Opens the test, once, and fetches the values. Fails without keywords, and with what is recorded if the test can't be
/// read.
DAX_API int FIDLoadMetadata(VDFileId* id);
/// Gives a value, empty if the test hasn't got it, and fetches all values first if need be.
/// @param channel  a place in the test's metadata, from 0, or `LQChannelMapper::GLOBAL`
/// @return 0, with nothing recorded, for a channel or a keyword that there is not among those asked for
DAX_API int FIDGetMetadata(VDFileId* id, int channel, const char* keyword, VDVariant* value);
/// @param keepKeywords  drops the values alone
DAX_API int FIDClearMetadata(VDFileId* id, char keepKeywords);
/// @}

/// @name Stored forms
/// @{
/// Writes all that the id says of its test as one XML element, "FileId", but for channel file names, metadata values and the
/// host's object. No lazy step is made.
/// @param xml  in UTF-8. A name that isn't, or a text or key that XML can't hold, fails with -331501
DAX_API int FIDToXml(VDFileId* id, VDString* xml);
/// Becomes what the XML says; the format and the channels are taken on trust. Fails with -328617 on top of the reason; the id
/// is then no longer what it was.
DAX_API int FIDFromXml(VDFileId* id, const VDString* xml);
/// Writes the id as an object into an open file, or reads it from the file's current position. The object doesn't say
/// whether the test is identified and its channels are known, nor the type, file number and file name of a channel. No lazy
/// step is made.
/// @param io       open; another object than an id's fails with -327684, one of another version is reported with -327685
///                 and read all the same
/// @param reading  0 writes
/// @param context  gets the position of the object in the file; may be null
DAX_API int FIDSerialise(VDFileId* id, VDIo* io, char reading, std::int64_t* context);
/// @}

/// @name The test on disk
/// @{
/// Whether two ids mean the same test.
DAX_API int FIDCompareTestNames(VDFileId* left, VDFileId* right, char* same);
/// Bytes on disk of the test's files; -328600 for a file whose size can't be told.
DAX_API int FIDGetTestFileSize(VDFileId* id, std::uint64_t* size);
/// Whether the test's file is there or, of several, one of those of the channels in the list. A test that isn't on disk is
/// always there.
/// @param selectedOnly  looks at the selected channels only
DAX_API int FIDDoesTestExist(VDFileId* id, char selectedOnly, char* exists);
/// Of a test that was found through the file of one channel: becomes the whole test with that channel alone. Any other test,
/// and one that isn't found in its folder, stays as it is.
DAX_API int FIDFixTestPlusChannels(VDFileId* id);
/// Deletes the files of the test; the id keeps its names. -328603 if a file stays, -328611 for a test that isn't on disk.
DAX_API int FIDDeleteTest(VDFileId* id);
/// @}

}  // extern "C"
