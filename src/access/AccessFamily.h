#pragma once

#include "frame/PluginTable.h"

#include "daxlib/DaxTypes.h"
#include "vdbase/VDVariant.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>

class LQChannelMapper;

/// What makes one access family different from the others. The core (`VDAccessCore`) and the plug-in table
/// (`VDAccessPlugins`) are written once and work from such a description; a family adds the calls for its own kind of data.

/// Whether a plug-in's open mode makes a new file.
constexpr bool VFIsCreateMode(int mode)
{
    return mode == 3 || mode == 4;
}

/// The entry points that all families have with the same arguments. A family derives its own list from it.
struct VDAccessEntryPoints
{
    void* (*Create)(const char* classId) = nullptr;
    int (*Release)(void* instance) = nullptr;
    int (*SetId)(void* instance, VDFileId* id, char create) = nullptr;
    int (*Open)(void* instance, int mode) = nullptr;
    int (*Close)(void* instance) = nullptr;
    int (*Flush)(void* instance) = nullptr;
    int (*GetCapability)(void* instance, int capability, char* answer) = nullptr;
    int (*LoadMetaData)(void* instance, LQChannelMapper** mapper) = nullptr;
    int (*AddLegacyMetaData)(void* instance, LQChannelMapper* mapper) = nullptr;
};

/// A family's list of entry points, in lookup order: the head that all families share, the family's own data calls and the
/// metadata pair. A family that has more behind the pair appends it.
template <class EntryPoints, std::size_t Own, std::size_t Tail = 0>
constexpr auto VFEntryPointList(const std::array<VDEntryPoint, Own>& own, const std::array<VDEntryPoint, Tail>& tail = {})
{
    const std::array head = {
        VFEntryPoint<EntryPoints, &EntryPoints::Create>("Create"),
        VFEntryPoint<EntryPoints, &EntryPoints::Release>("Release"),
        VFEntryPoint<EntryPoints, &EntryPoints::SetId>("SetId"),
        VFEntryPoint<EntryPoints, &EntryPoints::Open>("Open"),
        VFEntryPoint<EntryPoints, &EntryPoints::Close>("Close"),
        VFEntryPoint<EntryPoints, &EntryPoints::GetLastError>("GetLastError"),
        VFEntryPoint<EntryPoints, &EntryPoints::Flush>("Flush"),
        VFEntryPoint<EntryPoints, &EntryPoints::GetCapability>("GetCapability"),
        VFEntryPoint<EntryPoints, &EntryPoints::GetValue>("GetValue"),
        VFEntryPoint<EntryPoints, &EntryPoints::PutValue>("PutValue"),
    };
    const std::array metaData = {
        VFEntryPoint<EntryPoints, &EntryPoints::LoadMetaData>("LoadMetaData"),
        VFEntryPoint<EntryPoints, &EntryPoints::AddLegacyMetaData>("AddLegacyMetaData"),
    };
    std::array<VDEntryPoint, head.size() + Own + metaData.size() + Tail> list{};
    auto next = std::copy(head.begin(), head.end(), list.begin());
    next = std::copy(own.begin(), own.end(), next);
    next = std::copy(metaData.begin(), metaData.end(), next);
    std::copy(tail.begin(), tail.end(), next);
    return list;
}

/// One plug-in of a family. Its name is the class id text that `SetId` looks for.
struct VDAccessPluginInfo : VDPluginRecord
{
    std::shared_ptr<VDAccessEntryPoints> entryPoints;  ///< of the family's own type
};

/// The numbers under which a family asks for the capabilities that all families have.
struct VDAccessCapabilities
{
    int noSerialisation;
    int writable;
    int keepsMetaData;
    int channelTitles;
};

/// The keys of the values that the core reads and writes for all families.
struct VDAccessKeys
{
    int actualChanNumber;
    int channelTitle;
    int formatSpecific;
};

/// The codes of the failures that each family reports under a number of its own.
struct VDAccessCodes
{
    int pluginFailure;     ///< carries the plug-in's own text
    int unknownFailure;    ///< a plug-in that failed without saying why
    int notSupported;      ///< no plug-in for this class id; followed by the test title
    int emptyChannelList;  ///< 0 where an empty list is no failure
};

template <class EntryPoints>
std::shared_ptr<VDAccessEntryPoints> VFMakeEntryPoints()
{
    return std::make_shared<EntryPoints>();
}

struct VDAccessFamily
{
    const char* section;                                        ///< of the plug-in configuration
    const char* className;                                      ///< opens the routine name in reports
    std::span<const VDEntryPoint> entryPointList;               ///< in lookup order
    std::shared_ptr<VDAccessEntryPoints> (*makeEntryPoints)();  ///< `VFMakeEntryPoints` of the family's own type
    VDAccessCapabilities capabilities;
    VDAccessKeys keys;
    VDAccessCodes codes;
    bool namesTestOnNotSupported;  ///< "\nTest name : " goes in front of the title, for texts that don't end in it
    bool loadFailureIsFatal;       ///< one plug-in that doesn't load fails the whole section

    /// The entry points that exist in every family with different arguments; `entryPoints` is of the family's own type.
    void (*getLastError)(const VDAccessEntryPoints& entryPoints, void* instance, VDString& text);
    int (*getValue)(const VDAccessEntryPoints& entryPoints, void* instance, long channel, int key, VDVariant* value);
    int (*putValue)(const VDAccessEntryPoints& entryPoints, void* instance, long channel, int key, VDVariant* value);
};
