// What metadata by keyword cost: a look-up beside the bare one in the set, a text beside its look-ups, a query over all
// channels beside the same loop by hand, and an expression in so many channels that it can be evaluated in none.

#include "BenchRatios.h"

#include "daxlib/VFDaxMetaDataExpression.h"
#include "vdbase/VFError.h"
#include "vdstore/LQChannelMapper.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int SetItems = 200;
constexpr int QueryChannels = 10'000;
constexpr int Tokens = 10;

/// So many channels with a few items each; the test has a set of 200 items.
class Metadata
{
public:
    explicit Metadata(int channels)
    {
        for (int index = 0; index < channels; ++index) {
            LQChannelEntry* const entry = mapper_.Append();
            mapper_.SetChannelNumber(index + 1, entry);
            Z4PropertySet& set = *mapper_.AdoptMetaDataSet("Sensor", nullptr, index);
            set.AddDouble("Gain", index);
            set.AddString("Unit", "V");
        }
        Z4PropertySet& set = *mapper_.AdoptMetaDataSet("Vehicle", nullptr, LQChannelMapper::GLOBAL);
        for (int item = 0; item < SetItems; ++item)
            set.AddDouble(("Item" + std::to_string(item)).c_str(), item / 7.0);
    }
    LQChannelMapper* Get() { return &mapper_; }

private:
    LQChannelMapper mapper_{nullptr};
};

bool LookUp(LQChannelMapper* mapper, const VDString& keyword, int channel)
{
    Z4Property* item = nullptr;
    return VFDaxGetMetaDataItem(mapper, keyword, channel, &item, 1, nullptr, nullptr) && item != nullptr;
}

void SetLookUp(benchmark::State& state)
{
    Metadata metadata(10);
    Z4PropertySet& set = *metadata.Get()->GetMetaDataSet("Vehicle", LQChannelMapper::GLOBAL);
    Z4Property* item = nullptr;
    for (auto _ : state)
        benchmark::DoNotOptimize(set.Lookup("Item150", &item, false));
}
BENCHMARK(SetLookUp);

void KeywordLookUp(benchmark::State& state)
{
    Metadata metadata(10);
    const VDString keyword("test.Vehicle.Item150");
    for (auto _ : state)
        if (!LookUp(metadata.Get(), keyword, 3))
            state.SkipWithError("not found");
}
BENCHMARK(KeywordLookUp);

void TenLookUps(benchmark::State& state)
{
    Metadata metadata(10);
    const VDString keyword("Vehicle.Item150");
    for (auto _ : state)
        for (int token = 0; token < Tokens; ++token)
            if (!LookUp(metadata.Get(), keyword, 3))
                state.SkipWithError("not found");
}
BENCHMARK(TenLookUps);

void ExpandTenTokens(benchmark::State& state)
{
    Metadata metadata(10);
    VDString text;
    for (int token = 0; token < Tokens; ++token)
        text += "and also #Vehicle.Item150#, ";
    VDString result;
    for (auto _ : state)
        if (!VFDaxEvaluateStringFromMeta(text, metadata.Get(), 3, 1, &result, 0, nullptr, nullptr, 0))
            state.SkipWithError("not expanded");
}
BENCHMARK(ExpandTenTokens);

void QueryByHand(benchmark::State& state)
{
    Metadata metadata(QueryChannels);
    LQChannelMapper& mapper = *metadata.Get();
    for (auto _ : state) {
        int found = -1;
        for (int index = 0; index < mapper.GetChannelCount() && found < 0; ++index) {
            double gain = 0;
            if (mapper.GetDoubleMetaDataItem("Gain", &gain, index) && gain * 2 + 1 > 2 * (QueryChannels - 1))
                found = index;
        }
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(QueryByHand);

void QueryByKeyword(benchmark::State& state)
{
    Metadata metadata(QueryChannels);
    const VDString keyword("chan?(#Gain#*2+1>" + std::to_string(2 * (QueryChannels - 1)) + ").Unit");
    for (auto _ : state)
        if (!LookUp(metadata.Get(), keyword, 0))
            state.SkipWithError("not found");
}
BENCHMARK(QueryByKeyword);

template <int Channels>
void EvaluateNowhere(benchmark::State& state)
{
    Metadata metadata(Channels);
    VDString expression("#Gain# + #chan?(#Gain#<0).Gain#");
    VDString result;
    for (auto _ : state)
        if (VFDaxEvaluateValueFromMeta(expression, metadata.Get(), -1, &result, nullptr))
            state.SkipWithError("a value");
}
BENCHMARK_TEMPLATE(EvaluateNowhere, 1'000)->Name("EvaluateNowhere/1k");
BENCHMARK_TEMPLATE(EvaluateNowhere, 10'000)->Name("EvaluateNowhere/10k");
BENCHMARK_TEMPLATE(EvaluateNowhere, 100'000)->Name("EvaluateNowhere/100k");

}  // namespace

int main(int argc, char** argv)
{
    return RunBenchRatios(argc, argv,
                          {{"KeywordLookUp", "SetLookUp", 12},
                           {"ExpandTenTokens", "TenLookUps", 3},
                           {"QueryByKeyword", "QueryByHand", 10},
                           {"EvaluateNowhere/10k", "EvaluateNowhere/1k", 20},
                           {"EvaluateNowhere/100k", "EvaluateNowhere/10k", 20}});
}
