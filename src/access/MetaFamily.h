#pragma once

#include "AccessFamily.h"

#include "daxlib/MetaDataPlugin.h"

class VDAccessPlugins;

/// The entry points of a metadata plug-in.
struct VDMetaAccEntryPoints : VDAccessEntryPoints
{
    DaxMetaData::GetLastError* GetLastError = nullptr;
    DaxMetaData::GetValue* GetValue = nullptr;
    DaxMetaData::PutValue* PutValue = nullptr;
};

const VDAccessFamily& VFMetaFamily();
VDAccessPlugins& VFMetaPlugins();
