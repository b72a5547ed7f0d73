#pragma once

#include <mutex>

/// A lock that one thread may take several times. Usable with `std::lock_guard`.
class VDThreadSync
{
public:
    VDThreadSync() = default;
    VDThreadSync(const VDThreadSync&) = delete;
    VDThreadSync& operator=(const VDThreadSync&) = delete;

    void lock() { mutex_.lock(); }
    bool try_lock() { return mutex_.try_lock(); }
    void unlock() { mutex_.unlock(); }

private:
    std::recursive_mutex mutex_;
};
