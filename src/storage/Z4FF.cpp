// The storage format as a FileFormat plug-in, under the prefixes "Z4FF" and, for temporary files, "Z4TempFF".

#include "StorageFileInfo.h"
#include "StorageFileTypes.h"
#include "frame/VFDaxReport.h"

#include "daxlib/FIA.h"
#include "daxlib/FID.h"
#include "daxlib/Z4FF.h"
#include "vdbase/VDHeader.h"

#include <iterator>
#include <span>

namespace {

using namespace StorageFormat;

struct DeclaredType
{
    int subId;
    VTFileAccessType accessType;
    const char* accessClass;
    int description;
};

constexpr DeclaredType VVDeclared[] = {
    {FlexTimeSeries, VTFileAccessTimeSeries, TimeSeriesClass, 10020},
    {TimeSeries, VTFileAccessTimeSeries, TimeSeriesClass, 10061},
    {Histogram, VTFileAccessHistogram, HistogramClass, 10022},
};

// Files that a program makes for itself. Nobody comes across one without an id that says so.
constexpr DeclaredType VVDeclaredTemporary[] = {
    {TemporaryTimeSeries, VTFileAccessTimeSeries, TimeSeriesClass, 10095},
    {TemporaryHistogram, VTFileAccessHistogram, HistogramClass, 10096},
};

void VFGetNextType(std::span<const DeclaredType> declared, int* index, int* fileId, int* subId, int* accessType,
                   VDString* accessClass, VDString* description, char* more)
{
    const int row = (*index)++;
    *more = row >= 0 && row < static_cast<int>(declared.size());
    if (*more == 0)
        return;
    const DeclaredType& type = declared[static_cast<std::size_t>(row)];
    *fileId = DaxStorageFileId;
    *subId = type.subId;
    *accessType = type.accessType;
    *accessClass = type.accessClass;
    *description = VFDaxText(type.description);
}

/// A question of a type: the numbers of the list, 0 where there is none.
int VFGetNumber(const VDVariant& list, int item)
{
    long number = 0;
    return list[item].GetLong(&number) ? static_cast<int>(number) : 0;
}

}  // namespace

int Z4FFIdentifyFile(VDFileId* id, const char* bytes, int count, VDIo* io, VDFileIdArray* tests, char* claimed)
{
    *claimed = 0;
    if (count < VDHeader::Size)
        return 1;
    VDHeader header(DaxStorageFileId, -1, VDHeader::Size);
    if (!header.SetHeader(bytes, io->GetFilename()) || header.GetType() != DaxStorageFileId)
        return 1;
    const Type* const type = FindType(header.GetSubType());
    if (type == nullptr || !type->claimed)
        return 1;
    *claimed = 1;
    if (!FIDSetFileId(id, DaxStorageFileId, type->subId) || !FIDSetOpSys(id, header.GetOpSys()))
        return 0;
    return tests == nullptr ? 1 : FIAAppendItem(tests, id);
}

int Z4FFLoadFileInfo(VDFileId* id, const char*, int, VDIo* io)
{
    return VFLoadStorageFileInfo(id, *io);
}

void Z4FFGetLastError(VDString* text)
{
    *text = "VARDO";
}

void Z4FFGetNextSupportedType(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
                              VDString* description, char* more)
{
    VFGetNextType(VVDeclared, index, fileId, subId, accessType, accessClass, description, more);
}

void Z4FFGetNextCapability(int, int subId, int* index, VDString* name, int* value, char* more)
{
    const int row = (*index)++;
    *value = 0;
    *more = row == 0 || row == 1;
    if (*more == 0)
        return;
    const Type* const type = FindType(subId);
    *name = row == 0 ? "Readable" : "Writable";
    *value = row == 0 || (type != nullptr && type->writable);
}

void Z4FFGetValue(const char* key, const VDVariant* arguments, VDVariant* answer)
{
    const VDString asked(key);
    const Type* const type = FindType(VFGetNumber(*arguments, 1));
    answer->Clear();
    if (asked == "NameForm")
        answer->AppendItem(VDVariant(static_cast<long>(VTNameFormFile)));
    else if (asked == "DefaultExtension" && type != nullptr)
        answer->AppendItem(VDVariant(type->extension));
    else if (asked == "FormatKeyword" && type != nullptr && type->keyword != nullptr &&
             VFGetNumber(*arguments, 0) == DaxStorageFileId)
        answer->AppendItem(VDVariant(type->keyword));
}

int Z4TempFFIdentifyFile(VDFileId*, const char*, int, VDIo*, VDFileIdArray*, char* claimed)
{
    *claimed = 0;
    return 1;
}

int Z4TempFFLoadFileInfo(VDFileId* id, const char* bytes, int count, VDIo* io)
{
    return Z4FFLoadFileInfo(id, bytes, count, io);
}

void Z4TempFFGetLastError(VDString* text)
{
    Z4FFGetLastError(text);
}

void Z4TempFFGetNextSupportedType(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
                                  VDString* description, char* more)
{
    VFGetNextType(VVDeclaredTemporary, index, fileId, subId, accessType, accessClass, description, more);
}

void Z4TempFFGetNextCapability(int fileId, int subId, int* index, VDString* name, int* value, char* more)
{
    Z4FFGetNextCapability(fileId, subId, index, name, value, more);
}

void Z4TempFFGetValue(const char* key, const VDVariant* arguments, VDVariant* answer)
{
    Z4FFGetValue(key, arguments, answer);
}
