#pragma once

#include "vdbase/VDBaseApi.h"

#include <cstdint>

/// Codes of the system that wrote a file. Those from 101 on are little-endian, those from 1 to 100 big-endian.
constexpr int VTOpSysBigEndian = 1;
constexpr int VTOpSysLittleEndian = 101;

/// Whether the code is one of the above ranges (1 to 200).
VDBASE_API bool VFIsValidOpSys(int opSys);
/// Whether data of one system must be swapped for the other; an unknown code never asks for it.
/// @param flags  reserved, 0
VDBASE_API bool VFNeedSwap(int fromOpSys, int toOpSys, int flags);
/// Reverses the bytes of each 32-bit value in place.
VDBASE_API void VFSwapLong(std::uint32_t* values, std::int64_t count);
