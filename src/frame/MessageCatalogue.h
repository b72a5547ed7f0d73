#pragma once

#include "vdbase/VFText.h"

/// The table of all texts of the library and of the format plug-ins, in catalogue order and closed by a row with id 0.
const VDTextRow* VFGetMessageTable();
