#pragma once

#include "vdbase/VDArray.h"
#include "vdbase/VDString.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

/// The smallest and the largest of some values; where there are none, the smallest is above the largest.
struct VDXYLimits
{
    double minimum = std::numeric_limits<double>::infinity();
    double maximum = -std::numeric_limits<double>::infinity();

    bool Exist() const { return minimum <= maximum; }
    void Include(const VDXYLimits& other)
    {
        minimum = std::min(minimum, other.minimum);
        maximum = std::max(maximum, other.maximum);
    }
};

struct VDXYFileDataSet
{
    std::int64_t rows = 0;
    VDString title;
};

struct VDXYFileCol
{
    int type = 0;
    VDString title;
    VDString units;
    VDString keyword;
    std::vector<VDXYLimits> limits;  ///< of each data set; empty for a column that isn't numeric
};

/// What `VDXYAcc` keeps of a channel.
struct VDXYFileChan
{
    bool limitsValid = false;
    VDArray<VDXYFileDataSet> dataSets{10};
    VDArray<VDXYFileCol> columns{10};
};
