#include "access/VDAccessCore.h"
#include "access/VDAccessPlugins.h"
#include "frame/DaxErrorCodes.h"
#include "storage/StorageFileTypes.h"
#include "support/TestFileId.h"

#include "vdstore/LQChannelMapper.h"

#include <set>

// What the description of a family can ask of the core beyond what the families do that are there: a family made up for it,
// with values in two more dimensions, texts of its own and all that goes with them.

namespace {

constexpr int AskedFirst = 3;
constexpr int Titles = 7;
constexpr int Units = 8;
constexpr int Keeps = 9;

/// What the plug-in of the family was told, and what it answers.
struct Plugin
{
    std::string log;
    std::set<int> capabilities = {Titles};
    bool answers = true;  ///< questions for capabilities
    LQChannelMapper mapper{nullptr};
};
Plugin* VVPlugin = nullptr;

int Note(const std::string& text)
{
    VVPlugin->log += text + "; ";
    return 1;
}

std::shared_ptr<VDAccessEntryPoints> MakeEntryPoints()
{
    auto points = std::make_shared<VDAccessEntryPoints>();
    points->Create = [](const char*) -> void* { return VVPlugin; };
    points->Release = [](void*) { return 1; };
    points->SetId = [](void*, VDFileId*, char) { return Note("SetId"); };
    points->Open = [](void*, int mode) { return Note("Open " + std::to_string(mode)); };
    points->Close = [](void*) { return 1; };
    points->Flush = [](void*) { return Note("Flush"); };
    points->GetCapability = [](void*, int capability, char* answer) {
        *answer = VVPlugin->capabilities.contains(capability);
        return VVPlugin->answers ? 1 : 0;
    };
    points->LoadMetaData = [](void*, LQChannelMapper** mapper) {
        *mapper = &VVPlugin->mapper;
        return 1;
    };
    points->AddLegacyMetaData = [](void*, LQChannelMapper*) { return Note("legacy"); };
    return points;
}

std::string Where(const VDAccessSelector& selector, int key)
{
    return std::to_string(key) + " at " + std::to_string(selector.channel) + "," + std::to_string(selector.outer) + "," +
           std::to_string(selector.inner);
}

struct Owner
{
    bool AddHeader(LQChannelMapper&) { return Note("header") != 0; }
};

constexpr VDAccessText VVUnits = {.key = 10, .capability = Units, .notSupported = -327695, .ofId = FIDGetChanUnits};
constexpr VDAccessText VVZTitle = {.key = 15, .capability = 14, .notSupported = -331590};

const VDAccessFamily VVFamily = {
    .section = "NoSuchSection",
    .className = "VDMadeUp",
    .entryPointList = {},
    .makeEntryPoints = MakeEntryPoints,
    .calls = {.getLastError = [](const VDAccessEntryPoints&, void*, VDString& text) { text = "VARDO"; },
              .getValue =
                  [](const VDAccessEntryPoints&, void*, const VDAccessSelector& selector, int key, VDVariant* input,
                     VDVariant* value) {
                      if (value->GetNumItems() == 1)
                          value->AppendItem(*input);
                      else
                          *value = key == 17 ? VDVariant(selector.channel + 40) : VDVariant("two\r\nlines");
                      return Note("get " + Where(selector, key));
                  },
              .putValue = [](const VDAccessEntryPoints&, void*, const VDAccessSelector& selector, int key,
                             VDVariant*) { return Note("put " + Where(selector, key)); },
              .setProgressObject = [](const VDAccessEntryPoints&, void*, VDProgressObject*) { return Note("progress"); }},
    .capabilities = {.noSerialisation = 16, .writable = 2, .keepsMetaData = Keeps, .beforePut = AskedFirst},
    .actualChanNumberKey = 17,
    .bufferSizeKey = 8,
    .chanTitle = {.key = 9, .capability = Titles, .notSupported = -327691, .ofId = FIDGetChanTitle},
    .formatSpecific = {.key = 7, .needOpenFile = false, .takeInput = true},
    .metaData = {.mapperKey = 18, .forReading = VDReadMetaData::Extended, .header = VDHeaderAttributes::Everywhere},
    .offsets = {.useKey = 5, .ownKey = 6, .ownSubId = 3, .useAlwaysTold = true},
    .codes = {.pluginFailure = -328683, .unknownFailure = -327690, .notSupported = -331585, .emptyChannelList = -327982},
    .steps = {.addHeaderAttributes = VFStep<&Owner::AddHeader>},
};

class FamilyTest : public testing::Test
{
protected:
    FamilyTest()
    {
        VVPlugin = &plugin_;
        EXPECT_TRUE(plugins_.AddPlugin(StorageFormat::TimeSeriesClass, "", "libvdbase.so.2", ""))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        FIDSetFileId(id_.Get(), DaxStorageFileId, StorageFormat::TimeSeries);
        TestAddChannels(id_, {1, 2});
        FIDSetChanUnits(id_.Get(), 1, "kN");
        FIDSetIdentified(id_.Get(), 1);
        FIDSetInfoLoaded(id_.Get(), 1);
        LQChannelMapper& mapper = plugin_.mapper;
        for (const int number : {1, 2})
            mapper.SetChannelNumber(number, mapper.Append());
    }
    void Bind() { ASSERT_TRUE(core_.SetId(id_.Get(), 0)) << VFErrorGetText(VFGetBaseLibError()).Str(); }
    std::string TakeLog() { return std::exchange(plugin_.log, {}); }

    TestFolder folder_;
    std::string name_ = folder_.Write("test.z4t", "");
    VDFileIdHandle id_ = TestId(name_);
    Plugin plugin_;
    Owner owner_;
    VDAccessPlugins plugins_{VVFamily};
    VDAccessCore core_{VVFamily, plugins_, &owner_};
};

}  // namespace

TEST_F(FamilyTest, ValuesAreSelectedInThreeDimensions)
{
    Bind();
    EXPECT_EQ(TakeLog(), "put 0 at -1,-1,-1; SetId; put 5 at -1,-1,-1; ");
    ASSERT_TRUE(core_.SetProgressObject(nullptr));
    EXPECT_EQ(TakeLog(), "progress; ");
    // No file needs to be open, and the plug-in sees what the caller's variant held.
    VDVariant value(2.5);
    ASSERT_TRUE(core_.GetFormatSpecificValue({1, 1LL << 40, 7}, "Gain", &value));
    EXPECT_TRUE(value == VDVariant(2.5));
    ASSERT_TRUE(core_.SetFormatSpecificValue({0, 2, 3}, "Gain", &value));
    EXPECT_EQ(TakeLog(), "get 7 at 1,1099511627776,7; put 7 at 0,2,3; ");
    // A put asks first, and any answer will do.
    plugin_.answers = false;
    ExpectFailure(core_.SetFormatSpecificValue({0, 2, 3}, "Gain", &value), -327690, "", "VDMadeUp::GetCapability");
    EXPECT_EQ(TakeLog(), "");
}

TEST_F(FamilyTest, EachTextHasItsCapabilityAndCode)
{
    Bind();
    // Modes are the plug-in's own here, and nothing is known of the channels before.
    int count = -1;
    EXPECT_TRUE(core_.GetNumChans(&count));
    EXPECT_EQ(count, 0);
    ASSERT_TRUE(core_.Open(2));
    EXPECT_NE(TakeLog().find("Open 2"), std::string::npos);
    EXPECT_TRUE(core_.GetNumChans(&count));
    EXPECT_EQ(count, 2);
    VDString text;
    EXPECT_TRUE(core_.GetChanText(VVUnits, 1, &text, "GetChanUnits"));
    EXPECT_EQ(text, "kN");
    ExpectFailure(core_.SetChanText(VVUnits, 1, "N", "SetChanUnits"), -327695, "", "VDMadeUp::SetChanUnits");
    ExpectFailure(core_.GetChanText(VVZTitle, 1, &text, "GetZTitle"), -331590, "", "VDMadeUp::GetZTitle");
    plugin_.capabilities = {Units};
    TakeLog();
    EXPECT_TRUE(core_.GetChanText(VVUnits, 1, &text, "GetChanUnits"));
    EXPECT_EQ(text, "two  lines");
    EXPECT_TRUE(core_.SetChanText(VVUnits, 1, "N", "SetChanUnits"));
    EXPECT_EQ(TakeLog(), "get 10 at 1,-1,-1; put 10 at 1,-1,-1; ");
}

TEST_F(FamilyTest, MetaDataAreExtendedWhereTheyAre)
{
    FIDSetExtraMetadataFilename(id_.Get(), folder_.Write("extra.xml", "no XML").c_str());
    plugin_.capabilities = {Keeps};
    Bind();
    ASSERT_TRUE(core_.Open(2));
    LQChannelMapper* mapper = nullptr;
    TakeLog();
    // Every time anew, and the extra metadata for reading only.
    for (int call = 0; call < 2; ++call)
        ASSERT_TRUE(core_.GetMetaData(&mapper)) << VFErrorGetText(VFGetBaseLibError()).Str();
    EXPECT_EQ(mapper, &plugin_.mapper);
    EXPECT_EQ(TakeLog(), "header; put 5 at -1,-1,-1; header; ");
    ASSERT_TRUE(core_.Close());
    ASSERT_TRUE(core_.Open(1));
    EXPECT_FALSE(core_.GetMetaData(&mapper));
    EXPECT_EQ(mapper, nullptr);
    // Behind the legacy metadata of a format that keeps none.
    ASSERT_TRUE(core_.Close());
    plugin_.capabilities = {};
    ASSERT_TRUE(core_.Open(2));
    TakeLog();
    ASSERT_TRUE(core_.GetMetaData(&mapper)) << VFErrorGetText(VFGetBaseLibError()).Str();
    const std::string log = TakeLog();
    EXPECT_TRUE(log.ends_with("legacy; header; ")) << log;
    ASSERT_TRUE(core_.Flush());
    EXPECT_EQ(TakeLog(), "put 18 at -1,-1,-1; Flush; ");
    EXPECT_TRUE(core_.Close());
}
