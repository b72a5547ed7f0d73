#pragma once

#include "CsvDialect.h"

#include <string_view>

/// A text of a file as UTF-8.
std::string CsvDecode(const std::string& text, CsvDialect::Encoding encoding);
/// A text as a file has it. What isn't UTF-8 is taken for Windows-1252, as it is everywhere.
/// @return false if the encoding lacks a character of it
bool CsvEncode(const std::string& text, CsvDialect::Encoding encoding, std::string& encoded);
bool CsvIsOtherThanUtf8(std::string_view text);
