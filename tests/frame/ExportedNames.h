#pragma once

#include <fstream>
#include <set>
#include <string>

/// The checked-in list of what the library exports: one name a line, demangled.
inline std::set<std::string> ReadExportedNames()
{
    std::set<std::string> names;
    std::ifstream file(DAX_EXPORTED_NAMES);
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] != '#')
            names.insert(line);
    return names;
}
