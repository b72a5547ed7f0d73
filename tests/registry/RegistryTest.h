#pragma once

#include "plugins/StandIn.h"
#include "support/TestFileId.h"

#include "vdbase/VDPreferenceSystem.h"

/// What the tests of the format registry share. The registry is a process's own, so that every test starts with an empty
/// one.

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

    VDFileIdHandle MakeFile(const std::string& entry, const std::string& content)
    {
        return TestId(folder_.Write(entry, content));
    }

    /// Appends the tests of a file to those found before.
    bool Identify(const VDFileIdHandle& id, bool loadInfo = false)
    {
        VDFileIdArray* tests = tests_.Detach();
        const bool identified = FINFIdentifyFile(Info(), id.Get(), loadInfo, &tests) != 0;
        tests_.Reset(tests);
        return identified;
    }

    VDFileInfo* Info() const { return info_.Get(); }
    int NumTests() const
    {
        int size = -1;
        FIAGetSize(tests_.Get(), &size);
        return size;
    }
    VDFileIdHandle Test(int index) const
    {
        VDFileIdHandle id;
        EXPECT_TRUE(FIAGetAt(tests_.Get(), index, id.Out()));
        return id;
    }
    static int FileIdOf(const VDFileIdHandle& id)
    {
        int fileId = -1;
        int subId = -1;
        EXPECT_TRUE(FIDGetFileId(id.Get(), &fileId, &subId));
        return fileId;
    }

    TestFolder folder_;
    VDFileInfoHandle info_{FINFCreate()};
    VDFileIdArrayHandle tests_;
};

/// A configuration of two access types with two file types each.
constexpr const char* GeneralFilesXml = R"(<?xml version="1.0"?>
<GeneralFiles Version="1.5">
  <!-- passed over -->
  <Other Id="x"/>
  <AccessType Id="1000" Name="Documents" Enabled="true">
    <FileType Keyword="Report" FileId="28000" Extensions="doc;; Pdf ;PDF" Enabled="TRUE" IdentifyAsStandard="True"/>
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
