#include "CsvEvenTime.h"

#include <algorithm>
#include <cmath>
#include <limits>

void CsvEvenTime::Add(double time)
{
    if (count_ == 0) {
        first_ = last_ = time;
        most_ = std::numeric_limits<double>::max();
        even_ = even_ && std::isfinite(time);
    } else {
        const auto steps = static_cast<double>(count_);
        const double passed = time - first_;
        least_ = std::max(least_, passed / (steps + Tolerance));
        most_ = std::min(most_, passed / (steps - Tolerance));
        even_ = even_ && time > last_ && least_ <= most_;
        last_ = time;
    }
    ++count_;
}

double CsvEvenTime::GetRate() const
{
    const double step = std::clamp((last_ - first_) / static_cast<double>(count_ - 1), least_, most_);
    const auto suits = [this](double wanted) { return wanted >= least_ && wanted <= most_; };
    if (const double rate = std::round(1.0 / step); rate >= 1.0 && suits(1.0 / rate))
        return rate;
    if (const double whole = std::round(step); whole >= 1.0 && suits(whole))
        return 1.0 / whole;
    return 1.0 / step;
}
