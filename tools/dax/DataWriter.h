#pragma once

#include "TestAccess.h"
#include "TestCopy.h"

/// Writes the data of one kind into a new test. `VFWriteTest` calls it step by step.
class VDDataWriter
{
public:
    virtual ~VDDataWriter() = default;

    /// The access object of the target.
    virtual VDTestAccess& Access() = 0;
    /// Throws if the target's format, to which the access object is bound, can't hold the data at all.
    virtual void CheckFits() const {}
    /// Writes all that stands in front of the data, into a target that is open.
    virtual void WriteHeader(std::int64_t limit) = 0;
    /// @param limit  of a channel's points, rows or spectra
    virtual void WriteData(std::int64_t limit, VDProgressBar& progress) = 0;
};

/// @name Of each kind; the plan must outlive the result, and its source be of the kind
/// @{
std::unique_ptr<VDDataWriter> VFMakeTimeSeriesWriter(const VDCopyPlan& plan);
std::unique_ptr<VDDataWriter> VFMakeTableWriter(const VDCopyPlan& plan);
std::unique_ptr<VDDataWriter> VFMakeHistogramWriter(const VDCopyPlan& plan);
std::unique_ptr<VDDataWriter> VFMakeSpectraWriter(const VDCopyPlan& plan);
/// @}
