#include "ResultsError.h"
#include "ResultsFormat.h"

#include "daxlib/FID.h"
#include "daxlib/FileFormatPlugin.h"

#include <algorithm>
#include <iterator>

/// The FileFormat entry points.

#define RESULTS_API extern "C" __attribute__((visibility("default")))

RESULTS_API DaxFileFormat::IdentifyFile ResultsFFIdentifyFile;
RESULTS_API DaxFileFormat::LoadFileInfo ResultsFFLoadFileInfo;
RESULTS_API DaxFileFormat::GetLastError ResultsFFGetLastError;
RESULTS_API DaxFileFormat::GetNextSupportedType ResultsFFGetNextSupportedType;
RESULTS_API DaxFileFormat::GetNextCapability ResultsFFGetNextCapability;
RESULTS_API DaxFileFormat::GetValue ResultsFFGetValue;

namespace {

using namespace ResultsFormat;

constexpr Type VVTypes[] = {
    {7, "Z4MultiColumn", "z4m", VTFileAccessMultiColumn, TableClass, 10023, ResultsLoadTableInfo},
    {12, "Z4ResultsTable", "z4m", VTFileAccessMultiColumn, TableClass, 10082, ResultsLoadTableInfo},
    {15, "TemporaryMultiColumn", "y4m", VTFileAccessMultiColumn, TableClass, 10097, ResultsLoadTableInfo},
    {10, "Z4ComplexFrequency", "z4c", VTFileAccessComplexFrequency, SpectraClass, 10043, ResultsLoadSpectraInfo},
    {16, "TemporaryComplexFrequency", "y4c", VTFileAccessComplexFrequency, SpectraClass, 10098, ResultsLoadSpectraInfo},
};

}  // namespace

const Type* ResultsFormat::FindType(int fileId, int subId)
{
    const auto found = std::find_if(std::begin(VVTypes), std::end(VVTypes),
                                    [=](const Type& type) { return fileId == DaxStorageFileId && type.subId == subId; });
    return found == std::end(VVTypes) ? nullptr : found;
}

// The built-in plug-in of the format identifies these files, too.
int ResultsFFIdentifyFile(VDFileId*, const char*, int, VDIo*, VDFileIdArray*, char* claimed)
{
    *claimed = 0;
    return 1;
}

int ResultsFFLoadFileInfo(VDFileId* id, const char*, int, VDIo* io)
{
    int fileId = 0;
    int subId = 0;
    const VDString filename = io->GetFilename();
    if (!FIDGetFileId(id, &fileId, &subId))
        return 0;
    const Type* const type = FindType(fileId, subId);
    if (type == nullptr)
        return PluginReport(ResultsError::WrongType, "ResultsFFLoadFileInfo", filename.Str(), {});
    io->Close();
    return type->loadInfo(id, filename);
}

void ResultsFFGetLastError(VDString* text)
{
    *text = "VARDO";
}

void ResultsFFGetNextSupportedType(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
                                   VDString* description, char* more)
{
    *more = *index >= 0 && *index < static_cast<int>(std::size(VVTypes));
    if (!*more)
        return;
    const Type& type = VVTypes[(*index)++];
    *fileId = DaxStorageFileId;
    *subId = type.subId;
    *accessType = type.accessType;
    *accessClass = type.accessClass;
    VFTextGet(VFGetDaxLibText(), type.description, description);
}

void ResultsFFGetNextCapability(int, int, int* index, VDString* name, int* value, char* more)
{
    static constexpr const char* names[] = {"Readable", "Writable"};
    *more = *index >= 0 && *index < static_cast<int>(std::size(names));
    if (!*more)
        return;
    *name = names[(*index)++];
    *value = 1;
}

void ResultsFFGetValue(const char* key, const VDVariant* arguments, VDVariant* answer)
{
    long fileId = 0;
    long subId = 0;
    (*arguments)[0].GetLong(&fileId);
    (*arguments)[1].GetLong(&subId);
    const Type* const type = FindType(static_cast<int>(fileId), static_cast<int>(subId));
    const VDString asked(key);
    answer->Clear();
    if (type == nullptr)
        return;
    if (asked == "NameForm")
        answer->AppendItem(VDVariant(static_cast<long>(VTNameFormFile)));
    else if (asked == "FormatKeyword")
        answer->AppendItem(VDVariant(type->keyword));
    else if (asked == "DefaultExtension")
        answer->AppendItem(VDVariant(type->extension));
}
