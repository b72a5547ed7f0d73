#pragma once

#include <cstdarg>
#include <string>

/// printf output as a text. Numbers come out as in the "C" locale, whatever the host has set. A null format gives an empty
/// text, and so does a conversion that fails.
std::string VFFormatArguments(const char* format, std::va_list arguments);
