#pragma once

/// Runs the work of an exported function; whatever it throws is a failure.
template <class Work>
auto VFGuardMetaData(Work work) noexcept -> decltype(work())
{
    try {
        return work();
    } catch (...) {
        return {};
    }
}
