#include "daxlib/VDChanSep.h"

#include "vdbase/VDPreferenceSystem.h"
#include "vdbase/VDThreadSync.h"
#include "vdbase/VFFilename.h"
#include "vdbase/VFNumber.h"

#include <cctype>
#include <cstdint>
#include <mutex>

namespace {

constexpr const char* MethodKey = "/FileFormats/General/ChanSepMethod";
constexpr const char* MaximiseKey = "/FileFormats/General/MaximiseTestName";
constexpr const char* MinDigitsKey = "/FileFormats/General/MinChanDigits";
constexpr const char* MaxDigitsKey = "/FileFormats/General/MaxChanDigits";
constexpr const char* FixedDigitsKey = "/FileFormats/General/FixedChanDigits";
constexpr const char* IgnoredDigitsKey = "/FileFormats/General/IgnoredChanDigits";

constexpr int DefaultMinDigits = 2;
constexpr int DefaultMaxDigits = 6;
constexpr int DefaultFixedDigits = 3;
constexpr int DefaultIgnoredDigits = 0;

bool IsMethod(std::int64_t method)
{
    return method == VTChanSepFixedDigits || method == VTChanSepVariableDigits;
}

bool IsMinMax(std::int64_t min, std::int64_t max)
{
    return min >= 0 && min < 10 && max >= 1 && max <= 10 && max >= min;
}

bool IsFixed(std::int64_t digits)
{
    return digits >= 1 && digits <= 10;
}

bool IsIgnored(std::int64_t digits)
{
    return digits >= 0 && digits <= 9;
}

/// The number in the last `count` characters of a base name; negative if they are anything but digits or no `Number`.
template <class Number>
Number TrailingNumber(const VDString& base, int count)
{
    const VDString digits = base.Right(count);
    for (const char character : digits.View())
        if (std::isdigit(static_cast<unsigned char>(character)) == 0)
            return -1;  // a sign or a blank reads as part of a number, but the name couldn't be put together again
    Number number = -1;
    return VFAscToNum(digits, &number) ? number : -1;
}

/// A value that is out of range leaves what was there before, apart from those that have a fall-back of their own.
template <class Values>
void ReadPreferences(Values& values)
{
    const VDPreferenceSystem preferences;
    const int newMethod = preferences.GetEnumValue(MethodKey, VTChanSepVariableDigits);
    values.method = IsMethod(newMethod) ? static_cast<VTChanSepMethod>(newMethod) : VTChanSepVariableDigits;
    values.maximiseTestName = preferences.GetBooleanValue(MaximiseKey, true);
    const std::int64_t newMin = preferences.GetHugeValue(MinDigitsKey, DefaultMinDigits);
    const std::int64_t newMax = preferences.GetHugeValue(MaxDigitsKey, DefaultMaxDigits);
    const bool isMinMax = IsMinMax(newMin, newMax);
    values.minDigits = isMinMax ? static_cast<int>(newMin) : DefaultMinDigits;
    values.maxDigits = isMinMax ? static_cast<int>(newMax) : DefaultMaxDigits;
    const std::int64_t newFixed = preferences.GetHugeValue(FixedDigitsKey, DefaultFixedDigits);
    if (IsFixed(newFixed))
        values.fixedDigits = static_cast<int>(newFixed);
    const std::int64_t newIgnored = preferences.GetHugeValue(IgnoredDigitsKey, DefaultIgnoredDigits);
    if (IsIgnored(newIgnored))
        values.ignoredDigits = static_cast<int>(newIgnored);
}

}  // namespace

struct VDChanSep::Values
{
    VTChanSepMethod method{};
    bool maximiseTestName = false;
    int minDigits = 0;
    int maxDigits = 0;
    int fixedDigits = 0;
    int ignoredDigits = 0;
};

VDChanSep::VDChanSep() : values_(std::make_unique<Values>())
{
    RefreshFromDefaults(0);
}

VDChanSep::VDChanSep(const VDChanSep& other) : values_(std::make_unique<Values>(*other.values_)) {}

VDChanSep& VDChanSep::operator=(const VDChanSep& other)
{
    if (this != &other)
        *values_ = *other.values_;
    return *this;
}

VDChanSep::~VDChanSep() = default;

void VDChanSep::RefreshFromDefaults(char force)
{
    static VDThreadSync lock;
    static Values cache;
    static bool loaded = false;
    const std::lock_guard guard(lock);
    if (force != 0 || !loaded) {
        ReadPreferences(cache);
        loaded = true;
    }
    *values_ = cache;
}

void VDChanSep::SaveSettingsToPreferences()
{
    VDPreferenceSystem preferences;
    preferences.OverrideEnumValue(MethodKey, values_->method);
    preferences.GetBooleanValue(MaximiseKey, values_->maximiseTestName);
    preferences.GetHugeValue(MinDigitsKey, values_->minDigits);
    preferences.GetHugeValue(MaxDigitsKey, values_->maxDigits);
    preferences.GetHugeValue(FixedDigitsKey, values_->fixedDigits);
    preferences.GetHugeValue(IgnoredDigitsKey, values_->ignoredDigits);
    RefreshFromDefaults(1);
}

VTChanSepMethod VDChanSep::GetChanSepMethod() const
{
    return values_->method;
}

char VDChanSep::GetMaximiseTestName() const
{
    return values_->maximiseTestName;
}

int VDChanSep::GetMinChanDigits() const
{
    return values_->minDigits;
}

int VDChanSep::GetMaxChanDigits() const
{
    return values_->maxDigits;
}

int VDChanSep::GetFixedChanDigits() const
{
    return values_->fixedDigits;
}

int VDChanSep::GetIgnoredChanDigits() const
{
    return values_->ignoredDigits;
}

void VDChanSep::SetChanSepMethod(VTChanSepMethod method)
{
    if (IsMethod(method))
        values_->method = method;
}

void VDChanSep::SetMaximiseTestName(char maximise)
{
    values_->maximiseTestName = maximise != 0;
}

void VDChanSep::SetMinMaxChanDigits(int min, int max)
{
    if (!IsMinMax(min, max))
        return;
    values_->minDigits = min;
    values_->maxDigits = max;
}

void VDChanSep::SetFixedChanDigits(int digits)
{
    if (IsFixed(digits))
        values_->fixedDigits = digits;
}

void VDChanSep::SetIgnoredChanDigits(int digits)
{
    if (IsIgnored(digits))
        values_->ignoredDigits = digits;
}

int VDChanSep::GetChanDigits() const
{
    return values_->method == VTChanSepVariableDigits ? values_->minDigits : values_->fixedDigits;
}

VDString VDChanSep::GetFormatString() const
{
    VDString format;
    format.Format("%%0%dd", GetChanDigits());
    return format;
}

VDString VDChanSep::GetChanText(int chan) const
{
    VDString text;
    text.Format("%0*d", GetChanDigits(), chan);
    return text;
}

VDString VDChanSep::ConstructFilename(const char* folder, const char* stem, int chan, const char* extension) const
{
    return VFBuildFilename(folder, VDString(stem) + GetChanText(chan), extension);
}

char VDChanSep::IsTestPlusChannels(const char* filename, VDString* stem, VDString* extension, int* chan) const
{
    VDString folder;
    VDString base;
    VDString fileExtension;
    VFSplitFilename(filename, &folder, &base, &fileExtension);

    const int length = base.GetLength();
    const bool isVariable = values_->method == VTChanSepVariableDigits;
    int digits = values_->fixedDigits;
    if (isVariable) {
        if (length <= values_->minDigits)
            return 0;
        int count = 0;
        while (count < values_->maxDigits && count < length - 1 &&
               std::isdigit(static_cast<unsigned char>(base[length - 1 - count])) != 0)
            ++count;
        digits = count - values_->ignoredDigits;
        if (digits < values_->minDigits)
            return 0;
    } else if (length < digits) {
        return 0;
    }
    const std::int64_t number = isVariable ? TrailingNumber<std::int64_t>(base, digits) : TrailingNumber<int>(base, digits);
    if (number < 0)
        return 0;

    VDString testStem = VFBuildFilename(folder, base.Left(length - digits));
    if (isVariable) {
        // Leading zeros that the channel's own format wouldn't produce belong to the stem.
        VDString text;
        text.Format("%0*lld", values_->minDigits, static_cast<long long>(number));
        for (int missing = digits - text.GetLength(); missing > 0; --missing)
            testStem += '0';
    }
    if (stem != nullptr)
        *stem = testStem;
    if (extension != nullptr)
        *extension = fileExtension;
    if (chan != nullptr)
        *chan = static_cast<int>(number);
    return 1;
}
