#pragma once

#include "VDChannelList.h"
#include "VDCompBaseRef.h"
#include "VDFileIdMetadata.h"

#include "daxlib/VDChanSep.h"
#include "daxlib/VDFileIdPreferences.h"

#include <optional>

/// Work on the channel list that was asked for while the list was still to come.
struct VDPendingRequests
{
    bool sort = false;
    bool sortAscending = true;
    bool select = false;
    bool selectValue = true;
};

/// All that a file id says about its test. Copies are independent but for the host's object, which they share.
struct VDFileIdRecord
{
    VTNameForm nameForm = VTNameFormFile;
    VDString filename;   ///< form 0: whole path; form 1: stem with folder, without extension and channel number
    VDString extension;  ///< without the dot
    std::int32_t fileId = 0;
    std::int32_t subId = 0;
    std::int32_t version = 0;
    std::int32_t subVersion = 0;
    std::int32_t opSys = 101;
    std::int32_t run = -1;
    std::int32_t mode = -1;
    std::int32_t burst = -1;
    VDString title;
    VDString modeTitle;
    VDString fullPathName;
    std::optional<VDChanSep> chanSep;  ///< none: the rules of the preferences
    VDPendingRequests pending;
    VDString extraMetadataFilename;
    VDString associatedFilename;
    VDChannelList channels;
    bool showChannels = false;
    bool selected = false;
    bool identified = false;        ///< file id, sub id, version and writing system are known
    bool infoLoaded = false;        ///< the channels are known
    bool identByExtension = false;  ///< the real identification is still to come
    bool loadInfoWhenNeeded = false;
    std::int32_t chanDigits = 2;  ///< width of the channel number in channel file names
    VTDataSource dataSource = VTDataSourceDisk;
    VDString dataPath;
    VDCompBaseRef extraData;
    VDString objectReference;
    bool folderTest = false;
    VDString originalExtension;  ///< of the channel files of a folder test
    std::optional<VDFileIdMetadata> metadata;
    std::optional<VDFileIdPreferences> preferences;
};
