#pragma once

#include "NumberText.h"
#include "TimeSeriesTest.h"

#include <variant>

/// The forms in which values travel, the most exact first.
enum class VTValueForm { Digital64, Digital32, Double, Float };

/// The form that loses nothing of a channel's values.
VTValueForm VFValueForm(int channelType);

/// The channel type whose values have this form.
int VFChannelType(VTValueForm form);

/// A block of values of one channel, in one of the forms.
class VDValues
{
public:
    VDValues(VTValueForm form, std::int64_t capacity);

    /// Reads up to `count` points from `first` on; throws on failure.
    /// @return the points read
    std::int64_t Read(VDTsAcc* acc, int channel, std::int64_t first, std::int64_t count);
    /// Writes the values that were read last, converted to a form if that is another.
    /// @return false, recorded, on failure
    bool Write(VDTsAcc* acc, int channel, std::int64_t first, VTValueForm form) const;

    std::int64_t GetSize() const { return size_; }
    VTValueForm GetForm() const { return static_cast<VTValueForm>(values_.index()); }
    char* PutText(char* at, std::int64_t index) const;
    char* PutJson(char* at, std::int64_t index) const;
    /// A width that holds every form's values exactly.
    long double At(std::int64_t index) const;

private:
    // In the order of VTValueForm.
    using Buffer =
        std::variant<std::vector<std::uint64_t>, std::vector<std::uint32_t>, std::vector<double>, std::vector<float>>;

    static Buffer MakeBuffer(VTValueForm form, std::int64_t size);

    Buffer values_;
    std::int64_t size_ = 0;
};
