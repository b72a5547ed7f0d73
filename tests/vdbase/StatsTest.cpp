#include "support/TestSupport.h"

#include "vdbase/VDStats.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

template <class T>
struct Result
{
    std::int64_t count, pointOfMax, pointOfMin, pointOfAbs;
    T max, min, mean, sdev, rms;
};

template <class T>
using Accumulator = std::conditional_t<std::is_same_v<T, float>, VDStats, VDStatsEx>;

template <class T>
Result<T> StatsOf(const std::vector<T>& values, std::size_t blockSize)
{
    Accumulator<T> stats;
    stats.Initialise();
    for (std::size_t done = 0; done < values.size(); done += blockSize)
        stats.Process(values.data() + done, static_cast<std::int64_t>(std::min(blockSize, values.size() - done)));
    Result<T> r{};
    stats.Finish(&r.count, &r.max, &r.min, &r.mean, &r.sdev, &r.rms, &r.pointOfMax, &r.pointOfMin, &r.pointOfAbs);
    return r;
}

// A second, slow way to the same numbers.
template <class T>
void ExpectAsReference(const std::vector<T>& values, double tolerance)
{
    const auto count = static_cast<long double>(values.size());
    long double mean = 0;
    long double squares = 0;
    long double power = 0;
    for (const T value : values)
        mean += value / count;
    for (const T value : values) {
        squares += (value - mean) * (value - mean);
        power += static_cast<long double>(value) * value;
    }
    const long double sdev = std::sqrt(squares / (count - 1));
    const long double rms = std::sqrt(power / count);
    const auto max = std::max_element(values.begin(), values.end());
    const auto min = std::min_element(values.begin(), values.end());
    for (const std::size_t blockSize : {std::size_t{1}, std::size_t{37}, std::size_t{1024}, values.size()}) {
        const Result<T> r = StatsOf(values, blockSize);
        EXPECT_EQ(r.count, static_cast<std::int64_t>(values.size()));
        for (const long double ratio : {r.mean / mean, r.sdev / sdev, r.rms / rms})
            EXPECT_NEAR(static_cast<double>(ratio), 1, tolerance);
        EXPECT_TRUE(r.max == *max && r.pointOfMax == max - values.begin() + 1) << r.pointOfMax;
        EXPECT_TRUE(r.min == *min && r.pointOfMin == min - values.begin() + 1) << r.pointOfMin;
    }
}

template <class T>
void ExpectReferenceForAllSignals(double tolerance)
{
    std::mt19937_64 engine(7);
    std::normal_distribution<double> noise;
    std::vector<T> values(50021);
    const auto expectFor = [&](auto signal) {
        for (std::size_t index = 0; index < values.size(); ++index)
            values[index] = static_cast<T>(signal(index) + noise(engine));
        ExpectAsReference(values, tolerance);
    };
    expectFor([](std::size_t) { return 1e6; });
    expectFor([](std::size_t index) { return static_cast<double>(index) - 1e4; });
    // The first value of each block is far off the mean of the block.
    expectFor([](std::size_t index) { return index % 1024 == 0 ? 1e5 : 1000; });
}

/// The same signal in a range of its own, whose squares no double holds, and in the company of usual values.
void ExpectReferenceForAllRanges()
{
    std::mt19937_64 engine(7);
    std::normal_distribution<double> noise(3, 1);
    std::vector<double> usual(3000);
    std::ranges::generate(usual, [&] { return noise(engine); });
    for (const double range : {1e-290, 1e-200, 1e-121, 1e-120, 1e135, 1e136, 1e200, 1e300}) {
        std::vector<double> values = usual;
        for (double& value : values)
            value *= range;
        ExpectAsReference(values, 1e-12);
        values.insert(values.begin() + 1500, usual.begin(), usual.end());
        ExpectAsReference(values, 1e-12);
    }
}

const double notANumber = std::nan("");
const double infinity = std::numeric_limits<double>::infinity();

}  // namespace

TEST(Stats, AgreeWithTheReference)
{
    ExpectReferenceForAllSignals<float>(1e-6);
    ExpectReferenceForAllSignals<double>(1e-12);
    ExpectReferenceForAllRanges();
}

TEST(Stats, FewPointsAndEqualExtremes)
{
    Result<float> r = StatsOf<float>({}, 1);
    EXPECT_EQ(r.count + r.pointOfMax + r.pointOfMin + r.pointOfAbs, 0);
    EXPECT_EQ(std::abs(r.max) + std::abs(r.min) + std::abs(r.mean) + r.sdev + r.rms, 0);
    r = StatsOf<float>({-3}, 1);
    EXPECT_TRUE(r.sdev == 0 && r.rms == 3 && r.max == -3 && r.pointOfAbs == 1);
    EXPECT_EQ(StatsOf<double>({1, -5, 4}, 3).pointOfAbs, 2);

    const Result<double> equal = StatsOf<double>({0, -4, 4, 4, -4, 0}, 2);
    EXPECT_TRUE(equal.pointOfMax == 3 && equal.pointOfMin == 2 && equal.pointOfAbs == 2);
    r = StatsOf(std::vector<float>(5000, 0.1F), 4096);
    EXPECT_TRUE(r.sdev == 0 && r.mean == 0.1F && r.pointOfMax == 1);
}

TEST(Stats, NansAreCountedAndPassedOver)
{
    std::vector<double> values(3000, 1.0);
    values[0] = values[1500] = values[2999] = notANumber;
    values[1501] = 4;
    values[2998] = -2;
    for (const std::size_t blockSize : {std::size_t{1}, std::size_t{1000}, values.size()}) {
        const Result<double> r = StatsOf(values, blockSize);
        EXPECT_EQ(r.count, 3000);
        EXPECT_DOUBLE_EQ(r.mean, 1);
        EXPECT_DOUBLE_EQ(r.sdev, std::sqrt(18.0 / 2996));
        EXPECT_TRUE(r.pointOfMax == 1502 && r.pointOfMin == 2999);
    }
    const Result<double> none = StatsOf<double>({notANumber, notANumber}, 2);
    EXPECT_TRUE(none.count == 2 && none.max == 0 && none.pointOfMax == 0);
}

TEST(Stats, InfinitiesAndHugeValuesKeepWhatCanBeTold)
{
    for (const std::size_t blockSize : {std::size_t{1}, std::size_t{4}}) {
        const Result<double> r = StatsOf<double>({1, infinity, 2, notANumber, 3}, blockSize);
        EXPECT_TRUE(r.mean == infinity && r.max == infinity && r.min == 1 && r.pointOfMax == 2);
        EXPECT_TRUE(std::isnan(StatsOf<double>({infinity, -infinity}, blockSize).mean));
        const Result<double> huge = StatsOf<double>({1.5e308, -1.5e308, 1.5e308, 1.5e308}, blockSize);
        EXPECT_NEAR(huge.mean / 0.75e308, 1, 1e-12);
        EXPECT_EQ(huge.pointOfMin, 2);
        EXPECT_TRUE(StatsOf<double>({-infinity, 1e300}, blockSize).mean == -infinity);
    }

    // The ends of the range: nothing is lost, and nothing becomes infinite that isn't.
    constexpr double largest = std::numeric_limits<double>::max();
    constexpr double smallest = std::numeric_limits<double>::denorm_min();
    std::vector<double> alternating(1000);
    for (const double size : {largest, 1.7e308, 1e200, 1e-200, 1000 * smallest, smallest}) {
        for (std::size_t index = 0; index < alternating.size(); ++index)
            alternating[index] = index % 2 == 0 ? size : -size;
        const Result<double> r = StatsOf(alternating, 37);
        EXPECT_LE(std::abs(r.mean), 1e-12 * size);
        EXPECT_DOUBLE_EQ(r.rms, size);
        EXPECT_DOUBLE_EQ(r.sdev, size * std::sqrt(1000.0 / 999)) << "past the range for the largest";
    }
    const Result<double> alike = StatsOf<double>({largest, largest, largest}, 2);
    EXPECT_TRUE(alike.mean == largest && alike.rms == largest && alike.sdev == 0);
}
