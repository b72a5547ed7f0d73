#pragma once

#include "vdbase/VDBaseApi.h"

#include <cstdint>
#include <memory>

/// The 64-bit checksum (XXH3, seed 0) that the suite's own files carry.
VDBASE_API std::uint64_t VFChecksum(const void* data, std::int64_t count);

/// The same for data that come in pieces.
class VDBASE_API VDChecksum
{
public:
    VDChecksum();
    ~VDChecksum();
    VDChecksum(const VDChecksum&) = delete;
    VDChecksum& operator=(const VDChecksum&) = delete;

    void Clear();
    void Add(const void* data, std::int64_t count);
    /// The checksum of what was added since the last `Clear`; more may be added after it.
    std::uint64_t Get() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};
