#pragma once

#include "frame/PluginTable.h"

#include "daxlib/DaxTypes.h"
#include "vdbase/VDVariant.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <span>

class LQChannelMapper;
class VDProgressObject;

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

/// What a value belongs to: a channel or the file as a whole and, in some families, a place within the channel.
struct VDAccessSelector
{
    /// @param index  of the channel, or `DaxChannel::WholeFile`
    VDAccessSelector(long index, std::int64_t outerIndex = -1, std::int64_t innerIndex = -1)
        : channel(index), outer(outerIndex), inner(innerIndex)
    {
    }

    long channel;
    std::int64_t outer;  ///< data set or spectrum; -1 for none
    std::int64_t inner;  ///< column or line; -1 for none
};

/// The numbers under which a family asks for the capabilities that all families have.
struct VDAccessCapabilities
{
    int noSerialisation;
    int writable = NotAsked;
    int keepsMetaData;
    int beforePut = NotAsked;  ///< asked before each put; an answer is needed, but any will do

    static constexpr int NotAsked = -1;
};

/// A text of a channel that a format may store.
struct VDAccessText
{
    int key;
    int capability;
    int notSupported;  ///< code of the report where the format doesn't store it
    /// Where it is found then; null if nowhere.
    int (*ofId)(VDFileId* id, int index, VDString* text) = nullptr;
};

/// Values that a plug-in knows by names of its own.
struct VDAccessNamedValues
{
    int key;
    bool needOpenFile;  ///< to be got; to be put they never do, since some say how a new file will be laid out
    bool takeInput;     ///< the plug-in sees what the caller's variant held
};

/// The codes of the failures that each family reports under a number of its own.
struct VDAccessCodes
{
    int pluginFailure;         ///< carries the plug-in's own text
    int unknownFailure;        ///< a plug-in that failed without saying why
    int notSupported;          ///< no plug-in for this class id; followed by the test title
    int emptyChannelList = 0;  ///< 0 where an empty list is no failure
};

/// How the metadata of a test opened for reading come to the caller.
enum class VDReadMetaData {
    AsKept,    ///< what the format or the sidecar keeps
    Extended,  ///< that, with the extra metadata of site and test
    Copied,    ///< a private copy, extended
};

/// Where the attributes that describe the test go in its metadata.
enum class VDHeaderAttributes {
    None,
    InSidecar,   ///< in front of legacy metadata
    Everywhere,  ///< behind legacy metadata
};

/// The hand-over of metadata between the caller, the plug-in and the sidecar of formats that keep none.
struct VDAccessMetaDataRules
{
    int mapperKey;         ///< put, file: the sidecar's mapper
    int timeStampKey = 0;  ///< put, channel: its time stamp in the sidecar; 0 if the family has none
    VDReadMetaData forReading = VDReadMetaData::AsKept;
    VDHeaderAttributes header = VDHeaderAttributes::None;
    bool headerWithOwnOffsets = false;  ///< also in what a format keeps that applies its own offsets
    bool needTestInfo = true;           ///< metadata that can't take the identity of the test are a failure
};

/// Offsets of the channels, which the library adds to what it reads, or one type applies itself.
struct VDAccessOffsetRules
{
    int useKey = 0;               ///< put, file: boolean; 0 for a family without offsets
    int ownKey = 0;               ///< get, channel: the offset that the type below stores beside the data
    int ownSubId = 0;             ///< of the type, whose file id is 700
    bool ownAreFloats = false;    ///< doubles otherwise
    bool useAlwaysTold = false;   ///< to each new instance, and not only while offsets are in use
};

/// What the family's class does at the core's steps; null for nothing. `owner` is the access object.
struct VDAccessSteps
{
    /// Makes room for the records of so many channels, all as new.
    bool (*setChannelCount)(void* owner, int count) = nullptr;
    /// Reads the header of the file that was opened, or prepares that of a new one.
    bool (*finishOpen)(void* owner, bool created) = nullptr;
    /// Writes what belongs into the file before the plug-in flushes it.
    bool (*flush)(void* owner) = nullptr;
    bool (*addHeaderAttributes)(void* owner, LQChannelMapper& mapper) = nullptr;
};

template <class Method>
struct VDStepOf;

template <class Class, class... Arguments>
struct VDStepOf<bool (Class::*)(Arguments...)>
{
    template <auto Method>
    static bool Do(void* owner, Arguments... arguments)
    {
        return (static_cast<Class*>(owner)->*Method)(arguments...);
    }
};

/// A method of the family's class as a step.
template <auto Method>
constexpr auto VFStep = &VDStepOf<decltype(Method)>::template Do<Method>;

/// The entry points that exist in every family with different arguments; `entryPoints` is of the family's own type.
struct VDAccessCalls
{
    void (*getLastError)(const VDAccessEntryPoints& entryPoints, void* instance, VDString& text);
    /// @param input  what the plug-in may look at, in families whose plug-ins do
    /// @param value  in and out
    int (*getValue)(const VDAccessEntryPoints& entryPoints, void* instance, const VDAccessSelector& selector, int key,
                    VDVariant* input, VDVariant* value);
    int (*putValue)(const VDAccessEntryPoints& entryPoints, void* instance, const VDAccessSelector& selector, int key,
                    VDVariant* value);
    /// Null where progress is the library's business alone.
    int (*setProgressObject)(const VDAccessEntryPoints& entryPoints, void* instance, VDProgressObject* progress) = nullptr;
};

/// The calls of a family whose values are selected by channel alone.
template <class EntryPoints>
struct VDCallsByChannel
{
    static int GetValue(const VDAccessEntryPoints& entryPoints, void* instance, const VDAccessSelector& selector, int key,
                        VDVariant*, VDVariant* value)
    {
        return static_cast<const EntryPoints&>(entryPoints).GetValue(instance, selector.channel, key, value);
    }
    static int PutValue(const VDAccessEntryPoints& entryPoints, void* instance, const VDAccessSelector& selector, int key,
                        VDVariant* value)
    {
        return static_cast<const EntryPoints&>(entryPoints).PutValue(instance, selector.channel, key, value);
    }
    /// For plug-ins that tell of the last failure of all, without an instance.
    static void GetLastError(const VDAccessEntryPoints& entryPoints, void*, VDString& text)
    {
        static_cast<const EntryPoints&>(entryPoints).GetLastError(text);
    }
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
    VDAccessCalls calls;
    VDAccessCapabilities capabilities;
    int actualChanNumberKey;  ///< get, channel: long
    int bufferSizeKey = 0;    ///< get, file: long; 0 for a family without blocks
    VDAccessText chanTitle;
    VDAccessNamedValues formatSpecific;
    VDAccessMetaDataRules metaData;
    VDAccessOffsetRules offsets = {};
    VDAccessCodes codes;
    VDAccessSteps steps = {};
    /// The open modes of the family's interface count from 0 and are checked; a plug-in's count from 1 in every family.
    bool openModesFromZero = false;
    bool knowsCountUnopened = false;       ///< the number of channels is that of the id, and not 0 until the file is open
    bool flushesBeforeItsStep = false;     ///< the family's step at a flush reads the file
    bool namesTestOnNotSupported = false;  ///< "\nTest name : " goes in front of the title, for texts that don't end in it
    /// One plug-in that doesn't load fails the whole section, and one by hand isn't kept; none is ever disabled.
    bool loadFailureIsFatal = false;
};
