#pragma once

#include "DataTest.h"
#include "FormatValues.h"
#include "ProgressBar.h"
#include "Registry.h"

/// Something that a copy is to keep under a name of its own.
struct VDValueToKeep : VDFormatValue
{
    std::string what;  ///< it is to the source, as a loss is called
};

/// What is copied, and into which format.
struct VDCopyPlan
{
    const VDDataTest& source;
    std::vector<VDChannel> channels;  ///< in the order of the copy
    std::vector<int> numbers;         ///< of the copy's channels, ascending
    VDFileType format;
    /// What the format is asked to keep under names of its own. One that it has no place for goes into the metadata.
    std::vector<VDValueToKeep> values;
    bool metaData = true;  ///< the metadata are copied, too
};

/// Thrown when values don't fit into the file because of a value that the format was given under this name: it has to be
/// written anew without that.
struct VDUnfit
{
    std::string name;
};

/// The title of a test that isn't just the name of its file.
std::string VFOwnTitle(VDFileId* id);
/// What a copy of the test is to keep under names of its own: what the metadata tell, be it from an earlier copy, what the
/// format has besides, and the title.
/// @param metaData  false leaves out what tells of the test, so that only the encoding is left
std::vector<VDValueToKeep> VFGetValuesToKeep(const VDDataTest& source, bool metaData);

/// An id for a test of the plan's format under this name, with the plan's channels.
VDFileIdHandle VFMakeTargetId(const VDCopyPlan& plan, const std::string& name);

/// The files of such a test: its own and, for a format that keeps no metadata, the one beside it that does.
std::vector<std::string> VFGetTargetFiles(const VDFileType& format, VDFileId* target);

/// Writes the plan's channels into a new test; throws on failure.
/// @param limit  at most so many points of each channel, rows of a table or spectra
void VFWriteTest(const VDCopyPlan& plan, VDFileId* target, std::int64_t limit, VDProgressBar& progress);
