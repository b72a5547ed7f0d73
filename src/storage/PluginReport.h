#pragma once

#include "frame/VFDaxReport.h"

/// The report of a plug-in inside the library: the catalogue text of the code and, unless the report is chained, the file of
/// the channel.
/// @return false always
template <class Plugin>
bool VFReportOfPlugin(const Plugin& plugin, long channel, int code, const char* routine, int chain)
{
    VDDaxReportDetail detail;
    detail.chain = chain;
    if (chain == 0)
        plugin.GetChanFileName(detail.name, channel);
    if (!detail.name.IsEmpty())
        detail.label = DaxText::File;
    return VFDaxReport(code, routine, detail) != 0;
}
