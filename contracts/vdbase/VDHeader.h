#pragma once

#include "vdbase/VDBaseApi.h"

#include <cstdint>

/// The first 512 bytes of each of the suite's own files: what kind of file it is and which system wrote it. Numbers in it
/// stand in the byte order of that system.
///
/// | Offset | Bytes | Content |
/// |---|---|---|
/// | 0 | 8 | 8F 5A 34 46 0D 0A 1A 0A |
/// | 8 | 1 | code of the system that wrote the file (`VFByteOrder.h`) |
/// | 9 | 3 | 0 |
/// | 12 | 4 | type |
/// | 16 | 4 | size of the header, 512 |
/// | 20 | 4 | version of the format behind the header, from 1 |
/// | 80 | 4 | sub type |
/// | 504 | 8 | `VFChecksum` of bytes 0 to 503 |
///
/// All other bytes are 0 when written and not looked at when read.
class VDBASE_API VDHeader
{
public:
    static constexpr int Size = 512;
    static constexpr int SubTypeOffset = 80;

    /// @param type     the type that is looked for or will be written; -1 accepts any
    /// @param subType  the same for the sub type
    /// @param size     of the header in bytes; only 512 is known
    VDHeader(int type, int subType, int size);

    /// Takes a header over from a file's first 512 bytes.
    /// @param filename  for the report on a damaged header
    /// @return false if this is no header of the kind; recorded (`VDBaseError::FileRead`) only if it was one and is damaged
    bool SetHeader(const void* bytes, const char* filename);
    /// Whether the last `SetHeader` failed for damage.
    bool IsDamaged() const { return damaged_; }
    /// Forms the 512 bytes of a header of this system. A type or sub type of -1 counts as 0.
    void GetHeader(void* bytes) const;

    int GetType() const { return type_; }
    int GetSubType() const { return subType_; }
    void SetSubType(int subType) { subType_ = subType; }
    int GetOpSys() const { return opSys_; }
    int GetVersion() const { return version_; }

private:
    int type_;
    int subType_;
    int size_;
    int opSys_;
    int version_ = 1;
    bool damaged_ = false;
};
