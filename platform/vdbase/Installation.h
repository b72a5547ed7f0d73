#pragma once

#include "vdbase/VDString.h"

/// Where the installation that this library belongs to keeps its files. Both are found from the place of the library itself,
/// so that an installation can be moved as a whole.
VDString VFInstalledDataFolder();
VDString VFInstalledPlugInFolder();
