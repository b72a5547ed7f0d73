#pragma once

#include "plugins/StandIn.h"
#include "support/TestSupport.h"

#include "daxlib/FIA.h"
#include "daxlib/FID.h"
#include "daxlib/FINF.h"
#include "vdbase/VDPreferenceSystem.h"

#include <memory>

/// What the tests of the format registry share. The registry is a process's own, so that every test starts with an empty
/// one.

template <auto Release>
struct HandleDeleter
{
    void operator()(auto* handle) const { Release(handle); }
};

using IdHandle = std::unique_ptr<VDFileId, HandleDeleter<FIDRelease>>;
using ArrayHandle = std::unique_ptr<VDFileIdArray, HandleDeleter<FIARelease>>;
using InfoHandle = std::unique_ptr<VDFileInfo, HandleDeleter<FINFRelease>>;

class RegistryTest : public testing::Test
{
protected:
    RegistryTest() { TestWriteFile(TestHomeFolder(), "plugins.toml", StandIn::Manifests()); }

    /// Adds FileFormat plug-ins in front of the complete one.
    static void Configure(std::initializer_list<const char*> prefixes)
    {
        std::string manifest;
        for (const char* prefix : prefixes)
            manifest += StandIn::Manifest("FileFormat", prefix, prefix);
        TestWriteFile(TestHomeFolder(), "plugins.toml", manifest + StandIn::Manifests());
    }

    static void Prefer(const std::string& key, bool value)
    {
        VDPreferenceSystem().OverrideBooleanValue(("/FileFormats/Extensions/" + key).c_str(), value);
    }
    static void Prefer(const std::string& key, const char* value)
    {
        VDPreferenceSystem().OverrideStringValue(("/FileFormats/Extensions/" + key).c_str(), value);
    }

    static IdHandle MakeId(const std::string& filename)
    {
        IdHandle id(FIDCreate());
        EXPECT_TRUE(FIDSetFilename(id.get(), VTNameFormFile, filename.c_str(), ""));
        return id;
    }
    IdHandle MakeFile(const std::string& entry, const std::string& content) { return MakeId(folder_.Write(entry, content)); }

    bool Identify(const IdHandle& id, bool loadInfo = false)
    {
        VDFileIdArray* tests = tests_.release();
        const bool identified = FINFIdentifyFile(Info(), id.get(), loadInfo, &tests) != 0;
        tests_.reset(tests);
        return identified;
    }

    VDFileInfo* Info() const { return info_.get(); }
    int NumTests() const
    {
        int size = -1;
        FIAGetSize(tests_.get(), &size);
        return size;
    }
    IdHandle Test(int index) const
    {
        VDFileId* id = nullptr;
        EXPECT_TRUE(FIAGetAt(tests_.get(), index, &id));
        return IdHandle(id);
    }

    static int FileIdOf(const IdHandle& id)
    {
        int fileId = -1;
        int subId = -1;
        EXPECT_TRUE(FIDGetFileId(id.get(), &fileId, &subId));
        return fileId;
    }
    static bool Flag(const IdHandle& id, int (*getter)(VDFileId*, char*))
    {
        char flag = 0;
        EXPECT_TRUE(getter(id.get(), &flag));
        return flag != 0;
    }
    static std::string Text(const IdHandle& id, int (*getter)(VDFileId*, VDString*))
    {
        VDString text;
        EXPECT_TRUE(getter(id.get(), &text));
        return text.Str();
    }
    static std::string Text(const IdHandle& id, int (*getter)(VDFileId*, int, VDString*), int index)
    {
        VDString text;
        EXPECT_TRUE(getter(id.get(), index, &text));
        return text.Str();
    }

    TestFolder folder_;
    InfoHandle info_{FINFCreate()};
    ArrayHandle tests_;
};

/// A configuration of two access types with two file types each.
constexpr const char* GeneralFilesXml = R"(<?xml version="1.0"?>
<GeneralFiles Version="1.5">
  <!-- passed over -->
  <Other Id="x"/>
  <AccessType Id="1000" Name="Documents" Enabled="true">
    <FileType Keyword="Report" FileId="28000" Extensions="doc;Pdf;PDF" Enabled="TRUE" IdentifyAsStandard="True"/>
    <FileType Keyword="Draft" FileId="28001" Extensions="drf"/>
    <Other/>
  </AccessType>
  <AccessType Id="1001" Name="Pictures">
    <FileType Keyword="Photo" FileId="28002" Extensions="jpg" Enabled="True"/>
  </AccessType>
  <AccessType Id="999"><FileType/></AccessType>
  <AccessType Id="3000" Name="Outside" Enabled="True"/>
</GeneralFiles>
)";
