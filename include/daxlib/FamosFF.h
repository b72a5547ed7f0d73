#pragma once

#include "daxlib/FileFormatPlugin.h"

/// Famos recordings (file id 2400) as a FileFormat plug-in, known without any manifest. They are known by their first key and can
/// be read only.

extern "C" {
DAX_API DaxFileFormat::IdentifyFile FamosFFIdentifyFile;
DAX_API DaxFileFormat::LoadFileInfo FamosFFLoadFileInfo;
DAX_API DaxFileFormat::GetLastError FamosFFGetLastError;
DAX_API DaxFileFormat::GetNextSupportedType FamosFFGetNextSupportedType;
DAX_API DaxFileFormat::GetNextCapability FamosFFGetNextCapability;
DAX_API DaxFileFormat::GetValue FamosFFGetValue;
}
