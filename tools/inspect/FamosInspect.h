#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// What `VDFamosUtil` finds in a file.
/// @return false, with the reports recorded, if the file can't be read
bool VFInspectFamos(const std::string& filename, const std::string& database, nlohmann::ordered_json* document);

/// The values of each component: name of its first channel, number of points, first, last, least, greatest and sum.
/// @return false, with the reports recorded, if the file can't be read; a component that can't be is listed without values
bool VFInspectFamosValues(const std::string& filename, nlohmann::ordered_json* document);

/// The same as text for people.
std::string VFFamosInspectText(const nlohmann::ordered_json& document);
