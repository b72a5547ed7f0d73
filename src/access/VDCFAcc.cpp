#include "VDCFAcc.h"

#include "frame/VFDaxReport.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQAttributeNames.h"
#include "vdstore/LQChannelMapper.h"

#include <algorithm>
#include <limits>

using namespace DaxComplexFrequency;

namespace {

constexpr std::int64_t SmallFileLimit = 2'000'000'000;

}  // namespace

const VDAccessText VDCFAcc::ChanUnits = {.key = DaxComplexFrequency::ChanUnits,
                                         .capability = ChannelUnits,
                                         .notSupported = DaxError::NoChannelUnits,
                                         .ofId = FIDGetChanUnits};
const VDAccessText VDCFAcc::XTitle = {DaxComplexFrequency::XTitle, XTitles, DaxError::NoXTitle};
const VDAccessText VDCFAcc::XUnits = {DaxComplexFrequency::XUnits, XUnitsTexts, DaxError::NoXUnits};
const VDAccessText VDCFAcc::YTitle = {DaxComplexFrequency::YTitle, YTitles, DaxError::NoYTitle};
const VDAccessText VDCFAcc::YUnits = {DaxComplexFrequency::YUnits, YUnitsTexts, DaxError::NoYUnits};
const VDAccessText VDCFAcc::ZTitle = {DaxComplexFrequency::ZTitle, ZTitles, DaxError::NoZTitle};
const VDAccessText VDCFAcc::ZUnits = {DaxComplexFrequency::ZUnits, ZUnitsTexts, DaxError::NoZUnits};

bool VDCFAcc::FinishOpen(bool created)
{
    numSpectra_ = 0;
    numLines_ = 0;
    return created || (core_.GetHuge(DaxChannel::WholeFile, NumSpectra, &numSpectra_) &&
                       core_.GetHuge(DaxChannel::WholeFile, NumLines, &numLines_));
}

bool VDCFAcc::AddHeaderAttributes(LQChannelMapper& mapper)
{
    Z4PropertySet* const set = mapper.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, LQChannelMapper::GLOBAL);
    if (set == nullptr)
        return false;
    set->AddHuge(LQAttribute::NumSpectra, numSpectra_);
    set->SetHuge(LQAttribute::NumSpectra, numSpectra_);
    set->AddHuge(LQAttribute::NumLines, numLines_);
    set->SetHuge(LQAttribute::NumLines, numLines_);
    for (int index = 0; index < core_.GetChannelCount(); ++index) {
        Z4PropertySet* const ofChannel = mapper.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, index);
        if (ofChannel == nullptr)
            return false;
        VDString title;
        if (core_.GetChanTitle(index, &title)) {
            ofChannel->AddString(LQAttribute::ChanTitle, title);
            ofChannel->SetString(LQAttribute::ChanTitle, title);
        }
    }
    return true;
}

bool VDCFAcc::GetLength(int key, long* length, const char* routine)
{
    return core_.CheckFileOpen(routine) && core_.GetLong(DaxChannel::WholeFile, key, length);
}

bool VDCFAcc::GetNumber(int key, int* number, const char* routine)
{
    *number = 0;
    long value = 0;
    if (!GetLength(key, &value, routine))
        return false;
    if (!std::in_range<int>(value))
        return core_.Report(DaxChannel::WholeFile, DaxError::HeaderValue, routine);
    *number = static_cast<int>(value);
    return true;
}

bool VDCFAcc::GetCount(int key, std::int64_t* count, const char* routine)
{
    *count = 0;
    return core_.CheckFileOpen(routine) && core_.GetHuge(DaxChannel::WholeFile, key, count);
}

bool VDCFAcc::GetComplex(char* isComplex)
{
    *isComplex = 0;
    VDVariant value;
    bool answer = false;
    if (!core_.CheckFileOpen("GetComplex") || !core_.GetValue(DaxChannel::WholeFile, Complex, &value))
        return false;
    if (!value.GetBoolean(&answer))
        return core_.Report(DaxChannel::WholeFile, DaxError::HeaderValue, "GetComplex");
    *isComplex = answer ? 1 : 0;
    return true;
}

bool VDCFAcc::SetNumber(int key, int number, const char* routine)
{
    return core_.CheckBound(routine) && core_.PutValue(DaxChannel::WholeFile, key, VDVariant(static_cast<long>(number)));
}

bool VDCFAcc::SetCount(int key, std::int64_t count, std::int64_t* kept, const char* routine)
{
    if (!core_.CheckBound(routine) || !core_.PutValue(DaxChannel::WholeFile, key, VDVariant::FromHuge(count)))
        return false;
    *kept = count;
    return true;
}

bool VDCFAcc::SetNumSpectra(std::int64_t spectra)
{
    return SetCount(NumSpectra, spectra, &numSpectra_, "SetNumSpectra");
}

bool VDCFAcc::SetNumLines(std::int64_t lines)
{
    return SetCount(NumLines, lines, &numLines_, "SetNumLines");
}

bool VDCFAcc::SetComplex(char isComplex)
{
    return core_.CheckBound("SetComplex") && core_.PutValue(DaxChannel::WholeFile, Complex, VDVariant(isComplex != 0));
}

bool VDCFAcc::CheckSpectrum(std::int64_t spectrum, const char* routine)
{
    if (numSpectra_ < 1)
        return core_.Report(DaxChannel::WholeFile, DaxError::NoSpectra, routine);
    return (spectrum >= 1 && spectrum <= numSpectra_) ||
           core_.Report(DaxChannel::WholeFile, DaxError::SpectrumRange, routine);
}

bool VDCFAcc::CheckLine(std::int64_t line, const char* routine)
{
    if (numLines_ < 1)
        return core_.Report(DaxChannel::WholeFile, DaxError::NoLines, routine);
    return (line >= 1 && line <= numLines_) || core_.Report(DaxChannel::WholeFile, DaxError::LineRange, routine);
}

bool VDCFAcc::Clamp(int index, std::int64_t first, std::int64_t total, std::int64_t* count, std::int64_t* numRead,
                    const char* routine)
{
    const std::int64_t remaining = total - first + 1;
    if (*count > remaining) {
        if (numRead == nullptr)
            return core_.Report(index, DaxError::EndOfFile, routine);
        *count = remaining;
    }
    *count = std::max<std::int64_t>(*count, 0);
    if (numRead != nullptr)
        *numRead = *count;
    return true;
}

bool VDCFAcc::GetData(int index, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind,
                      std::int64_t* numRead, void* values)
{
    constexpr const char* routine = "GetData";
    if (!core_.CheckFileOpen(routine) || !core_.CheckChannel(index, false, routine) || !CheckSpectrum(spectrum, routine) ||
        !CheckLine(first, routine) || !Clamp(index, first, numLines_, &count, numRead, routine))
        return false;
    return count == 0 || core_.Call(routine, [&] {
        return Plugin().GetData(core_.GetInstance(), index, spectrum, first, count, kind, values);
    });
}

bool VDCFAcc::GetLineAxisData(std::int64_t first, std::int64_t count, int kind, std::int64_t* numRead, void* values)
{
    constexpr const char* routine = "GetLineAxisData";
    if (!core_.CheckFileOpen("GetData") || !CheckLine(first, routine) ||
        !Clamp(DaxChannel::WholeFile, first, numLines_, &count, numRead, routine))
        return false;
    return count == 0 || core_.Call(routine, [&] {
        return Plugin().GetLineAxisData(core_.GetInstance(), first, count, kind, values);
    });
}

bool VDCFAcc::GetSpectrumAxisData(std::int64_t first, std::int64_t count, int kind, std::int64_t* numRead, void* values)
{
    constexpr const char* routine = "GetSpectrumAxisData";
    if (!core_.CheckFileOpen("GetData") || !CheckSpectrum(first, routine) ||
        !Clamp(DaxChannel::WholeFile, first, numSpectra_, &count, numRead, routine))
        return false;
    return count == 0 || core_.Call(routine, [&] {
        return Plugin().GetSpectrumAxisData(core_.GetInstance(), first, count, kind, values);
    });
}

bool VDCFAcc::CheckGrowth(int index, std::int64_t first, std::int64_t count, std::int64_t total, const char* routine)
{
    char extendable = 0;
    char large = 0;
    if (!core_.GetCapability(Extendable, &extendable) || !core_.GetCapability(LargeFiles, &large))
        return false;
    constexpr std::int64_t maxLine = std::numeric_limits<std::int64_t>::max();
    const std::int64_t last = count - 1 > maxLine - first ? maxLine : first + count - 1;
    if (!extendable && last > total)
        return core_.Report(index, DaxError::CannotExtend, routine);
    return large || last <= SmallFileLimit || core_.Report(index, DaxError::TooManyPoints, routine);
}

bool VDCFAcc::PutData(int index, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind, const void* values)
{
    constexpr const char* routine = "PutData";
    if (!core_.CheckFileOpen(routine) || !core_.CheckChannel(index, false, routine) || !CheckLine(first, routine) ||
        !core_.CheckWritable(routine))
        return false;
    if (count < 1)
        return true;
    const auto put = [&] {
        return Plugin().PutData(core_.GetInstance(), index, spectrum, first, count, kind, values);
    };
    if (!CheckGrowth(index, first, count, numLines_, routine) || !core_.Call(routine, put))
        return false;
    numSpectra_ = std::max(numSpectra_, spectrum);
    return true;
}

bool VDCFAcc::PutLineAxisData(std::int64_t first, std::int64_t count, int kind, const void* values)
{
    constexpr const char* routine = "PutLineAxisData";
    if (!core_.CheckFileOpen(routine) || !CheckLine(first, routine) || !core_.CheckWritable(routine))
        return false;
    return count < 1 || (CheckGrowth(DaxChannel::WholeFile, first, count, numLines_, "PutData") && core_.Call(routine, [&] {
                             return Plugin().PutLineAxisData(core_.GetInstance(), first, count, kind, values);
                         }));
}

bool VDCFAcc::PutSpectrumAxisData(std::int64_t first, std::int64_t count, int kind, const void* values)
{
    constexpr const char* routine = "PutSpectrumAxisData";
    if (!core_.CheckFileOpen(routine) || !CheckSpectrum(first, routine) || !core_.CheckWritable(routine))
        return false;
    return count < 1 || (CheckGrowth(DaxChannel::WholeFile, first, count, numSpectra_, routine) && core_.Call(routine, [&] {
                             return Plugin().PutSpectrumAxisData(core_.GetInstance(), first, count, kind, values);
                         }));
}
