// A small plug-in: reads tests that are columns of text.
//
//     txtts 100            the word, and the points in a second
//     Force;Stroke         titles
//     kN;mm                units
//     1.5;10               a line for each point

#include <daxlib/FIA.h>
#include <daxlib/FID.h>
#include <daxlib/FileFormatPlugin.h>
#include <daxlib/TimeSeriesPlugin.h>

#include <vdbase/VDStringArray.h>
#include <vdbase/VFNumber.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#define TXT_API extern "C" __attribute__((visibility("default")))

TXT_API DaxFileFormat::IdentifyFile TxtFFIdentifyFile;
TXT_API DaxFileFormat::LoadFileInfo TxtFFLoadFileInfo;
TXT_API DaxFileFormat::GetLastError TxtFFGetLastError;
TXT_API DaxFileFormat::GetNextSupportedType TxtFFGetNextSupportedType;
TXT_API DaxFileFormat::GetNextCapability TxtFFGetNextCapability;
TXT_API DaxFileFormat::GetValue TxtFFGetValue;

TXT_API DaxTimeSeries::Create TxtTSCreate;
TXT_API DaxTimeSeries::Release TxtTSRelease;
TXT_API DaxTimeSeries::SetId TxtTSSetId;
TXT_API DaxTimeSeries::Open TxtTSOpen;
TXT_API DaxTimeSeries::Close TxtTSClose;
TXT_API DaxTimeSeries::GetLastError TxtTSGetLastError;
TXT_API DaxTimeSeries::Flush TxtTSFlush;
TXT_API DaxTimeSeries::GetCapability TxtTSGetCapability;
TXT_API DaxTimeSeries::GetValue TxtTSGetValue;
TXT_API DaxTimeSeries::PutValue TxtTSPutValue;
TXT_API DaxTimeSeries::GetData TxtTSGetData;
TXT_API DaxTimeSeries::PutData TxtTSPutData;
TXT_API DaxTimeSeries::LoadMetaData TxtTSLoadMetaData;
TXT_API DaxTimeSeries::AddLegacyMetaData TxtTSAddLegacyMetaData;
TXT_API DaxTimeSeries::GetDataDoublePrecision TxtTSGetDataDoublePrecision;
TXT_API DaxTimeSeries::PutDataDoublePrecision TxtTSPutDataDoublePrecision;
TXT_API DaxTimeSeries::GetDataDigital32 TxtTSGetDataDigital32;
TXT_API DaxTimeSeries::PutDataDigital32 TxtTSPutDataDigital32;
TXT_API DaxTimeSeries::GetDataDigital64 TxtTSGetDataDigital64;
TXT_API DaxTimeSeries::PutDataDigital64 TxtTSPutDataDigital64;

namespace {

constexpr int FileId = 32000;
constexpr const char* ClassId = "EXAMPLE-TEXT-COLUMNS";

// The library asks for the text of a failure on the thread that met it.
thread_local std::string lastError;

int Fail(const std::string& text)
{
    lastError = text;
    return 0;
}

struct Test
{
    double rate = 0.0;
    VDStringArray titles;
    VDStringArray units;
    std::vector<std::vector<double>> columns;
    VDString filename;

    int Load();

    template <class T>
    int Get(long channel, std::int64_t first, std::int64_t count, T* values) const
    {
        // Channel and range were checked against what GetValue said.
        const double* from = columns[static_cast<std::size_t>(channel)].data() + first - 1;
        std::transform(from, from + count, values, [](double value) { return static_cast<T>(value); });
        return 1;
    }
};

int Test::Load()
{
    std::ifstream file(filename);
    std::string line;
    if (!std::getline(file, line) || line.rfind("txtts ", 0) != 0 || !VFAscToNum(line.c_str() + 6, &rate) || !(rate > 0.0))
        return Fail("The first line has to say \"txtts\" and the sample rate.");
    std::getline(file, line);
    const int channels = titles.SplitString(line.c_str(), ";");
    std::getline(file, line);
    if (units.SplitString(line.c_str(), ";") != channels || channels == 0)
        return Fail("Titles and units have to be as many as there are columns.");
    columns.assign(static_cast<std::size_t>(channels), {});
    for (long number = 4; std::getline(file, line); ++number) {
        VDStringArray texts;
        if (texts.SplitString(line.c_str(), ";") != channels)
            return Fail("Line " + std::to_string(number) + " has too few or too many values.");
        for (int index = 0; index < channels; ++index) {
            double value = 0.0;
            if (!VFAscToNum(texts[index], &value))
                return Fail("Line " + std::to_string(number) + " holds something that is no number.");
            columns[static_cast<std::size_t>(index)].push_back(value);
        }
    }
    return 1;
}

Test* Self(void* instance)
{
    return static_cast<Test*>(instance);
}

}  // namespace

int TxtFFIdentifyFile(VDFileId* id, const char* header, int headerSize, VDIo*, VDFileIdArray* tests, char* claimed)
{
    *claimed = headerSize > 6 && std::memcmp(header, "txtts ", 6) == 0;
    return !*claimed || (FIDSetFileId(id, FileId, 1) && FIAAppendItem(tests, id));
}

int TxtFFLoadFileInfo(VDFileId* id, const char*, int, VDIo* io)
{
    Test test;
    test.filename = io->GetFilename();
    if (!test.Load())
        return 0;
    for (int index = 0; index < test.titles.GetSize(); ++index) {
        int added = 0;
        if (!FIDAddChannel(id, index + 1, &added) || !FIDSetChanTitle(id, added, test.titles[index]) ||
            !FIDSetChanUnits(id, added, test.units[index]) || !FIDSetChanType(id, added, DaxDataType::Double))
            return Fail("The channel can't be added.");
    }
    return 1;
}

void TxtFFGetLastError(VDString* text)
{
    *text = lastError;
}

void TxtFFGetNextSupportedType(int* index, int* fileId, int* subId, int* accessType, VDString* accessClass,
                               VDString* description, char* more)
{
    *more = *index == 0;
    *fileId = FileId;
    *subId = 1;
    *accessType = VTFileAccessTimeSeries;
    *accessClass = ClassId;
    *description = "Columns of text";
    ++*index;
}

void TxtFFGetNextCapability(int, int, int* index, VDString* name, int* value, char* more)
{
    *more = *index == 0;
    *name = "Readable";
    *value = 1;
    ++*index;
}

void TxtFFGetValue(const char* key, const VDVariant*, VDVariant* answer)
{
    const VDString asked(key);
    if (asked == "NameForm")
        answer->AppendItem(VDVariant(static_cast<long>(VTNameFormFile)));
    else if (asked == "FormatKeyword")
        answer->AppendItem(VDVariant("TextColumns"));
    else if (asked == "DefaultExtension")
        answer->AppendItem(VDVariant("txtts"));
}

void* TxtTSCreate(const char*)
{
    return new Test;
}

int TxtTSRelease(void* instance)
{
    delete Self(instance);
    return 1;
}

int TxtTSSetId(void* instance, VDFileId* id, char)
{
    return FIDGetChanFilename(id, 0, &Self(instance)->filename);
}

int TxtTSOpen(void* instance, int mode)
{
    return mode == 1 ? Self(instance)->Load() : Fail("Columns of text can only be read.");
}

int TxtTSClose(void*)
{
    return 1;
}

void TxtTSGetLastError(void*, VDString& text)
{
    text = lastError;
}

int TxtTSFlush(void*)
{
    return 1;
}

int TxtTSGetCapability(void*, int capability, char* answer)
{
    *answer = capability == DaxTimeSeries::OneChannelAtATime || capability == DaxTimeSeries::NoSerialisation;
    return 1;
}

int TxtTSGetValue(void* instance, long channel, int key, VDVariant* value)
{
    const Test& test = *Self(instance);
    switch (key) {
    case DaxTimeSeries::SampleRate:
        value->SetDouble(test.rate);
        break;
    case DaxTimeSeries::BaseTime:
        value->SetDouble(0.0);
        break;
    case DaxTimeSeries::NumPoints:
        value->SetHuge(static_cast<std::int64_t>(test.columns[0].size()));
        break;
    case DaxTimeSeries::XTitle:
        value->SetString("Time");
        break;
    case DaxTimeSeries::XUnits:
        value->SetString("s");
        break;
    case DaxTimeSeries::YTitle:
        value->SetString(test.titles[static_cast<int>(channel)]);
        break;
    case DaxTimeSeries::YUnits:
        value->SetString(test.units[static_cast<int>(channel)]);
        break;
    case DaxTimeSeries::ActualChanNumber:
        value->SetLong(channel + 1);
        break;
    default:
        break;  // a key without an answer leaves the variant as it is
    }
    return 1;
}

int TxtTSPutValue(void*, long, int, VDVariant*)
{
    return 1;
}

int TxtTSGetData(void* instance, long channel, std::int64_t first, std::int64_t count, float* values)
{
    return Self(instance)->Get(channel, first, count, values);
}

int TxtTSGetDataDoublePrecision(void* instance, long channel, std::int64_t first, std::int64_t count, double* values)
{
    return Self(instance)->Get(channel, first, count, values);
}

int TxtTSPutData(void*, long, std::int64_t, std::int64_t, const float*)
{
    return Fail("Columns of text can only be read.");
}

int TxtTSPutDataDoublePrecision(void*, long, std::int64_t, std::int64_t, const double*)
{
    return Fail("Columns of text can only be read.");
}

int TxtTSGetDataDigital32(void*, long, std::int64_t, std::int64_t, std::uint32_t*)
{
    return Fail("Columns of text hold no digital values.");
}

int TxtTSPutDataDigital32(void*, long, std::int64_t, std::int64_t, const std::uint32_t*)
{
    return Fail("Columns of text can only be read.");
}

int TxtTSGetDataDigital64(void*, long, std::int64_t, std::int64_t, std::uint64_t*)
{
    return Fail("Columns of text hold no digital values.");
}

int TxtTSPutDataDigital64(void*, long, std::int64_t, std::int64_t, const std::uint64_t*)
{
    return Fail("Columns of text can only be read.");
}

int TxtTSLoadMetaData(void*, LQChannelMapper**)
{
    return Fail("Columns of text hold no metadata.");
}

int TxtTSAddLegacyMetaData(void*, LQChannelMapper*)
{
    return 1;
}
