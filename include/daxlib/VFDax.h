#pragma once

#include "daxlib/DaxApi.h"
#include "vdbase/VFText.h"

/// The catalogue of all texts of the library and of the format plug-ins, for use with `VFTextGet`. It is the same handle
/// throughout a process and stays the library's.
DAX_API VDTextCatalogue* VFGetDaxLibText();
