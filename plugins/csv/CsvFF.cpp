#include "../common/FileTypeAnswers.h"
#include "CsvFormat.h"
#include "CsvIndexPass.h"
#include "CsvReport.h"
#include "CsvTable.h"

#include "daxlib/FIA.h"
#include "daxlib/FID.h"
#include "daxlib/FileFormatPlugin.h"
#include "vdbase/VDPreferenceSystem.h"
#include "vdbase/VFFilename.h"

#include <iterator>

/// The FileFormat entry points.

#define CSV_API extern "C" __attribute__((visibility("default")))

CSV_API DaxFileFormat::IdentifyFile CsvFFIdentifyFile;
CSV_API DaxFileFormat::LoadFileInfo CsvFFLoadFileInfo;
CSV_API DaxFileFormat::GetLastError CsvFFGetLastError;
CSV_API DaxFileFormat::GetNextSupportedType CsvFFGetNextSupportedType;
CSV_API DaxFileFormat::GetNextCapability CsvFFGetNextCapability;
CSV_API DaxFileFormat::GetValue CsvFFGetValue;

namespace {

/// What an extension says: 2 that the file is meant as a table, 1 that it may be one, 0 that it is something else.
int WeighExtension(const char* filename)
{
    VDString extension;
    VFSplitFilename(filename, nullptr, nullptr, &extension);
    for (const char* table : {"csv", "tsv"})
        if (extension.CompareNoCase(table) == 0)
            return 2;
    for (const char* text : {"txt", "asc", "dat"})
        if (extension.CompareNoCase(text) == 0)
            return 1;
    return 0;
}

/// Whether evenly growing times make the file a time series. A table that can be none by its beginning isn't gone through.
bool IsTimeSeries(VDIo& io, const CsvGuess& guess)
{
    if (!guess.dialect.header || !VDPreferenceSystem().GetBooleanValue("/FileFormats/Csv/OfferTimeSeries", true))
        return false;
    constexpr std::int64_t enough = 100;
    CsvIndex beginning;
    if (!CsvIndexPass(io, io.GetFileSize(), guess, beginning).Run(enough) || !beginning.IsTimeSeries())
        return false;
    const auto index = CsvIndex::Get(io, {});
    return index && index->IsTimeSeries();
}

bool AddChannel(VDFileId* id, int number, const CsvColumn& column, int fileNumber)
{
    int index = 0;
    return FIDAddChannel(id, number, &index) && FIDSetFileChanNumber(id, index, fileNumber) &&
           FIDSetChanTitle(id, index, column.title.c_str()) && FIDSetChanUnits(id, index, column.units.c_str()) &&
           FIDSetChanType(id, index, DaxDataType::Double);
}

}  // namespace

int CsvFFIdentifyFile(VDFileId* id, const char* header, int headerSize, VDIo* io, VDFileIdArray* tests, char* claimed)
{
    *claimed = 0;
    const int weight = WeighExtension(io->GetFilename().c_str());
    CsvGuess guess;
    if (weight == 0 || !CsvGuess::MayBeTable(header, headerSize) || !guess.Make(*io, io->GetFileSize(), {}) ||
        !guess.IsTable(weight > 1))
        return 1;
    *claimed = 1;
    const int subId = IsTimeSeries(*io, guess) ? CsvFormat::TimeSeries : CsvFormat::Table;
    return FIDSetFileId(id, CsvFormat::FileId, subId) && FIAAppendItem(tests, id);
}

int CsvFFLoadFileInfo(VDFileId* id, const char*, int, VDIo* io)
{
    constexpr const char* routine = "CsvFF::LoadFileInfo";
    int fileId = 0;
    int subId = 0;
    if (!FIDGetFileId(id, &fileId, &subId))
        return 0;
    CsvColumn table;
    if (subId == CsvFormat::Table) {
        VDString base;
        VFSplitFilename(io->GetFilename().c_str(), nullptr, &base, nullptr);
        table.title = base.Str();
        return AddChannel(id, 1, table, 1);
    }
    const auto index = CsvIndex::Get(*io, {});
    if (!index || !index->IsTimeSeries())
        return PluginReport(CsvError::Read, routine, io->GetFilename().Str(), CsvNoTimeSeries);
    int number = 0;
    for (std::size_t column = 1; column < index->GetColumns().size(); ++column)
        if (index->GetColumns()[column].IsNumeric() &&
            !AddChannel(id, ++number, index->GetColumns()[column], static_cast<int>(column) + 1))
            return 0;
    return 1;
}

void CsvFFGetLastError(VDString* text)
{
    *text = "VARDO";
}

void CsvFFGetNextSupportedType(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
                               VDString* description, char* more)
{
    *more = *index >= 0 && *index < static_cast<int>(std::size(CsvFormat::Types));
    if (!*more)
        return;
    const CsvFormat::Type& type = CsvFormat::Types[*index];
    *fileId = CsvFormat::FileId;
    *subId = type.subId;
    *accessType = type.accessType;
    *accessClass = type.accessClass;
    VFTextGet(VFGetDaxLibText(), type.description, description);
    ++*index;
}

void CsvFFGetNextCapability(int fileId, int subId, int* index, VDString* name, int* value, char* more)
{
    const CsvFormat::Type* type = CsvFormat::Find(fileId, subId);
    const int capabilities = type == nullptr ? 0 : 1 + type->writable;
    *more = *index >= 0 && *index < capabilities;
    if (!*more)
        return;
    *name = *index == 0 ? "Readable" : "Writable";
    *value = 1;
    ++*index;
}

void CsvFFGetValue(const char* key, const VDVariant* arguments, VDVariant* answer)
{
    VFAnswerFileType(key, *arguments, answer, CsvFormat::Find, [](const auto&) { return "csv"; });
}
