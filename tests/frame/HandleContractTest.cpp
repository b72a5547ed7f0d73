#include "ExportedNames.h"
#include "support/TestSupport.h"

#include "daxlib/daxlib.h"

#include <set>

// Every exported function that takes a handle refuses a null handle and one of another family, before it looks at anything
// else, and says so under its own name.

namespace {

struct Row
{
    const char* name;
    int (*call)(void* handle);
    const char* routine = nullptr;  ///< where it isn't the function's own name
};

template <class Handle, class... Arguments>
int CallWith(int (*function)(Handle*, Arguments...), void* handle)
{
    return function(static_cast<Handle*>(handle), Arguments{}...);
}

template <auto Function>
int Call(void* handle)
{
    return CallWith(Function, handle);
}

#define ROW(function) {#function, Call<function>}

const Row VVRows[] = {
    ROW(FIDAddRef), ROW(FIDRelease), ROW(FIDCopy), ROW(FIDClear),
    ROW(FIDSetFilename), ROW(FIDGetFilename), ROW(FIDGetNameForm), ROW(FIDSetTestname), ROW(FIDGetTestDescriptor),
    ROW(FIDSetTestTitle), ROW(FIDGetTestTitle), ROW(FIDSetRunNumber), ROW(FIDGetRunNumber), ROW(FIDSetBurstNumber),
    ROW(FIDGetBurstNumber), ROW(FIDSetModeNumber), ROW(FIDGetModeNumber), ROW(FIDSetExtraMetadataFilename),
    ROW(FIDGetExtraMetadataFilename), ROW(FIDSetAssociatedFilename), ROW(FIDGetAssociatedFilename),
    ROW(FIDSetOriginalExtension), ROW(FIDGetOriginalExtension), ROW(FIDSetNumChanDigits), ROW(FIDGetNumChanDigits),
    ROW(FIDSetDataSource), ROW(FIDGetDataSource), ROW(FIDSetDataPath), ROW(FIDGetDataPath), ROW(FIDSetObjectReference),
    ROW(FIDGetObjectReference), ROW(FIDSetChanSep), ROW(FIDSetFolderTest), ROW(FIDSetFolderTestManual),
    ROW(FIDGetFolderTest), ROW(FIDSetFileId), ROW(FIDGetFileId), ROW(FIDSetVer), ROW(FIDGetVer), ROW(FIDSetOpSys),
    ROW(FIDGetOpSys), ROW(FIDGetFileTypeDesc), ROW(FIDGetAccessInfo), ROW(FIDIsTemporary), ROW(FIDSetSelected),
    ROW(FIDGetSelected), ROW(FIDSetShowChannels), ROW(FIDGetShowChannels), ROW(FIDSetIdentified), ROW(FIDGetIdentified),
    ROW(FIDSetInIdent), ROW(FIDGetInIdent), ROW(FIDSetIdentByExtension), ROW(FIDGetIdentByExtension),
    ROW(FIDSetLoadInfoWhenNeeded), ROW(FIDGetLoadInfoWhenNeeded), ROW(FIDSetInfoLoaded), ROW(FIDGetInfoLoaded),
    ROW(FIDAddChannel), ROW(FIDAddChannelByTitle), ROW(FIDGetNumChans), ROW(FIDGetChanIndex), ROW(FIDGetChanNumber),
    ROW(FIDSetChanNumber), ROW(FIDGetFileChanNumber), ROW(FIDSetFileChanNumber), ROW(FIDGetChanType), ROW(FIDSetChanType),
    ROW(FIDGetChanSelected), ROW(FIDSetChanSelect), ROW(FIDGetChanTitle), ROW(FIDSetChanTitle), ROW(FIDGetChanUnits),
    ROW(FIDSetChanUnits), ROW(FIDGetChanFilename), ROW(FIDSetChanFilename), ROW(FIDSetAllChanSelect),
    ROW(FIDGetSomeChansSelected), ROW(FIDGetAllChansSelected), ROW(FIDGetChans), ROW(FIDGetSelectedChanList),
    ROW(FIDGetChanSelText), ROW(FIDSortChans), ROW(FIDRemoveChan), ROW(FIDRemoveAllChans), ROW(FIDClearAllChans),
    ROW(FIDRemoveAllSelectedChans), ROW(FIDSetExtraDataObject), ROW(FIDGetExtraDataObject), ROW(FIDGetPreferences),
    ROW(FIDSetMetadataKeywords), ROW(FIDHasMetadata), ROW(FIDGetMetadataKeywords), ROW(FIDLoadMetadata), ROW(FIDGetMetadata),
    ROW(FIDClearMetadata), ROW(FIDCompareTestNames), ROW(FIDDeleteTest), ROW(FIDToXml),
    ROW(FIDFromXml), ROW(FIDSerialise),
    ROW(FIDCreateFromTestSpec), ROW(FIDFixTestPlusChannels), ROW(FIDCreateOutputFromId), ROW(FIDGetTestFileSize), ROW(FIDDoesTestExist),

    ROW(FIAAddRef), ROW(FIARelease), ROW(FIACopy), ROW(FIAGetSize), ROW(FIAClear), ROW(FIAAppendItem), ROW(FIAAppend),
    ROW(FIAGetAt), ROW(FIARemoveAt), ROW(FIASelectAt), ROW(FIAGetSelectAt), ROW(FIASelectAll), ROW(FIARemoveSelected),
    ROW(FIAFind), ROW(FIACreateFromTestSpec),
    ROW(FIAFindFromTestSpec), ROW(FIASort), ROW(FIASerialise),

    ROW(FINFAddRef), ROW(FINFRelease), ROW(FINFIdentifyFile), ROW(FINFIdentifyFiles), ROW(FINFIdentifyFileByExtension),
    ROW(FINFLoadInfo), ROW(FINFLoadInfoForFiles), ROW(FINFGetNextFileType), ROW(FINFGetAccessClass),
    ROW(FINFGetFileDescription), ROW(FINFGetNextCapability), ROW(FINFGetCapability), ROW(FINFGetFileFormatKeyword),
    ROW(FINFGetDefaultExtension), ROW(FINFGetNameForm), ROW(FINFGetFileFormatKeywords), ROW(FINFGetFileIdFromKeyword),
    ROW(FINFGetAccessDescription),

    ROW(VFDirListClearFilter), ROW(VFDirListCreateList), ROW(VFDirListCreateListWithInfo), ROW(VFDirListGetFileIdArray),
    ROW(VFDirListGetLoadErrorDetails), ROW(VFDirListGetSkipped), ROW(VFDirListRelease), ROW(VFDirListSetChanSep),
    ROW(VFDirListSetErrorOnLoadDetails), ROW(VFDirListSetFilesMatching), ROW(VFDirListSetFilterByAccessType),
    ROW(VFDirListSetFilterByAccessTypes), ROW(VFDirListSetFilterByFileId), ROW(VFDirListSetFilterByFileIds),
    ROW(VFDirListSetPath), ROW(VFDirListSetProgressCallback), ROW(VFDirListSetRecurseSubDirs),

    ROW(TSAccRelease), {"TSAccSetId", Call<TSAccSetId>, "TSAcc"}, ROW(TSAccOpen), ROW(TSAccClose), ROW(TSAccFlush),
    ROW(TSAccGetCapability), ROW(TSAccGetBufferSize), ROW(TSAccGetNumChans), ROW(TSAccGetChans), ROW(TSAccGetChanIndex),
    ROW(TSAccIsValidChan), ROW(TSAccGetActualChanNumber), ROW(TSAccGetChanTitle), ROW(TSAccSetChanTitle),
    ROW(TSAccGetNumPoints), ROW(TSAccGetNumPointsDoublePrecision), ROW(TSAccGetNumPointsDigital32),
    ROW(TSAccGetNumPointsDigital64), ROW(TSAccGetSampleRate), ROW(TSAccGetBaseTime), ROW(TSAccGetXTitle),
    ROW(TSAccGetXUnits), ROW(TSAccGetYTitle), ROW(TSAccGetYUnits), ROW(TSAccGetMaxXTitleLength),
    ROW(TSAccGetMaxXUnitsLength), ROW(TSAccGetMaxYTitleLength), ROW(TSAccGetMaxYUnitsLength), ROW(TSAccSetSampleRate),
    ROW(TSAccSetBaseTime), ROW(TSAccSetNumPoints), ROW(TSAccSetXTitle), ROW(TSAccSetXUnits), ROW(TSAccSetYTitle),
    ROW(TSAccSetYUnits), ROW(TSAccPointToTime), ROW(TSAccTimeToPoint), ROW(TSAccGetData),
    ROW(TSAccGetDataDoublePrecision), ROW(TSAccGetDataDigital32), ROW(TSAccGetDataDigital64), ROW(TSAccPrepareSequential),
    ROW(TSAccGetNext), ROW(TSAccGetNextDoublePrecision), ROW(TSAccGetNextDigital32), ROW(TSAccGetNextDigital64),
    ROW(TSAccPutData), ROW(TSAccPutDataDoublePrecision), ROW(TSAccPutDataDigital32), ROW(TSAccPutDataDigital64),
    ROW(TSAccPutNext), ROW(TSAccPutNextDigital32), ROW(TSAccPutNextDigital64), ROW(TSAccGetFormatSpecificValue),
    ROW(TSAccSetFormatSpecificValue), ROW(TSAccGetMetaData), ROW(TSAccSetUseOffset), ROW(TSAccSetProgressObject),
    ROW(TSAccGetStat), ROW(TSAccGetStatDoublePrecision), ROW(TSAccGetPointStat), ROW(TSAccGetAllStats),
    ROW(TSAccGetAllStatsDoublePrecision), ROW(TSAccSetStats), ROW(TSAccSetStatsMonitor), ROW(TSAccCalcStats),
    ROW(TSAccGetFullScaleLimits), ROW(TSAccSetFullScaleLimits), ROW(TSAccGetFullScaleValid),

    ROW(VMDRelease), ROW(VMDAdopt), ROW(VMDAdoptTestVmd), ROW(VMDGetMetaData), ROW(VMDFlush), ROW(VMDClear),
    ROW(VMDSetChannelNumberList),

    ROW(MetaAccClose), ROW(MetaAccFlush), ROW(MetaAccGetActualChanNumber), ROW(MetaAccGetCapability), ROW(MetaAccGetChanIndex),
    ROW(MetaAccGetChanTitle), ROW(MetaAccGetChans), ROW(MetaAccGetFormatSpecificValue), ROW(MetaAccGetId),
    ROW(MetaAccGetMetaData), ROW(MetaAccGetNumChans), ROW(MetaAccIsValidChan), ROW(MetaAccOpen), ROW(MetaAccRelease),
    ROW(MetaAccSetChanTitle), ROW(MetaAccSetFormatSpecificValue), ROW(MetaAccSetId),

    ROW(CFAccGetCapability), ROW(CFAccGetBufferSize), ROW(CFAccSetProgressObject), ROW(CFAccGetNumChans), ROW(CFAccGetChans),
    ROW(CFAccGetChanIndex), ROW(CFAccIsValidChan), ROW(CFAccGetActualChanNumber), ROW(CFAccGetChanTitle),
    ROW(CFAccGetFormatSpecificValue), ROW(CFAccSetFormatSpecificValue), ROW(CFAccGetMetaData),
    ROW(CFAccGetLineAxisData), ROW(CFAccPutLineAxisData), ROW(CFAccGetSpectrumAxisData), ROW(CFAccPutSpectrumAxisData),
    ROW(CFAccGetMaxTitleLength), ROW(CFAccGetMaxUnitsLength), ROW(CFAccGetType), ROW(CFAccGetSubType),
    ROW(CFAccGetNumSpectra), ROW(CFAccGetNumLines), ROW(CFAccGetComplex), ROW(CFAccSetType), ROW(CFAccSetSubType),
    ROW(CFAccGetXUnits), ROW(CFAccSetXUnits), ROW(CFAccGetYTitle), ROW(CFAccSetYTitle), ROW(CFAccGetYUnits),
    ROW(CFAccRelease), {"CFAccSetId", Call<CFAccSetId>, "CFAcc"}, ROW(CFAccOpen), ROW(CFAccClose), ROW(CFAccFlush),
    ROW(CFAccSetChanTitle), ROW(CFAccGetChanUnits), ROW(CFAccSetChanUnits), ROW(CFAccGetXTitle), ROW(CFAccSetXTitle),
    ROW(CFAccSetNumSpectra), ROW(CFAccSetNumLines), ROW(CFAccSetComplex), ROW(CFAccGetData), ROW(CFAccPutData),
    ROW(CFAccSetYUnits), ROW(CFAccGetZTitle), ROW(CFAccSetZTitle), ROW(CFAccGetZUnits), ROW(CFAccSetZUnits),
    ROW(XYAccGetBufferSize), ROW(XYAccSetProgressObject), ROW(XYAccGetNumChans), ROW(XYAccGetChans),
    ROW(XYAccGetChanIndex), ROW(XYAccIsValidChan), ROW(XYAccGetActualChanNumber), ROW(XYAccGetChanTitle),
    ROW(XYAccGetColEnumOptions), ROW(XYAccSetColEnumOptions), ROW(XYAccAppendCol), ROW(XYAccAppendColWithStatus),
    ROW(XYAccGetColType), ROW(XYAccGetColTitle), ROW(XYAccGetColUnits), ROW(XYAccGetColKeyword), ROW(XYAccSetColTitle),
    ROW(XYAccGetDataF), ROW(XYAccGetData), ROW(XYAccGetDataElement), ROW(XYAccPutDataF), ROW(XYAccPutData),
    ROW(XYAccGetDataValidData), ROW(XYAccPutStatusWordData), ROW(XYAccGetStatusElement),
    ROW(XYAccGetFormatSpecificValue), ROW(XYAccSetFormatSpecificValue), ROW(XYAccGetMetaData),
    ROW(XYAccPutDataElement), ROW(XYAccGetColLimits), ROW(XYAccGetStatusWordEnabled), ROW(XYAccGetStatusWordBitText),
    ROW(XYAccRelease), ROW(XYAccSetId), ROW(XYAccOpen), ROW(XYAccClose), ROW(XYAccFlush), ROW(XYAccGetCapability),
    ROW(XYAccSetChanTitle), ROW(XYAccGetNumDataSets), ROW(XYAccGetNumRows), ROW(XYAccGetDataSetTitle),
    ROW(XYAccSetColUnits), ROW(XYAccSetColKeyword), ROW(XYAccGetMaxTitleLength), ROW(XYAccGetMaxUnitsLength),
    ROW(XYAccSetDataSetTitle), ROW(XYAccAppendDataSet), ROW(XYAccSetNumRows), ROW(XYAccGetNumCols),
    ROW(XYAccSetStatusWordBitText), ROW(XYAccGetStatusWordBitData), ROW(XYAccGetStatusWordData),
    ROW(HFAccRelease), ROW(HFAccSetId), ROW(HFAccGetId), ROW(HFAccOpen), ROW(HFAccClose), ROW(HFAccGetCapability),
    {"HFAccFlush", Call<HFAccFlush>, "HFFlush"}, ROW(HFAccGetNumChans), ROW(HFAccGetChans), ROW(HFAccGetChanIndex),
    ROW(HFAccIsValidChan), ROW(HFAccGetActualChanNumber), ROW(HFAccGetChanTitle), ROW(HFAccSetChanTitle),
    ROW(HFAccGetHistogram), ROW(HFAccPutHistogram), ROW(HFAccSetUseOffset), ROW(HFAccGetFormatSpecificValue),
    ROW(HFAccSetFormatSpecificValue), ROW(HFAccGetMetaData),

    // The instance of a plug-in is its handle.
    ROW(HFAccGenRelease), ROW(HFAccGenSetId), ROW(HFAccGenOpen), ROW(HFAccGenClose), ROW(HFAccGenFlush),
    ROW(HFAccGenGetCapability), ROW(HFAccGenGetValue), ROW(HFAccGenPutValue), ROW(HFAccGenGetHistogram),
    ROW(HFAccGenPutHistogram), {"HFAccGenLoadMetaData", Call<HFAccGenLoadMetaData>, "HFAccLoadMetaData"},
    {"HFAccGenAddLegacyMetaData", Call<HFAccGenAddLegacyMetaData>, "HFAccAddLegacyMetaData"},
    ROW(TSAccGenRelease), ROW(TSAccGenSetId), ROW(TSAccGenOpen), ROW(TSAccGenClose), ROW(TSAccGenFlush),
    ROW(TSAccGenGetCapability), ROW(TSAccGenGetValue), ROW(TSAccGenPutValue), ROW(TSAccGenGetData), ROW(TSAccGenPutData),
    ROW(TSAccGenGetDataDoublePrecision), ROW(TSAccGenPutDataDoublePrecision), ROW(TSAccGenGetDataDigital32),
    ROW(TSAccGenPutDataDigital32), ROW(TSAccGenGetDataDigital64), ROW(TSAccGenPutDataDigital64),
    {"TSAccGenLoadMetaData", Call<TSAccGenLoadMetaData>, "TSAccLoadMetaData"},
    {"TSAccGenAddLegacyMetaData", Call<TSAccGenAddLegacyMetaData>, "TSAccAddLegacyMetaData"},
};

#undef ROW

/// Exported functions of the handle families that take no handle.
const std::set<std::string> VVWithoutHandle = {
    "FIDCreate", "FIDGetFilenamesForTestDescriptor", "FIACreate", "FINFCreate", "VFDirListCreate", "TSAccCreate", "TSAccAddPlugin", "MetaAccCreate", "MetaAccAddPlugin",
    "CFAccCreate", "CFAccAddPlugin", "TSAccGenCreate", "TSAccGenGetLastError",
    "XYAccCreate", "XYAccAddPlugin", "TSAccGenCreate", "TSAccGenGetLastError",
    "HFAccCreate", "HFAccAddPlugin", "HFAccGenCreate", "HFAccGenGetLastError",
    "FINFAddPlugin", "FINFGetValidAccessTypes",
    "FINFSetEnableIdentifyByExtension", "FINFGetIdentifyByExtension", "FINFGetFolderTestExtensions",
    // The registry has no object of its own here: the id is checked by the functions that it is passed on to.
    "FINFGetProxyAccessFileId", "VMDCreate", "VMDCreateFilenameFromFileId"};

void ExpectRefused(const Row& row, void* handle)
{
    VFErrorClear();
    EXPECT_EQ(row.call(handle), 0) << row.name;
    ExpectError(-327682, "Invalid handle", row.routine == nullptr ? row.name : row.routine);
}

}  // namespace

TEST(HandleContractTest, NullAndForeignHandlesAreRefused)
{
    VDCompBase foreign(0x12345678);
    for (const Row& row : VVRows) {
        ExpectRefused(row, nullptr);
        ExpectRefused(row, &foreign);
    }
}

/// Prefixes of the functions that take handles.
constexpr const char* VVFamilies[] = {
    "CFAcc",
    "FIA",
    "FID",
    "FINF",
    "HFAcc",
    "MetaAcc",
    "TSAcc",
    "VFDirList",
    "VMD",
    "XYAcc",
};

TEST(HandleContractTest, EveryExportedFunctionHasItsRow)
{
    std::set<std::string> rows = VVWithoutHandle;
    for (const Row& row : VVRows)
        rows.insert(row.name);
    for (const std::string& name : ReadExportedNames())
        for (const char* family : VVFamilies) {
            if (name.starts_with(family)) {
                EXPECT_EQ(rows.count(name), 1U) << name;
            }
        }
}

TEST(HandleContractTest, ReferencesKeepAnObjectAlive)
{
    VDFileId* id = FIDCreate();
    EXPECT_EQ(FIDAddRef(id), 2);
    EXPECT_EQ(FIDRelease(id), 1);
    EXPECT_TRUE(FIDSetRunNumber(id, 7));
    EXPECT_EQ(FIDRelease(id), 1);
    // A second handle is checked like the first.
    const VDFileIdHandle good(FIDCreate());
    EXPECT_FALSE(FIDCopy(good.Get(), nullptr, 0));
    ExpectError(-327682, "Invalid handle", "FIDCopy");
    const VDFileIdArrayHandle array(FIACreate());
    EXPECT_FALSE(FIAAppendItem(array.Get(), reinterpret_cast<VDFileId*>(array.Get())));
    ExpectError(-327682, "Invalid handle", "FIAAppendItem");
}
