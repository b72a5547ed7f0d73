#include "ResultsCFSpectra.h"

#include "ResultsError.h"

#include <algorithm>
#include <limits>
#include <utility>

using namespace DaxComplexFrequency;

// The kinds of the interface are the types of values in the object.
static_assert(DaxSpectrumKind::Float == LQSpectrumFloat && DaxSpectrumKind::Double == LQSpectrumDouble &&
              DaxSpectrumKind::ComplexFloat == LQSpectrumComplexFloat &&
              DaxSpectrumKind::ComplexDouble == LQSpectrumComplexDouble);

namespace {

constexpr long VVLongestText = std::numeric_limits<std::int32_t>::max();
constexpr long VVBlockLines = 65536;
/// Values of an axis that are converted at a time.
constexpr std::int64_t VVAxisValues = 2048;

/// Which text of a channel a key stands for; -1 for none.
int TextOf(int key)
{
    switch (key) {
    case ChanUnits:
        return LQSpectraChanUnits;
    case XTitle:
        return LQSpectraXTitle;
    case XUnits:
        return LQSpectraXUnits;
    case YTitle:
        return LQSpectraYTitle;
    case YUnits:
        return LQSpectraYUnits;
    case ZTitle:
        return LQSpectraZTitle;
    case ZUnits:
        return LQSpectraZUnits;
    default:
        return -1;
    }
}

}  // namespace

bool ResultsCFSpectra::SetId(VDFileId* id)
{
    id_ = id;
    return file_.SetId(id, ResultsFormat::SpectraClass, "ResultsCF::SetId");
}

bool ResultsCFSpectra::Open(int mode)
{
    constexpr const char* routine = "ResultsCF::Open";
    Close();
    if (file_.Open(mode, ResultsFormat::SpectraClass, routine)) {
        LQDataManager& data = *LQGetDataManager();
        spectra_ = file_.IsCreated()
                       ? data.AdoptSpectra(file_.GetRoot(), ResultsFormat::SpectraNode, nullptr, Z4Size::Record32K)
                       : data.OpenSpectra(file_.GetRoot(), ResultsFormat::SpectraNode);
        if (spectra_ != nullptr && file_.MatchChannels(*spectra_, routine) && (!file_.IsCreated() || SetValueTypes()))
            return true;
    }
    file_.Close(std::exchange(spectra_, nullptr), false);
    return false;
}

bool ResultsCFSpectra::Close()
{
    return file_.Close(std::exchange(spectra_, nullptr), true);
}

/// New channels are complex until something else is said, and as precise as their ids say.
bool ResultsCFSpectra::SetValueTypes()
{
    for (int index = 0; index < spectra_->GetChannelCount(); ++index) {
        int type = 0;
        FIDGetChanType(id_, index, &type);
        const bool isDouble = DaxDataType::FromId(type) == DaxDataType::Double;
        if (!spectra_->SetValueType(file_.GetChannel(index), isDouble ? LQSpectrumComplexDouble : LQSpectrumComplexFloat))
            return false;
    }
    return true;
}

bool ResultsCFSpectra::SetComplex(bool isComplex)
{
    for (int channel = 0; channel < spectra_->GetChannelCount(); ++channel) {
        const int real = spectra_->GetChannelDataType(channel) == Z4TypeDouble ? LQSpectrumDouble : LQSpectrumFloat;
        if (!spectra_->SetValueType(channel, isComplex ? real + 2 : real))
            return false;
    }
    return true;
}

bool ResultsCFSpectra::HasCapability(int capability)
{
    switch (capability) {
    case Writable:
    case LargeFiles:
    case ChannelTitles:
    case ChannelUnits:
    case KeepsMetaData:
    case XTitles:
    case XUnitsTexts:
    case YTitles:
    case YUnitsTexts:
    case ZTitles:
    case ZUnitsTexts:
    case NoSerialisation:
        return true;
    default:
        // Lines lie one behind the other, spectrum by spectrum, so that their number stays.
        return false;
    }
}

VDVariant ResultsCFSpectra::GetFileValue(int key) const
{
    switch (key) {
    case Type:
        return VDVariant(spectra_->GetType());
    case SubType:
        return VDVariant(spectra_->GetSubType());
    case NumSpectra:
        return VDVariant::FromHuge(spectra_->GetNumSpectra());
    case NumLines:
        return VDVariant::FromHuge(spectra_->GetNumLines());
    case Complex:
        return VDVariant(spectra_->IsComplex());
    case MaxTitle:
    case MaxUnits:
        return VDVariant(VVLongestText);
    default:
        return {};
    }
}

bool ResultsCFSpectra::GetValue(long channel, int key, VDVariant& value) const
{
    if (key == BufferSize) {
        value = VDVariant(VVBlockLines);
        return true;
    }
    if (spectra_ == nullptr)
        return key == FormatSpecific;
    VDString text;
    if (key == FormatSpecific) {
        value[0].GetString(&text);
        if (text.CompareNoCase(DaxFormatValue::GapsAreZero) == 0)
            value.AppendItem(VDVariant(true));
        return true;
    }
    if (channel == DaxChannel::WholeFile) {
        value = GetFileValue(key);
        return true;
    }
    const int own = file_.GetChannel(channel);
    if (key == ChanTitle && spectra_->GetChanTitle(text, own))
        value = VDVariant(text);
    else if (TextOf(key) >= 0 && spectra_->GetText(static_cast<LQSpectraText>(TextOf(key)), own, &text))
        value = VDVariant(text);
    return true;
}

bool ResultsCFSpectra::PutFileValue(int key, const VDVariant& value)
{
    long number = 0;
    std::int64_t count = 0;
    bool isComplex = false;
    switch (key) {
    case Type:
    case SubType:
        if (!value.GetLong(&number))
            return false;
        key == Type ? spectra_->SetType(static_cast<std::int32_t>(number))
                    : spectra_->SetSubType(static_cast<std::int32_t>(number));
        return true;
    case NumSpectra:
        return value.GetHuge(&count) && spectra_->SetNumSpectra(count);
    case NumLines:
        return value.GetHuge(&count) && spectra_->SetNumLines(count);
    case Complex:
        return value.GetBoolean(&isComplex) && SetComplex(isComplex);
    default:
        return true;
    }
}

bool ResultsCFSpectra::PutValue(long channel, int key, const VDVariant& value)
{
    // What comes with the instance itself, or without a file, concerns other formats.
    if (spectra_ == nullptr || key == FormatSpecific)
        return key == AccessObject || key == FormatSpecific;
    if (channel == DaxChannel::WholeFile)
        return PutFileValue(key, value);
    VDString text;
    value.GetString(&text);
    const int own = file_.GetChannel(channel);
    if (key == ChanTitle)
        return spectra_->SetChanTitle(text, own);
    return TextOf(key) < 0 || spectra_->SetText(static_cast<LQSpectraText>(TextOf(key)), own, text);
}

bool ResultsCFSpectra::GetData(long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind,
                               void* values)
{
    return spectra_->GetData(spectrum - 1, first - 1, count, kind, values, file_.GetChannel(channel));
}

bool ResultsCFSpectra::PutData(long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind,
                               const void* values)
{
    return spectra_->SetData(spectrum - 1, first - 1, count, kind, values, file_.GetChannel(channel));
}

bool ResultsCFSpectra::GetAxis(LQSpectraAxis axis, std::int64_t first, std::int64_t count, int kind, void* values)
{
    if (kind == DaxSpectrumKind::Double)
        return spectra_->GetAxis(axis, first - 1, count, static_cast<double*>(values));
    if (kind != DaxSpectrumKind::Float)
        return file_.Report(ResultsError::DataType, "ResultsCF::GetAxisData");
    double part[VVAxisValues];
    for (std::int64_t done = 0; done < count; done += VVAxisValues) {
        const std::int64_t some = std::min(count - done, VVAxisValues);
        if (!spectra_->GetAxis(axis, first - 1 + done, some, part))
            return false;
        std::transform(part, part + some, static_cast<float*>(values) + done,
                       [](double value) { return static_cast<float>(value); });
    }
    return true;
}

bool ResultsCFSpectra::PutAxis(LQSpectraAxis axis, std::int64_t first, std::int64_t count, int kind, const void* values)
{
    if (kind == DaxSpectrumKind::Double)
        return spectra_->SetAxis(axis, first - 1, count, static_cast<const double*>(values));
    if (kind != DaxSpectrumKind::Float)
        return file_.Report(ResultsError::DataType, "ResultsCF::PutAxisData");
    double part[VVAxisValues];
    for (std::int64_t done = 0; done < count; done += VVAxisValues) {
        const std::int64_t some = std::min(count - done, VVAxisValues);
        std::copy_n(static_cast<const float*>(values) + done, some, part);
        if (!spectra_->SetAxis(axis, first - 1 + done, some, part))
            return false;
    }
    return true;
}

bool ResultsCFSpectra::LoadMetaData(LQChannelMapper** mapper)
{
    if (spectra_ == nullptr || !spectra_->RefreshMetadata(false, LQObject::ALL_CHANNELS))
        return false;
    *mapper = spectra_->GetMapper();
    return true;
}

int ResultsLoadSpectraInfo(VDFileId* id, const VDString& filename)
{
    constexpr const char* routine = "ResultsFFLoadFileInfo";
    LQDataManager& data = *LQGetDataManager();
    Z4File* const file = data.GetFileManager()->OpenFile(filename, false);
    LQSpectra* const spectra = file == nullptr ? nullptr : data.OpenSpectra(file->GetRoot(), ResultsFormat::SpectraNode);
    bool listed =
        spectra != nullptr && ResultsListChannels(id, *spectra, filename, ResultsError::NoSpectraChannels, routine);
    for (int channel = 0; listed && channel < spectra->GetChannelCount(); ++channel) {
        int index = 0;
        VDString units;
        listed = FIDGetChanIndex(id, static_cast<int>(spectra->GetMapper()->NumberFromIndex(channel, false)), &index) &&
                 spectra->GetText(LQSpectraChanUnits, channel, &units) && FIDSetChanUnits(id, index, units) &&
                 FIDSetChanType(id, index, spectra->GetChannelDataType(channel));
    }
    if (spectra != nullptr)
        data.Close(spectra, false);
    if (file != nullptr)
        data.GetFileManager()->CloseFile(file, false);
    return listed ? 1 : 0;
}
