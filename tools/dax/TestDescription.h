#pragma once

#include "Identification.h"
#include "Json.h"
#include "TextTable.h"

/// What is said about a test as a whole, the same wherever a test is described.
struct VDTestDescription
{
    std::string path;
    VDFileType type;
    std::string identifiedBy;
    std::string title;
    int run = -1;  ///< -1: the test isn't divided that way; also burst and mode
    int burst = -1;
    int mode = -1;

    VDTestDescription(const VDRegistry& registry, const VDIdentification& identification, const VDFileIdHandle& test);

    VDJson ToJson() const;
    /// Appends rows of name and value.
    void AddTo(VDTextTable& table) const;
};
