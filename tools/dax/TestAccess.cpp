#include "TestAccessOf.h"

std::unique_ptr<VDTestAccess> VFMakeTestAccess(int accessType)
{
    switch (accessType) {
    case VTFileAccessTimeSeries:
        return std::make_unique<VDTestAccessOf<VDTsCalls>>();
    case VTFileAccessMetaData:
        return std::make_unique<VDTestAccessOf<VDMetaCalls>>();
    default:
        return nullptr;
    }
}
