#include "StandApi.h"
#include "StandIn.h"

#include "daxlib/FIA.h"
#include "daxlib/FID.h"
#include "daxlib/FINF.h"
#include "daxlib/FileFormatPlugin.h"

#include <algorithm>
#include <span>

STAND_API DaxFileFormat::IdentifyFile StandFFIdentifyFile, LexadeFFIdentifyFile, OtherFFIdentifyFile, MessFFIdentifyFile;
STAND_API DaxFileFormat::LoadFileInfo StandFFLoadFileInfo;
STAND_API DaxFileFormat::GetLastError StandFFGetLastError;
STAND_API DaxFileFormat::GetNextSupportedType StandFFGetNextSupportedType, LexadeFFGetNextSupportedType,
    OtherFFGetNextSupportedType, ThrowTypeFFGetNextSupportedType, MessFFGetNextSupportedType;
STAND_API DaxFileFormat::GetNextCapability StandFFGetNextCapability, ThrowCapFFGetNextCapability, MessFFGetNextCapability;
STAND_API DaxFileFormat::GetValue StandFFGetValue, LexadeFFGetValue, OtherFFGetValue, BadNameFFGetValue, BadKeyFFGetValue,
    ThrowValueFFGetValue, MessFFGetValue;
STAND_API DaxFileFormat::FileIdToTestDesc StandFFFileIdToTestDesc;
STAND_API DaxFileFormat::TestDescToFileIdArray StandFFTestDescToFileIdArray;
STAND_API DaxFileFormat::GetProxyAccessFileId StandFFGetProxyAccessFileId;

namespace {

struct StandType
{
    int fileId;
    int subId;
    int accessType;
    const char* accessClass;
    const char* keyword;
    long nameForm = 0;
    int hasRun = 0;
};

constexpr StandType VVTypes[] = {
    {StandIn::FileId, StandIn::SubPlain, VTFileAccessTimeSeries, StandIn::ClassId, "StandA"},
    {StandIn::FileId, StandIn::SubRun, VTFileAccessTimeSeries, StandIn::ClassId, "StandRun", 0, 1},
    {StandIn::FileId, StandIn::SubSerial, VTFileAccessTimeSeries, StandIn::SerialClassId, "StandSerial"},
    {StandIn::FileId, StandIn::SubMissing, VTFileAccessTimeSeries, StandIn::MissingClassId, "StandMissing"},
    {StandIn::FileId, StandIn::SubNobody, VTFileAccessTimeSeries, StandIn::NobodyClassId, "StandNobody"},
    {StandIn::FileId, StandIn::SubNoCreate, VTFileAccessTimeSeries, StandIn::NoCreateClassId, "StandNoCreate"},
    {StandIn::HistFileId, 1, VTFileAccessHistogram, "STAND-HIST", "StandB", 0, 1},
    {StandIn::ChannelsFileId, 1, VTFileAccessTimeSeries, StandIn::ClassId, "StandC", 1},
    {StandIn::ScheduleFileId, 1, VTFileAccessTimeSeries, StandIn::ClassId, "StandSchedule"},
    {StandIn::MetaFileId, 1, VTFileAccessMetaData, StandIn::MetaClassId, "StandMetaFile"},
};
constexpr StandType VVLexadeTypes[] = {
    {StandIn::LexadeFileId, 1, VTFileAccessTimeSeries, StandIn::ClassId, "StandSig"},
};
constexpr StandType VVMessTypes[] = {
    {StandIn::MessFileId, 1, VTFileAccessTimeSeries, StandIn::ClassId, "StandMess"},
};
constexpr StandType VVOtherTypes[] = {
    {StandIn::UnnamedFileId, 1, 2345, "", "StandUnnamed"},
    {StandIn::CyclesFileId, 1, VTFileAccessCycles, "", "StandCycles"},
    {StandIn::FolderFileId, 1, VTFileAccessTimeSeries, StandIn::ClassId, "StandFolder"},
    {StandIn::GroupFileId, 1, VTFileAccessTimeSeries, StandIn::ClassId, "StandGroup"},
    {StandIn::GroupFileId, 2, VTFileAccessTimeSeries, StandIn::ClassId, "StandGroupOther"},
};

/// The script of the last file that one of the plug-ins met: FileFormat's GetLastError doesn't say of which.
thread_local StandScript VVLastScript;

void NextType(std::span<const StandType> types, int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
              VDString* description, char* more)
{
    *more = *index >= 0 && *index < static_cast<int>(types.size());
    if (!*more)
        return;
    const StandType& type = types[static_cast<std::size_t>((*index)++)];
    *fileId = type.fileId;
    *subId = type.subId;
    *accessType = type.accessType;
    *accessClass = type.accessClass;
    *description = VDString("Stand-in type ") + type.keyword;
}

void AnswerValue(std::span<const StandType> types, const std::string& key, const VDVariant& arguments, VDVariant& answer)
{
    long fileId = 0;
    long subId = 0;
    VDString hint;
    arguments[0].GetLong(&fileId);
    arguments[1].GetLong(&subId);
    arguments[2].GetString(&hint);
    for (const StandType& type : types) {
        if (type.fileId != fileId || type.subId != subId)
            continue;
        if (key == "NameForm")
            answer.AppendItem(VDVariant(type.nameForm));
        else if (key == "FormatKeyword")
            answer.AppendItem(VDVariant(type.keyword));
        else if (key == "DefaultExtension")
            answer.AppendItem(hint == "BAD" ? VDVariant(1L) : VDVariant(hint.IsEmpty() ? "sta" : hint.c_str()));
        return;
    }
}

VDString FilenameOf(VDFileId* id)
{
    VDString filename;
    FIDGetChanFilename(id, 0, &filename);
    return filename;
}

void SetType(VDFileId* id, const StandScript& script, int fileId)
{
    FIDSetFileId(id, script.Int("fileid", fileId), script.Int("subid", 1));
    if (script.Has("opsys"))
        FIDSetOpSys(id, script.Int("opsys"));
    if (script.Has("title"))
        FIDSetTestTitle(id, script.Text("title").c_str());
}

int AppendTests(VDFileId* id, const StandScript& script, int fileId, VDFileIdArray* tests)
{
    if (!script.Has("tests")) {
        SetType(id, script, fileId);
        return FIAAppendItem(tests, id);
    }
    for (int run = 1; run <= script.Int("tests"); ++run) {
        VDFileId* test = FIDCreate();
        FIDSetFilename(test, VTNameFormFile, FilenameOf(id), "");
        SetType(test, script, fileId);
        FIDSetRunNumber(test, run);
        FIAAppendItem(tests, test);
        FIDRelease(test);
    }
    return 1;
}

int Identify(VDFileId* id, const StandScript& script, int fileId, VDFileIdArray* tests, char* claimed)
{
    *claimed = 0;
    if (!script.IsValid())
        return 1;
    if (script.Has("recurse")) {
        VDFileInfo* info = FINFCreate();
        FINFIdentifyFile(info, id, 0, &tests);
        FINFRelease(info);
    }
    StandThrow(script.Text("throw"));
    if (script.Has("fail"))
        return StandFail(script, "StandFFIdentifyFile");
    *claimed = 1;
    return AppendTests(id, script, fileId, tests);
}

std::string_view View(const char* header, int size)
{
    return {header, static_cast<std::size_t>(size)};
}

int AddChannels(VDFileId* id, const StandScript& script)
{
    std::vector<std::string> numbers = script.List("numbers");
    if (!script.Has("numbers"))
        for (int number = 1; number <= script.Int("channels", 1); ++number)
            numbers.push_back(std::to_string(number));
    for (const std::string& number : numbers) {
        int index = 0;
        if (!FIDAddChannel(id, std::atoi(number.c_str()), &index) ||
            !FIDSetChanTitle(id, index, ("Channel " + number).c_str()) ||
            !FIDSetChanUnits(id, index, script.Text("units").c_str()) || !FIDSetChanType(id, index, DaxDataType::Float))
            return 0;
    }
    return 1;
}

}  // namespace

int StandFFIdentifyFile(VDFileId* id, const char* header, int headerSize, VDIo* io, VDFileIdArray* tests, char* claimed)
{
    if (!io->IsOpen() || io->GetCurPos() != headerSize)
        return 0;
    VVLastScript = StandScript(View(header, headerSize));
    return Identify(id, VVLastScript, StandIn::FileId, tests, claimed);
}

int LexadeFFIdentifyFile(VDFileId* id, const char* header, int headerSize, VDIo*, VDFileIdArray* tests, char* claimed)
{
    *claimed = 0;
    VVLastScript = StandScript(View(header, headerSize));
    if (FilenameOf(id).Right(4).CompareNoCase(".sig") != 0 || VVLastScript.Text("lexade") == "decline")
        return 1;
    return Identify(id, VVLastScript, StandIn::LexadeFileId, tests, claimed);
}

int OtherFFIdentifyFile(VDFileId*, const char*, int, VDIo*, VDFileIdArray*, char* claimed)
{
    *claimed = 0;
    return 1;
}

int MessFFIdentifyFile(VDFileId* id, const char*, int, VDIo* io, VDFileIdArray* tests, char* claimed)
{
    int index = 0;
    *claimed = 0;
    FIAAppendItem(tests, id);
    FIDSetTestTitle(id, "a mess");
    FIDAddChannel(id, 99, &index);
    FIDSetFileId(id, DaxStorageFileId, 10);  // a temporary type
    FIDSetFilename(id, VTNameFormFile, "/nowhere/else", "");
    io->SetCurPos(0);
    io->Close();
    return 1;
}

int StandFFLoadFileInfo(VDFileId* id, const char* header, int headerSize, VDIo*)
{
    VVLastScript = StandScript(View(header, headerSize));
    StandThrow(VVLastScript.Text("infothrow"));
    int nameForm = VTNameFormFile;
    FIDGetNameForm(id, &nameForm);
    if (nameForm == VTNameFormTestPlusChannels && !VVLastScript.Has("infofail"))
        return 1;  // the channels are those that the names say
    return VVLastScript.Has("infofail") ? StandFail(VVLastScript, "StandFFLoadFileInfo") : AddChannels(id, VVLastScript);
}

void StandFFGetLastError(VDString* text)
{
    *text = StandLastError(VVLastScript);
}

/// The entry points that tell of a table of types.
#define STAND_TYPES(Prefix, types)                                                                                          \
    void Prefix##GetNextSupportedType(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,          \
                                      VDString* description, char* more)                                                    \
    {                                                                                                                       \
        NextType(types, index, fileId, subId, accessType, accessClass, description, more);                                  \
    }                                                                                                                       \
    void Prefix##GetValue(const char* key, const VDVariant* arguments, VDVariant* answer)                                   \
    {                                                                                                                       \
        AnswerValue(types, key, *arguments, *answer);                                                                       \
    }

STAND_TYPES(StandFF, VVTypes)
STAND_TYPES(LexadeFF, VVLexadeTypes)
STAND_TYPES(OtherFF, VVOtherTypes)

/// Lists without an end.
void MessFFGetNextSupportedType(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
                                VDString* description, char* more)
{
    NextType(VVMessTypes, index, fileId, subId, accessType, accessClass, description, more);
    *index = 0;
}

void MessFFGetNextCapability(int, int, int* index, VDString* name, int* value, char* more)
{
    *name = "Readable";
    *value = (*index)++;
    *more = 1;
}

void MessFFGetValue(const char* key, const VDVariant* arguments, VDVariant* answer)
{
    AnswerValue(VVMessTypes, key, *arguments, *answer);
}

void ThrowTypeFFGetNextSupportedType(int*, int*, int*, int*, VDString*, VDString*, char*)
{
    StandThrow("1");
}

void StandFFGetNextCapability(int fileId, int subId, int* index, VDString* name, int* value, char* more)
{
    static constexpr const char* names[] = {"Readable", "Writable", "HasRun"};
    *more = *index >= 0 && *index < 3;
    if (!*more)
        return;
    *name = names[*index];
    *value = *index < 2 || std::ranges::any_of(VVTypes, [&](const StandType& type) {
        return type.fileId == fileId && type.subId == subId && type.hasRun != 0;
    });
    ++*index;
}

void ThrowCapFFGetNextCapability(int, int, int*, VDString*, int*, char*)
{
    StandThrow("int");
}

void BadNameFFGetValue(const char*, const VDVariant*, VDVariant* answer)
{
    answer->AppendItem(VDVariant("no number"));
}

void BadKeyFFGetValue(const char* key, const VDVariant* arguments, VDVariant* answer)
{
    if (std::string(key) == "FormatKeyword")
        answer->AppendItem(VDVariant(1L));
    else
        StandFFGetValue(key, arguments, answer);
}

void ThrowValueFFGetValue(const char*, const VDVariant*, VDVariant*)
{
    StandThrow("1");
}

int StandFFFileIdToTestDesc(VDFileId* id, int, VDString* text)
{
    VVLastScript = StandScript::OfFile(FilenameOf(id));
    *text = VVLastScript.Text("desc");
    return VVLastScript.Has("descfail") ? StandFail(VVLastScript, "StandFFFileIdToTestDesc") : 1;
}

int StandFFTestDescToFileIdArray(const char* text, VDFileIdArray* tests, char* claimed)
{
    const std::string_view descriptor(text);
    *claimed = descriptor.starts_with("standdesc:");
    if (!*claimed)
        return 1;
    VVLastScript = StandScript::OfFile(text + 10);
    if (VVLastScript.Has("descfail"))
        return StandFail(VVLastScript, "StandFFTestDescToFileIdArray");
    VDFileId* id = FIDCreate();
    const bool done =
        FIDSetFilename(id, VTNameFormFile, text + 10, "") && AppendTests(id, VVLastScript, StandIn::FileId, tests);
    FIDRelease(id);
    return done;
}

int StandFFGetProxyAccessFileId(VDFileId* id, VDFileId** proxy)
{
    *proxy = nullptr;
    VVLastScript = StandScript::OfFile(FilenameOf(id));
    if (VVLastScript.Has("proxyfail"))
        return StandFail(VVLastScript, "StandFFGetProxyAccessFileId");
    if (!VVLastScript.Has("proxy"))
        return 1;
    const std::string filename = VVLastScript.Text("proxy");
    const StandScript script = StandScript::OfFile(filename.c_str());
    VDFileId* other = FIDCreate();
    FIDSetFilename(other, VTNameFormFile, filename.c_str(), "");
    SetType(other, script, StandIn::FileId);
    FIDSetIdentified(other, 1);
    AddChannels(other, script);
    FIDSetInfoLoaded(other, 1);
    *proxy = other;
    return 1;
}
