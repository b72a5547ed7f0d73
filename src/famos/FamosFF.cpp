// Famos recordings as a FileFormat plug-in, under the prefix "FamosFF".

#include "daxlib/FamosFF.h"

#include "FamosFormat.h"
#include "VDFamosStream.h"
#include "frame/VFDaxReport.h"

#include "daxlib/DaxHandle.h"
#include "daxlib/FIA.h"
#include "daxlib/FID.h"

#include <cctype>
#include <iterator>
#include <string_view>

namespace {

using namespace FamosFormat;

struct Type
{
    int subId;
    VTFileAccessType accessType;
    const char* accessClass;
    const char* keyword;
    int description;
};

constexpr Type VVTypes[] = {
    {TimeSeries, VTFileAccessTimeSeries, TimeSeriesClass, "Famos", 10055},
    {Pairs, VTFileAccessMultiColumn, PairsClass, "FamosMultiColumn", 10064},
    {TimeStamped, VTFileAccessTimeSeries, TimeStampedClass, "FamosTimeStamped", 10077},
};

constexpr const char* VVCapabilities[] = {"Readable", "Writable"};

const Type* FindType(const VDVariant& arguments)
{
    long fileId = 0;
    long subId = 0;
    arguments[0].GetLong(&fileId);
    arguments[1].GetLong(&subId);
    for (const Type& type : VVTypes)
        if (fileId == FileId && subId == type.subId)
            return &type;
    return nullptr;
}

/// The first key says it: "|CF,2,1,1;". Blanks and line ends may stand in front.
bool IsFamos(std::string_view header)
{
    const auto isBlank = [](char byte) { return byte == ' ' || byte == '\r' || byte == '\n' || byte == '\t'; };
    while (!header.empty() && isBlank(header.front()))
        header.remove_prefix(1);
    if (!header.starts_with("|CF,") && !header.starts_with("|DF,"))
        return false;
    header.remove_prefix(4);
    while (!header.empty() && header.front() == ' ')
        header.remove_prefix(1);
    return !header.empty() && std::isdigit(static_cast<unsigned char>(header.front())) != 0;
}

/// @param channel  of the test; a pair is two channels of the recording, of which the first has the name
bool SetChannel(VDFileId* id, int index, const VDFamosRecording& recording, std::size_t channel, int subId)
{
    const std::size_t source = subId == Pairs ? 2 * channel : channel;
    return FIDSetChanTitle(id, index, recording.GetTitle(source)) &&
           FIDSetChanUnits(id, index, recording.GetUnits(source)) &&
           FIDSetChanType(id, index, recording.GetDataType(source));
}

VTFamosContent ContentOf(int subId)
{
    return subId == Pairs ? VTFamosContent::Pairs : VTFamosContent::Series;
}

bool AddChannel(VDFileId* id, int number, int* index)
{
    return FIDAddChannel(id, number, index) && FIDSetFileChanNumber(id, *index, number);
}

bool ListStampedChannels(VDFileId* id, const VDString& filename)
{
    const auto stream = VDFamosStream::Open(filename, VDFamosStream::GetDatabase(id));
    for (std::size_t at = 0; stream != nullptr && at < stream->GetChannelCount(); ++at) {
        const VDFamosStream::Channel channel = stream->GetChannel(at);
        int index = 0;
        if (!AddChannel(id, static_cast<int>(at) + 1, &index) || !FIDSetChanTitle(id, index, channel.title) ||
            !FIDSetChanUnits(id, index, channel.units) || !FIDSetChanType(id, index, channel.type))
            return false;
    }
    return stream != nullptr;
}

bool ListChannels(VDFileId* id, const VDString& filename, int subId)
{
    const auto recording = VDFamosRecording::Open(filename, ContentOf(subId));
    if (recording == nullptr)
        return false;
    const std::size_t count = recording->GetChannelCount() / (subId == Pairs ? 2 : 1);
    for (std::size_t channel = 0; channel < count; ++channel) {
        int index = 0;
        if (!AddChannel(id, static_cast<int>(channel) + 1, &index) || !SetChannel(id, index, *recording, channel, subId))
            return false;
    }
    return true;
}

/// A test of many files has its channels already: each learns from its own file what it is.
bool DescribeChannels(VDFileId* id, int subId)
{
    int count = 0;
    if (!FIDGetNumChans(id, &count))
        return false;
    for (int index = 0; index < count; ++index) {
        VDString filename;
        if (!FIDGetChanFilename(id, index, &filename))
            return false;
        const auto recording = VDFamosRecording::Open(filename, ContentOf(subId));
        if (recording == nullptr || (recording->GetChannelCount() > 0 && !SetChannel(id, index, *recording, 0, subId)))
            return false;
    }
    return true;
}

/// A file of both kinds is two tests.
bool AddPairsTest(const VDString& filename, VDFileIdArray* tests)
{
    const VDFileIdHandle pairs(FIDCreate());
    return pairs && FIDSetFilename(pairs.Get(), VTNameFormFile, filename, "") && FIDSetFileId(pairs.Get(), FileId, Pairs) &&
           FIAAppendItem(tests, pairs.Get());
}

}  // namespace

int FamosFFIdentifyFile(VDFileId* id, const char* bytes, int count, VDIo* io, VDFileIdArray* tests, char* claimed)
{
    *claimed = IsFamos({bytes, static_cast<std::size_t>(count)});
    if (*claimed == 0)
        return 1;
    // A file that can't be read is told of when its channels are asked for.
    std::string damage;
    std::optional<VDFamosHeader> header;
    {
        const VDErrorMute mute;
        header = VDFamosRecording::ReadHeader(*io, &damage);
    }
    if (header && VDFamosRecording::IsTimeStamped(*header))
        return FIDSetFileId(id, FileId, TimeStamped) && FIAAppendItem(tests, id);
    const bool hasPairs = header && VDFamosRecording::Holds(*header, VTFamosContent::Pairs);
    const bool hasSeries = !hasPairs || VDFamosRecording::Holds(*header, VTFamosContent::Series);
    return FIDSetFileId(id, FileId, hasSeries ? TimeSeries : Pairs) && FIAAppendItem(tests, id) &&
           (!hasPairs || !hasSeries || AddPairsTest(io->GetFilename(), tests));
}

int FamosFFLoadFileInfo(VDFileId* id, const char*, int, VDIo* io)
{
    int nameForm = 0;
    int fileId = 0;
    int subId = 0;
    if (!FIDGetNameForm(id, &nameForm) || !FIDGetFileId(id, &fileId, &subId))
        return 0;
    if (subId == TimeStamped)
        return ListStampedChannels(id, io->GetFilename());
    return nameForm == VTNameFormTestPlusChannels ? DescribeChannels(id, subId) : ListChannels(id, io->GetFilename(), subId);
}

void FamosFFGetLastError(VDString* text)
{
    *text = "VARDO";
}

void FamosFFGetNextSupportedType(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
                                 VDString* description, char* more)
{
    *more = *index >= 0 && *index < static_cast<int>(std::size(VVTypes));
    if (*more == 0)
        return;
    const Type& type = VVTypes[(*index)++];
    *fileId = FileId;
    *subId = type.subId;
    *accessType = type.accessType;
    *accessClass = type.accessClass;
    *description = VFDaxText(type.description);
}

void FamosFFGetNextCapability(int, int, int* index, VDString* name, int* value, char* more)
{
    *more = *index >= 0 && *index < static_cast<int>(std::size(VVCapabilities));
    if (*more == 0)
        return;
    *value = *index == 0;
    *name = VVCapabilities[(*index)++];
}

void FamosFFGetValue(const char* key, const VDVariant* arguments, VDVariant* answer)
{
    const VDString asked(key);
    const Type* const type = FindType(*arguments);
    answer->Clear();
    if (type == nullptr)
        return;
    if (asked == "NameForm")
        answer->AppendItem(VDVariant(static_cast<long>(VTNameFormFile)));
    else if (asked == "FormatKeyword")
        answer->AppendItem(VDVariant(type->keyword));
    else if (asked == "DefaultExtension")
        answer->AppendItem(VDVariant(DefaultExtension));
}
