#pragma once

#include "Command.h"
#include "Identification.h"
#include "TimeSeriesTest.h"

/// The file that a subcommand works on, as its arguments name it. All subcommands open it through this, so that what is
/// wrong with it is told wherever it is used.
class VDInputTest
{
public:
    /// Identifies the file, chooses the test and opens it; throws if that fails. Damage is a warning, or a failure where the
    /// arguments are strict.
    VDInputTest(VDCommandContext& context, const VDTestArguments& arguments);
    /// The same for a test that was chosen already.
    VDInputTest(VDCommandContext& context, const VDTestArguments& arguments, VDFileIdHandle id);

    const VDFileIdHandle& GetId() const { return id_; }
    const VDDataTest& GetTest() const { return *test_; }
    /// Throws for a test of another kind of data.
    const VDTimeSeriesTest& GetTimeSeries() const;
    /// Throws for a kind of data that no family of the library serves.
    VDTestAccess& Access() const;
    /// Of the format, for reports.
    std::string DescribeFormat() const;
    std::string GetPath() const { return VFGetTestFiles(id_.Get()).front(); }

private:
    void Tell(VDCommandContext& context, const VDTestArguments& arguments, int code, const std::string& text) const;
    void TellOfSidecar(VDCommandContext& context, const VDTestArguments& arguments) const;

    VDFileIdHandle id_;
    std::unique_ptr<VDDataTest> test_;
};
