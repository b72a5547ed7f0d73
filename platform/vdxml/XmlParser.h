#pragma once

#include "vdxml/DOM_Document.h"

#include <string_view>

/// Parses a whole text.
/// @param filename  for reports; empty if the text is no file's
/// @return null, recorded, if it can't be parsed
DOM_Document VFParseXmlText(std::string_view text, const char* filename, const char* routine);
