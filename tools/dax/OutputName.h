#pragma once

#include "Command.h"
#include "TimeSeriesTest.h"

/// The path of an output whose name is formed from metadata. Signs that a name can't hold everywhere are replaced, with a
/// warning; throws for a keyword whose item isn't found and for what is no name.
/// @param folder  empty for the current one
/// @param format  its first extension is appended to a name that has none of the format's
std::string VFMakeOutputName(VDCommandContext& context, const VDTestAccess& source, const std::string& text,
                             const std::string& folder, const VDFileType& format);
