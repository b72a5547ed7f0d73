#include "SpecialFormats.h"
#include "VDFileId.h"

#include "daxlib/DaxHandle.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VFByteOrder.h"

int VDFileId::SetFileId(int fileId, int subId)
{
    const bool isTemporary = fileId == DaxStorageFileId && VFIsTemporarySubId(subId);
    if (!isTemporary)
        EndNamingTemporaryTest();
    SuggestFileId(fileId, subId);
    if (!record_.identByExtension)
        record_.identified = true;
    // Identification looks at files that are there: they are their makers' to delete.
    if (isTemporary && !inIdent_)
        StartTemporaryTest();
    return 1;
}

void VDFileId::SuggestFileId(int fileId, int subId)
{
    record_.fileId = fileId;
    record_.subId = subId;
}

bool VDFileId::IsTemporaryType() const
{
    return record_.fileId == DaxStorageFileId && VFIsTemporarySubId(record_.subId);
}

int VDFileId::IsTemporary(char* temporary) const
{
    return VFGive(temporary, IsTemporaryType());
}

int VDFileId::SetVer(int version, int subVersion)
{
    record_.version = version;
    record_.subVersion = subVersion;
    return 1;
}

int VDFileId::GetVer(int* version, int* subVersion)
{
    return CheckIdentLoad(false) != 0 ? VFGiveTwo(version, record_.version, subVersion, record_.subVersion) : 0;
}

int VDFileId::SetOpSys(int opSys)
{
    if (!VFIsValidOpSys(opSys))
        return ReportWithStem(DaxError::InvalidOpSys, __func__);
    record_.opSys = opSys;
    return 1;
}

int VDFileId::GetOpSys(int* opSys)
{
    return CheckIdentLoad(false) != 0 ? VFGive(opSys, record_.opSys) : 0;
}

int VDFileId::GetFileTypeDesc(char withVersion, VDString* description)
{
    const VDFileInfoHandle info(FINFCreate());
    VDString text;
    if (!info || FINFGetFileDescription(info.Get(), this, record_.fileId, record_.subId, &text) == 0)
        return 0;
    if (withVersion != 0 && (record_.version != 0 || record_.subVersion != 0)) {
        VDString version;
        version.Format(" Ver %d.%d", record_.version, record_.subVersion);
        text += version;
    }
    return VFGive(description, text);
}

int VDFileId::GetAccessInfo(int* accessType, VDString* accessClass, VDString* description)
{
    const VDFileInfoHandle info(FINFCreate());
    int type = VTFileAccessUnknown;
    VDString classText;
    VDString typeText;
    if (!info || FINFGetAccessClass(info.Get(), nullptr, record_.fileId, record_.subId, &type, &classText) == 0 ||
        FINFGetAccessDescription(info.Get(), type, &typeText) == 0)
        return 0;
    VFGiveTwo(accessClass, classText, description, typeText);
    VFGive(accessType, type);
    return 1;
}

int VDFileId::SetIdentByExtension(char byExtension)
{
    record_.identByExtension = byExtension != 0;
    record_.loadInfoWhenNeeded = true;
    return 1;
}

int VDFileId::GetIdentByExtension(char* byExtension) const
{
    return VFGive(byExtension, record_.identByExtension && !(record_.identified && record_.infoLoaded));
}

int VDFileId::SetInfoLoaded(char loaded)
{
    record_.infoLoaded = loaded != 0;
    if (!record_.infoLoaded) {
        record_.channels.Clear();
        record_.metadata.reset();
    }
    return 1;
}
