#include "StorageFileTypes.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr StorageFormat::Type VVTypes[] = {
    {2, "FER", "fer", false, true},
    {StorageFormat::FlexTimeSeries, "Z4TimeSeries(VG4.0)", "z4t", true, true},
    {5, "CGF", "cgf", false, true},
    {StorageFormat::Histogram, "Z4Histogram", "z4h", true, true},
    {7, "Z4MultiColumn", "z4m", true, true},
    {10, "Z4ComplexFrequency", "z4c", true, true},
    {StorageFormat::TimeSeries, "Z4TimeSeries", "z4t", true, true},
    {12, nullptr, "z4m", true, true},
    {StorageFormat::TemporaryTimeSeries, "TemporaryTimeSeries", "y4t", true, false},
    {StorageFormat::TemporaryHistogram, "TemporaryHistogram", "y4h", true, false},
    {15, "TemporaryMultiColumn", "y4m", true, false},
    {16, "TemporaryComplexFrequency", "y4c", true, false},
};

}  // namespace

const StorageFormat::Type* StorageFormat::FindType(int subId)
{
    const auto found =
        std::find_if(std::begin(VVTypes), std::end(VVTypes), [=](const Type& type) { return type.subId == subId; });
    return found == std::end(VVTypes) ? nullptr : found;
}
