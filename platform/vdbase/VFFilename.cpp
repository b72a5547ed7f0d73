#include "vdbase/VFFilename.h"

#include "AsciiText.h"
#include "Installation.h"
#include "ProcessRights.h"

#include <string_view>
#include <utility>

namespace {

constexpr char Separator = '/';

std::string_view VFView(const char* text)
{
    return text == nullptr ? std::string_view() : std::string_view(text);
}

// Where the extension's dot stands in the last element of a name; npos without one. A dot at the end stays with the base, so
// that splitting and building give every name back.
std::size_t VFFindDot(std::string_view element)
{
    const std::size_t dot = element.rfind('.');
    const bool isExtension = dot != std::string_view::npos && dot != 0 && dot + 1 != element.size();
    return isExtension ? dot : std::string_view::npos;
}

// Without separators at the end; the root stays.
std::string_view VFTrimSeparators(std::string_view name)
{
    while (name.size() > 1 && name.back() == Separator)
        name.remove_suffix(1);
    return name;
}

VDString VFHomeFolder()
{
    if (const std::string_view home = VFEnvironmentFolder("DAX_HOME"); !home.empty())
        return VDString(VFTrimSeparators(home));
    if (const std::string_view config = VFEnvironmentFolder("XDG_CONFIG_HOME"); !config.empty())
        return VFBuildFilename(VDString(config), "daxlib");
    const VDString user = VFUserFolder();
    return user.IsEmpty() ? VDString() : VFBuildFilename(user, ".config/daxlib");
}

}  // namespace

void VFSplitFilename(const char* filename, VDString* folder, VDString* base, VDString* extension)
{
    const std::string_view name = VFView(filename);
    const std::size_t separator = name.rfind(Separator);
    const std::size_t start = separator == std::string_view::npos ? 0 : separator + 1;
    const std::string_view element = name.substr(start);
    const std::size_t dot = VFFindDot(element);

    // All parts are taken before the first is stored: the name may be the text of one of the results.
    VDString folderPart = folder != nullptr ? VDString(name.substr(0, start)) : VDString();
    VDString basePart = base != nullptr ? VDString(element.substr(0, dot)) : VDString();
    VDString extensionPart;
    if (extension != nullptr && dot != std::string_view::npos)
        extensionPart = VDString(element.substr(dot + 1));
    if (folder != nullptr)
        *folder = std::move(folderPart);
    if (base != nullptr)
        *base = std::move(basePart);
    if (extension != nullptr)
        *extension = std::move(extensionPart);
}

VDString VFBuildFilename(const char* folder, const char* base, const char* extension)
{
    const std::string_view basePart = VFView(base);
    const std::string_view extensionPart = VFView(extension);
    const std::string_view folderPart = basePart.starts_with(Separator) ? std::string_view() : VFView(folder);

    std::string name;
    name.reserve(folderPart.size() + basePart.size() + extensionPart.size() + 2);
    name += folderPart;
    if (!name.empty() && name.back() != Separator && !(basePart.empty() && extensionPart.empty()))
        name += Separator;
    name += basePart;
    if (!extensionPart.empty() && extensionPart.front() != '.')
        name += '.';
    name += extensionPart;
    return VDString(std::move(name));
}

VDString VFMakePath(const char* folder)
{
    const std::string_view name = VFTrimSeparators(VFView(folder));
    std::string path;
    path.reserve(name.size() + 1);
    path += name;
    if (!path.empty() && path.back() != Separator)
        path += Separator;
    return VDString(std::move(path));
}

VDString VFTranslateName(const char* logicalName)
{
    const std::string_view name = VFView(logicalName);
    if (name == "home")
        return VFHomeFolder();
    if (name != "vdsys")
        return {};
    const std::string_view folder = VFEnvironmentFolder("DAX_SYS");
    return folder.empty() ? VFInstalledDataFolder() : VDString(VFTrimSeparators(folder));
}

bool VFPatternMatch(int noCase, const char* pattern, const char* name)
{
    const std::string_view wanted = VFView(pattern);
    const std::string_view text = VFView(name);
    std::size_t at = 0;
    std::size_t next = 0;
    // Only the last star is ever tried again: what an earlier one could take more of, the last one can take as well.
    std::size_t star = std::string_view::npos;
    std::size_t starText = 0;
    while (at < text.size()) {
        if (next < wanted.size() && wanted[next] == '*') {
            star = next++;
            starText = at;
        } else if (next < wanted.size() && (wanted[next] == '?' || wanted[next] == text[at] ||
                                            (noCase != 0 && VFAsciiLower(wanted[next]) == VFAsciiLower(text[at])))) {
            ++next;
            ++at;
        } else if (star != std::string_view::npos) {
            next = star + 1;
            at = ++starText;
        } else {
            return false;
        }
    }
    return wanted.find_first_not_of('*', next) == std::string_view::npos;
}
