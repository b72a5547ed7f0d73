#include "vdbase/VDPreferenceSystem.h"

#include "AsciiText.h"
#include "PlugInManifests.h"
#include "ProcessRights.h"
#include "TomlFile.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFFilename.h"

#include <atomic>
#include <limits>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>

namespace {

constexpr const char* Routine = "VDPreferenceSystem";

using VDPreferenceValue = std::variant<bool, std::int64_t, double, std::string>;

struct VDKeyHash
{
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const noexcept
    {
        std::uint64_t hash = 14695981039346656037u;
        for (const char byte : key)
            hash = (hash ^ static_cast<unsigned char>(VFAsciiLower(byte))) * 1099511628211u;
        return static_cast<std::size_t>(hash);
    }
};

struct VDKeyEqual
{
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const noexcept
    {
        return VFCompareNoCase(left, right) == 0;
    }
};

using VDPreferenceMap = std::unordered_map<std::string, VDPreferenceValue, VDKeyHash, VDKeyEqual>;

struct VDPreferenceStore
{
    std::shared_mutex lock;
    std::atomic<bool> loaded{false};
    VDPreferenceMap values;  // of the files and, in front of them, the overrides
};

VDPreferenceStore& VFStore()
{
    // Never destroyed: libraries may ask while the process ends.
    static auto& store = *new VDPreferenceStore;
    return store;
}

std::atomic<std::uint64_t> VVGeneration{1};

// A list of texts counts as one text with commas.
std::optional<std::string> VFJoinTexts(const toml::array& list)
{
    std::string joined;
    for (const toml::node& item : list) {
        const std::optional<std::string_view> text = item.value_exact<std::string_view>();
        if (!text)
            return std::nullopt;
        if (&item != &list.front())
            joined += ',';
        joined += *text;
    }
    return joined;
}

// Adds what isn't there yet.
void VFAddTable(const toml::table& table, const std::string& path, VDPreferenceMap* values)
{
    for (const auto& [name, node] : table) {
        const std::string key = path + '/' + std::string(name.str());
        if (const toml::table* inner = node.as_table())
            VFAddTable(*inner, key, values);
        else if (const auto* flag = node.as_boolean())
            values->try_emplace(key, flag->get());
        else if (const auto* number = node.as_integer())
            values->try_emplace(key, number->get());
        else if (const auto* real = node.as_floating_point())
            values->try_emplace(key, real->get());
        else if (const auto* text = node.as_string())
            values->try_emplace(key, text->get());
        else if (const toml::array* list = node.as_array())
            if (std::optional<std::string> joined = VFJoinTexts(*list))
                values->try_emplace(key, std::move(*joined));
    }
}

// Fills the store if need be; what is there already, an override, stays.
void VFLoad(VDPreferenceStore& store)
{
    const std::lock_guard guard(store.lock);
    if (store.loaded)
        return;
    for (const char* logicalName : {"home", "vdsys"}) {
        toml::table table;
        const VDString folder = VFTranslateName(logicalName);
        if (folder.IsEmpty())
            continue;
        const VDString filename = VFBuildFilename(folder, "preferences", "toml");
        // The caller of a process with raised rights doesn't decide what it does, and isn't told what is in its files.
        if (VFHasRaisedRights() && VFWarnOfDistrust(filename, VDBaseError::Preferences, Routine))
            continue;
        // The first question may come in the middle of anything: earlier reports stay.
        if (VFParseTomlFile(filename, &table, VDBaseError::Preferences, Routine, 1))
            VFAddTable(table, {}, &store.values);
    }
    store.loaded = true;
}

// Gives the value to `use`, which takes it or leaves it, while the store can't change.
template <class Use>
void VFWithValue(const char* key, Use&& use)
{
    VDPreferenceStore& store = VFStore();
    if (!store.loaded)
        VFLoad(store);
    const std::shared_lock guard(store.lock);
    if (const auto found = store.values.find(std::string_view(key == nullptr ? "" : key)); found != store.values.end())
        use(found->second);
}

template <class T>
T VFGetValue(const char* key, T defaultValue)
{
    VFWithValue(key, [&](const VDPreferenceValue& value) {
        if (const T* exact = std::get_if<T>(&value))
            defaultValue = *exact;
    });
    return defaultValue;
}

void VFOverride(const char* key, VDPreferenceValue value)
{
    VDPreferenceStore& store = VFStore();
    {
        const std::lock_guard guard(store.lock);
        store.values.insert_or_assign(key == nullptr ? "" : key, std::move(value));
    }
    ++VVGeneration;
}

}  // namespace

bool VDPreferenceSystem::GetBooleanValue(const char* key, bool defaultValue) const
{
    return VFGetValue(key, defaultValue);
}

VDString VDPreferenceSystem::GetStringValue(const char* key, const char* defaultValue) const
{
    return VDString(VFGetValue<std::string>(key, defaultValue == nullptr ? "" : defaultValue));
}

int VDPreferenceSystem::GetEnumValue(const char* key, int defaultValue) const
{
    const std::int64_t value = GetHugeValue(key, defaultValue);
    const bool fits = value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(value) : defaultValue;
}

std::int64_t VDPreferenceSystem::GetHugeValue(const char* key, std::int64_t defaultValue) const
{
    return VFGetValue(key, defaultValue);
}

double VDPreferenceSystem::GetDoubleValue(const char* key, double defaultValue) const
{
    VFWithValue(key, [&](const VDPreferenceValue& value) {
        if (const double* real = std::get_if<double>(&value))
            defaultValue = *real;
        else if (const std::int64_t* number = std::get_if<std::int64_t>(&value))
            defaultValue = static_cast<double>(*number);
    });
    return defaultValue;
}

void VDPreferenceSystem::OverrideBooleanValue(const char* key, bool value)
{
    VFOverride(key, value);
}

void VDPreferenceSystem::OverrideStringValue(const char* key, const char* value)
{
    VFOverride(key, std::string(value == nullptr ? "" : value));
}

void VDPreferenceSystem::OverrideEnumValue(const char* key, int value)
{
    VFOverride(key, std::int64_t{value});
}

void VDPreferenceSystem::OverrideHugeValue(const char* key, std::int64_t value)
{
    VFOverride(key, value);
}

void VDPreferenceSystem::OverrideDoubleValue(const char* key, double value)
{
    VFOverride(key, value);
}

void VDPreferenceSystem::Reload()
{
    VDPreferenceStore& store = VFStore();
    {
        const std::lock_guard guard(store.lock);
        store.values.clear();
        store.loaded = false;
    }
    ++VVGeneration;
}

std::uint64_t VDPreferenceSystem::GetGeneration()
{
    return VVGeneration;
}
