#pragma once

#include "FolderTests.h"

#include "daxlib/DaxTypes.h"
#include "daxlib/VDChanSep.h"

/// Files that hold one channel of a test each.

/// The test that a file is a part of, by its name.
struct VDChannelFile
{
    bool belongs = false;  ///< to a test; the rest says nothing otherwise
    VDString testName;
    VDString testExtension;      ///< of the folder, for a folder test
    VDString originalExtension;  ///< of the file
    bool byFolder = false;
    int channel = 0;    ///< its number, unless it is by folder
    VDString title;     ///< of the channel, if it is by folder
    int numDigits = 1;  ///< width of the number in names of files
};

/// Works out where a file belongs. Only files of formats that lie about in this way belong anywhere, and only those whose
/// names the test gives back.
class VDChannelFileReader
{
public:
    VDChannelFileReader(const VDChanSep& chanSep, const VDFolderTestRows& folderTests);

    VDChannelFile Read(VDFileId* file);

private:
    VDChannelFile ReadName(const VDString& filename) const;
    VDChannelFile ReadFolder(const VDString& filename);
    bool FolderExists(const VDString& folder);

    const VDChanSep& chanSep_;
    const VDFolderTestRows& folderTests_;
    VDString lastFolder_;  ///< that was found to exist: the next file mostly lies in the same
};

/// The name of the file that a test gives for a channel.
VDString VFNameOfChannelFile(const VDChannelFile& channel);
