#include "ExportedNames.h"
#include "support/TestSupport.h"

#include "daxlib/VFDax.h"
#include "vdbase/VFVersion.h"

#include <cstdio>

namespace {

/// What the built library defines for others: strong symbols of its own.
std::set<std::string> ReadLibrarySymbols()
{
    std::set<std::string> names;
    FILE* pipe = popen(DAX_NM " -D -C --defined-only " DAX_LIBRARY, "r");
    if (pipe == nullptr)
        return names;
    char line[4096];
    while (std::fgets(line, sizeof line, pipe) != nullptr) {
        const std::string text(line);
        const auto type = text.find(' ') + 1;
        if (text.find("__odr_asan") != std::string::npos)
            continue;
        if (text[type] == 'T' || text[type] == 'D' || text[type] == 'B' || text[type] == 'R')
            names.insert(text.substr(type + 2, text.size() - type - 3));
    }
    pclose(pipe);
    return names;
}

}  // namespace

TEST(LibraryTest, ExportsExactlyTheListedNames)
{
    const std::set<std::string> listed = ReadExportedNames();
    const std::set<std::string> built = ReadLibrarySymbols();
    ASSERT_FALSE(built.empty());
    for (const std::string& name : built)
        EXPECT_EQ(listed.count(name), 1U) << "exported, but not in the list: " << name;
    for (const std::string& name : listed)
        EXPECT_EQ(built.count(name), 1U) << "in the list, but not exported: " << name;
}

TEST(LibraryTest, RegistersItsVersionAndTexts)
{
    VDVersionInfo version;
    ASSERT_TRUE(VFVersionGet("DAXLIB", &version));
    EXPECT_EQ(version.major, 2);
    EXPECT_EQ(version.minor, 80);
    EXPECT_EQ(version.build, 35);
    EXPECT_EQ(version.date.GetLength(), 11);
    EXPECT_EQ(version.time.GetLength(), 8);

    VDString text;
    const VDTextCatalogue* catalogue = VFGetDaxLibText();
    EXPECT_EQ(catalogue, VFGetDaxLibText());
    for (const auto& [id, expected] : {std::pair{-327682, "Invalid handle"},
                                       {1005, "File :"},
                                       {-327681, "Out of memory "},
                                       {101, "Maximum of cycle (integer units)"},
                                       {-331181, "This is not a recognised XML file : \t\t\t\t\t"},
                                       {-335793, "Invalid channel number"}}) {
        EXPECT_TRUE(VFTextGet(catalogue, id, &text));
        EXPECT_STREQ(text, expected);
    }
    EXPECT_FALSE(VFTextGet(catalogue, -327680, &text));
    EXPECT_TRUE(text.IsEmpty());
}
