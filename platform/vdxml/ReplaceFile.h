#pragma once

#include <initializer_list>
#include <string_view>

/// Writes the parts, one behind the other, to a file that appears under its name when it is whole; until then one of that
/// name stays as it is. Its mode carries over. A failure is recorded with the name and leaves nothing behind.
bool VFReplaceFile(const char* filename, std::initializer_list<std::string_view> parts);
