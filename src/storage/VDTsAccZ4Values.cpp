#include "VDTsAccZ4.h"

#include "access/StatsList.h"
#include "daxlib/TimeSeriesPlugin.h"

// The values of the file and of its channels that travel as variants.

namespace {

constexpr long LongestText = 200;
constexpr long BlockPoints = 32768;
constexpr const char* ObjectName = "LQTimeSeries";

/// Answers with what the query gives; a query that fails leaves the answer as it is.
template <class T, class Query>
void VFAnswer(VDVariant* answer, Query query)
{
    T value{};
    if (query(value))
        *answer = VDVariant(value);
}

VDString VFText(const VDVariant& value)
{
    VDString text;
    value.GetString(&text);
    return text;
}

}  // namespace

void VDTsAccZ4::GetStatistics(int channel, VDVariant* value) const
{
    VDStatsList<float> stats;
    auto& [values, points] = stats;
    if (object_->GetAllStats(channel, &values[0], &values[1], &values[2], &values[3], &values[4], &points[0], &points[1],
                             &points[2]))
        stats.AppendTo(*value);
}

void VDTsAccZ4::GetStatisticsDouble(int channel, VDVariant* value) const
{
    VDStatsList<double> stats;
    auto& [values, points] = stats;
    if (timeSeries_ != nullptr &&
        timeSeries_->GetAllStatsDoublePrecision(channel, &values[0], &values[1], &values[2], &values[3], &values[4],
                                                &points[0], &points[1], &points[2]))
        stats.AppendTo(*value);
}

bool VDTsAccZ4::PutStatistics(int channel, const VDVariant& list)
{
    if (list.IsNull())
        return object_->SetStatsFlags(channel, 0);
    VDStatsList<float> stats;
    const auto& [values, points] = stats;
    return stats.TakeFrom(list) && object_->SetStats(channel, values[0], values[1], values[2], values[3], values[4],
                                                     points[0], points[1], points[2]);
}

bool VDTsAccZ4::PutStatisticsDouble(int channel, const VDVariant& list)
{
    if (timeSeries_ == nullptr)
        return true;
    if (list.IsNull())
        return timeSeries_->SetStatsFlags(channel, 0);
    VDStatsList<double> stats;
    const auto& [values, points] = stats;
    return stats.TakeFrom(list) && timeSeries_->SetStatsDoublePrecision(channel, values[0], values[1], values[2], values[3],
                                                                        values[4], points[0], points[1], points[2]);
}

/// The format has no limits of its own; the smallest and the largest value stand for them.
void VDTsAccZ4::GetFullScale(int channel, VDVariant* value) const
{
    float max = 0;
    float min = 0;
    if (object_->GetStat(channel, VTTsFloatStatMax, &max) && object_->GetStat(channel, VTTsFloatStatMin, &min)) {
        value->AppendItem(VDVariant(min));
        value->AppendItem(VDVariant(max));
    }
}

void VDTsAccZ4::PutHint(const VDVariant& list)
{
    const VDString name = VFText(list[0]);
    if (name.CompareNoCase("Z4NumberOfElements") == 0)
        list[1].GetHuge(&numberOfElements_);
    else if (name.CompareNoCase("Z4ElementsSize") == 0)
        list[1].GetLong(&elementsSize_);
    else if (name.CompareNoCase("Z4SmallestSingleRecord") == 0)
        list[1].GetBoolean(&smallestSingleRecord_);
}

void VDTsAccZ4::GetFormatSpecific(int channel, VDVariant* list) const
{
    const VDString name = VFText((*list)[0]);
    if (timeSeries_ != nullptr && name.CompareNoCase(ObjectName) == 0) {
        VDVariant object;
        object.SetNamedPointer(ObjectName, timeSeries_);
        list->AppendItem(object);
    } else if (name.CompareNoCase(DaxFormatValue::GapsAreZero) == 0) {
        list->AppendItem(VDVariant(true));
    } else if (bool ofNumbers = false; name.CompareNoCase(DaxFormatValue::StatisticsOfNumbers) == 0 &&
                                       object_->GetStatsOfNumbers(channel, &ofNumbers)) {
        list->AppendItem(VDVariant(ofNumbers));
    }
}

bool VDTsAccZ4::PutFormatSpecific(long accessChannel, const VDVariant& list)
{
    bool ofNumbers = false;
    if (object_ == nullptr || VFText(list[0]).CompareNoCase(DaxFormatValue::StatisticsOfNumbers) != 0)
        PutHint(list);
    else if (list[1].GetBoolean(&ofNumbers))
        return object_->SetStatsOfNumbers(GetChannel(accessChannel), ofNumbers);
    return true;
}

bool VDTsAccZ4::GetValue(long accessChannel, int key, VDVariant* value)
{
    using namespace DaxTimeSeries;
    if (object_ == nullptr)
        return key == BufferSize ? (*value = VDVariant(BlockPoints), true) : false;
    const int channel = GetChannel(accessChannel);
    switch (key) {
    case SampleRate:
        VFAnswer<double>(value, [&](double& rate) { return object_->GetSampleRate(channel, &rate); });
        break;
    case BaseTime:
        VFAnswer<double>(value, [&](double& time) { return object_->GetBaseTime(channel, &time); });
        break;
    case NumPoints:
        *value = VDVariant::FromHuge(object_->GetElementCount(channel));
        break;
    case MaxXTitle:
    case MaxXUnits:
    case MaxYTitle:
    case MaxYUnits:
        *value = VDVariant(LongestText);
        break;
    case XTitle:
        VFAnswer<VDString>(value, [&](VDString& text) { return object_->GetXTitle(text); });
        break;
    case XUnits:
        VFAnswer<VDString>(value, [&](VDString& text) { return object_->GetXUnits(text); });
        break;
    case YTitle:
        VFAnswer<VDString>(value, [&](VDString& text) { return object_->GetYTitle(channel, text); });
        break;
    case YUnits:
        VFAnswer<VDString>(value, [&](VDString& text) { return object_->GetYUnits(channel, text); });
        break;
    case Statistics:
        GetStatistics(channel, value);
        break;
    case StatisticsDouble:
        GetStatisticsDouble(channel, value);
        break;
    case FullScale:
        GetFullScale(channel, value);
        break;
    case FormatSpecific:
        GetFormatSpecific(channel, value);
        break;
    case BufferSize:
        *value = VDVariant(BlockPoints);
        break;
    case ChanTitle:
        VFAnswer<VDString>(value, [&](VDString& text) { return object_->GetChanTitle(channel, text); });
        break;
    case FullScaleValid:
        *value = VDVariant(false);
        break;
    default:
        break;
    }
    return true;
}

bool VDTsAccZ4::PutValue(long accessChannel, int key, VDVariant* value)
{
    using namespace DaxTimeSeries;
    if (key == FormatSpecific)
        return PutFormatSpecific(accessChannel, *value);
    // What comes with the instance itself concerns other formats.
    if (object_ == nullptr)
        return key == AccessObject || key == UseOffset;
    const int channel = GetChannel(accessChannel);
    double number = 0;
    std::int64_t points = 0;
    switch (key) {
    case SampleRate:
        return value->GetDouble(&number) && object_->SetSampleRate(channel, number);
    case BaseTime:
        return value->GetDouble(&number) && object_->SetBaseTime(channel, number);
    case NumPoints:
        // Typed channels grow by what is written to them.
        return (timeSeries_ != nullptr && timeSeries_->GetElementCount(channel) != 0) ||
               (value->GetHuge(&points) && object_->AdjustElementCount(points, channel));
    case XTitle:
        return object_->SetXTitle(VFText(*value));
    case XUnits:
        return object_->SetXUnits(VFText(*value));
    case YTitle:
        return object_->SetYTitle(channel, VFText(*value));
    case YUnits:
        return object_->SetYUnits(channel, VFText(*value));
    case Statistics:
        return PutStatistics(channel, *value);
    case StatisticsDouble:
        return PutStatisticsDouble(channel, *value);
    case ChanTitle:
        return object_->SetChanTitle(channel, VFText(*value));
    default:
        return true;
    }
}
