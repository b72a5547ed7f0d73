#pragma once

#include "VDFileInfoRecords.h"

#include <new>

/// Calls to one FileFormat plug-in. Whoever calls in here holds the library lock.

/// Finds a plug-in's entry points and asks it for its file types, which are appended to the table. Types that were told before
/// a failure are appended, too; an exception appends none.
/// @param plugins      has the plug-in at `pluginIndex`. A type that another one serves already is a failure
/// @return false, recorded, on failure
bool VFLoadFormatPlugin(const VDPluginTable<VDFileInfoPluginInfo>& plugins, int pluginIndex, const VDString& library,
                        const VDString& prefix, VDFileTypeTable& fileTypes);

/// Records -328697 for an exception that left a plug-in.
/// @return false always
bool VFReportFormatException(const VDFileInfoPluginInfo& plugin, const char* function, const char* routine);

/// Makes a call to a plug-in.
/// @return false, recorded, if an exception left the plug-in; a shortage of memory is passed on while the plug-in says so
template <class Call>
bool VFGuardFormatCall(const VDFileInfoPluginInfo& plugin, const char* function, const char* routine, Call&& call)
{
    try {
        call();
        return true;
    } catch (const std::bad_alloc&) {
        if (plugin.passesOutOfMemory)
            throw;
        return VFReportFormatException(plugin, function, routine);
    } catch (...) {
        return VFReportFormatException(plugin, function, routine);
    }
}

/// Records what a plug-in says about its last failure, unless it has recorded that itself. The record was cleared before the
/// call that failed.
/// @param function  name of the entry point; the reports go under this name, too
/// @return false always
bool VFReportFormatFailure(const VDFileInfoPluginInfo& plugin, const char* function);

/// `VFGuardFormatCall` for an entry point whose result is 0 on failure, which is reported with the plug-in's own text.
/// @param function  as above
template <class Call>
bool VFCallFormat(const VDFileInfoPluginInfo& plugin, const char* function, Call&& call)
{
    int result = 0;
    VFErrorClear();
    const VDString routine = VDString("VDFileInfo::") + function;
    return VFGuardFormatCall(plugin, function, routine, [&] { result = call(); }) &&
           (result != 0 || VFReportFormatFailure(plugin, function));
}

/// What the library asks a plug-in about a file type.
struct VDFormatQuestion
{
    const char* key;
    VTVariantType type;  ///< of the answer
    int errorCode;       ///< of the report if there is no such answer
    const char* routine;
};

/// Asks a plug-in about a file type.
/// @param arguments  a list that begins with file id and sub id
/// @return the answer; a null variant, recorded, if there is none of the type
VDVariant VFAskFormat(const VDFileInfoPluginInfo& plugin, const VDFormatQuestion& question, const VDVariant& arguments);

/// The beginning of the arguments of every question.
VDVariant VFFormatArguments(int fileId, int subId);
