#pragma once

#include "vdbase/VDBaseApi.h"

#include <cstddef>

/// Raw buffers. `VFRealloc` of null allocates; a size of 0 frees and gives null; null means that memory is short and the old
/// buffer stands.
VDBASE_API void* VFRealloc(void* buffer, std::size_t size);
VDBASE_API void VFFree(void* buffer);
