#pragma once

#include "vdbase/VFError.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

/// JSON with its keys in the order in which they were set.
using VDJson = nlohmann::ordered_json;

/// The document as text, which is UTF-8 and holds nothing that steers a terminal: texts that are no UTF-8 (titles and file
/// names may hold any bytes) are taken as Windows-1252, and control codes are escaped. Numbers that JSON doesn't have become
/// the texts "NaN", "Infinity" and "-Infinity".
std::string VFJsonText(VDJson document, int indent = 2);
/// A value that stands in a text as a number, with the digits that it has there; any other text stays one.
VDJson VFJsonNumber(std::string_view text);
/// The list under the keys "errors" and "warnings".
VDJson VFJsonErrors(const std::vector<VDErrorReport>& reports);
