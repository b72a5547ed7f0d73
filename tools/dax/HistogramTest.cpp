#include "HistogramTest.h"

#include "NumberText.h"
#include "Printable.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr const char* VVOverflowNames[VTHistOverflowFlags] = {"xMin",        "xMax",        "yMin",        "yMax",
                                                              "xMinSeg",     "xMaxSeg",     "yMinSeg",     "yMaxSeg",
                                                              "xMaxYMinSeg", "xMaxYMaxSeg", "xMinYMinSeg", "xMinYMaxSeg"};

std::string VFFormatWord(int format)
{
    switch (format) {
    case VTHistFormatHuge:
        return "int64";
    case VTHistFormatLong:
        return "long";
    case VTHistFormatFloat:
        return "float";
    default:
        return "double";
    }
}

VDJson VFAxisJson(const VDHistAxis& axis)
{
    VDJson json = {{"title", axis.title.Str()},
                   {"units", axis.units.Str()},
                   {"min", axis.min},
                   {"max", axis.max},
                   {"bins", axis.binCount}};
    if (axis.borders.empty())
        json["binSize"] = axis.binSize;
    else
        json["borders"] = axis.borders;
    VDJson labels = VDJson::array();
    for (int index = 0; index < axis.labels.GetSize(); ++index)
        labels.push_back(axis.labels[index].Str());
    json["labels"] = labels;
    json["boundaryRule"] = axis.boundaryRule;
    json["toleranceFraction"] = axis.toleranceFraction;
    json["actualMin"] = axis.actualsSet ? VDJson(axis.actualMin) : VDJson();
    json["actualMax"] = axis.actualsSet ? VDJson(axis.actualMax) : VDJson();
    return json;
}

VDJson VFOverflowsJson(const VDHistDescription& description)
{
    VDJson json = VDJson::object();
    for (std::size_t flag = 0; flag < std::size(VVOverflowNames); ++flag)
        if (description.overflowCounts[flag] != 0)
            json[VVOverflowNames[flag]] = description.overflowCounts[flag];
    return json;
}

std::string VFAxisText(const VDJson& axis)
{
    return VFWithUnits(axis["title"], axis["units"]) + " " + std::to_string(axis["bins"].get<std::int64_t>()) + " bins, " +
           VFNumberText(axis["min"].get<double>()) + " to " + VFNumberText(axis["max"].get<double>()) +
           (axis.contains("borders") ? ", with borders" : "");
}

}  // namespace

double VFLowerBorder(const VDHistAxis& axis, std::int64_t bin)
{
    return axis.borders.empty() ? axis.min + static_cast<double>(bin) * axis.binSize
                                : axis.borders[static_cast<std::size_t>(bin)];
}

double VFUpperBorder(const VDHistAxis& axis, std::int64_t bin)
{
    return bin + 1 == axis.binCount ? axis.max : VFLowerBorder(axis, bin + 1);
}

VDHistogram::VDHistogram(VDHistHandle handle) : handle_(std::move(handle)), description_(VFHistGetDescription(handle_.Get()))
{
    VFCheck(description_ != nullptr);
    const std::int64_t count = CountBins();
    if (description_->format == VTHistFormatHuge || description_->format == VTHistFormatLong) {
        whole_.resize(static_cast<std::size_t>(count));
        VFCheck(VFHistGetXYBins_H(Get(), 0, whole_.data(), count));
    } else {
        real_.resize(static_cast<std::size_t>(count));
        VFCheck(VFHistGetXYBins_D(Get(), 0, real_.data(), count));
    }
}

char* VDHistogram::PutText(char* at, std::int64_t x, std::int64_t y, bool json) const
{
    const auto bin = static_cast<std::size_t>(y * description_->x.binCount + x);
    const auto put = [&](auto value) { return json ? VFPutJsonNumber(at, value) : VFPutNumber(at, value); };
    if (!whole_.empty())
        return put(whole_[bin]);
    // A float has fewer digits than the double that it became.
    return description_->format == VTHistFormatFloat ? put(static_cast<float>(real_[bin])) : put(real_[bin]);
}

VDHistogramTest::VDHistogramTest(VDFileId* id) : VDDataTest(id)
{
    Open(access_);
    channels_ = ListChannels(id);
    for (VDChannel& channel : channels_) {
        VDString title;
        VFCheck(HFAccGetChanTitle(Get(), channel.index, &title));
        channel.title = title.Str();
    }
    VFErrorClear();
}

VDHistogram VDHistogramTest::GetHistogram(const VDChannel& channel) const
{
    VDHistHandle handle;
    VFCheck(HFAccGetHistogram(Get(), channel.index, handle.Out()));
    return VDHistogram(std::move(handle));
}

VDJson VDHistogramTest::DescribeChannel(const VDChannel& channel) const
{
    VDJson json = VDDataTest::DescribeChannel(channel);
    const VDHistogram histogram = GetHistogram(channel);
    const VDHistDescription& description = histogram.GetDescription();
    json["type"] = VFFormatWord(description.format);
    json["histogramType"] = description.type;
    json["histogramSubType"] = description.subType;
    json["binType"] = description.binType;
    json["axes"] = description.is3D ? 2 : 1;
    json["x"] = VFAxisJson(description.x);
    if (description.is3D)
        json["y"] = VFAxisJson(description.y);
    json["z"] = {{"title", description.zTitle.Str()}, {"units", description.zUnits.Str()}};
    json["overflows"] = VFOverflowsJson(description);
    json["residuals"] = description.residuals.size();
    return json;
}

VDJson VDHistogramTest::Sample(const VDChannel& channel) const
{
    constexpr std::int64_t most = 1 << 20;
    VDJson values = VDJson::array();
    const VDHistogram histogram = GetHistogram(channel);
    const VDHistAxis& x = histogram.GetDescription().x;
    for (std::int64_t bin = 0; bin < std::min(histogram.CountBins(), most); ++bin) {
        char number[NumberTextSize];
        values.push_back(std::string(number, histogram.PutText(number, bin % x.binCount, bin / x.binCount, false)));
    }
    return values;
}

void VDHistogramTest::PrintChannels(const VDJson& described, VDTextSink& out) const
{
    VDTextTable table("rrlllll");
    table.Add({"INDEX", "NUMBER", "TITLE", "TYPE", "X", "Y", "VALUES"});
    for (const VDJson& channel : described)
        table.Add({std::to_string(channel["index"].get<int>()), std::to_string(channel["number"].get<int>()),
                   channel["title"], channel["type"], VFAxisText(channel["x"]),
                   channel.contains("y") ? VFAxisText(channel["y"]) : "-",
                   VFWithUnits(channel["z"]["title"], channel["z"]["units"])});
    table.Print(out);
}

std::int64_t VDHistogramTest::CountValues(const VDChannel& channel, std::int64_t) const
{
    return GetHistogram(channel).CountBins();
}
