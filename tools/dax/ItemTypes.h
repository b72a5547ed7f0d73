#pragma once

#include "vdarchive/Z4Property.h"

#include <string>

/// The type of a metadata item as a word: "double", "int32", "string", ...
const char* VFItemTypeWord(Z4PropertyType type);
/// The type of a word, in any case; throws for a word that is none.
Z4PropertyType VFItemType(const std::string& word);
/// The words of the types that a value can be given by its text, for a help text.
std::string VFItemTypeWords();
