#include "TomlFile.h"

#include "FileReport.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VDIo.h"

#include <string>
#include <utility>

namespace {

// Nobody writes a configuration of this size; what is larger is some other file.
constexpr std::int64_t LargestFile = 16 << 20;

bool VFReadWhole(const VDString& filename, std::string* content)
{
    VDIo io(filename);
    if (!io.Open(VTOpenRead))
        return false;
    const std::int64_t size = io.GetFileSize();
    if (size < 0 || size > LargestFile)
        return false;
    content->resize(static_cast<std::size_t>(size));
    return io.ReadAtCur(size, content->data(), nullptr);
}

}  // namespace

bool VFParseTomlFile(const VDString& filename, toml::table* table, int code, const char* routine, int chain)
{
    table->clear();
    if (!VDFileSystem::FileExists(filename) && !VDFileSystem::DirectoryExists(filename))
        return true;
    std::string content;
    if (!VFReadWhole(filename, &content))
        return VFReportFile(code, filename, "it can't be read, or it is too large", routine, 1);
    toml::parse_result result = toml::parse(content);
    if (!result) {
        const std::string reason(result.error().description());
        return VFReportTomlNode(filename, result.error().source(), reason, code, routine, chain);
    }
    *table = std::move(result).table();
    return true;
}

bool VFReportTomlNode(const VDString& filename, const toml::source_region& place, const VDString& reason, int code,
                      const char* routine, int chain)
{
    VDString text;
    text.Format("line %u: %s", static_cast<unsigned>(place.begin.line), reason.c_str());
    return VFReportFile(code, filename, text.c_str(), routine, chain);
}
