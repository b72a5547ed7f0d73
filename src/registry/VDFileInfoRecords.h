#pragma once

#include "frame/PluginTable.h"
#include "frame/VFDaxReport.h"

#include "daxlib/FileFormatPlugin.h"
#include "vdbase/VDStringArray.h"

#include <deque>

/// The rows of the registry's three tables.

/// What a FileFormat plug-in exports. The last three are null where it doesn't export them.
struct VDFormatEntryPoints
{
    DaxFileFormat::IdentifyFile* identifyFile = nullptr;
    DaxFileFormat::LoadFileInfo* loadFileInfo = nullptr;
    DaxFileFormat::GetLastError* getLastError = nullptr;
    DaxFileFormat::GetNextSupportedType* getNextSupportedType = nullptr;
    DaxFileFormat::GetNextCapability* getNextCapability = nullptr;
    DaxFileFormat::GetValue* getValue = nullptr;
    DaxFileFormat::FileIdToTestDesc* fileIdToTestDesc = nullptr;
    DaxFileFormat::TestDescToFileIdArray* testDescToFileIdArray = nullptr;
    DaxFileFormat::GetProxyAccessFileId* getProxyAccessFileId = nullptr;
};

/// One plug-in. It counts as loaded only while at least one of its file types is enabled.
struct VDFileInfoPluginInfo : VDPluginRecord
{
    VDFormatEntryPoints entryPoints;
    bool passesOutOfMemory = false;  ///< a shortage of memory isn't taken for a fault of the plug-in
};

/// One file type, of a plug-in or from the configuration.
struct VDFileInfoFileIdInfo
{
    bool enabled = true;
    int fileId = 0;
    int subId = 0;
    VTFileAccessType accessType = VTFileAccessUnknown;
    VDString accessClass;  ///< selects the access plug-in; empty for a configured type
    VDString description;
    int pluginIndex = -1;  ///< -1 for a configured type
    VDStringArray capabilityNames;
    VDArrayWithSort<long> capabilityValues;  ///< parallel to the names
    int nameForm = VTNameFormFile;
    VDString keyword;  ///< the format's short name, the key of its preferences
    bool identifyByExtension = false;
    VDStringArray extensions;  ///< in upper case for a plug-in's type, as written for a configured one
};

/// Rows keep their addresses as the table grows, since plug-ins may be called while a row is in use.
using VDFileTypeTable = std::deque<VDFileInfoFileIdInfo>;

/// One access type that some file type has.
struct VDFileInfoAccessInfo
{
    VTFileAccessType accessType = VTFileAccessUnknown;
    VDString name = VFDaxText(DaxText::AccessTypeUnknown);
};
