#include "vdbase/VFMemory.h"

#include <cstdlib>

void* VFRealloc(void* buffer, std::size_t size)
{
    if (size == 0) {
        std::free(buffer);
        return nullptr;
    }
    return std::realloc(buffer, size);
}

void VFFree(void* buffer)
{
    std::free(buffer);
}
