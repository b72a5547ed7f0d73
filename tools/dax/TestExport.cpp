#include "TestExport.h"

#include "ToolError.h"

std::unique_ptr<VDTestExport> VFMakeTestExport(const VDInputTest& input, const VDReadSelection& selection)
{
    int accessType = 0;
    VFCheck(FIDGetAccessInfo(input.GetId().Get(), &accessType, nullptr, nullptr));
    selection.CheckFits(accessType);
    switch (accessType) {
    case VTFileAccessTimeSeries:
        return VFMakeTimeSeriesExport(input.GetTest(), selection);
    case VTFileAccessHistogram:
        return VFMakeHistogramExport(input.GetTest(), selection);
    case VTFileAccessMultiColumn:
        return VFMakeTableExport(input.GetTest(), selection);
    case VTFileAccessComplexFrequency:
        return VFMakeSpectraExport(input.GetTest(), selection);
    default:
        VFFail(DaxToolError::NotTimeSeries, "The test holds no data that can be read but " + input.DescribeFormat(),
               "VFMakeTestExport");
    }
}
