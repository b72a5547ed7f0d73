#pragma once

/// Inner loops that are compiled for every processor and once more for those with vectors of 256 bits. No fused operations are
/// used, so that both give the same bits.

/// What is inlined without fail is compiled anew for each kind of processor that calls it.
#define DAX_INLINE __attribute__((always_inline)) inline

#if defined(__x86_64__)
inline const bool VVHasWideVectors = __builtin_cpu_supports("avx2") != 0;

template <class Work>
__attribute__((target("avx2"))) void VFRunWide(const Work& work)
{
    work();
}
#else
constexpr bool VVHasWideVectors = false;

template <class Work>
void VFRunWide(const Work&)
{
}
#endif

/// @param work  a lambda that is always inlined
template <class Work>
void VFRunVectorised(const Work& work)
{
    if (VVHasWideVectors)
        VFRunWide(work);
    else
        work();
}
