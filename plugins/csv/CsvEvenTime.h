#pragma once

#include <cstdint>

/// Finds out whether times grow evenly: all lie on a grid, none further from its place than `Tolerance` of a step. Each time
/// leaves an interval for the step; as soon as that is empty there is no such grid.
class CsvEvenTime
{
public:
    static constexpr double Tolerance = 1e-6;
    static constexpr std::int64_t MinTimes = 3;

    void Add(double time);
    void Fail() { even_ = false; }
    /// Whether no time has spoken against it yet.
    bool MayBeEven() const { return even_; }
    bool IsEven() const { return even_ && count_ >= MinTimes; }
    double GetFirst() const { return first_; }
    /// Times in a unit of time. A whole number, or one over one, where that suits all times.
    double GetRate() const;

private:
    bool even_ = true;
    std::int64_t count_ = 0;
    double first_ = 0.0;
    double last_ = 0.0;
    double least_ = 0.0;  ///< step
    double most_ = 0.0;
};
