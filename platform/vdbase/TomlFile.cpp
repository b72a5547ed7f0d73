#include "TomlFile.h"

#include "FileReport.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VDIo.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace {

// Nobody writes a configuration of this size; what is larger is some other file.
constexpr std::int64_t LargestFile = 1 << 20;

// Each part of a key is a table in a table.
constexpr int MostKeyParts = 16;

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

// Where a text or a comment that begins here ends; where anything else begins, that place itself.
std::size_t VFSkipQuoted(std::string_view text, std::size_t at)
{
    const char quote = text[at];
    if (quote == '#')
        return std::min(text.find('\n', at), text.size());
    if (quote != '"' && quote != '\'')
        return at;
    const std::string_view triple = quote == '"' ? "\"\"\"" : "\'\'\'";
    const bool isLong = text.substr(at).starts_with(triple);
    const std::string_view end = isLong ? triple : triple.substr(0, 1);
    for (std::size_t next = at + end.size(); next < text.size(); ++next) {
        if (quote == '"' && text[next] == '\\')
            ++next;
        else if (text.substr(next).starts_with(end))
            // Up to two quotes before the end of a long text are its own.
            return std::min(text.find_first_not_of(quote, next), next + (isLong ? 5 : 1));
        else if (!isLong && text[next] == '\n')
            return next;
    }
    return text.size();
}

// The line of the first key that has too many parts; 0 if there is none. Numbers have a point, too, but only one.
int VFFindDeepKey(std::string_view text)
{
    int line = 1;
    int parts = 1;
    for (std::size_t at = 0; at < text.size();) {
        if (const std::size_t end = VFSkipQuoted(text, at); end != at) {
            line += static_cast<int>(std::count(text.begin() + static_cast<std::ptrdiff_t>(at),
                                                text.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
            at = end;
            continue;
        }
        const char byte = text[at++];
        if (byte == '.' && ++parts > MostKeyParts)
            return line;
        if (byte == '\n')
            ++line;
        if (std::string_view("=,[]{}\n").find(byte) != std::string_view::npos)
            parts = 1;
    }
    return 0;
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
    if (const int line = VFFindDeepKey(content); line != 0) {
        toml::source_region place;
        place.begin.line = static_cast<toml::source_index>(line);
        return VFReportTomlNode(filename, place, "the key has too many parts", code, routine, chain);
    }
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
