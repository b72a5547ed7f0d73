#include "vdbase/VFByteOrder.h"

namespace {

constexpr int lastOpSys = 200;

bool IsLittleEndian(int opSys)
{
    return opSys >= VTOpSysLittleEndian;
}

}  // namespace

bool VFIsValidOpSys(int opSys)
{
    return opSys >= VTOpSysBigEndian && opSys <= lastOpSys;
}

bool VFNeedSwap(int fromOpSys, int toOpSys, int /*flags*/)
{
    return VFIsValidOpSys(fromOpSys) && VFIsValidOpSys(toOpSys) && IsLittleEndian(fromOpSys) != IsLittleEndian(toOpSys);
}

void VFSwapLong(std::uint32_t* values, std::int64_t count)
{
    for (std::int64_t index = 0; index < count; ++index)
        values[index] = __builtin_bswap32(values[index]);
}
