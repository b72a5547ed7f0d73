#pragma once

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDCompBase.h"
#include "vdbase/VFHist.h"

#include <cstdlib>
#include <memory>

/// The histogram behind a handle.
class VDHist : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = static_cast<std::int32_t>(0xa04f0251);
    /// More bytes of bins can't be stored by anybody.
    static constexpr std::int64_t LargestBins = std::int64_t(1) << 46;

    VDHist() : VDCompBase(HandleId) {}

    const VDHistDescription& Describe() const { return description_; }
    /// For what has no part in the size of the bins.
    VDHistDescription& Change() { return description_; }
    /// Takes a new description whose bins are 0.
    void Take(VDHistDescription description);
    /// Takes an axis.
    void TakeAxis(VDHistAxis VDHistDescription::*which, VDHistAxis axis);

    std::int64_t GetBinCount() const { return description_.x.binCount * description_.y.binCount; }
    std::int64_t GetBinBytes() const { return GetBinCount() * VFHistGetBinBytes(description_.format); }
    /// Bins that nobody has touched have no memory and are 0.
    bool HasBins() const { return bins_ != nullptr; }
    /// Throws if memory is short.
    void* Bins() { return Touch(true); }
    const void* Bins() const { return const_cast<VDHist*>(this)->Touch(true); }
    /// The same without making new ones 0.
    void* RawBins() { return Touch(false); }
    /// Bins of another format, as many.
    void TakeBins(int format, std::unique_ptr<void, decltype(&std::free)> bins);
    void DropBins() { bins_.reset(); }

    /// Memory for bins; throws if it is short.
    static std::unique_ptr<void, decltype(&std::free)> Allocate(std::int64_t bytes, bool zero);

    /// What is wrong with a description; null for nothing.
    static const char* FindFault(const VDHistDescription& description);

private:
    void* Touch(bool zero);

    VDHistDescription description_;
    std::unique_ptr<void, decltype(&std::free)> bins_{nullptr, &std::free};
};

/// Records that a histogram can't be had like this; gives 0.
int VFReportHist(int code, const char* text, const char* routine);

/// Does the work of a function on a handle that is checked; a shortage of memory is recorded.
template <class Hist, class Work>
int VFWithHist(Hist* hist, const char* routine, Work&& work) noexcept
{
    if (hist == nullptr || static_cast<const VDCompBase*>(hist)->GetID() != VDHist::HandleId)
        return VFReportHist(VDBaseError::HistHandle, "The handle is no histogram's", routine);
    try {
        return work(*hist);
    } catch (...) {
        return VFReportHist(VDBaseError::HistMemory, "Memory is too short for the histogram", routine);
    }
}
