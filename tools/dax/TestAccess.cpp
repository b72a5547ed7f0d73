#include "TestAccessOf.h"

std::unique_ptr<VDTestAccess> VFMakeTestAccess(int accessType)
{
    switch (accessType) {
    case VTFileAccessTimeSeries:
        return std::make_unique<VDTestAccessOf<VDTsCalls>>();
    case VTFileAccessHistogram:
        return std::make_unique<VDTestAccessOf<VDHistogramCalls>>();
    case VTFileAccessMultiColumn:
        return std::make_unique<VDTestAccessOf<VDTableCalls>>();
    case VTFileAccessComplexFrequency:
        return std::make_unique<VDTestAccessOf<VDSpectraCalls>>();
    case VTFileAccessMetaData:
        return std::make_unique<VDTestAccessOf<VDMetaCalls>>();
    default:
        return nullptr;
    }
}
