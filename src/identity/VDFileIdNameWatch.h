#pragma once

#include "VDFileId.h"

#include <atomic>

class VDFileId::NameWatch
{
public:
    explicit NameWatch(const VDFileId& id) : id_(id)
    {
        if (id.listings_ > 0)
            before_ = id.record_.fullPathName;
    }
    ~NameWatch()
    {
        if (id_.listings_ > 0 && before_ != id_.record_.fullPathName)
            ++changes_;
    }
    NameWatch(const NameWatch&) = delete;
    NameWatch& operator=(const NameWatch&) = delete;

    static std::uint64_t GetChanges() { return changes_; }

private:
    static inline std::atomic<std::uint64_t> changes_ = 0;

    const VDFileId& id_;
    VDString before_;
};
