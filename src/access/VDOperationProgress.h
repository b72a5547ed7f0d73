#pragma once

#include "daxlib/VDProgressObject.h"

#include <cstdint>

/// One long operation as a host's progress object sees it. The host's code can't break the operation: what it throws is
/// traced and passed over.
class VDOperationProgress
{
public:
    /// @param object  null if no host wants to know; nothing is cancelled then
    explicit VDOperationProgress(VDProgressObject* object) : object_(object) {}
    /// Tells the end of an operation that was started.
    ~VDOperationProgress();
    VDOperationProgress(const VDOperationProgress&) = delete;
    VDOperationProgress& operator=(const VDOperationProgress&) = delete;

    /// @param textId  of the catalogue
    /// @param total   work to do; a total below 1 counts as 1
    /// @return false if the host cancelled
    bool Start(int textId, double total);
    /// Tells a piece of work that was done.
    /// @return false if the host cancelled
    bool Advance(std::int64_t work);

private:
    template <class Function>
    void Tell(Function&& function);

    VDProgressObject* object_;
    bool started_ = false;
    double total_ = 1;
    double done_ = 0;
    int percent_ = 0;  ///< told last
};
