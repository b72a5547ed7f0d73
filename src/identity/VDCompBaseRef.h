#pragma once

#include "vdbase/VDCompBase.h"

#include <utility>

/// A counted reference on somebody's object. Copies share the object.
class VDCompBaseRef
{
public:
    VDCompBaseRef() = default;
    VDCompBaseRef(const VDCompBaseRef& other) { Set(other.object_); }
    VDCompBaseRef(VDCompBaseRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    VDCompBaseRef& operator=(VDCompBaseRef other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }
    ~VDCompBaseRef() { Drop(object_); }

    VDCompBase* Get() const { return object_; }

    /// Takes a reference of its own on the object, and gives that on the present one back. Null is an object, too: none.
    /// @return false, and nothing is held, if the object gives no reference
    bool Set(VDCompBase* object)
    {
        // The new reference comes first: the present one may be all that keeps the same object alive.
        const bool taken = object == nullptr || object->AddRef() != 0;
        Drop(std::exchange(object_, taken ? object : nullptr));
        return taken;
    }

private:
    static void Drop(VDCompBase* object)
    {
        if (object != nullptr && object->Release() == 0)
            delete object;
    }

    VDCompBase* object_ = nullptr;
};
