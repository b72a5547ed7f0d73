#include "../common/FileTypeAnswers.h"
#include "UffFile.h"

#include "daxlib/DaxHandle.h"
#include "daxlib/FileFormatPlugin.h"

#include <algorithm>
#include <iterator>

/// The FileFormat entry points.

#define UFF_API extern "C" __attribute__((visibility("default")))

UFF_API DaxFileFormat::IdentifyFile UffFFIdentifyFile;
UFF_API DaxFileFormat::LoadFileInfo UffFFLoadFileInfo;
UFF_API DaxFileFormat::GetLastError UffFFGetLastError;
UFF_API DaxFileFormat::GetNextSupportedType UffFFGetNextSupportedType;
UFF_API DaxFileFormat::GetNextCapability UffFFGetNextCapability;
UFF_API DaxFileFormat::GetValue UffFFGetValue;

namespace {

constexpr const char* VVExtensions[] = {"uff", "unv", "58", "58b", "bnd", "ufb", "bunv", "univ", "uf"};

bool HasExtension(const VDString& filename)
{
    const int dot = filename.ReverseFind('.');
    const VDString extension = dot < 0 ? VDString() : filename.Mid(dot + 1);
    return std::any_of(std::begin(VVExtensions), std::end(VVExtensions),
                       [&](const char* known) { return extension.CompareNoCase(known) == 0; });
}

std::string_view TakeLine(std::string_view& text)
{
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    return line.substr(0, line.find_last_not_of("\r") + 1);
}

/// A mark, the number of a dataset behind it, and a name that says what it is, or, instead of that, the header of a
/// function.
bool IsUniversalFile(std::string_view text, const VDString& filename)
{
    std::string_view first;
    while (!text.empty() && first.find_first_not_of(" \t\r") == first.npos)
        first = TakeLine(text);
    if (!UffIndex::IsMark(first))
        return false;
    const std::string_view head = TakeLine(text);
    long long type = 0;
    if (head.size() < 6 || head[5] == ' ' || !UffReadField(head.substr(0, 6), &type) || type < 1)
        return false;
    if (HasExtension(filename))
        return true;
    std::array<std::string, UffHeader::Lines> lines;
    for (std::string& line : lines)
        line = TakeLine(text);
    std::string problem;
    UffHeader header;
    // An empty line would pass for zeros.
    return type == 58 && header.Read(lines, &problem) && lines[6].size() >= 69;
}

/// Gives the array an id for each test.
bool AppendTests(VDFileId* id, const UffFile& file, VDFileIdArray* tests)
{
    bool isFirst = true;
    for (const UffTest& test : file.GetTests()) {
        VDFileIdHandle other;
        if (!isFirst) {
            other.Reset(FIDCreate());
            if (!other || !FIDCopy(other.Get(), id, ~std::uint32_t{VTFileIdCopySelectedChannels}))
                return false;
        }
        VDFileId* const own = isFirst ? id : other.Get();
        isFirst = false;
        if (!FIDSetFileId(own, UffFormat::FileId, UffFormat::Get(test.isSpectra, test.isText).subId) ||
            !FIDSetRunNumber(own, file.GetRun(test)) || !FIDSetTestTitle(own, test.title.c_str()) ||
            !FIAAppendItem(tests, own))
            return false;
    }
    return true;
}

bool AddChannels(VDFileId* id, const UffFile& file, const UffTest& test)
{
    int number = 0;
    for (const UffChannel& channel : test.channels) {
        int index = 0;
        // A channel's own number tells its place in the test.
        ++number;
        const UffHeader& header = file.GetDataset(channel).header;
        const bool isDouble = header.IsDouble() && !header.isSingle;
        if (!FIDAddChannel(id, number, &index) || !FIDSetFileChanNumber(id, index, number) ||
            !FIDSetChanTitle(id, index, file.GetTitle(channel).c_str()) ||
            !FIDSetChanUnits(id, index, file.GetUnits(channel).c_str()) ||
            !FIDSetChanType(id, index, isDouble ? DaxDataType::Double : DaxDataType::Float))
            return false;
    }
    return true;
}

}  // namespace

int UffFFIdentifyFile(VDFileId* id, const char* header, int headerSize, VDIo* io, VDFileIdArray* tests, char* claimed)
{
    const VDString filename = io->GetFilename();
    *claimed = IsUniversalFile(std::string_view(header, static_cast<std::size_t>(std::max(headerSize, 0))), filename);
    if (!*claimed)
        return 1;
    const auto file = UffFile::Open(filename, "UffFF::IdentifyFile");
    if (!file)
        return 0;
    // Whether there is anything to offer comes to light when channels are asked for, with a report that says what there is.
    if (!file->GetTests().empty())
        return AppendTests(id, *file, tests);
    return FIDSetFileId(id, UffFormat::FileId, UffFormat::TextTimeSeries) && FIAAppendItem(tests, id);
}

int UffFFLoadFileInfo(VDFileId* id, const char*, int, VDIo* io)
{
    constexpr const char* routine = "UffFF::LoadFileInfo";
    int fileId = 0;
    int subId = 0;
    int run = -1;
    if (!FIDGetFileId(id, &fileId, &subId) || !FIDGetRunNumber(id, &run))
        return 0;
    const VDString filename = io->GetFilename();
    const UffFormat::Type* const type = UffFormat::Find(fileId, subId);
    if (type == nullptr)
        return PluginReport(UffError::InvalidFileId, routine, filename.Str(), {});
    const auto file = UffFile::Open(filename, routine);
    if (!file)
        return 0;
    const UffTest* const test = file->FindTest(type->isSpectra, run);
    if (test == nullptr)
        return PluginReport(UffError::NotAUniversalFile, routine, filename.Str(),
                            "There is no such function of time or frequency. Passed over: " + file->GetPassedOver() + ". " +
                                file->GetIndex().GetDamage());
    return FIDSetTestTitle(id, test->title.c_str()) && AddChannels(id, *file, *test);
}

void UffFFGetLastError(VDString* text)
{
    *text = "VARDO";
}

void UffFFGetNextSupportedType(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
                               VDString* description, char* more)
{
    constexpr int timeSeriesText = 10063;
    *more = *index >= 0 && *index < static_cast<int>(std::size(UffFormat::Types));
    if (!*more)
        return;
    const UffFormat::Type& type = UffFormat::Types[*index];
    *fileId = UffFormat::FileId;
    *subId = type.subId;
    *accessType = type.isSpectra ? VTFileAccessComplexFrequency : VTFileAccessTimeSeries;
    *accessClass = type.isSpectra ? UffFormat::SpectraClass : UffFormat::TimeSeriesClass;
    if (type.isSpectra)
        *description = "UFF complex frequency";
    else
        VFTextGet(VFGetDaxLibText(), timeSeriesText, description);
    *description += type.suffix;
    ++*index;
}

void UffFFGetNextCapability(int, int, int* index, VDString* name, int* value, char* more)
{
    static constexpr const char* names[] = {"Readable", "Writable", "HasRun"};
    *more = *index >= 0 && *index < static_cast<int>(std::size(names));
    if (!*more)
        return;
    *name = names[*index];
    *value = 1;
    ++*index;
}

void UffFFGetValue(const char* key, const VDVariant* arguments, VDVariant* answer)
{
    VFAnswerFileType(key, *arguments, answer, UffFormat::Find, [](const auto&) { return "uff"; });
}
