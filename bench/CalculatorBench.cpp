// What reading and evaluating an expression cost. The reference is the same arithmetic and look-ups written out by hand.

#include "BenchRatios.h"

#include "vdbase/VDCalculator.h"
#include "vdbase/VFError.h"

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

namespace {

/// Finds two values as a host does: by name, in a variant.
class TwoValues : public VDCalculator
{
public:
    void GetVariableByName(const char* name, VDVariant& value) override
    {
        if (std::string_view(name) == "#A#")
            value.SetDouble(a_);
        else if (std::string_view(name) == "#B#")
            value.SetDouble(b_);
    }
    void Step() { a_ += 1; }

private:
    double a_ = 1;
    double b_ = 2;
};

void TwoLookUps(benchmark::State& state)
{
    TwoValues calculator;
    for (auto _ : state) {
        calculator.Step();
        VDVariant left;
        VDVariant right;
        calculator.GetVariableByName("#A#", left);
        calculator.GetVariableByName("#B#", right);
        double a = 0;
        double b = 0;
        left.ConvertToDouble(&a);
        right.ConvertToDouble(&b);
        benchmark::DoNotOptimize(a * 2 + b);
    }
}
BENCHMARK(TwoLookUps);

void EvaluateCompiled(benchmark::State& state)
{
    TwoValues calculator;
    if (!calculator.SetExpression("#A#*2+#B#"))
        state.SkipWithError("not read");
    for (auto _ : state) {
        calculator.Step();
        double value = 0;
        calculator.EvaluateToDouble(&value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(EvaluateCompiled);

void EvaluateWithoutValue(benchmark::State& state)
{
    const VDErrorMute mute;
    TwoValues calculator;
    if (!calculator.SetExpression("#Missing#>2"))
        state.SkipWithError("not read");
    bool truth = false;
    for (auto _ : state)
        if (calculator.EvaluateExpressionToBoolean(&truth))
            state.SkipWithError("a value");
}
BENCHMARK(EvaluateWithoutValue);

/// An expression of so many operators, one after the other or one inside the other: 32 times as many must not take longer
/// than 32 times the time, some noise aside.
void Read(benchmark::State& state, const std::string& expression)
{
    VDCalculator calculator;
    double value = 0;
    for (auto _ : state)
        if (!calculator.EvaluateToDouble(expression.c_str(), &value))
            state.SkipWithError("not read");
}

template <int Count>
void ReadSum(benchmark::State& state)
{
    std::string expression = "1";
    for (int count = 0; count < Count; ++count)
        expression += "+1";
    Read(state, expression);
}
BENCHMARK_TEMPLATE(ReadSum, 1000);
BENCHMARK_TEMPLATE(ReadSum, 32000);

template <int Count>
void ReadNested(benchmark::State& state)
{
    Read(state, std::string(Count, '(') + "1" + std::string(Count, ')'));
}
BENCHMARK_TEMPLATE(ReadNested, 1000);
BENCHMARK_TEMPLATE(ReadNested, 32000);

}  // namespace

int main(int argc, char** argv)
{
    return RunBenchRatios(argc, argv,
                          {{"EvaluateCompiled", "TwoLookUps", 10},
                           {"ReadSum<32000>", "ReadSum<1000>", 48},
                           {"ReadNested<32000>", "ReadNested<1000>", 48}});
}
