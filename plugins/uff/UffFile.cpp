#include "UffFile.h"

#include <cmath>

namespace {

enum class Kind { Times, Spectra, Other };

constexpr int TimeResponse = 1;

/// What a function's values lie over. Time responses and the functions of frequency are what their type says; all others go
/// by their abscissa.
Kind GetKind(const UffHeader& header)
{
    switch (header.function) {
    case TimeResponse:
        return Kind::Times;
    case 2:   // auto spectrum
    case 3:   // cross spectrum
    case 4:   // frequency response
    case 5:   // transmissibility
    case 6:   // coherence
    case 9:   // power spectral density
    case 10:  // energy spectral density
    case 12:  // spectrum
    case 18:  // mode indicator
    case 21:  // partial coherence
    case 24:  // shock response spectrum
    case 26:  // multiple coherence
    case 27:  // order function
        return Kind::Spectra;
    default:
        break;
    }
    switch (header.axes[UffHeader::Abscissa].type) {
    case UffHeader::Time:
        return Kind::Times;
    case UffHeader::Frequency:
    case UffHeader::Rpm:
    case UffHeader::Order:
        return Kind::Spectra;
    default:
        return Kind::Other;
    }
}

bool HasStep(const UffHeader& header)
{
    return header.isEven && header.step > 0 && std::isfinite(1 / header.step) && std::isfinite(header.first);
}

/// What datasets of one test have in common.
std::string GetKey(const UffDataset& dataset, Kind kind)
{
    const UffHeader& header = dataset.header;
    const UffAxis& axis = header.axes[UffHeader::Abscissa];
    std::string key = kind == Kind::Times ? "times" : "spectra";
    const auto add = [&key](const std::string& text) { key += '\n' + text; };
    add(axis.units);
    if (kind == Kind::Times) {
        add(HasStep(header) ? "" : "no step");
        return key;
    }
    for (const long long number : {static_cast<long long>(header.function), static_cast<long long>(axis.type),
                                   static_cast<long long>(header.IsComplex()), static_cast<long long>(dataset.points)})
        add(std::to_string(number));
    // Whether two lists of frequencies are the same would take reading them.
    add(header.isEven ? UffWriteNumber(header.first, 0, 17) + UffWriteNumber(header.step, 0, 17)
                      : "uneven " + std::to_string(dataset.number));
    return key;
}

std::string GetTestTitle(const UffDataset& dataset, Kind kind)
{
    if (kind == Kind::Times)
        return HasStep(dataset.header) ? "Time series" : "Time series over uneven times";
    return UffFunctionName(dataset.header.function) + ", " + std::to_string(dataset.points) + " lines";
}

}  // namespace

std::string UffFunctionName(int function)
{
    switch (function) {
    case 1: return "Time response";
    case 2: return "Auto spectrum";
    case 3: return "Cross spectrum";
    case 4: return "Frequency response";
    case 5: return "Transmissibility";
    case 6: return "Coherence";
    case 7: return "Auto correlation";
    case 8: return "Cross correlation";
    case 9: return "Power spectral density";
    case 10: return "Energy spectral density";
    case 12: return "Spectrum";
    case 18: return "Mode indicator function";
    case 21: return "Partial coherence";
    case 24: return "Shock response spectrum";
    case 26: return "Multiple coherence";
    case 27: return "Order function";
    default: return "Function of type " + std::to_string(function);
    }
}

std::unique_ptr<UffFile> UffFile::Open(const char* filename, const char* routine)
{
    std::unique_ptr<UffFile> file(new UffFile(filename));
    if (!file->io_.Open(VTOpenRead)) {
        PluginReport(UffError::Open, routine, filename, {}, 1);
        return nullptr;
    }
    if (!file->index_.Read(file->io_)) {
        PluginReport(UffError::Read, routine, filename, {}, 1);
        return nullptr;
    }
    file->MakeTests();
    return file;
}

void UffFile::MakeTests()
{
    datasets_ = index_.TakeDatasets();
    std::map<std::string, std::size_t> tests;
    for (std::size_t i = 0; i < datasets_.size(); ++i) {
        const UffDataset& dataset = datasets_[i];
        const Kind kind = GetKind(dataset.header);
        if (kind == Kind::Other) {
            ++notOffered_;
            continue;
        }
        const auto [found, isNew] = tests.try_emplace(GetKey(dataset, kind), tests_.size());
        if (isNew)
            tests_.push_back({.isSpectra = kind == Kind::Spectra,
                              .hasNoStep = kind == Kind::Times && !HasStep(dataset.header),
                              .isText = dataset.isText,
                              .title = GetTestTitle(dataset, kind),
                              .channels = {}});
        UffTest& test = tests_[found->second];
        const auto add = [&](UffValues::Part part) { test.channels.push_back({i, part}); };
        if (test.isSpectra) {
            add(UffValues::Part::Complex);
            continue;
        }
        if (!dataset.header.isEven)
            add(UffValues::Part::Abscissa);
        add(UffValues::Part::Real);
        if (dataset.header.IsComplex())
            add(UffValues::Part::Imaginary);
    }
}

const UffTest* UffFile::FindTest(bool isSpectra, int run) const
{
    if (run > 0 && tests_.size() > 1)
        return static_cast<std::size_t>(run) <= tests_.size() &&
                       tests_[static_cast<std::size_t>(run) - 1].isSpectra == isSpectra
                   ? &tests_[static_cast<std::size_t>(run) - 1]
                   : nullptr;
    for (const UffTest& test : tests_)
        if (test.isSpectra == isSpectra)
            return &test;
    return nullptr;
}

std::string UffFile::GetTitle(const UffChannel& channel) const
{
    const UffHeader& header = GetDataset(channel).header;
    std::string title = UffText(header.ids[0]);
    if (title.empty())
        title = UffText(header.ids[1]);
    if (title.empty()) {
        title = UffText(header.response.name);
        title += (title.empty() ? "Node " : " ") + std::to_string(header.response.node);
    }
    if (channel.part == UffValues::Part::Abscissa)
        title +=
            " (" +
            (UffText(header.axes[UffHeader::Abscissa].title).empty() ? "abscissa" : header.axes[UffHeader::Abscissa].title) +
            ")";
    else if (channel.part != UffValues::Part::Complex && header.IsComplex())
        title += channel.part == UffValues::Part::Real ? " (real part)" : " (imaginary part)";
    return title;
}

std::string UffFile::GetUnits(const UffChannel& channel) const
{
    const bool isAbscissa = channel.part == UffValues::Part::Abscissa;
    return UffText(GetDataset(channel).header.axes[isAbscissa ? UffHeader::Abscissa : UffHeader::Ordinate].units);
}

std::string UffFile::GetPassedOver() const
{
    std::string text = index_.GetPassedOver();
    if (notOffered_ > 0)
        text += (text.empty() ? "" : ", ") + std::string("functions that are neither of time nor of frequency (") +
                std::to_string(notOffered_) + ")";
    return text;
}
