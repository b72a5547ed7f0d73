#pragma once

#include <bit>
#include <cstdint>

/// What the bits of a signal are.
enum VTCanValueType : int {
    VTCanValueInteger = 0,
    VTCanValueFloat = 1,   ///< IEEE, 32 bits
    VTCanValueDouble = 2,  ///< IEEE, 64 bits
};

/// How the raw value of a signal becomes a physical one.
struct VDCanScaling
{
    double factor = 0;
    double offset = 0;
    int valueType = VTCanValueInteger;

    double GetPhysical(std::int64_t raw) const
    {
        if (valueType == VTCanValueInteger) [[likely]]
            return static_cast<double>(raw) * factor + offset;
        if (valueType == VTCanValueDouble)
            return std::bit_cast<double>(raw) * factor + offset;
        return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(raw))) * factor + offset;
    }
};
