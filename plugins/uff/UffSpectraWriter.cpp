#include "UffSpectra.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFError.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::int64_t VVBlockLines = 8192;

/// A number with so many digits.
double Round(double value, int digits)
{
    double rounded = value;
    UffReadField(UffWriteNumber(value, 0, digits - 1), &rounded);
    return rounded;
}

}  // namespace

std::unique_ptr<UffSpectraWriter> UffSpectraWriter::Create(const std::string& filename, bool isText,
                                                           const std::vector<int>& types)
{
    std::unique_ptr<UffSpectraWriter> writer(new UffSpectraWriter(filename, isText, static_cast<int>(types.size())));
    Z4Storage* const storage = writer->GetStorage();
    writer->spectra_ =
        storage == nullptr ? nullptr : writer->data_.AdoptSpectra(storage, "Values", nullptr, Z4Size::Record32K);
    if (writer->spectra_ == nullptr || !writer->spectra_->AdjustChannelCount(static_cast<int>(types.size())) ||
        !writer->spectra_->SetNumSpectra(1))
        return nullptr;
    for (std::size_t channel = 0; channel < types.size(); ++channel) {
        const bool isDouble = DaxDataType::FromId(types[channel]) == DaxDataType::Double;
        writer->spectra_->SetValueType(static_cast<int>(channel),
                                       isDouble ? LQSpectrumComplexDouble : LQSpectrumComplexFloat);
        UffHeader& header = writer->GetHeader(channel);
        header.function = DaxSpectrumType::Spectrum;
        header.axes[UffHeader::Abscissa] = {.type = UffHeader::Frequency, .title = "Frequency", .units = "Hz"};
    }
    return writer;
}

UffSpectraWriter::~UffSpectraWriter()
{
    if (spectra_ != nullptr)
        data_.Close(spectra_, false);
}

bool UffSpectraWriter::SetComplex(bool isComplex)
{
    for (int channel = 0; channel < GetNumChannels(); ++channel) {
        const bool isDouble = spectra_->GetChannelDataType(channel) == Z4TypeDouble;
        const int real = isDouble ? LQSpectrumDouble : LQSpectrumFloat;
        if (!spectra_->SetValueType(channel, isComplex ? real + 2 : real))
            return false;
    }
    MarkChanged();
    return true;
}

template <class Function>
bool UffSpectraWriter::ForEachBlock(Function&& function)
{
    const std::int64_t lines = spectra_->GetNumLines();
    std::vector<double> axis(static_cast<std::size_t>(std::min(lines, VVBlockLines)));
    for (std::int64_t first = 0; first < lines; first += VVBlockLines) {
        const std::int64_t some = std::min(lines - first, VVBlockLines);
        if (!spectra_->GetAxis(LQSpectraLines, first, some, axis.data()) || !function(first, some, axis.data()))
            return false;
    }
    return true;
}

/// Whether the axis is its first value and a number of steps, bit by bit, and whether floats hold it.
bool UffSpectraWriter::FindStep(double* first, double* step, bool* isEven, bool* isSingle)
{
    const std::int64_t lines = spectra_->GetNumLines();
    double second = 0;
    double last = 0;
    if (lines == 0)
        return true;
    if (!spectra_->GetAxis(LQSpectraLines, 0, 1, first) || !spectra_->GetAxis(LQSpectraLines, lines - 1, 1, &last) ||
        !spectra_->GetAxis(LQSpectraLines, std::min<std::int64_t>(lines, 2) - 1, 1, &second))
        return false;
    // What the step was meant to be has few digits as a rule, which differences of its multiples lose.
    const double mean = lines > 1 ? (last - *first) / static_cast<double>(lines - 1) : 0.0;
    const std::array steps = {second - *first, mean, Round(mean, 6), Round(mean, 9), Round(mean, 12)};
    std::array<bool, steps.size()> fits;
    fits.fill(true);
    const bool good = ForEachBlock([&](std::int64_t at, std::int64_t count, const double* axis) {
        for (std::int64_t i = 0; i < count; ++i) {
            for (std::size_t tried = 0; tried < steps.size(); ++tried)
                fits[tried] = fits[tried] && axis[i] == *first + static_cast<double>(at + i) * steps[tried];
            *isSingle = *isSingle && static_cast<double>(static_cast<float>(axis[i])) == axis[i];
        }
        return true;
    });
    const auto found = std::find(fits.begin(), fits.end(), true);
    *isEven = found != fits.end();
    *step = *isEven ? steps[static_cast<std::size_t>(found - fits.begin())] : 0;
    return good;
}

bool UffSpectraWriter::WriteDatasets()
{
    double first = 0;
    double step = 0;
    bool isEven = true;
    bool isSingle = true;
    if (!FindStep(&first, &step, &isEven, &isSingle))
        return false;
    for (int channel = 0; channel < GetNumChannels(); ++channel) {
        UffHeader& header = GetHeader(static_cast<std::size_t>(channel));
        header.first = isEven ? first : 0;
        header.step = isEven ? step : 0;
        if (!WriteDataset(channel, isEven, isSingle))
            return false;
    }
    return true;
}

bool UffSpectraWriter::WriteDataset(int channel, bool isEven, bool isSingleAxis)
{
    UffHeader header = std::as_const(*this).GetHeader(static_cast<std::size_t>(channel));
    const bool isComplex = spectra_->GetValueType(channel) >= LQSpectrumComplexFloat;
    const bool isDouble = isText_ || spectra_->GetChannelDataType(channel) == Z4TypeDouble || (!isEven && !isSingleAxis);
    header.ordinateType = isComplex ? (isDouble ? UffHeader::ComplexDouble : UffHeader::ComplexSingle)
                                    : (isDouble ? UffHeader::RealDouble : UffHeader::RealSingle);
    header.isSingle = isText_ && isEven && spectra_->GetChannelDataType(channel) != Z4TypeDouble;
    header.isEven = isEven;
    header.count = spectra_->GetNumLines();
    if (!BeginDataset(header))
        return false;
    const int parts = isComplex ? 2 : 1;
    std::vector<double> values;
    std::vector<double> numbers;
    const bool written = ForEachBlock([&](std::int64_t first, std::int64_t count, const double* axis) {
        values.resize(static_cast<std::size_t>(count * parts));
        if (!spectra_->GetData(0, first, count, isComplex ? LQSpectrumComplexDouble : LQSpectrumDouble, values.data(),
                               channel))
            return false;
        numbers.clear();
        for (std::int64_t i = 0; i < count; ++i) {
            if (!isEven)
                numbers.push_back(axis[i]);
            numbers.insert(numbers.end(), values.begin() + i * parts, values.begin() + (i + 1) * parts);
        }
        for (std::int64_t i = 0; isText_ && !isEven && i < count; ++i) {
            double read = 0;
            if (!UffReadField(UffWriteNumber(axis[i], 13, 5), &read) || read != axis[i])
                return VFErrorSet(VDBaseError::FileWrite,
                                  "Text has six digits for frequencies at no equal distance; the binary form (58b) has all",
                                  "UffSpectraWriter", 0) != 0;
        }
        return WriteNumbers(header, numbers.data(), static_cast<std::int64_t>(numbers.size()));
    });
    return written && EndDataset();
}
