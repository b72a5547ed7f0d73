#pragma once

#include "ProgressBar.h"
#include "Registry.h"
#include "TimeSeriesTest.h"

/// What is copied, and into which format.
struct VDCopyPlan
{
    const VDTimeSeriesTest& source;
    std::vector<VDChannel> channels;
    VDFileType format;
};

/// An id for a test of the plan's format under this name, with the plan's channels.
VDFileIdHandle VFMakeTargetId(const VDCopyPlan& plan, const std::string& name);

/// Writes the plan's channels into a new test.
/// @param limit  at most so many points of each channel
void VFWriteTest(const VDCopyPlan& plan, VDFileId* target, std::int64_t limit, VDProgressBar& progress);
