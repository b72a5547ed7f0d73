#include "UffTimeSeries.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr long VVLongestTitle = 80;
constexpr long VVLongestLabel = 20;
constexpr long VVBlockPoints = 16384;
constexpr std::int64_t VVWrittenPoints = 16384;
constexpr int VVTimeResponse = 1;

VDVariant Text(const std::string& text)
{
    return VDVariant(UffText(text).c_str());
}

}  // namespace

std::unique_ptr<UffTimeSeriesWriter> UffTimeSeriesWriter::Create(const std::string& filename, bool isText,
                                                                 const std::vector<int>& types)
{
    std::unique_ptr<UffTimeSeriesWriter> writer(new UffTimeSeriesWriter(filename, isText, static_cast<int>(types.size())));
    Z4Storage* const storage = writer->GetStorage();
    writer->series_ =
        storage == nullptr ? nullptr : writer->data_.AdoptTimeSeries(storage, "Values", nullptr, Z4Size::Record32K);
    if (writer->series_ == nullptr)
        return nullptr;
    const auto isDoubleType = [](int type) { return DaxDataType::FromId(type) == DaxDataType::Double; };
    const auto doubles = static_cast<int>(std::count_if(types.begin(), types.end(), isDoubleType));
    const int singles = static_cast<int>(types.size()) - doubles;
    if (!writer->series_->AdjustChannelCountSinglePrecision(singles) ||
        !writer->series_->AdjustChannelCountDoublePrecision(doubles))
        return nullptr;
    int nextSingle = 0;
    int nextDouble = singles;
    for (std::size_t channel = 0; channel < types.size(); ++channel) {
        const bool isDouble = isDoubleType(types[channel]);
        writer->places_.push_back(isDouble ? nextDouble++ : nextSingle++);
        UffHeader& header = writer->GetHeader(channel);
        header.function = VVTimeResponse;
        header.ordinateType = isDouble || isText ? UffHeader::RealDouble : UffHeader::RealSingle;
        header.isSingle = isText && !isDouble;
        header.step = header.rate = 1;
        header.axes[UffHeader::Abscissa] = {.type = UffHeader::Time, .title = "Time", .units = "s"};
    }
    return writer;
}

UffTimeSeriesWriter::~UffTimeSeriesWriter()
{
    if (series_ != nullptr)
        data_.Close(series_, false);
}

bool UffTimeSeriesWriter::WriteDatasets()
{
    for (int channel = 0; channel < GetNumChannels(); ++channel)
        if (!WriteDataset(channel))
            return false;
    return true;
}

bool UffTimeSeriesWriter::WriteDataset(int channel)
{
    UffHeader header = std::as_const(*this).GetHeader(static_cast<std::size_t>(channel));
    header.count = series_->GetElementCount(GetPlace(channel));
    if (!BeginDataset(header))
        return false;
    std::vector<double> numbers(VVWrittenPoints);
    for (std::int64_t done = 0; done < header.count; done += VVWrittenPoints) {
        std::int64_t got = 0;
        if (!series_->GetDataDoublePrecision(done, VVWrittenPoints, &got, numbers.data(), GetPlace(channel)) ||
            !WriteNumbers(header, numbers.data(), got))
            return false;
    }
    return EndDataset();
}

bool UffTimeSeries::Open(int mode)
{
    constexpr const char* routine = "UffTS::Open";
    if (type_ == nullptr)
        return Fail(UffError::InvalidFileId, routine);
    if (mode == 2)
        return Fail(UffError::NotWritable, routine, "A universal file is written anew or not at all.");
    return mode == 1 ? OpenRead() : OpenNew();
}

bool UffTimeSeries::OpenNew()
{
    int count = 0;
    if (!FIDGetNumChans(id_, &count))
        return false;
    std::vector<int> types(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index)
        FIDGetChanType(id_, index, &types[static_cast<std::size_t>(index)]);
    return StartWriting(UffTimeSeriesWriter::Create(filename_, type_->isText, types));
}

bool UffTimeSeries::GetCapability(int capability) const
{
    switch (capability) {
    case DaxTimeSeries::OneChannelAtATime:
    case DaxTimeSeries::Writable:
    case DaxTimeSeries::Extendable:
    case DaxTimeSeries::LargeFiles:
    case DaxTimeSeries::ChannelTitles:
    case DaxTimeSeries::NoSerialisation:
        return true;
    default:
        return false;
    }
}

const UffAxis& UffTimeSeries::GetValueAxis(long channel) const
{
    const bool isAbscissa = IsReading() && GetChannel(channel).part == UffValues::Part::Abscissa;
    return GetHeader(channel).axes[isAbscissa ? UffHeader::Abscissa : UffHeader::Ordinate];
}

std::int64_t UffTimeSeries::GetNumPoints(long channel) const
{
    return IsReading() ? GetDataset(channel).points : Writer().GetSeries().GetElementCount(Writer().GetPlace(channel));
}

VDVariant UffTimeSeries::GetFileValue(int key) const
{
    const bool isThere = GetNumChannels() > 0;
    const bool hasNoStep = IsReading() && test_->hasNoStep;
    switch (key) {
    case DaxTimeSeries::MaxXTitle:
    case DaxTimeSeries::MaxXUnits:
    case DaxTimeSeries::MaxYTitle:
    case DaxTimeSeries::MaxYUnits:
        return VDVariant(VVLongestLabel);
    case DaxTimeSeries::XTitle:
        return hasNoStep ? VDVariant("Point") : isThere ? Text(GetHeader(0).axes[UffHeader::Abscissa].title) : VDVariant("");
    case DaxTimeSeries::XUnits:
        return hasNoStep || !isThere ? VDVariant("") : Text(GetHeader(0).axes[UffHeader::Abscissa].units);
    case DaxTimeSeries::BufferSize:
        return VDVariant(VVBlockPoints);
    default:
        return {};
    }
}

VDVariant UffTimeSeries::GetChannelValue(long channel, int key) const
{
    const UffHeader& header = GetHeader(channel);
    const bool hasNoStep = IsReading() && test_->hasNoStep;
    int number = 0;
    switch (key) {
    case DaxTimeSeries::SampleRate:
        return VDVariant(hasNoStep ? 1.0 : header.GetRate());
    case DaxTimeSeries::BaseTime:
        return VDVariant(hasNoStep ? 0.0 : header.first);
    case DaxTimeSeries::NumPoints:
        return VDVariant::FromHuge(GetNumPoints(channel));
    case DaxTimeSeries::YTitle:
        return Text(GetValueAxis(channel).title);
    case DaxTimeSeries::YUnits:
        return Text(GetValueAxis(channel).units);
    case DaxTimeSeries::ChanTitle:
        return IsReading() ? VDVariant(file_->GetTitle(GetChannel(channel)).c_str()) : Text(header.ids[0]);
    case DaxTimeSeries::FullScaleValid:
        return VDVariant(false);
    case DaxTimeSeries::ActualChanNumber:
        return FIDGetFileChanNumber(id_, static_cast<int>(channel), &number) && number > 0
                   ? VDVariant(static_cast<long>(number))
                   : VDVariant(channel + 1);
    case DaxTimeSeries::ScheduleOffset:
        return VDVariant::FromList({VDVariant(false), VDVariant(0.0F)});
    default:
        return {};
    }
}

bool UffTimeSeries::GetValue(long channel, int key, VDVariant& value) const
{
    if (key == DaxTimeSeries::FormatSpecific)
        return GetFormatValue(value);
    if (channel == DaxChannel::WholeFile) {
        value = GetFileValue(key);
        return true;
    }
    if (!CheckChannel(channel))
        return false;
    value = GetChannelValue(channel, key);
    return true;
}

bool UffTimeSeries::PutChannelValue(long channel, int key, const VDVariant& value)
{
    constexpr const char* routine = "UffTS::PutValue";
    if (!CheckWriting() || !CheckChannel(channel))
        return false;
    UffHeader& header = GetOwnHeader(channel);
    double number = 0;
    std::int64_t points = 0;
    VDString text;
    switch (key) {
    case DaxTimeSeries::SampleRate:
        if (!value.GetDouble(&number) || !(number > 0) || !std::isfinite(1 / number))
            return Fail(UffError::NotWritable, routine, "This is no sample rate.");
        header.rate = number;
        header.step = 1 / number;
        return true;
    case DaxTimeSeries::BaseTime:
        return value.GetDouble(&header.first);
    case DaxTimeSeries::NumPoints:
        return value.GetHuge(&points) && Writer().GetSeries().AdjustElementCount(points, Writer().GetPlace(channel));
    case DaxTimeSeries::YTitle:
        value.GetString(&text);
        header.axes[UffHeader::Ordinate].title = UffFitText(text.Str(), VVLongestLabel);
        return true;
    case DaxTimeSeries::YUnits:
        value.GetString(&text);
        header.axes[UffHeader::Ordinate].units = UffFitText(text.Str(), VVLongestLabel);
        return true;
    case DaxTimeSeries::ChanTitle:
        value.GetString(&text);
        header.ids[0] = UffFitText(text.Str(), VVLongestTitle);
        return true;
    default:
        // Limits, statistics and time stamps find no room in the file.
        return true;
    }
}

bool UffTimeSeries::PutValue(long channel, int key, const VDVariant& value)
{
    VDString text;
    switch (key) {
    case DaxTimeSeries::AccessObject:
    case DaxTimeSeries::UseOffset:
        return true;
    case DaxTimeSeries::FormatSpecific:
        return PutFormatValue(value);
    case DaxTimeSeries::MetaDataMapper:
        return TakeMetaData(value);
    case DaxTimeSeries::XTitle:
    case DaxTimeSeries::XUnits:
        if (!CheckWriting())
            return false;
        value.GetString(&text);
        for (long each = 0; each < GetNumChannels(); ++each) {
            UffAxis& axis = GetOwnHeader(each).axes[UffHeader::Abscissa];
            (key == DaxTimeSeries::XTitle ? axis.title : axis.units) = UffFitText(text.Str(), VVLongestLabel);
        }
        return true;
    default:
        return PutChannelValue(channel, key, value);
    }
}

template <class T>
bool UffTimeSeries::GetData(long channel, std::int64_t first, std::int64_t count, T* values)
{
    if (!CheckChannel(channel))
        return false;
    if (IsReading())
        return ReadValues(channel, first - 1, count, GetChannel(channel).part, values);
    if constexpr (std::is_same_v<T, float>)
        return Writer().GetSeries().GetData(first - 1, count, nullptr, values, Writer().GetPlace(channel));
    else
        return Writer().GetSeries().GetDataDoublePrecision(first - 1, count, nullptr, values, Writer().GetPlace(channel));
}

template <class T>
bool UffTimeSeries::PutData(long channel, std::int64_t first, std::int64_t count, const T* values)
{
    if (!CheckWriting() || !CheckChannel(channel))
        return false;
    for (std::int64_t i = 0; Writer().IsText() && i < count; ++i)
        if (!UffWriter::FitsText(values[i])) {
            VDString text;
            text.Format("Text has no room for all digits of %.17g; the binary form (58b) has.",
                        static_cast<double>(values[i]));
            return Fail(UffError::NotWritable, "UffTS::PutData", text.Str());
        }
    writer_->MarkChanged();
    if constexpr (std::is_same_v<T, float>)
        return Writer().GetSeries().SetData(first - 1, count, values, Writer().GetPlace(channel));
    else
        return Writer().GetSeries().SetDataDoublePrecision(first - 1, count, values, Writer().GetPlace(channel));
}

template bool UffTimeSeries::GetData(long, std::int64_t, std::int64_t, float*);
template bool UffTimeSeries::GetData(long, std::int64_t, std::int64_t, double*);
template bool UffTimeSeries::PutData(long, std::int64_t, std::int64_t, const float*);
template bool UffTimeSeries::PutData(long, std::int64_t, std::int64_t, const double*);
