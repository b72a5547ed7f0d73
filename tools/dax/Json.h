#pragma once

#include "vdbase/VFError.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

/// JSON with its keys in the order in which they were set.
using VDJson = nlohmann::ordered_json;

/// The document as text. Bytes that are no UTF-8 (titles and file names may hold any) become the replacement character.
std::string VFJsonText(const VDJson& document, int indent = 2);
/// The list under the key "errors".
VDJson VFJsonErrors(const std::vector<VDErrorReport>& reports);
