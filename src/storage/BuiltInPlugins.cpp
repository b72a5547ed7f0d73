#include "BuiltInPlugins.h"

#include "StorageFileTypes.h"
#include "famos/FamosFormat.h"

#include "vdbase/VFPlugIn.h"

void VFAddBuiltInPlugins()
{
    constexpr const char* library = "daxlib";
    VFAddBuiltInPlugIn("FileFormat", "Z4", "Structured storage", library, "Z4FF");
    VFAddBuiltInPlugIn("FileFormat", "Z4Temporary", "Temporary structured storage", library, "Z4TempFF");
    VFAddBuiltInPlugIn("TimeSeriesFiles", StorageFormat::TimeSeriesClass, "Structured storage of time series", library,
                       "TSAccGen");
    VFAddBuiltInPlugIn("HistogramFiles", StorageFormat::HistogramClass, "Structured storage of histograms", library,
                       "HFAccGen");
    VFAddBuiltInPlugIn("FileFormat", "Famos", "Famos recordings", library, "FamosFF");
    VFAddBuiltInPlugIn("TimeSeriesFiles", FamosFormat::TimeSeriesClass, "Famos time series", library, "TSAccGen");
    VFAddBuiltInPlugIn("XYPairedFiles", FamosFormat::PairsClass, "Famos pairs", library, "FamosXY");
    VFAddBuiltInPlugIn("TimeSeriesFiles", FamosFormat::TimeStampedClass, "Famos time-stamped frames", library, "TSAccGen");
}
