#pragma once

#include "plugins/StandIn.h"
#include "support/TestFileId.h"

#include "daxlib/VFDirList.h"

#include <filesystem>

/// A test of directory lists, in a folder of stand-in files.
class ListingTest : public StandIn::StandInTest
{
protected:
    ListingTest()
    {
        TestWriteFile(TestHomeFolder(), "plugins.toml",
                      StandIn::Manifests() + StandIn::Manifest("FileFormat", "Other", "OtherFF"));
    }

    /// Writes a file of the format whose files hold a channel each.
    std::string Channel(const std::string& name, const std::string& script = {}) const
    {
        return Write("fileid=601 " + script, name);
    }

    /// The tests that a text means, one after the other: the name below the folder, and behind it for a test of several
    /// files
    /// ";EXTENSION" and the channels, "#N" for run N, and "?" for a file that nobody knows.
    std::string List(const char* text, bool withInfo = false)
    {
        EXPECT_TRUE(VFDirListSetPath(list_.Get(), folder_.Path()));
        EXPECT_TRUE(VFDirListSetFilesMatching(list_.Get(), text));
        EXPECT_TRUE((withInfo ? VFDirListCreateListWithInfo : VFDirListCreateList)(list_.Get()))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        return Listed();
    }

    std::string Listed() const
    {
        std::string text;
        for (int index = 0; index < Count(); ++index)
            text += (index == 0 ? "" : " ") + Describe(Test(index));
        return text;
    }

    int Count() const { return TestValue<FIAGetSize>(Tests().Get()); }
    VDFileIdHandle Test(int index) const
    {
        VDFileIdHandle id;
        EXPECT_TRUE(FIAGetAt(Tests().Get(), index, id.Out()));
        return id;
    }

    std::string Describe(const VDFileIdHandle& id) const
    {
        VDString extension;
        std::string text = TestFilename(id, &extension).substr(folder_.Path().size() + 1);
        if (TestInt<FIDGetNameForm>(id) == VTNameFormTestPlusChannels) {
            text += ";" + extension.Str() + "[";
            for (const long number : TestNumbers(id))
                text += std::to_string(number) + ",";
            text.back() = ']';
        }
        if (const int run = TestInt<FIDGetRunNumber>(id); run >= 0)
            text += "#" + std::to_string(run);
        int fileId = -1;
        int subId = -1;
        EXPECT_TRUE(FIDGetFileId(id.Get(), &fileId, &subId));
        return fileId == 0 ? text + "?" : text;
    }

    VDFileIdArrayHandle Tests() const
    {
        VDFileIdArrayHandle tests;
        EXPECT_TRUE(VFDirListGetFileIdArray(list_.Get(), tests.Out()));
        return tests;
    }

    VDDirListHandle list_{VFDirListCreate()};
};
