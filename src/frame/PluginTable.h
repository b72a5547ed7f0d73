#pragma once

#include "vdbase/VDString.h"
#include "vdbase/VFError.h"

#include <functional>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

/// Plug-in tables and their loading, for FileFormat plug-ins and all access families alike. Whoever calls in here holds the
/// library lock.

/// One entry point of a plug-in: its name behind the prefix, and how its address gets into a struct of function pointers.
struct VDEntryPoint
{
    const char* suffix;
    void (*store)(void* entryPoints, void* function);
};

/// The entry point that fills `Member`, a function pointer in `EntryPoints`.
template <class EntryPoints, auto Member>
constexpr VDEntryPoint VFEntryPoint(const char* suffix)
{
    return {suffix, [](void* entryPoints, void* function) {
                auto& slot = static_cast<EntryPoints*>(entryPoints)->*Member;
                slot = reinterpret_cast<std::remove_reference_t<decltype(slot)>>(function);
            }};
}

/// What every plug-in table keeps of one plug-in.
struct VDPluginRecord
{
    bool loaded = false;                ///< every needed entry point was found
    VDString name = {};                 ///< the key of the plug-in in its section
    VDString description = {};          ///< human text for messages
    bool switchedOff = false;           ///< the configuration says so
    VDArray<VDErrorReport> problem{1};  ///< why it didn't load
};

/// Loads a library and finds the entry points of a plug-in in it.
/// @param needed       in lookup order; the first that is missing is reported with -328683 and ends the load
/// @param optional     one that is missing stays null without a message
/// @param entryPoints  the struct that the lists fill
/// @param routine      of the reports
/// @return false, recorded with -328682 or -328683, on failure
bool VFLoadEntryPoints(const VDString& library, const VDString& prefix, const VDString& description,
                       std::span<const VDEntryPoint> needed, std::span<const VDEntryPoint> optional, void* entryPoints,
                       const char* routine);

/// The names and descriptions of a section's plug-ins, in configured order.
/// @return false, recorded with -328681, if the configuration can't be read
bool VFListPlugins(const char* section, std::vector<VDPluginRecord>& plugins, const char* routine);

/// Where a plug-in is to be loaded from, by the configuration.
struct VDPluginSource
{
    bool configured = false;
    bool skip = false;
    VDString nameOfLibrary = {};
    VDString prefix = {};
};

VDPluginSource VFGetPluginSource(const char* section, const VDString& name);

/// Loads a plug-in. What a failure records goes into the plug-in's record and the warnings of the configuration, and stays
/// recorded; with success, the error record is as it was.
void VFLoadPlugin(VDPluginRecord& plugin, const std::function<bool()>& load);

/// Reports that a plug-in isn't there to serve a file: that it is switched off, or that it didn't load, on top of why.
/// @param code  whose text ends in a place for the plug-in's description
/// @return false always
bool VFReportDisabledPlugin(const VDPluginRecord& plugin, int code, const char* routine);

/// A table of plug-ins; `Record` is a `VDPluginRecord` with more. Records keep their addresses as the table grows.
template <class Record>
using VDPluginTable = std::vector<std::unique_ptr<Record>>;

/// Position of the record of this name, compared without regard to case; -1 if there is none.
template <class Record>
int VFFindPlugin(const VDPluginTable<Record>& table, const VDString& name)
{
    for (std::size_t index = 0; index < table.size(); ++index)
        if (table[index]->name.CompareNoCase(name) == 0)
            return static_cast<int>(index);
    return -1;
}

template <class Record>
Record& VFAppendPlugin(VDPluginTable<Record>& table, const VDString& name, const VDString& description)
{
    auto record = std::make_unique<Record>();
    record->name = name;
    record->description = description;
    table.push_back(std::move(record));
    return *table.back();
}

/// Appends the section's plug-ins whose names aren't there yet, and loads each with `load(record, library, prefix)`, whose
/// result becomes the record's loaded flag. A plug-in that doesn't load stays in the table and doesn't stop the others.
/// May be called again after a failure, or an exception of `load`: plug-ins that are loaded are left alone.
/// @return false, recorded, if the list can't be had; the table is then as it was
template <class Record, class Load>
bool VFLoadPluginTable(const char* section, VDPluginTable<Record>& table, const char* routine, Load&& load)
{
    std::vector<VDPluginRecord> plugins;
    if (!VFListPlugins(section, plugins, routine))
        return false;
    for (const VDPluginRecord& plugin : plugins)
        if (VFFindPlugin(table, plugin.name) < 0)
            VFAppendPlugin(table, plugin.name, plugin.description);
    for (std::size_t index = 0; index < table.size(); ++index) {
        Record& record = *table[index];
        if (record.loaded)
            continue;
        const VDPluginSource source = VFGetPluginSource(section, record.name);
        record.switchedOff = source.skip;
        if (source.configured && !source.skip)
            VFLoadPlugin(record, [&] { return load(record, source.nameOfLibrary, source.prefix); });
    }
    return true;
}

/// Registers one plug-in by hand.
/// @return true if it is loaded, or if the name was there already
template <class Record, class Load>
bool VFAddPluginByHand(VDPluginTable<Record>& table, const char* name, const char* prefix, const char* library,
                       const char* description, Load&& load)
{
    if (VFFindPlugin(table, name) >= 0)
        return true;
    Record& record = VFAppendPlugin(table, name, description);
    VFLoadPlugin(record, [&] { return load(record, VDString(library), VDString(prefix)); });
    return record.loaded;
}
