#include "vdbase/VFChecksum.h"

// The dispatching header picks the widest vector unit of the machine at run time; it exists for x86 only.
#if defined(__x86_64__) && __has_include(<xxh_x86dispatch.h>)
#include <xxh_x86dispatch.h>
#else
#include <xxhash.h>
#endif

struct VDChecksum::State
{
    XXH3_state_t* xxh = XXH3_createState();
    ~State() { XXH3_freeState(xxh); }
};

std::uint64_t VFChecksum(const void* data, std::int64_t count)
{
    return XXH3_64bits(data, static_cast<std::size_t>(count));
}

VDChecksum::VDChecksum() : state_(std::make_unique<State>())
{
    Clear();
}

VDChecksum::~VDChecksum() = default;

void VDChecksum::Clear()
{
    XXH3_64bits_reset(state_->xxh);
}

void VDChecksum::Add(const void* data, std::int64_t count)
{
    XXH3_64bits_update(state_->xxh, data, static_cast<std::size_t>(count));
}

std::uint64_t VDChecksum::Get() const
{
    return XXH3_64bits_digest(state_->xxh);
}
