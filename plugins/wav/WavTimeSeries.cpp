#include "WavTimeSeries.h"

#include "WavReport.h"

#include "vdstore/LQChannelMapper.h"

#include <cmath>

namespace {

constexpr long VVBlockPoints = 16384;
constexpr double VVMaxRate = 2147483647.0;

constexpr const char* VVEncoding = "Encoding";
/// The set of the test's metadata that holds what a format keeps under names of its own, and the name of the mapper.
constexpr const char* VVExtraDetails = "ExtraDetails";
constexpr const char* VVMapper = "MetaDataMapper";

bool IsName(const VDString& name, const char* known)
{
    return name.CompareNoCase(known) == 0;
}

/// Whether a channel's values may need more than a float.
bool IsWideType(int type)
{
    for (const int wide :
         {DaxDataType::Double, DaxDataType::Long, DaxDataType::Huge, DaxDataType::Digital32, DaxDataType::Digital64})
        if ((type & 0xffff) == (wide & 0xffff))
            return true;
    return false;
}

}  // namespace

WavTimeSeries::~WavTimeSeries()
{
    Close();
}

bool WavTimeSeries::Fail(int code, const char* routine, const std::string& detail) const
{
    return WavReport(code, routine, filename_, detail) != 0;
}

bool WavTimeSeries::SetId(VDFileId* id)
{
    int fileId = 0;
    int subId = 0;
    VDString filename;
    if (!FIDGetFileId(id, &fileId, &subId) || !FIDGetChanFilename(id, 0, &filename))
        return false;
    id_ = id;
    wishedEncoding_ = nullptr;
    texts_ = {};
    filename_ = filename.Str();
    type_ = WavFormat::Find(fileId, subId);
    return type_ != nullptr || Fail(WavError::InvalidFileId, "WavTS::SetId");
}

bool WavTimeSeries::Open(int mode)
{
    constexpr const char* routine = "WavTS::Open";
    if (type_ == nullptr)
        return Fail(WavError::InvalidFileId, routine);
    int channels = 0;
    if (!FIDGetNumChans(id_, &channels))
        return false;
    if (channels < 1)
        return Fail(WavError::NoChannels, routine);
    if (mode == 1)
        reader_ = WavReader::Open(filename_.c_str(), routine);
    else if (mode == 2)
        writer_ = Update(routine);
    else
        writer_ = WavWriter::Create(filename_.c_str(), *type_, ChooseEncoding(channels), texts_, channels, routine);
    if (!reader_ && !writer_)
        return false;
    WavFrames& frames = reader_ ? static_cast<WavFrames&>(*reader_) : *writer_;
    floats_.emplace(frames);
    doubles_.emplace(frames);
    announced_ = 0;
    created_ = mode > 2;
    unfit_ = false;
    fileChannels_.resize(static_cast<std::size_t>(channels));
    for (int index = 0; index < channels; ++index)
        fileChannels_[static_cast<std::size_t>(index)] = index;
    if (mode > 2 || MapChannels(routine))
        return true;
    Close();
    return false;
}

std::unique_ptr<WavWriter> WavTimeSeries::Update(const char* routine)
{
    const std::unique_ptr<WavReader> present = WavReader::Open(filename_.c_str(), routine);
    if (!present)
        return nullptr;
    texts_ = present->GetTexts();
    return WavWriter::Update(filename_.c_str(), routine);
}

/// The encoding that was asked for, or one that holds whatever the channels' types may hold.
const WavEncoding& WavTimeSeries::ChooseEncoding(int channels) const
{
    if (wishedEncoding_ != nullptr)
        return *wishedEncoding_;
    int type = 0;
    for (int index = 0; index < channels; ++index)
        if (FIDGetChanType(id_, index, &type) && IsWideType(type))
            return WavEncoding::ForDoubles();
    return WavEncoding::ForFloats();
}

/// An id of a file that exists may name some of its channels only, in any order.
bool WavTimeSeries::MapChannels(const char* routine)
{
    const int present = reader_ ? reader_->GetNumChannels() : writer_->GetNumChannels();
    for (int index = 0; index < static_cast<int>(fileChannels_.size()); ++index) {
        int number = -1;
        if (!FIDGetFileChanNumber(id_, index, &number) || (number < 1 && !FIDGetChanNumber(id_, index, &number)))
            return false;
        if (number < 1 || number > present)
            return Fail(WavError::ChannelMismatch, routine,
                        "The file holds channels 1 to " + std::to_string(present) + ", not " + std::to_string(number) + ".");
        fileChannels_[static_cast<std::size_t>(index)] = number - 1;
    }
    return true;
}

bool WavTimeSeries::Flush(const char* routine)
{
    if (!writer_)
        return true;
    return FlushWindows(routine) && writer_->Extend(announced_, routine) && writer_->Flush(routine);
}

bool WavTimeSeries::FlushWindows(const char* routine)
{
    return floats_->Flush(routine) && doubles_->Flush(routine);
}

bool WavTimeSeries::Close()
{
    constexpr const char* routine = "WavTS::Close";
    const bool flushed = Flush(routine);
    const bool closed = !writer_ || writer_->Close(routine);
    floats_.reset();
    doubles_.reset();
    reader_.reset();
    writer_.reset();
    return flushed && closed;
}

bool WavTimeSeries::GetCapability(int capability) const
{
    switch (capability) {
    case DaxTimeSeries::OneChannelAtATime:
        return fileChannels_.size() == 1;
    case DaxTimeSeries::LargeFiles:
        return type_ != nullptr && type_->subId != WavFormat::Wav;
    case DaxTimeSeries::Writable:
    case DaxTimeSeries::CommonHeader:
    case DaxTimeSeries::Extendable:
    case DaxTimeSeries::NoSerialisation:
        return true;
    default:
        return false;
    }
}

std::int64_t WavTimeSeries::GetNumFrames() const
{
    return std::max(floats_->GetNumFrames(), doubles_->GetNumFrames());
}

std::int64_t WavTimeSeries::GetNumPoints() const
{
    return std::max(GetNumFrames(), announced_);
}

VDVariant WavTimeSeries::GetFormatNames() const
{
    VDVariant names = VDVariant::FromList({VDVariant(VVEncoding)});
    for (std::size_t kind = 0; kind < WavTexts::Count; ++kind)
        if (!GetTexts().Get(kind).empty() && type_->HasTexts())
            names.AppendItem(VDVariant(WavTexts::Kinds[kind].name));
    return names;
}

std::optional<VDVariant> WavTimeSeries::GetFormatValue(const VDString& name) const
{
    const auto text = [](const std::string& value) { return VDVariant(value.c_str()); };
    if (!reader_ && !writer_)
        return {};
    if (IsName(name, DaxFormatValue::Names))
        return GetFormatNames();
    if (IsName(name, DaxFormatValue::Unfit))
        return text(unfit_ ? VVEncoding : "");
    if (IsName(name, DaxFormatValue::Damage))
        return text((reader_ ? reader_->GetLayout() : writer_->GetLayout()).GetDamage());
    if (IsName(name, VVEncoding))
        return text(reader_ ? reader_->GetEncoding() : writer_->GetEncoding().GetName());
    const std::size_t kind = WavTexts::Find(name);
    return kind < WavTexts::Count ? std::optional(text(GetTexts().Get(kind))) : std::nullopt;
}

/// What is wished for a file that will be created.
bool WavTimeSeries::PutFormatValue(const VDString& name, const VDVariant& value)
{
    constexpr const char* routine = "WavTS::PutValue";
    const std::size_t kind = WavTexts::Find(name);
    VDString text;
    if (reader_ || writer_)
        return Fail(WavError::NotWritable, routine, "What a file says about itself is given before it is created.");
    if (!value.GetString(&text))
        return Fail(WavError::Write, routine, name.Str() + " is a text.");
    if (kind < WavTexts::Count && type_ != nullptr && type_->HasTexts()) {
        texts_.Set(kind, text.Str());
        return true;
    }
    if (!IsName(name, VVEncoding))
        return Fail(WavError::Write, routine, "A WAV file can't hold the value " + name.Str() + ".");
    wishedEncoding_ = WavEncoding::Find(text.c_str());
    return wishedEncoding_ != nullptr || Fail(WavError::Write, routine, "No file is written as " + text.Str() + ".");
}

bool WavTimeSeries::AddMetaData(LQChannelMapper& mapper) const
{
    for (std::size_t kind = 0; kind < WavTexts::Count; ++kind) {
        const std::string& text = GetTexts().Get(kind);
        if (text.empty())
            continue;
        Z4PropertySet* const set = mapper.AdoptMetaDataSet(VVExtraDetails, nullptr, LQChannelMapper::GLOBAL);
        if (set == nullptr)
            return Fail(WavError::MetaData, "WavTS::AddLegacyMetaData");
        set->AddString(WavTexts::Kinds[kind].name, text.c_str());
    }
    return true;
}

/// A file that is made takes its texts from the metadata that the library keeps beside it.
bool WavTimeSeries::TakeMetaData(const VDVariant& value)
{
    VDString name;
    void* pointer = nullptr;
    if (!created_ || !type_->HasTexts() || !value.GetNamedPointer(&name, &pointer) || !IsName(name, VVMapper))
        return true;
    const auto& mapper = *static_cast<const LQChannelMapper*>(pointer);
    const Z4PropertySet* const set = mapper.GetMetaDataSet(VVExtraDetails, LQChannelMapper::GLOBAL);
    for (std::size_t kind = 0; set != nullptr && kind < WavTexts::Count; ++kind) {
        VDString text;
        if (set->GetString(WavTexts::Kinds[kind].name, &text))
            texts_.Set(kind, text.Str());
    }
    writer_->SetTexts(texts_);
    return true;
}

VDVariant WavTimeSeries::GetFileValue(int key) const
{
    switch (key) {
    case DaxTimeSeries::MaxXTitle:
    case DaxTimeSeries::MaxXUnits:
    case DaxTimeSeries::MaxYTitle:
    case DaxTimeSeries::MaxYUnits:
        return VDVariant(0L);
    case DaxTimeSeries::XTitle:
        return VDVariant("Time");
    case DaxTimeSeries::XUnits:
        return VDVariant("s");
    case DaxTimeSeries::BufferSize:
        return VDVariant(floats_ ? std::min(VVBlockPoints, static_cast<long>(floats_->GetCapacity())) : VVBlockPoints);
    default:
        return {};
    }
}

VDVariant WavTimeSeries::GetChannelValue(long channel, int key) const
{
    const bool scaled = reader_ && reader_->IsScaled();
    switch (key) {
    case DaxTimeSeries::SampleRate:
        return VDVariant(static_cast<double>(reader_ ? reader_->GetSampleRate() : writer_->GetSampleRate()));
    case DaxTimeSeries::BaseTime:
        return VDVariant(0.0);
    case DaxTimeSeries::NumPoints:
        return VDVariant::FromHuge(GetNumPoints());
    case DaxTimeSeries::YTitle:
    case DaxTimeSeries::YUnits:
        return VDVariant("");
    case DaxTimeSeries::FullScale:
        return scaled ? VDVariant::FromList({VDVariant(-1.0F), VDVariant(1.0F)}) : VDVariant();
    case DaxTimeSeries::FullScaleValid:
        return VDVariant(scaled);
    case DaxTimeSeries::ActualChanNumber:
        return VDVariant(static_cast<long>(fileChannels_[static_cast<std::size_t>(channel)]) + 1);
    case DaxTimeSeries::ScheduleOffset:
        return VDVariant::FromList({VDVariant(false), VDVariant(0.0F)});
    default:
        return {};
    }
}

bool WavTimeSeries::GetValue(long channel, int key, VDVariant& value) const
{
    if (key == DaxTimeSeries::FormatSpecific) {
        VDString name;
        value[0].GetString(&name);
        if (const auto answer = GetFormatValue(name))
            value.AppendItem(*answer);
        return true;
    }
    if (channel == DaxChannel::WholeFile) {
        value = GetFileValue(key);
        return true;
    }
    if (!CheckRange(channel, 1, 0, "WavTS::GetValue"))
        return false;
    value = GetChannelValue(channel, key);
    return true;
}

bool WavTimeSeries::PutSampleRate(double rate)
{
    if (!(rate >= 1.0 && rate <= VVMaxRate) || rate != std::floor(rate)) {
        VDString text;
        text.Format("A WAV file holds sample rates of whole numbers from 1 to %.0f, not %.17g.", VVMaxRate, rate);
        return Fail(WavError::Write, "WavTS::PutValue", text.Str());
    }
    writer_->SetSampleRate(static_cast<std::uint32_t>(rate));
    return true;
}

bool WavTimeSeries::PutBaseTime(double time) const
{
    if (time == 0.0)
        return true;
    VDString text;
    text.Format("A WAV file begins at time 0 and can't hold a base time of %.17g.", time);
    return Fail(WavError::Write, "WavTS::PutValue", text.Str());
}

bool WavTimeSeries::PutNumPoints(std::int64_t points)
{
    if (points < GetNumFrames())
        return Fail(WavError::Write, "WavTS::PutValue",
                    "The channels have " + std::to_string(GetNumFrames()) + " points already, more than " +
                        std::to_string(points) + ".");
    if (!writer_->CheckNumFrames(points, "WavTS::PutValue"))
        return false;
    announced_ = points;
    return true;
}

bool WavTimeSeries::PutValue(long channel, int key, const VDVariant& value)
{
    double number = 0.0;
    std::int64_t points = 0;
    switch (key) {
    case DaxTimeSeries::FormatSpecific: {
        VDString name;
        value[0].GetString(&name);
        return PutFormatValue(name, value[1]);
    }
    case DaxTimeSeries::MetaDataMapper:
        return !writer_ || TakeMetaData(value);
    case DaxTimeSeries::SampleRate:
    case DaxTimeSeries::BaseTime:
    case DaxTimeSeries::NumPoints:
        break;
    default:
        // Titles, units, limits and time stamps find no room in the file. The longest text that it holds is given as 0,
        // and a get afterwards shows that nothing was kept.
        return true;
    }
    if (!writer_)
        return Fail(WavError::NotWritable, "WavTS::PutValue");
    if (!CheckRange(channel, 1, 0, "WavTS::PutValue"))
        return false;
    if (key == DaxTimeSeries::SampleRate && value.GetDouble(&number))
        return PutSampleRate(number);
    if (key == DaxTimeSeries::BaseTime && value.GetDouble(&number))
        return PutBaseTime(number);
    if (key == DaxTimeSeries::NumPoints && value.GetHuge(&points))
        return PutNumPoints(points);
    return Fail(WavError::Write, "WavTS::PutValue", "A WAV file can't hold this value.");
}

bool WavTimeSeries::CheckRange(long channel, std::int64_t first, std::int64_t count, const char* routine) const
{
    if (!floats_)
        return Fail(WavError::Open, routine, "The file isn't open.");
    const bool known = channel >= 0 && channel < static_cast<long>(fileChannels_.size());
    return (known && first >= 1 && count >= 0) || Fail(WavError::ChannelMismatch, routine);
}

// What was put lies in the window of the encoding's precision until it is flushed; the other one reads the file.

bool WavTimeSeries::GetData(long channel, std::int64_t first, std::int64_t count, float* values)
{
    constexpr const char* routine = "WavTS::GetData";
    return CheckRange(channel, first, count, routine) && doubles_->Flush(routine) &&
           floats_->Get(fileChannels_[static_cast<std::size_t>(channel)], first - 1, count, values, routine);
}

bool WavTimeSeries::GetData(long channel, std::int64_t first, std::int64_t count, double* values)
{
    constexpr const char* routine = "WavTS::GetDataDoublePrecision";
    return CheckRange(channel, first, count, routine) && floats_->Flush(routine) &&
           doubles_->Get(fileChannels_[static_cast<std::size_t>(channel)], first - 1, count, values, routine);
}

template <class T>
bool WavTimeSeries::PutData(long channel, std::int64_t first, std::int64_t count, const T* values)
{
    constexpr const char* routine = "WavTS::PutData";
    if (!CheckRange(channel, first, count, routine))
        return false;
    if (!writer_)
        return Fail(WavError::NotWritable, routine);
    if (!writer_->CheckNumFrames(first - 1 + count, routine))
        return false;
    const std::int64_t misfit = writer_->GetEncoding().FindUnfit(values, count);
    unfit_ = misfit < count;
    if (unfit_) {
        VDString text;
        text.Format("Point %lld is %.17g, which no %s sample is.", static_cast<long long>(first + misfit),
                    static_cast<double>(values[misfit]), writer_->GetEncoding().GetName().c_str());
        return Fail(WavError::Write, routine, text.Str());
    }
    const int fileChannel = fileChannels_[static_cast<std::size_t>(channel)];
    if (writer_->GetEncoding().IsWide()) {
        floats_->Forget();
        return doubles_->Put(fileChannel, first - 1, count, values, routine);
    }
    doubles_->Forget();
    return floats_->Put(fileChannel, first - 1, count, values, routine);
}

template bool WavTimeSeries::PutData(long, std::int64_t, std::int64_t, const float*);
template bool WavTimeSeries::PutData(long, std::int64_t, std::int64_t, const double*);
