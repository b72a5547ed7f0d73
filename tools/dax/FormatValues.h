#pragma once

#include "TestAccess.h"

#include <string>
#include <vector>

/// A value that a format keeps under a name of its own, beside header and metadata.
struct VDFormatValue
{
    std::string name;
    VDVariant value;

    /// Empty for a value that has no text, such as a pointer.
    std::string Text() const;
};

/// The name under which formats that keep the title of a test have it.
constexpr const char* VVTitle = "Title";
/// The name under which they have how they store values, which tells nothing about the test.
constexpr const char* VVEncoding = "Encoding";

/// What the file has of them; a format that doesn't list them has none. What tells of the file's state, such as its damage,
/// isn't among them.
std::vector<VDFormatValue> VFGetFormatValues(const VDTestAccess& test);
/// The text under one name, without regard to case; empty if there is none.
std::string VFGetFormatText(const VDTestAccess& test, const char* name);
