#include "VDTsAcc.h"

#include "frame/ExportedWrapper.h"

extern "C" {

int TSAccGetStat(VDTsAcc* acc, int index, int id, float* value)
{
    return VFForward<&VDTsAcc::GetStat<float>>(acc, __func__, index, id, value);
}

int TSAccGetStatDoublePrecision(VDTsAcc* acc, int index, int id, double* value)
{
    return VFForward<&VDTsAcc::GetStat<double>>(acc, __func__, index, id, value);
}

int TSAccGetPointStat(VDTsAcc* acc, int index, int id, std::int64_t* point)
{
    return VFForward<&VDTsAcc::GetPointStat>(acc, __func__, index, id, point);
}

int TSAccGetAllStats(VDTsAcc* acc, int index, float* max, float* min, float* mean, float* sdev, float* rms,
                     std::int64_t* pointOfMax, std::int64_t* pointOfMin, std::int64_t* pointOfAbs)
{
    return VFForward<&VDTsAcc::GetAllStats<float>>(acc, __func__, index, max, min, mean, sdev, rms, pointOfMax, pointOfMin,
                                                   pointOfAbs);
}

int TSAccGetAllStatsDoublePrecision(VDTsAcc* acc, int index, double* max, double* min, double* mean, double* sdev,
                                    double* rms, std::int64_t* pointOfMax, std::int64_t* pointOfMin,
                                    std::int64_t* pointOfAbs)
{
    return VFForward<&VDTsAcc::GetAllStats<double>>(acc, __func__, index, max, min, mean, sdev, rms, pointOfMax, pointOfMin,
                                                    pointOfAbs);
}

int TSAccSetStats(VDTsAcc* acc, int index, float max, float min, float mean, float sdev, float rms, std::int64_t pointOfMax,
                  std::int64_t pointOfMin, std::int64_t pointOfAbs)
{
    return VFForward<&VDTsAcc::SetStats>(acc, __func__, index, max, min, mean, sdev, rms, pointOfMax, pointOfMin,
                                         pointOfAbs);
}

int TSAccSetStatsMonitor(VDTsAcc* acc, char enable, char recalculate)
{
    return VFForward<&VDTsAcc::SetStatsMonitor>(acc, __func__, enable, recalculate);
}

int TSAccCalcStats(VDTsAcc* acc, int index)
{
    return VFForward<&VDTsAcc::CalcStats>(acc, __func__, index);
}

int TSAccGetFullScaleLimits(VDTsAcc* acc, int index, float* low, float* high)
{
    return VFForward<&VDTsAcc::GetFullScaleLimits>(acc, __func__, index, low, high);
}

int TSAccSetFullScaleLimits(VDTsAcc* acc, int index, float limit, float otherLimit)
{
    return VFForward<&VDTsAcc::SetFullScaleLimits>(acc, __func__, index, limit, otherLimit);
}

int TSAccGetFullScaleValid(VDTsAcc* acc, int index, char* valid)
{
    return VFForward<&VDTsAcc::GetFullScaleValid>(acc, __func__, index, valid);
}

}  // extern "C"
