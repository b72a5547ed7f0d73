#include "../common/FileTypeAnswers.h"
#include "WavReader.h"
#include "WavReport.h"

#include "daxlib/FIA.h"
#include "daxlib/FID.h"
#include "daxlib/FileFormatPlugin.h"
#include "daxlib/VFDax.h"

#include <iterator>

/// The FileFormat entry points.

#define WAV_API extern "C" __attribute__((visibility("default")))

WAV_API DaxFileFormat::IdentifyFile WavFFIdentifyFile;
WAV_API DaxFileFormat::LoadFileInfo WavFFLoadFileInfo;
WAV_API DaxFileFormat::GetLastError WavFFGetLastError;
WAV_API DaxFileFormat::GetNextSupportedType WavFFGetNextSupportedType;
WAV_API DaxFileFormat::GetNextCapability WavFFGetNextCapability;
WAV_API DaxFileFormat::GetValue WavFFGetValue;

int WavFFIdentifyFile(VDFileId* id, const char* header, int headerSize, VDIo*, VDFileIdArray* tests, char* claimed)
{
    // Whether the file is whole comes to light when its channels are asked for, with a report that says what is wrong.
    const auto* bytes = reinterpret_cast<const unsigned char*>(header);
    const WavFormat::Type* type = WavFormat::Recognise(bytes, headerSize);
    *claimed = type != nullptr;
    return type == nullptr || (FIDSetFileId(id, WavFormat::FileId, type->subId) && FIAAppendItem(tests, id));
}

int WavFFLoadFileInfo(VDFileId* id, const char*, int, VDIo* io)
{
    const auto reader = WavReader::Open(*io, "WavFF::LoadFileInfo");
    if (!reader)
        return 0;
    const std::string title = reader->GetTexts().Get(WavTexts::Find("Title"));
    if (!title.empty() && !FIDSetTestTitle(id, title.c_str()))
        return 0;
    const int type = reader->IsWide() ? DaxDataType::Double : DaxDataType::Float;
    for (int number = 1; number <= reader->GetNumChannels(); ++number) {
        int index = 0;
        if (!FIDAddChannel(id, number, &index) || !FIDSetFileChanNumber(id, index, number) ||
            !FIDSetChanTitle(id, index, ("Channel " + std::to_string(number)).c_str()) || !FIDSetChanType(id, index, type))
            return 0;
    }
    return 1;
}

void WavFFGetLastError(VDString* text)
{
    *text = "VARDO";
}

void WavFFGetNextSupportedType(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
                               VDString* description, char* more)
{
    constexpr int descriptionText = 10045;
    *more = *index >= 0 && *index < static_cast<int>(std::size(WavFormat::Types));
    if (!*more)
        return;
    const WavFormat::Type& type = WavFormat::Types[*index];
    *fileId = WavFormat::FileId;
    *subId = type.subId;
    *accessType = VTFileAccessTimeSeries;
    *accessClass = WavFormat::AccessClass;
    VFTextGet(VFGetDaxLibText(), descriptionText, description);
    *description += type.suffix;
    ++*index;
}

void WavFFGetNextCapability(int, int, int* index, VDString* name, int* value, char* more)
{
    static constexpr const char* names[] = {"Readable", "Writable"};
    *more = *index >= 0 && *index < static_cast<int>(std::size(names));
    if (!*more)
        return;
    *name = names[*index];
    *value = 1;
    ++*index;
}

void WavFFGetValue(const char* key, const VDVariant* arguments, VDVariant* answer)
{
    VFAnswerFileType(key, *arguments, answer, WavFormat::Find, [](const auto& type) { return type.extension; });
}
