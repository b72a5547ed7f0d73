#pragma once

#include "CsvTable.h"

class LQChannelMapper;

/// The format-specific values of a table, for both kinds of access.
namespace CsvFormatValues {

/// The answer to a name; nothing for one that the format doesn't know.
/// @param damage  of a file that is read
/// @param unfit   name of the value that the data that were put last don't fit
std::optional<VDVariant> Get(const VDString& name, const CsvDialect& dialect, const std::string& damage,
                             const std::string& unfit);

/// Takes what a host wishes for.
/// @param value  a list of name and value
/// @param why    takes what is wrong with it
bool Put(const VDVariant& value, CsvSettings& settings, std::string& why);

/// Adds the remarks in front of a table to the metadata of the test.
bool AddMetaData(LQChannelMapper& mapper, const CsvDialect& dialect);

}  // namespace CsvFormatValues
