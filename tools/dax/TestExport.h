#pragma once

#include "InputTest.h"
#include "ReadSelection.h"

#include <functional>

/// What goes into one CSV.
struct VDCsvPart
{
    std::string name;                                    ///< for people: "channels 1-3"
    std::string suffix;                                  ///< of its file's name where there are several parts: "_ch1-3"
    VDJson facts;                                        ///< keys that say what it holds
    std::function<std::int64_t(VDTextSink& out)> write;  ///< gives the number of rows; throws on failure
};

/// The data of a test as text, streamed in constant memory. The test and the selection must outlive it.
class VDTestExport
{
public:
    virtual ~VDTestExport() = default;

    /// What was asked for, one or more; they can't share one CSV.
    virtual std::vector<VDCsvPart> MakeParts() const = 0;
    /// Why they can't, and what to do.
    virtual std::string WhyParts(const std::vector<VDCsvPart>& parts) const = 0;
    /// Writes a JSON object, which is left open for keys that follow, also when a failure on the way is thrown on.
    virtual void WriteJson(VDTextSink& out) const = 0;
};

/// @name Of each kind
/// They throw for a selection that the test doesn't have.
/// @{
std::unique_ptr<VDTestExport> VFMakeTimeSeriesExport(const VDDataTest& test, const VDReadSelection& selection);
std::unique_ptr<VDTestExport> VFMakeTableExport(const VDDataTest& test, const VDReadSelection& selection);
std::unique_ptr<VDTestExport> VFMakeHistogramExport(const VDDataTest& test, const VDReadSelection& selection);
std::unique_ptr<VDTestExport> VFMakeSpectraExport(const VDDataTest& test, const VDReadSelection& selection);
/// @}

/// Of a test of any kind; throws if it has no data.
std::unique_ptr<VDTestExport> VFMakeTestExport(const VDInputTest& input, const VDReadSelection& selection);
