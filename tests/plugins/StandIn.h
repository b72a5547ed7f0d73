#pragma once

#include "support/TestSupport.h"
#include "vdbase/VDString.h"

#include <dlfcn.h>

#include <string>

/// How to drive the stand-in plug-ins, which a test configures with `Manifests` (its program needs
/// `add_dependencies(... standin)`). They do what the file says that they
/// are given: its first line, within the first 512 bytes, is
///
///     STAND key=value key="value with blanks" ...          ("\n" in a value stands for a line feed)
///
/// FileFormat plug-ins, by prefix:
///     StandFF       complete; claims files that begin with "STAND"
///     LexadeFF      the same for names that end in ".sig", with a type of its own; `lexade=decline` makes it decline
///     OtherFF       declines everything; types with uncommon access types and file ids
///     NoProxyFF     StandFF without the three optional entry points; as both have the same types, only one of them loads
///     MessFF        changes all that it is given and declines; its lists have no end
///     MissFF        lacks GetValue
///     BadNameFF, BadKeyFF                    wrong variant type for "NameForm", for "FormatKeyword"
///     ThrowTypeFF, ThrowCapFF, ThrowValueFF  exception in GetNextSupportedType, GetNextCapability, GetValue
///
/// Default extension: "sta"; a hint comes back as the extension; the hint "BAD" is answered with a long.
///
/// Keys for identification:
///     fileid=29101 subid=1      the file type (these are the defaults)
///     tests=2                   the file holds tests of run number 1, 2, ...; without it the file is one test
///     title=TEXT                test title
///     opsys=101                 code of the system that wrote the file
///     fail=1                    IdentifyFile gives 0
///     throw=1|int               IdentifyFile throws a standard exception, an int
///     recurse=1                 IdentifyFile first identifies the same id again
/// for LoadFileInfo:
///     channels=1 or numbers=3,1,7   how many channels (numbers from 1), or their numbers; titled "Channel <number>"
///                               A test of several files keeps the channels that the names say
///     units=TEXT
///     infofail=1  infothrow=1|int
/// for GetLastError:
///     lasterror=TEXT            TEXT may be empty, VARDO, or throw (GetLastError throws). Default: "Stand-in failure"
///     record=CODE               the failing call records this code with the text "Recorded by the stand-in"
/// others:
///     proxy=PATH  proxyfail=1   GetProxyAccessFileId gives an id of PATH with the channels that PATH's line says
///     desc=TEXT   descfail=1    FileIdToTestDesc; TestDescToFileIdArray claims texts that begin with "standdesc:" (a path)
///
/// Time-series plug-ins: register prefix StandTS under the class ids below, MissTS (it lacks GetDataDigital64) under
/// another. A test's values are kept in memory, for each type on their own: point p of channel index c is `StandValue<T>(c,
/// p)` until something else is written. What was written is found again when the same file is opened again in the same
/// process.
///     points=1000  rate=100  base=0     of every channel, when an existing test is opened
///     lengths=1000,10  rates=100,50     the same for one channel each, in the order of the list
///     caps=0,2,4,5,11                   capabilities answered with 1 (these are the defaults); 11 goes by the class id
///     buffer=4096                       preferred buffer size
///     wrong=1,3,10                      keys that GetValue answers with a boolean
///     chantitle=TEXT  actual=100        key 17; what key 18 adds to the channel's number
///     stats=1,2,3,4,5,6,7,8             key 12 until it is put: values, then points; statsdouble=1 makes the values doubles
///     schedule=0.5                      key 23: offset present, with this value; absent without it
///     offset=2.5                        with capability 7: the mapper has set "Offset", "OffsetValue" for each channel
///     tsfail=Open,GetData,GetValue3     calls that give 0: entry point names; with a key or capability behind the names
///                                       GetValue, PutValue and GetCapability
///     tsthrow=...  tsthrowint=...       the same for a standard exception, an int
///     log=1                             calls are recorded, see `StandTSTakeLog`
///     discard=1                         values that are written are dropped; their points count
///     overlap=MILLISECONDS              GetData waits this long for a second call to be under way at the same time
///
/// Metadata plug-in, prefix StandMeta: the same keys, as far as the family has the calls. Calls are recorded under the keys and
/// capabilities of time series.
namespace StandIn {

constexpr const char* ClassId = "STAND-TS";                   ///< instances need no serialisation
constexpr const char* SerialClassId = "STAND-TS-SERIAL";      ///< instances do
constexpr const char* MissingClassId = "STAND-TS-MISSING";    ///< for MissTS
constexpr const char* NoCreateClassId = "STAND-TS-NOCREATE";  ///< StandTSCreate gives null
constexpr const char* MetaClassId = "STAND-META";              ///< for StandMeta
constexpr const char* NobodyClassId = "STAND-TS-NOBODY";      ///< no plug-in is meant to have it

/// The file types of StandFF, all readable and writable, with the keyword behind each.
constexpr int FileId = 29101;
constexpr int SubPlain = 1;            ///< StandA: ClassId, HasRun 0
constexpr int SubRun = 2;              ///< StandRun: ClassId, HasRun 1
constexpr int SubSerial = 3;           ///< StandSerial: SerialClassId
constexpr int SubMissing = 4;          ///< StandMissing: MissingClassId
constexpr int SubNobody = 5;           ///< StandNobody: NobodyClassId
constexpr int SubNoCreate = 6;         ///< StandNoCreate: NoCreateClassId
constexpr int HistFileId = 29102;      ///< sub id 1, StandB: a histogram type, HasRun 1
constexpr int ChannelsFileId = 29104;  ///< sub id 1, StandC: ClassId, name form 1
constexpr int ScheduleFileId = 700;    ///< sub id 1, StandSchedule: ClassId
constexpr int MetaFileId = 29108;      ///< sub id 1, StandMetaFile: MetaClassId
/// LexadeFF: sub id 1, StandSig.
constexpr int LexadeFileId = 29103;
/// OtherFF: each of sub id 1. Files of these types are claimed by StandFF.
constexpr int UnnamedFileId = 29106;  ///< StandUnnamed: access type 2345, which nothing names
constexpr int CyclesFileId = 29107;   ///< StandCycles: access type 3
constexpr int FolderFileId = 2200;    ///< StandFolder: time series
constexpr int GroupFileId = 601;      ///< StandGroup and, of sub id 2, StandGroupOther: time series, a channel a file
/// MessFF: sub id 1, StandMess.
constexpr int MessFileId = 29110;

/// One table of a manifest. A test writes them into `TestHomeFolder()`, "plugins.toml".
inline std::string Manifest(const std::string& family, const std::string& name, const std::string& prefix)
{
    return "[[plugin]]\nfamily = \"" + family + "\"\nname = \"" + name + "\"\ndescription = \"Stand-in " + prefix +
           "\"\nlibrary = \"" + TestPluginFolder() + "/libstandin.so\"\nprefix = \"" + prefix + "\"\n\n";
}

/// The tables of the complete plug-ins: StandFF and both time-series class ids.
inline std::string Manifests()
{
    return Manifest("FileFormat", "Stand", "StandFF") + Manifest("TimeSeriesFiles", ClassId, "StandTS") +
           Manifest("TimeSeriesFiles", SerialClassId, "StandTS") + Manifest("TimeSeriesFiles", NoCreateClassId, "StandTS");
}

/// The value of a point (from 1) of a channel (index) that was never written.
template <class T>
constexpr T StandValue(long channel, std::int64_t point)
{
    return static_cast<T>(channel * 1000 + point);
}

/// A function that the module exports for tests.
template <class Function>
Function* Find(const char* name)
{
    void* module = dlopen((TestPluginFolder() + "/libstandin.so").c_str(), RTLD_NOW);
    return module == nullptr ? nullptr : reinterpret_cast<Function*>(dlsym(module, name));
}

/// Calls of the instances whose file says `log=1`, a line each: name (with the key or capability directly behind it) and
/// arguments, parted by blanks ("Open 1", "PutValue22 -1 True", "GetData 0 1 100"). The log is emptied.
inline std::string TakeLog()
{
    VDString text;
    if (auto* take = Find<void(VDString*)>("StandTSTakeLog"))
        take(&text);
    return text.Str();
}

/// The most GetData calls that were under way at the same time since the last question, counted where `overlap` is set.
inline int TakeMaxInFlight()
{
    auto* take = Find<int()>("StandTSTakeMaxInFlight");
    return take == nullptr ? -1 : take();
}

/// A test whose process knows the complete plug-ins.
class StandInTest : public testing::Test
{
protected:
    StandInTest() { TestWriteFile(TestHomeFolder(), "plugins.toml", Manifests()); }

    /// Writes a stand-in file and gives its whole name.
    std::string Write(const std::string& script, const std::string& name = "test.sta") const
    {
        return folder_.Write(name, "STAND " + script + "\n");
    }

    TestFolder folder_;
};

}  // namespace StandIn
