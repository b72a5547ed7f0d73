#pragma once

#include <string>
#include <string_view>

// Texts that come from files (titles, names, file names, error texts that carry them) may hold anything, also what steers a
// terminal. All of them pass one of these before they leave the program, whatever the output is.

/// A text made fit for one line of a terminal, as UTF-8. A line end, a tab and the like become a blank; every other control
/// code (escape, bell, those of 0x80 to 0x9F), every character that turns the direction of writing and every byte that is
/// none of a character become the replacement character. A text that isn't UTF-8 is taken as Windows-1252.
std::string VFPrintable(std::string_view text);

/// The same as a cell of a CSV line, in quotes where it needs them.
std::string VFCsvText(std::string_view text);

/// A text as UTF-8: what is well-formed stays, anything else is taken as Windows-1252.
std::string VFAsUtf8(std::string_view text);

/// Puts escapes of JSON in the place of what could steer a terminal and still stands raw in the strings of a document, which
/// means the same to a program.
std::string VFEscapeJson(std::string_view document);
/// The same for a document of XML, all of whose texts stand in attributes.
std::string VFEscapeXml(std::string_view document);

/// Characters that a text of `VFPrintable` takes on a terminal.
std::size_t VFTextWidth(std::string_view printable);

/// A title with its units behind it, as tables are headed: "Force [kN]".
std::string VFWithUnits(const std::string& title, const std::string& units);
