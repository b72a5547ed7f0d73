#include "StandTimeSeries.h"

#include "vdstore/LQChannelMapper.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

STAND_API void StandTSTakeLog(VDString* text);
STAND_API int StandTSTakeMaxInFlight();

namespace {

/// What the instances of a process share.
struct StandShared
{
    std::mutex lock;
    std::condition_variable changed;
    std::string log;
    int inFlight = 0;
    int maxInFlight = 0;
    int meetings = 0;  ///< how often a second call joined a first
    std::map<std::string, StandTest> closed;
};

StandShared& Shared()
{
    static StandShared shared;
    return shared;
}

/// Holds the call until a second one is under way as well, at most for the time given.
void Overlap(int milliseconds)
{
    StandShared& shared = Shared();
    std::unique_lock guard(shared.lock);
    shared.maxInFlight = std::max(shared.maxInFlight, ++shared.inFlight);
    const int before = shared.meetings;
    if (shared.inFlight > 1) {
        ++shared.meetings;
        shared.changed.notify_all();
    } else {
        shared.changed.wait_for(guard, std::chrono::milliseconds(milliseconds), [&] { return shared.meetings != before; });
    }
    --shared.inFlight;
}

std::string Text(const VDVariant& value)
{
    VDString text;
    if (value.GetType() != VTVariantList)
        return value.ConvertToString(&text) ? text.Str() : "type" + std::to_string(value.GetType());
    std::string all;
    for (int index = 0; index < value.GetNumItems(); ++index)
        all += (index == 0 ? "" : ",") + Text(value[index]);
    return all;
}

VDVariant Known(const std::map<int, VDVariant>& header, int key)
{
    const auto found = header.find(key);
    return found == header.end() ? VDVariant() : found->second;
}

}  // namespace

void StandTSTakeLog(VDString* text)
{
    const std::lock_guard guard(Shared().lock);
    *text = std::exchange(Shared().log, {});
}

int StandTSTakeMaxInFlight()
{
    const std::lock_guard guard(Shared().lock);
    return std::exchange(Shared().maxInFlight, 0);
}

StandTimeSeries::~StandTimeSeries()
{
    if (id_ != nullptr)
        FIDRelease(id_);
}

int StandTimeSeries::Enter(const std::string& name, const std::string& arguments)
{
    log_ += name + (arguments.empty() ? "" : " ") + arguments + "\n";
    if (script_.Has("log")) {
        const std::lock_guard guard(Shared().lock);
        Shared().log += std::exchange(log_, {});
    }
    if (script_.Lists("tsthrow", name))
        StandThrow("1");
    if (script_.Lists("tsthrowint", name))
        StandThrow("int");
    return script_.Lists("tsfail", name) ? StandFail(script_, ("StandTS" + name).c_str()) : 1;
}

int StandTimeSeries::EnterData(const char* routine, long channel, std::int64_t first, std::int64_t count)
{
    if (script_.Has("overlap"))
        Overlap(script_.Int("overlap"));
    return Enter(routine, std::to_string(channel) + " " + std::to_string(first) + " " + std::to_string(count));
}

bool StandTimeSeries::HasCapability(int capability) const
{
    if (capability == DaxTimeSeries::NoSerialisation)
        return !serial_;
    return script_.Lists("caps", std::to_string(capability), "0,2,4,5");
}

int StandTimeSeries::SetId(VDFileId* id, char create)
{
    if (id_ != nullptr)
        FIDRelease(id_);
    id_ = id;
    FIDAddRef(id_);
    VDString filename;
    FIDGetChanFilename(id_, static_cast<int>(DaxChannel::WholeFile), &filename);
    filename_ = filename.Str();
    script_ = StandScript::OfFile(filename);
    quiet_ = true;
    for (const char* key : {"log", "overlap", "tsfail", "tsthrow", "tsthrowint"})
        quiet_ = quiet_ && !script_.Has(key);
    return Enter("SetId", std::to_string(create));
}

double StandTimeSeries::ListedNumber(const std::string& key, std::size_t index, double otherwise) const
{
    const std::vector<std::string> items = script_.List(key);
    return index < items.size() ? std::strtod(items[index].c_str(), nullptr) : otherwise;
}

int StandTimeSeries::Open(int mode)
{
    if (!Enter("Open", std::to_string(mode)))
        return 0;
    mode_ = mode;
    const std::lock_guard guard(Shared().lock);
    const auto known = Shared().closed.find(filename_);
    if (mode <= 2 && known != Shared().closed.end()) {
        test_ = known->second;
        return 1;
    }
    int count = 0;
    FIDGetNumChans(id_, &count);
    test_ = {};
    test_.header = {{DaxTimeSeries::BufferSize, VDVariant(static_cast<long>(script_.Int("buffer", 4096)))},
                    {DaxTimeSeries::XTitle, VDVariant("Time")},
                    {DaxTimeSeries::XUnits, VDVariant("s")}};
    test_.channels.resize(static_cast<std::size_t>(count));
    for (std::size_t index = 0; index < test_.channels.size(); ++index) {
        const bool created = mode > 2;
        const double rate = created ? 1.0 : ListedNumber("rates", index, script_.Number("rate", 100.0));
        const double points = created ? 0.0 : ListedNumber("lengths", index, script_.Number("points", 1000.0));
        StandChannel& channel = test_.channels[index];
        channel.points = channel.initialPoints = static_cast<std::int64_t>(points);
        channel.header = {{DaxTimeSeries::SampleRate, VDVariant(rate)},
                          {DaxTimeSeries::BaseTime, VDVariant(created ? 0.0 : script_.Number("base"))},
                          {DaxTimeSeries::YTitle, VDVariant("")},
                          {DaxTimeSeries::YUnits, VDVariant("")},
                          {DaxTimeSeries::ChanTitle, VDVariant(script_.Text("chantitle").c_str())},
                          {DaxTimeSeries::Statistics, StoredStatistics()}};
    }
    return 1;
}

int StandTimeSeries::Close()
{
    if (!Enter("Close"))
        return 0;
    const std::lock_guard guard(Shared().lock);
    if (mode_ >= 2)
        Shared().closed[filename_] = test_;
    mode_ = 0;
    return 1;
}

int StandTimeSeries::GetCapability(int capability, char* answer)
{
    *answer = HasCapability(capability);
    return Enter("GetCapability" + std::to_string(capability));
}

VDVariant StandTimeSeries::StoredStatistics() const
{
    VDVariant list;
    for (const std::string& item : script_.List("stats")) {
        const double value = std::strtod(item.c_str(), nullptr);
        if (list.GetNumItems() >= 5)
            list.AppendItem(VDVariant::FromHuge(static_cast<std::int64_t>(value)));
        else if (script_.Has("statsdouble"))
            list.AppendItem(VDVariant(value));
        else
            list.AppendItem(VDVariant(static_cast<float>(value)));
    }
    return list;
}

VDVariant StandTimeSeries::ChannelValue(long index, int key) const
{
    const StandChannel& channel = test_.channels[static_cast<std::size_t>(index)];
    int number = 0;
    switch (key) {
    case DaxTimeSeries::NumPoints:
        return VDVariant::FromHuge(channel.points);
    case DaxTimeSeries::ActualChanNumber:
        FIDGetChanNumber(id_, static_cast<int>(index), &number);
        return VDVariant(static_cast<long>(number + script_.Int("actual")));
    case DaxTimeSeries::FullScaleValid:
        return VDVariant(channel.header.contains(DaxTimeSeries::FullScale));
    case DaxTimeSeries::ScheduleOffset:
        return VDVariant::FromList(
            {VDVariant(script_.Has("schedule")), VDVariant(static_cast<float>(script_.Number("schedule")))});
    default:
        return Known(channel.header, key);
    }
}

int StandTimeSeries::GetValue(long channel, int key, VDVariant* value)
{
    if (!Enter("GetValue" + std::to_string(key), std::to_string(channel)))
        return 0;
    if (script_.Lists("wrong", std::to_string(key))) {
        *value = VDVariant(true);
    } else if (key == DaxTimeSeries::FormatSpecific) {
        VDString name;
        (*value)[0].GetString(&name);
        const auto known = test_.specific.find(name.Str());
        if (known != test_.specific.end())
            value->AppendItem(known->second);
    } else if (channel == DaxChannel::WholeFile) {
        *value = Known(test_.header, key);
    } else if (channel >= 0 && channel < static_cast<long>(test_.channels.size())) {
        *value = ChannelValue(channel, key);
    }
    return 1;
}

int StandTimeSeries::PutValue(long index, int key, const VDVariant& value)
{
    // The pointers of keys 0 and 21 are no text.
    if (!Enter("PutValue" + std::to_string(key), std::to_string(index) + " " + Text(value)))
        return 0;
    if (key == DaxTimeSeries::FormatSpecific) {
        VDString name;
        value[0].GetString(&name);
        test_.specific[name.Str()] = value[1];
        return 1;
    }
    if (index == DaxChannel::WholeFile)
        test_.header[key] = value;
    const bool common = key <= DaxTimeSeries::NumPoints && HasCapability(DaxTimeSeries::CommonHeader);
    for (std::size_t at = 0; at < test_.channels.size(); ++at) {
        StandChannel& channel = test_.channels[at];
        if (static_cast<long>(at) != index && !common)
            continue;
        if (key == DaxTimeSeries::NumPoints)
            value.GetHuge(&channel.points);
        else
            channel.header[key == DaxTimeSeries::StatisticsDouble ? DaxTimeSeries::Statistics : key] = value;
    }
    return 1;
}

int StandTimeSeries::LoadMetaData(LQChannelMapper** mapper)
{
    *mapper = nullptr;
    if (!Enter("LoadMetaData"))
        return 0;
    if (!mapper_) {
        mapper_ = std::make_shared<LQChannelMapper>(nullptr);
        for (int index = 0; index < static_cast<int>(test_.channels.size()); ++index) {
            int number = 0;
            VDString title;
            FIDGetChanNumber(id_, index, &number);
            FIDGetChanTitle(id_, index, &title);
            LQChannelEntry* entry = mapper_->Append();
            mapper_->SetChannelNumber(number, entry);
            mapper_->SetChanTitle(title, entry);
            if (script_.Has("offset"))
                mapper_->AdoptMetaDataSet("Offset", nullptr, index)->PutDouble("OffsetValue", script_.Number("offset"));
        }
    }
    *mapper = mapper_.get();
    return 1;
}
