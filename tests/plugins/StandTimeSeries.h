#pragma once

#include "StandApi.h"
#include "StandIn.h"

#include "daxlib/FID.h"
#include "daxlib/TimeSeriesPlugin.h"

#include <cstring>
#include <memory>
#include <tuple>

class LQChannelMapper;

/// One channel of a stand-in test. Each type has values of its own, made when they are first asked for.
struct StandChannel
{
    std::map<int, VDVariant> header;  ///< by key
    std::int64_t points = 0;
    std::int64_t initialPoints = 0;  ///< up to here an unwritten point has `StandValue`, behind it 0
    std::tuple<std::vector<float>, std::vector<double>, std::vector<std::uint32_t>, std::vector<std::uint64_t>> values;
};

/// What a stand-in test holds; kept in the process after it is closed.
struct StandTest
{
    std::vector<StandChannel> channels;
    std::map<int, VDVariant> header;
    std::map<std::string, VDVariant> specific;
};

/// An instance of the stand-in time-series plug-in.
class StandTimeSeries
{
public:
    explicit StandTimeSeries(bool serial) : serial_(serial) {}
    ~StandTimeSeries();

    int Release() { return Enter("Release"); }
    int SetId(VDFileId* id, char create);
    int Open(int mode);
    int Close();
    int Flush() { return Enter("Flush"); }
    int GetCapability(int capability, char* answer);
    int GetValue(long channel, int key, VDVariant* value);
    int PutValue(long channel, int key, const VDVariant& value);
    VDString GetLastError() const { return StandLastError(script_); }
    int LoadMetaData(LQChannelMapper** mapper);
    int AddLegacyMetaData() { return Enter("AddLegacyMetaData"); }

    template <class T>
    int Get(const char* routine, long channel, std::int64_t first, std::int64_t count, T* values)
    {
        if (!quiet_ && !EnterData(routine, channel, first, count))
            return 0;
        std::memcpy(values, Values<T>(channel).data() + first - 1, static_cast<std::size_t>(count) * sizeof(T));
        return 1;
    }

    template <class T>
    int Put(const char* routine, long channel, std::int64_t first, std::int64_t count, const T* values)
    {
        if (!quiet_ && !EnterData(routine, channel, first, count))
            return 0;
        std::int64_t& points = test_.channels[static_cast<std::size_t>(channel)].points;
        points = std::max(points, first + count - 1);
        if (script_.Has("discard"))
            return 1;
        std::memcpy(Values<T>(channel).data() + first - 1, values, static_cast<std::size_t>(count) * sizeof(T));
        return 1;
    }

private:
    /// Logs a call and fails it if the script says so.
    /// @param name       entry point, with key or capability
    /// @param arguments  for the log
    int Enter(const std::string& name, const std::string& arguments = {});
    int EnterData(const char* routine, long channel, std::int64_t first, std::int64_t count);
    bool HasCapability(int capability) const;
    double ListedNumber(const std::string& key, std::size_t index, double otherwise) const;
    VDVariant ChannelValue(long index, int key) const;
    VDVariant StoredStatistics() const;

    template <class T>
    std::vector<T>& Values(long index)
    {
        StandChannel& channel = test_.channels[static_cast<std::size_t>(index)];
        auto& values = std::get<std::vector<T>>(channel.values);
        const auto size = static_cast<std::size_t>(channel.points);
        if (values.size() != size) {
            auto at = static_cast<std::int64_t>(values.size());
            for (values.resize(size); at < std::min(channel.points, channel.initialPoints); ++at)
                values[static_cast<std::size_t>(at)] = StandIn::StandValue<T>(index, at + 1);
        }
        return values;
    }

    const bool serial_;
    bool quiet_ = true;  ///< the script asks for nothing but the data
    int mode_ = 0;       ///< 0 while the test isn't open
    VDFileId* id_ = nullptr;
    std::string filename_;
    StandScript script_;
    StandTest test_;
    std::string log_;  ///< calls before it is known whether the script wants a log
    std::shared_ptr<LQChannelMapper> mapper_;
};
