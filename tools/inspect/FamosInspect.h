#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// What `VDFamosUtil` finds in a file.
/// @return false, with the reports recorded, if the file can't be read
bool VFInspectFamos(const std::string& filename, const std::string& database, nlohmann::ordered_json* document);

/// The same as text for people.
std::string VFFamosInspectText(const nlohmann::ordered_json& document);
