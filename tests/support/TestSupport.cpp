#include "support/TestSupport.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

TestFolder::TestFolder()
{
    std::string name = (fs::temp_directory_path() / "daxtest.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no folder for the test");
    path_ = fs::canonical(name).string();
}

TestFolder::~TestFolder()
{
    std::error_code ignored;
    for (const auto& entry : fs::recursive_directory_iterator(path_, fs::directory_options::skip_permission_denied, ignored))
        if (entry.is_directory(ignored) && !entry.is_symlink(ignored))
            fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    fs::remove_all(path_, ignored);
}

std::string TestFolder::Name(const std::string& entry) const
{
    const fs::path whole = fs::path(path_) / entry;
    fs::create_directories(whole.parent_path());
    return whole.string();
}

std::string TestFolder::Write(const std::string& entry, std::string_view content) const
{
    TestWriteFile(path_, entry, content);
    return Name(entry);
}

std::string TestHomeFolder()
{
    return std::getenv("DAX_HOME");
}

std::string TestSysFolder()
{
    return std::getenv("DAX_SYS");
}

void TestWriteFile(const std::string& folder, const std::string& entry, std::string_view content)
{
    const fs::path whole = fs::path(folder) / entry;
    fs::create_directories(whole.parent_path());
    std::ofstream file(whole, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.flush())
        throw std::runtime_error("can't write " + whole.string());
}

std::string TestReadFile(const std::string& filename)
{
    std::ifstream file(filename, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

std::string TestPluginFolder()
{
    return (fs::canonical("/proc/self/exe").parent_path() / "plugins").string();
}

void ExpectError(int code, const std::string& textPart, const std::string& routine)
{
    const VDErrorRecord* record = VFGetBaseLibError();
    EXPECT_EQ(VFErrorGetCode(record), code);
    const std::string text = VFErrorGetText(record).Str();
    EXPECT_NE(text.find(textPart), std::string::npos) << "text is \"" << text << "\", expected in it \"" << textPart << '"';
    if (!routine.empty()) {
        EXPECT_EQ(VFErrorGetRoutine(record).Str(), routine);
    }
}

void ExpectErrorText(int code, const std::string& text)
{
    EXPECT_EQ(VFErrorGetCode(VFGetBaseLibError()), code);
    EXPECT_EQ(VFErrorGetText(VFGetBaseLibError()).Str(), text);
}

void ExpectNoError()
{
    const VDErrorRecord* record = VFGetBaseLibError();
    EXPECT_EQ(VFErrorGetCode(record), 0) << VFErrorGetText(record).Str();
}
