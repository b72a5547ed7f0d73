#include "vdbase/VDHeader.h"

#include "FileReport.h"
#include "vdbase/VFByteOrder.h"
#include "vdbase/VFChecksum.h"

#include <bit>
#include <cstring>

namespace {

constexpr unsigned char Magic[8] = {0x8f, 0x5a, 0x34, 0x46, 0x0d, 0x0a, 0x1a, 0x0a};
constexpr int OpSysOffset = 8;
constexpr int TypeOffset = 12;
constexpr int SizeOffset = 16;
constexpr int VersionOffset = 20;
constexpr int ChecksumOffset = 504;

constexpr int OwnOpSys = std::endian::native == std::endian::little ? VTOpSysLittleEndian : VTOpSysBigEndian;

/// A whole number of `count` bytes in the byte order of a system.
std::uint64_t GetNumber(const unsigned char* bytes, int count, int opSys)
{
    std::uint64_t value = 0;
    for (int i = 0; i < count; ++i)
        value = value << 8 | bytes[opSys >= VTOpSysLittleEndian ? count - 1 - i : i];
    return value;
}

void PutNumber(unsigned char* bytes, int count, std::uint64_t value)
{
    for (int i = 0; i < count; ++i, value >>= 8)
        bytes[OwnOpSys >= VTOpSysLittleEndian ? i : count - 1 - i] = static_cast<unsigned char>(value);
}

int GetLong(const unsigned char* bytes, int opSys)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(GetNumber(bytes, 4, opSys)));
}

void PutLong(unsigned char* bytes, int value)
{
    PutNumber(bytes, 4, static_cast<std::uint32_t>(value));
}

}  // namespace

VDHeader::VDHeader(int type, int subType, int size) : type_(type), subType_(subType), size_(size), opSys_(OwnOpSys) {}

bool VDHeader::SetHeader(const void* bytes, const char* filename)
{
    const auto* const header = static_cast<const unsigned char*>(bytes);
    damaged_ = false;
    if (std::memcmp(header, Magic, sizeof Magic) != 0 || size_ != Size)
        return false;
    const int opSys = header[OpSysOffset];
    damaged_ = !VFIsValidOpSys(opSys) || GetNumber(header + ChecksumOffset, 8, opSys) != VFChecksum(header, ChecksumOffset);
    if (damaged_)
        return VFReportFile(VDBaseError::FileRead, filename, "its header is damaged", "VDHeader::SetHeader");
    const int type = GetLong(header + TypeOffset, opSys);
    const int subType = GetLong(header + SubTypeOffset, opSys);
    if ((type_ != -1 && type != type_) || (subType_ != -1 && subType != subType_) ||
        GetLong(header + SizeOffset, opSys) != Size)
        return false;
    type_ = type;
    subType_ = subType;
    opSys_ = opSys;
    version_ = GetLong(header + VersionOffset, opSys);
    return true;
}

void VDHeader::GetHeader(void* bytes) const
{
    auto* const header = static_cast<unsigned char*>(bytes);
    std::memset(header, 0, Size);
    std::memcpy(header, Magic, sizeof Magic);
    header[OpSysOffset] = OwnOpSys;
    PutLong(header + TypeOffset, type_ == -1 ? 0 : type_);
    PutLong(header + SizeOffset, Size);
    PutLong(header + VersionOffset, version_);
    PutLong(header + SubTypeOffset, subType_ == -1 ? 0 : subType_);
    PutNumber(header + ChecksumOffset, 8, VFChecksum(header, ChecksumOffset));
}
