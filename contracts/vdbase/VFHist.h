#pragma once

#include "vdbase/VDHistDescription.h"

class VDHist;

/// Histograms behind handles: one whole histogram in memory, with all that belongs to it. An axis X of bins, for a 3D
/// histogram an axis Y, too, and the values of the bins, which are called Z.
///
/// Every function takes the handle first and gives 1 for success and 0, recorded, for failure: `VDBaseError::HistHandle` for
/// a null handle or one that is no histogram, `HistValue` for a value that can't be, `HistMemory` when memory is short. A
/// failure changes nothing. Out arguments come last and are assigned. Flags are 0 or 1. One thread uses a histogram at a
/// time.

/// @name Life
/// @{
/// A new histogram with one reference: no format, no bins on X, one on Y. Null when memory is short.
VDBASE_API VDHist* VFHistCreate();
/// Gives the number of references after the call.
VDBASE_API int VFHistAddRef(VDHist* hist);
/// Gives a reference back and ends the histogram with the last one.
VDBASE_API int VFHistRelease(VDHist* hist);
/// Makes `hist` equal to `other`.
VDBASE_API int VFHistCopy(VDHist* hist, const VDHist* other);
/// All but the bins in one piece; null for an invalid handle. Valid until the histogram changes.
VDBASE_API const VDHistDescription* VFHistGetDescription(const VDHist* hist);
/// Takes over a whole description, checked as each setter checks its part. All bins are 0 afterwards.
VDBASE_API int VFHistSetDescription(VDHist* hist, const VDHistDescription& description);
/// @}

/// @name Kind
/// @{
VDBASE_API int VFHistGetType(const VDHist* hist, int* type, int* subType);
VDBASE_API int VFHistSetType(VDHist* hist, int type, int subType);
VDBASE_API int VFHistIs3D(const VDHist* hist, char* is3D);
VDBASE_API int VFHistSet3D(VDHist* hist, char is3D);
/// A `VTHistFormat`, or its owner's number. 0, not recorded, while it is unset.
VDBASE_API int VFHistGetFormat(const VDHist* hist, int* format);
/// Bins that are there are converted. Fails, if one of them has no exact value in the format.
/// @param format  1 or more
VDBASE_API int VFHistSetFormat(VDHist* hist, int format);
VDBASE_API int VFHistGetBinType(const VDHist* hist, int* binType);
VDBASE_API int VFHistSetBinType(VDHist* hist, int binType);
/// @}

/// @name Axes
/// A change of the number of bins makes all bins 0.
/// @{
/// Of variable bins the size is 0.
VDBASE_API int VFHistGetXLimits(const VDHist* hist, double* min, double* max, std::int64_t* binCount, double* binSize);
VDBASE_API int VFHistGetYLimits(const VDHist* hist, double* min, double* max, std::int64_t* binCount, double* binSize);
/// Uniform bins between finite limits of which the first isn't above the second. Borders that were set are gone.
VDBASE_API int VFHistSetXLimits(VDHist* hist, double min, double max, std::int64_t binCount);
VDBASE_API int VFHistSetYLimits(VDHist* hist, double min, double max, std::int64_t binCount);
VDBASE_API int VFHistGetIsVariableXBins(const VDHist* hist, char* isVariable);
VDBASE_API int VFHistGetIsVariableYBins(const VDHist* hist, char* isVariable);
/// The borders; empty for uniform bins.
VDBASE_API int VFHistGetVariableXBins(const VDHist* hist, VDArray<double>* borders);
VDBASE_API int VFHistGetVariableYBins(const VDHist* hist, VDArray<double>* borders);
/// @param count  of the borders, 2 or more: there is one bin less. They are finite and each is above the one before
VDBASE_API int VFHistSetVariableXBins(VDHist* hist, const double* borders, std::int64_t count);
VDBASE_API int VFHistSetVariableYBins(VDHist* hist, const double* borders, std::int64_t count);
VDBASE_API int VFHistGetXBinCount(const VDHist* hist, std::int64_t* binCount);
VDBASE_API int VFHistGetYBinCount(const VDHist* hist, std::int64_t* binCount);
VDBASE_API int VFHistGetXBinLabels(const VDHist* hist, VDStringArray* labels);
VDBASE_API int VFHistGetYBinLabels(const VDHist* hist, VDStringArray* labels);
VDBASE_API int VFHistSetXBinLabels(VDHist* hist, const VDStringArray& labels);
VDBASE_API int VFHistSetYBinLabels(VDHist* hist, const VDStringArray& labels);
VDBASE_API int VFHistGetXTitle(const VDHist* hist, VDString* title);
VDBASE_API int VFHistGetYTitle(const VDHist* hist, VDString* title);
VDBASE_API int VFHistGetZTitle(const VDHist* hist, VDString* title);
VDBASE_API int VFHistSetXTitle(VDHist* hist, const char* title);
VDBASE_API int VFHistSetYTitle(VDHist* hist, const char* title);
VDBASE_API int VFHistSetZTitle(VDHist* hist, const char* title);
VDBASE_API int VFHistGetXUnits(const VDHist* hist, VDString* units);
VDBASE_API int VFHistGetYUnits(const VDHist* hist, VDString* units);
VDBASE_API int VFHistGetZUnits(const VDHist* hist, VDString* units);
VDBASE_API int VFHistSetXUnits(VDHist* hist, const char* units);
VDBASE_API int VFHistSetYUnits(VDHist* hist, const char* units);
VDBASE_API int VFHistSetZUnits(VDHist* hist, const char* units);
VDBASE_API int VFHistGetXBoundaryRule(const VDHist* hist, int* rule);
VDBASE_API int VFHistGetYBoundaryRule(const VDHist* hist, int* rule);
VDBASE_API int VFHistSetXBoundaryRule(VDHist* hist, int rule);
VDBASE_API int VFHistSetYBoundaryRule(VDHist* hist, int rule);
VDBASE_API int VFHistGetAutoScale(const VDHist* hist, char* autoScale);
VDBASE_API int VFHistSetAutoScale(VDHist* hist, char autoScale);
/// Fractions of a bin's size.
VDBASE_API int VFHistGetToleranceFractions(const VDHist* hist, double* x, double* y);
VDBASE_API int VFHistSetToleranceFractions(VDHist* hist, double x, double y);
VDBASE_API int VFHistGetMissEdgeFraction(const VDHist* hist, double* fraction);
VDBASE_API int VFHistSetMissEdgeFraction(VDHist* hist, double fraction);
/// @}

/// @name The smallest and the largest value that came
/// The getters of values fail, not recorded, while they aren't set.
/// @{
VDBASE_API int VFHistAreXActualsSet(const VDHist* hist, char* set);
VDBASE_API int VFHistAreYActualsSet(const VDHist* hist, char* set);
VDBASE_API int VFHistGetActualXMin(const VDHist* hist, double* value);
VDBASE_API int VFHistGetActualXMax(const VDHist* hist, double* value);
VDBASE_API int VFHistGetActualYMin(const VDHist* hist, double* value);
VDBASE_API int VFHistGetActualYMax(const VDHist* hist, double* value);
VDBASE_API int VFHistSetXActuals(VDHist* hist, double min, double max);
VDBASE_API int VFHistSetYActuals(VDHist* hist, double min, double max);
/// @}

/// @name What has no bin
/// @{
/// @param flag  one `VTHistOverflowFlag`
VDBASE_API int VFHistGetOverflowCount(const VDHist* hist, int flag, std::int64_t* count);
VDBASE_API int VFHistSetOverflowCount(VDHist* hist, int flag, std::int64_t count);
VDBASE_API int VFHistGetMaxOverflows(const VDHist* hist, int* count);
VDBASE_API int VFHistSetMaxOverflows(VDHist* hist, int count);
/// The overflows that are kept one by one.
/// @param overflows  takes as many as there is room for; may be null if that is none
/// @param exceeded   there were more than are kept
/// @param count      of those that are kept, whatever the room
VDBASE_API int VFHistGetOverflows_D(const VDHist* hist, std::int64_t room, VDHistOverflow* overflows, char* exceeded,
                                    std::int64_t* count);
VDBASE_API int VFHistSetOverflows_D(VDHist* hist, char exceeded, std::int64_t count, const VDHistOverflow* overflows);
/// The turning points that are left over; arguments as above.
VDBASE_API int VFHistGetResiduals(const VDHist* hist, std::int64_t room, double* values, std::int64_t* count);
VDBASE_API int VFHistSetResiduals(VDHist* hist, std::int64_t count, const double* values);
/// @}

/// @name Offset
/// @{
/// Which axes an offset of the measured value moves. A new histogram: X alone.
VDBASE_API int VFHistGetOffsetAxes(const VDHist* hist, char* x, char* y);
VDBASE_API int VFHistSetOffsetAxes(VDHist* hist, char x, char y);
/// Moves limits, borders, actuals and overflows of these axes, and the residuals. Fails for an offset that isn't finite or
/// takes a limit out of the range of doubles.
VDBASE_API int VFHistAddStaticOffset(VDHist* hist, double offset);
/// @}

/// @name Bins
/// The bin of the indexes x and y, from 0, is the value `y * X bins + x` in order 0, and `x * Y bins + y` in order 1.
/// `count` is that of all bins, which must be the histogram's; there is a form for each type of values. A getter of floats
/// or doubles gives the nearest value. All else is exact: a value that its taker can't hold is refused.
/// @{
VDBASE_API int VFHistGetXYBins_D(const VDHist* hist, int order, double* values, std::int64_t count);
VDBASE_API int VFHistGetXYBins_F(const VDHist* hist, int order, float* values, std::int64_t count);
VDBASE_API int VFHistGetXYBins_H(const VDHist* hist, int order, std::int64_t* values, std::int64_t count);
VDBASE_API int VFHistGetXYBins_L(const VDHist* hist, int order, std::int32_t* values, std::int64_t count);
VDBASE_API int VFHistSetXYBins_D(VDHist* hist, int order, const double* values, std::int64_t count);
VDBASE_API int VFHistSetXYBins_F(VDHist* hist, int order, const float* values, std::int64_t count);
VDBASE_API int VFHistSetXYBins_H(VDHist* hist, int order, const std::int64_t* values, std::int64_t count);
VDBASE_API int VFHistSetXYBins_L(VDHist* hist, int order, const std::int32_t* values, std::int64_t count);
/// The smallest and the largest value; NaNs don't count. 1e30 and -1e30 where there is none.
VDBASE_API int VFHistGetZLimits(const VDHist* hist, double* min, double* max);
/// The bins as they lie in memory, in order 0 and in the type of the format: how many bytes, and where.
VDBASE_API int VFHistGetRawBins(const VDHist* hist, std::int64_t* bytes, const void** bins);
/// Room for the bins, which the caller fills wholly; what is in it is undefined until then.
VDBASE_API int VFHistPrepareRawBins(VDHist* hist, std::int64_t* bytes, void** bins);
/// Bytes of one bin of a format.
VDBASE_API int VFHistGetBinBytes(int format);
/// @}
