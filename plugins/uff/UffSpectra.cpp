#include "UffSpectra.h"

#include <algorithm>

using namespace DaxComplexFrequency;

namespace {

constexpr long VVLongestTitle = 80;
constexpr long VVLongestLabel = 20;
constexpr long VVBlockLines = 8192;

VDVariant Text(const std::string& text)
{
    return VDVariant(UffText(text).c_str());
}

/// Where a text of a channel stands in a header; null for its title, and for what is no text.
template <class Header>
auto* FindText(Header& header, int key)
{
    auto& axes = header.axes;
    switch (key) {
    case ChanUnits:
    case ZUnits:
        return &axes[UffHeader::Ordinate].units;
    case ZTitle:
        return &axes[UffHeader::Ordinate].title;
    case XTitle:
        return &axes[UffHeader::Abscissa].title;
    case XUnits:
        return &axes[UffHeader::Abscissa].units;
    case YTitle:
        return &axes[UffHeader::ZAxis].title;
    case YUnits:
        return &axes[UffHeader::ZAxis].units;
    case ChanTitle:
        return &header.ids[0];
    default:
        return decltype(&header.ids[0])(nullptr);
    }
}

/// Calls `function(T*)` with the buffer as what the kind says.
template <class Function>
bool WithKind(int kind, const void* values, Function&& function)
{
    return DaxSpectrumKind::IsDouble(kind) ? function(static_cast<const double*>(values))
                                           : function(static_cast<const float*>(values));
}

bool IsKind(int kind)
{
    return kind >= DaxSpectrumKind::Float && kind <= DaxSpectrumKind::ComplexDouble;
}

bool IsRealKind(int kind)
{
    return kind == DaxSpectrumKind::Float || kind == DaxSpectrumKind::Double;
}

}  // namespace

bool UffSpectra::FailKind() const
{
    return Fail(UffError::Read, "UffCF", "Complex values aren't given as real ones, nor real ones of an axis as complex.");
}

bool UffSpectra::Open(int mode)
{
    constexpr const char* routine = "UffCF::Open";
    int count = 0;
    if (type_ == nullptr)
        return Fail(UffError::InvalidFileId, routine);
    if (mode == 2)
        return Fail(UffError::NotWritable, routine, "A universal file is written anew or not at all.");
    if (mode == 1)
        return OpenRead();
    if (!FIDGetNumChans(id_, &count))
        return false;
    std::vector<int> types(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index)
        FIDGetChanType(id_, index, &types[static_cast<std::size_t>(index)]);
    return StartWriting(UffSpectraWriter::Create(filename_, type_->isText, types));
}

bool UffSpectra::GetCapability(int capability) const
{
    switch (capability) {
    case Writable:
    case LargeFiles:
    case ChannelTitles:
    case ChannelUnits:
    case XTitles:
    case XUnitsTexts:
    case YTitles:
    case YUnitsTexts:
    case ZTitles:
    case ZUnitsTexts:
    case NoSerialisation:
        return true;
    default:
        return false;
    }
}

VDVariant UffSpectra::GetFileValue(int key) const
{
    const bool isThere = GetNumChannels() > 0;
    switch (key) {
    case Type:
        return VDVariant(static_cast<long>(isThere ? GetHeader(0).function : 0));
    case SubType:
        return VDVariant(0L);
    case NumSpectra:
        return VDVariant::FromHuge(isThere ? 1 : 0);
    case NumLines:
        return VDVariant::FromHuge(!isThere ? 0 : IsReading() ? GetDataset(0).points : Writer().GetSpectra().GetNumLines());
    case Complex:
        return VDVariant(isThere && (IsReading() ? GetHeader(0).IsComplex() : Writer().GetSpectra().IsComplex()));
    case MaxTitle:
    case MaxUnits:
        return VDVariant(VVLongestLabel);
    case BufferSize:
        return VDVariant(VVBlockLines);
    default:
        return {};
    }
}

VDVariant UffSpectra::GetChannelValue(long channel, int key) const
{
    int number = 0;
    if (key == ActualChanNumber)
        return FIDGetFileChanNumber(id_, static_cast<int>(channel), &number) && number > 0
                   ? VDVariant(static_cast<long>(number))
                   : VDVariant(channel + 1);
    if (key == ChanTitle && IsReading())
        return VDVariant(file_->GetTitle(GetChannel(channel)).c_str());
    const std::string* const text = FindText(GetHeader(channel), key);
    return text == nullptr ? VDVariant() : Text(*text);
}

bool UffSpectra::GetValue(long channel, int key, VDVariant& value) const
{
    if (key == FormatSpecific)
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

bool UffSpectra::PutFileValue(int key, const VDVariant& value)
{
    constexpr const char* routine = "UffCF::PutValue";
    if (!CheckWriting())
        return false;
    long number = 0;
    std::int64_t count = 0;
    bool isComplex = false;
    switch (key) {
    case Type:
        value.GetLong(&number);
        for (long channel = 0; channel < GetNumChannels(); ++channel)
            GetOwnHeader(channel).function = static_cast<int>(number);
        return true;
    case NumSpectra:
        return (value.GetHuge(&count) && count <= 1) ||
               Fail(UffError::NotWritable, routine, "A dataset of a universal file is one spectrum.");
    case NumLines:
        writer_->MarkChanged();
        return value.GetHuge(&count) && Writer().GetSpectra().SetNumLines(count);
    case Complex:
        return value.GetBoolean(&isComplex) && Writer().SetComplex(isComplex);
    default:
        return true;
    }
}

bool UffSpectra::PutChannelText(long channel, int key, const VDVariant& value)
{
    if (!CheckWriting() || !CheckChannel(channel))
        return false;
    VDString text;
    std::string* const own = FindText(GetOwnHeader(channel), key);
    if (own != nullptr && value.GetString(&text))
        *own = UffFitText(text.Str(), static_cast<std::size_t>(key == ChanTitle ? VVLongestTitle : VVLongestLabel));
    return true;
}

bool UffSpectra::PutValue(long channel, int key, const VDVariant& value)
{
    switch (key) {
    case AccessObject:
        return true;
    case FormatSpecific:
        return PutFormatValue(value);
    case MetaDataMapper:
        return TakeMetaData(value);
    default:
        return channel == DaxChannel::WholeFile ? PutFileValue(key, value) : PutChannelText(channel, key, value);
    }
}

template <class T>
bool UffSpectra::ReadKind(long channel, std::int64_t first, std::int64_t count, int kind, void* values)
{
    return ReadValues(channel, first, count,
                      DaxSpectrumKind::IsComplex(kind) ? UffValues::Part::Complex : UffValues::Part::Real,
                      static_cast<T*>(values));
}

bool UffSpectra::GetData(long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind, void* values)
{
    if (!CheckChannel(channel))
        return false;
    if (!IsKind(kind))
        return FailKind();
    if (IsWriting())
        return Writer().GetSpectra().GetData(spectrum - 1, first - 1, count, kind, values, static_cast<int>(channel));
    if (GetHeader(channel).IsComplex() && !DaxSpectrumKind::IsComplex(kind))
        return FailKind();
    return DaxSpectrumKind::IsDouble(kind) ? ReadKind<double>(channel, first - 1, count, kind, values)
                                           : ReadKind<float>(channel, first - 1, count, kind, values);
}

template <class T>
bool UffSpectra::CheckText(std::int64_t count, const T* values) const
{
    for (std::int64_t i = 0; i < count; ++i)
        if (!UffWriter::FitsText(values[i])) {
            VDString text;
            text.Format("Text has no room for all digits of %.17g; the binary form (58b) has.",
                        static_cast<double>(values[i]));
            return Fail(UffError::NotWritable, "UffCF::PutData", text.Str());
        }
    return true;
}

bool UffSpectra::PutData(long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind,
                         const void* values)
{
    constexpr const char* routine = "UffCF::PutData";
    if (!CheckWriting() || !CheckChannel(channel))
        return false;
    if (spectrum != 1)
        return Fail(UffError::NotWritable, routine, "A dataset of a universal file is one spectrum.");
    if (!IsKind(kind))
        return FailKind();
    const std::int64_t numbers = count * (DaxSpectrumKind::IsComplex(kind) ? 2 : 1);
    if (Writer().IsText() && !WithKind(kind, values, [&](const auto* parts) { return CheckText(numbers, parts); }))
        return false;
    writer_->MarkChanged();
    return Writer().GetSpectra().SetData(0, first - 1, count, kind, values, static_cast<int>(channel));
}

bool UffSpectra::GetLines(std::int64_t first, std::int64_t count, int kind, void* values)
{
    if (!IsRealKind(kind))
        return FailKind();
    std::vector<double> axis(static_cast<std::size_t>(std::min<std::int64_t>(count, VVBlockLines)));
    for (std::int64_t done = 0; done < count; done += VVBlockLines) {
        const std::int64_t some = std::min<std::int64_t>(count - done, VVBlockLines);
        const std::int64_t at = first - 1 + done;
        const UffHeader& header = GetHeader(0);
        if (IsWriting()) {
            if (!Writer().GetSpectra().GetAxis(LQSpectraLines, at, some, axis.data()))
                return false;
        } else if (!header.isEven) {
            if (!ReadValues(0, at, some, UffValues::Part::Abscissa, axis.data()))
                return false;
        } else {
            for (std::int64_t i = 0; i < some; ++i)
                axis[static_cast<std::size_t>(i)] = header.first + static_cast<double>(at + i) * header.step;
        }
        if (kind == DaxSpectrumKind::Double)
            std::copy_n(axis.begin(), some, static_cast<double*>(values) + done);
        else
            std::transform(axis.begin(), axis.begin() + some, static_cast<float*>(values) + done,
                           [](double value) { return static_cast<float>(value); });
    }
    return true;
}

bool UffSpectra::PutLines(std::int64_t first, std::int64_t count, int kind, const void* values)
{
    if (!CheckWriting())
        return false;
    if (!IsRealKind(kind))
        return FailKind();
    writer_->MarkChanged();
    return WithKind(kind, values, [&](const auto* axis) {
        const std::vector<double> doubles(axis, axis + count);
        return Writer().GetSpectra().SetAxis(LQSpectraLines, first - 1, count, doubles.data());
    });
}

bool UffSpectra::GetPlace(int kind, void* values) const
{
    if (!IsRealKind(kind))
        return FailKind();
    const double place = GetHeader(0).z;
    if (kind == DaxSpectrumKind::Double)
        *static_cast<double*>(values) = place;
    else
        *static_cast<float*>(values) = static_cast<float>(place);
    return true;
}

bool UffSpectra::PutPlace(int kind, const void* values)
{
    if (!CheckWriting())
        return false;
    if (!IsRealKind(kind))
        return FailKind();
    return WithKind(kind, values, [&](const auto* place) {
        for (long channel = 0; channel < GetNumChannels(); ++channel)
            GetOwnHeader(channel).z = static_cast<double>(*place);
        return true;
    });
}
