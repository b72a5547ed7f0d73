#pragma once

#include "vdbase/VFError.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

/// What the tests of all folders share. The test program's own main sets `DAX_HOME` and `DAX_SYS` to two empty folders of the
/// process, so that no test sees the configuration of the machine.

/// A folder of this test alone; it goes with the object.
class TestFolder
{
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::string& Path() const { return path_; }
    /// Whole name of an entry; sub-folders in the name are made.
    std::string Name(const std::string& entry) const;
    /// Writes a file and gives its whole name.
    std::string Write(const std::string& entry, std::string_view content) const;

private:
    std::string path_;
};

/// The folders behind the logical names `home` and `vdsys` in this process.
std::string TestHomeFolder();
std::string TestSysFolder();
/// Writes a file into such a folder, for instance (TestHomeFolder(), "plugins.toml", ...).
void TestWriteFile(const std::string& folder, const std::string& entry, std::string_view content);
std::string TestReadFile(const std::string& filename);

/// The folder in which the stand-in plug-ins of the tests are built.
std::string TestPluginFolder();

/// Expects the last report of this thread.
/// @param textPart  must be found in the text; empty for any text
/// @param routine   exact; empty for any
void ExpectError(int code, const std::string& textPart = {}, const std::string& routine = {});
/// Expects the whole text of the last report.
void ExpectErrorText(int code, const std::string& text);
void ExpectNoError();

/// Expects that a call failed, with this as the last report.
template <class Result>
void ExpectFailure(const Result& result, int code, const std::string& textPart = {}, const std::string& routine = {},
                   const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    const testing::ScopedTrace trace(file, line, "called here");
    EXPECT_FALSE(result);
    ExpectError(code, textPart, routine);
}

template <class... Parameters>
auto TestLastParameter(int (*)(Parameters...))
    -> std::remove_pointer_t<std::tuple_element_t<sizeof...(Parameters) - 1, std::tuple<Parameters...>>>;

/// The value that a getter stores through its last parameter; it starts from one that no test expects.
template <auto Getter, class... Arguments>
auto TestValue(Arguments... arguments)
{
    using Value = decltype(TestLastParameter(Getter));
    Value value{};
    if constexpr (std::is_arithmetic_v<Value>)
        value = 119;
    else if constexpr (std::is_constructible_v<Value, const char*>)
        value = "unset";
    EXPECT_TRUE(Getter(arguments..., &value)) << VFErrorGetText(VFGetBaseLibError()).Str();
    return value;
}
