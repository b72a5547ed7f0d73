#pragma once

#include "daxlib/FileFormatPlugin.h"

/// The storage format as a FileFormat plug-in, known without any manifest.

extern "C" {
DAX_API DaxFileFormat::IdentifyFile Z4FFIdentifyFile;
DAX_API DaxFileFormat::LoadFileInfo Z4FFLoadFileInfo;
DAX_API DaxFileFormat::GetLastError Z4FFGetLastError;
DAX_API DaxFileFormat::GetNextSupportedType Z4FFGetNextSupportedType;
DAX_API DaxFileFormat::GetNextCapability Z4FFGetNextCapability;
DAX_API DaxFileFormat::GetValue Z4FFGetValue;

/// @name The format's temporary files
/// They are never claimed: an id says that a file is one. Their files go with the last id.
/// @{
DAX_API DaxFileFormat::IdentifyFile Z4TempFFIdentifyFile;
DAX_API DaxFileFormat::LoadFileInfo Z4TempFFLoadFileInfo;
DAX_API DaxFileFormat::GetLastError Z4TempFFGetLastError;
DAX_API DaxFileFormat::GetNextSupportedType Z4TempFFGetNextSupportedType;
DAX_API DaxFileFormat::GetNextCapability Z4TempFFGetNextCapability;
DAX_API DaxFileFormat::GetValue Z4TempFFGetValue;
/// @}
}
