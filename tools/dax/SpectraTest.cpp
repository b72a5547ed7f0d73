#include "SpectraTest.h"

#include "NumberText.h"
#include "Printable.h"

#include <algorithm>

namespace {

constexpr std::int64_t VVBlockMemory = std::int64_t{16} << 20;
constexpr std::int64_t VVMaxBlockLines = 65536;
/// Lines of the first spectra that are compared after a copy, and spectra.
constexpr std::int64_t VVSampleLines = 1024;
constexpr std::int64_t VVSampleSpectra = 4;

/// A text that the format may not store.
template <class Call>
std::string VFReadText(Call call, VDCFAcc* acc, int channel)
{
    VDString text;
    if (call(acc, channel, &text) != 0)
        return text.Str();
    VFErrorClear();
    return {};
}

std::string VFTypeName(int type)
{
    switch (type) {
    case DaxSpectrumType::AutoSpectrum:
        return "auto spectrum";
    case DaxSpectrumType::CrossSpectrum:
        return "cross spectrum";
    case DaxSpectrumType::FrequencyResponse:
        return "frequency response";
    case DaxSpectrumType::Transmissibility:
        return "transmissibility";
    case DaxSpectrumType::Coherence:
        return "coherence";
    case DaxSpectrumType::PowerSpectralDensity:
        return "power spectral density";
    case DaxSpectrumType::EnergySpectralDensity:
        return "energy spectral density";
    case DaxSpectrumType::Spectrum:
        return "spectrum";
    default:
        return "general";
    }
}

VDJson VFAxisJson(const VDSpectraAxis& axis)
{
    double ends[2] = {};
    if (!axis.IsKnown())
        return nullptr;
    axis.Read(1, 1, &ends[0]);
    axis.Read(axis.GetCount(), 1, &ends[1]);
    return {{"first", ends[0]}, {"last", ends[1]}};
}

std::string VFAxisText(const VDSpectraAxis& axis)
{
    const VDJson ends = VFAxisJson(axis);
    const std::string count = std::to_string(axis.GetCount());
    return ends.is_null() ? count
                          : count + ", " + VFNumberText(ends["first"].get<double>()) + " to " +
                                VFNumberText(ends["last"].get<double>());
}

}  // namespace

VDSpectraAxis::VDSpectraAxis(VDCFAcc* acc, Get* get, std::int64_t count) : acc_(acc), get_(get), count_(count)
{
    double ends[2] = {};
    std::int64_t read = 0;
    known_ = count > 0 && get_(acc_, 1, 1, DaxSpectrumKind::Double, &read, &ends[0]) != 0 && read == 1 &&
             get_(acc_, count, 1, DaxSpectrumKind::Double, &read, &ends[1]) != 0 && read == 1 &&
             (count == 1 ? ends[0] != 0 : ends[0] != ends[1]);
    VFErrorClear();
}

void VDSpectraAxis::Read(std::int64_t first, std::int64_t count, double* values) const
{
    std::int64_t read = 0;
    if (known_)
        VFCheck(get_(acc_, first, count, DaxSpectrumKind::Double, &read, values));
    else
        for (; read < count; ++read)
            values[read] = static_cast<double>(first + read);
    if (read != count)
        VFFail(DaxToolError::Incomplete, "The file ends before the axis values that it states", "VDSpectraAxis::Read");
}

bool VDSpectraAxis::Find(double from, double to, std::int64_t* first, std::int64_t* count) const
{
    std::vector<double> values(static_cast<std::size_t>(std::min(count_, VVMaxBlockLines)));
    std::int64_t last = 0;
    *first = 0;
    for (std::int64_t place = 1; place <= count_; place += VVMaxBlockLines) {
        const std::int64_t some = std::min(VVMaxBlockLines, count_ - place + 1);
        Read(place, some, values.data());
        for (std::int64_t index = 0; index < some; ++index)
            if (const double value = values[static_cast<std::size_t>(index)]; value >= from && value <= to) {
                *first = *first == 0 ? place + index : *first;
                last = place + index;
            }
    }
    *count = last - *first + 1;
    return *first > 0;
}

VDSpectrumBlock::VDSpectrumBlock(VDCFAcc* acc, const VDChannel& channel, bool isComplex)
    : acc_(acc),
      channel_(channel.index),
      isDouble_(DaxDataType::FromId(channel.type) == DaxDataType::Double),
      parts_(isComplex ? 2 : 1)
{
    kind_ = isComplex ? (isDouble_ ? DaxSpectrumKind::ComplexDouble : DaxSpectrumKind::ComplexFloat)
                      : (isDouble_ ? DaxSpectrumKind::Double : DaxSpectrumKind::Float);
}

void VDSpectrumBlock::Read(std::int64_t spectrum, std::int64_t firstLine, std::int64_t count)
{
    const auto size = static_cast<std::size_t>(count * parts_);
    void* buffer = nullptr;
    if (isDouble_) {
        doubles_.resize(size);
        buffer = doubles_.data();
    } else {
        floats_.resize(size);
        buffer = floats_.data();
    }
    VFCheck(CFAccGetData(acc_, channel_, spectrum, firstLine, count, kind_, &count_, buffer));
    if (count_ != count)
        VFFail(DaxToolError::Incomplete, "The file ends before the lines that it states", "VDSpectrumBlock::Read");
}

int VDSpectrumBlock::Write(VDCFAcc* acc, int channel, std::int64_t spectrum, std::int64_t firstLine) const
{
    const void* const buffer =
        isDouble_ ? static_cast<const void*>(doubles_.data()) : static_cast<const void*>(floats_.data());
    return CFAccPutData(acc, channel, spectrum, firstLine, count_, kind_, buffer);
}

char* VDSpectrumBlock::PutText(char* at, std::int64_t index, int part, bool json) const
{
    const auto place = static_cast<std::size_t>(index * parts_ + part);
    if (isDouble_)
        return json ? VFPutJsonNumber(at, doubles_[place]) : VFPutNumber(at, doubles_[place]);
    return json ? VFPutJsonNumber(at, floats_[place]) : VFPutNumber(at, floats_[place]);
}

VDSpectraTest::VDSpectraTest(VDFileId* id) : VDDataTest(id)
{
    Open(access_);
    channels_ = ListChannels(id);
    char isComplex = 0;
    VFCheck(CFAccGetType(Get(), &type_));
    VFCheck(CFAccGetSubType(Get(), &subType_));
    VFCheck(CFAccGetNumSpectra(Get(), &spectra_));
    VFCheck(CFAccGetNumLines(Get(), &lines_));
    VFCheck(CFAccGetComplex(Get(), &isComplex));
    complex_ = isComplex != 0;
    for (VDChannel& channel : channels_) {
        channel.title = VFReadText(CFAccGetChanTitle, Get(), channel.index);
        channel.units = VFReadText(CFAccGetChanUnits, Get(), channel.index);
        texts_.push_back({VFReadText(CFAccGetXTitle, Get(), channel.index), VFReadText(CFAccGetXUnits, Get(), channel.index),
                          VFReadText(CFAccGetYTitle, Get(), channel.index), VFReadText(CFAccGetYUnits, Get(), channel.index),
                          VFReadText(CFAccGetZTitle, Get(), channel.index),
                          VFReadText(CFAccGetZUnits, Get(), channel.index)});
    }
    VFErrorClear();
}

std::int64_t VDSpectraTest::GetBlockLines(std::size_t channels) const
{
    long wanted = 0;
    VFCheck(CFAccGetBufferSize(Get(), &wanted));
    const auto room = VVBlockMemory / static_cast<std::int64_t>(std::max<std::size_t>(channels, 1) * 2 * sizeof(double));
    return std::clamp<std::int64_t>(wanted, 1, std::clamp<std::int64_t>(room, 1, VVMaxBlockLines));
}

void VDSpectraTest::DescribeTest(VDJson& document) const
{
    document["spectrumType"] = type_;
    document["spectrumTypeName"] = VFTypeName(type_);
    document["spectrumSubType"] = subType_;
    document["complex"] = complex_;
    document["spectra"] = spectra_;
    document["lines"] = lines_;
    document["spectrumAxis"] = VFAxisJson(Spectra());
    document["lineAxis"] = VFAxisJson(Lines());
}

void VDSpectraTest::DescribeTest(VDTextTable& table) const
{
    table.Add({"Function", VFTypeName(type_) + (complex_ ? ", complex" : ", real")});
    table.Add({"Spectra", VFAxisText(Spectra())});
    table.Add({"Lines", VFAxisText(Lines())});
}

VDJson VDSpectraTest::DescribeChannel(const VDChannel& channel) const
{
    VDJson json = VDDataTest::DescribeChannel(channel);
    const VDSpectraTexts& texts = GetTexts(channel);
    json["xTitle"] = texts.xTitle;
    json["xUnits"] = texts.xUnits;
    json["yTitle"] = texts.yTitle;
    json["yUnits"] = texts.yUnits;
    json["zTitle"] = texts.zTitle;
    json["zUnits"] = texts.zUnits;
    return json;
}

VDJson VDSpectraTest::Sample(const VDChannel& channel) const
{
    VDJson sample = VDJson::array();
    VDSpectrumBlock block(Get(), channel, complex_);
    const std::int64_t count = std::min(lines_, VVSampleLines);
    for (std::int64_t spectrum = 1; spectrum <= std::min(spectra_, VVSampleSpectra) && count > 0; ++spectrum) {
        block.Read(spectrum, 1, count);
        VDJson& values = sample.emplace_back(VDJson::array());
        for (std::int64_t index = 0; index < count; ++index)
            for (int part = 0; part < block.GetParts(); ++part) {
                char number[NumberTextSize];
                values.push_back(std::string(number, block.PutText(number, index, part, false)));
            }
    }
    return sample;
}

void VDSpectraTest::PrintChannels(const VDJson& described, VDTextSink& out) const
{
    VDTextTable table("rrlllll");
    table.Add({"INDEX", "NUMBER", "TITLE", "UNITS", "TYPE", "X AXIS", "Z AXIS"});
    for (const VDJson& channel : described)
        table.Add({std::to_string(channel["index"].get<int>()), std::to_string(channel["number"].get<int>()),
                   channel["title"], channel["units"], channel["type"], VFWithUnits(channel["xTitle"], channel["xUnits"]),
                   VFWithUnits(channel["zTitle"], channel["zUnits"])});
    table.Print(out);
}

std::int64_t VDSpectraTest::CountValues(const VDChannel&, std::int64_t limit) const
{
    return std::min(spectra_, limit) * lines_;
}
