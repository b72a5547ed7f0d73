#include "OutputName.h"

#include "Printable.h"
#include "TestMetaData.h"
#include "ToolError.h"

#include "daxlib/VFDaxMetaDataExpression.h"
#include "vdbase/VDString.h"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr const char* VVRoutine = "VFMakeOutputName";
constexpr std::size_t VVLongestName = 255;

std::string VFFillTemplate(const VDTestAccess& source, const std::string& text)
{
    constexpr int allChannels = -1;
    VDString pattern(text);
    VDString name;
    VFCheck(VFDaxEvaluateStringFromMeta(pattern, &VFNeedMetaData(source), allChannels, 1, &name, 0, nullptr, nullptr, 0));
    return name.Str();
}

/// What would lead into another folder, or has a meaning to a shell or to a file server.
std::string VFReplaceSigns(std::string name)
{
    const auto isSign = [](char byte) {
        return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f ||
               std::string_view("/\\:*?\"<>|").find(byte) != std::string_view::npos;
    };
    std::replace_if(name.begin(), name.end(), isSign, '_');
    // A leading dot would hide the file, a leading minus make an option of it.
    if (!name.empty() && (name.front() == '.' || name.front() == '-'))
        name.front() = '_';
    return name;
}

bool VFHasExtension(const std::string& name, const VDFileType& format)
{
    return std::any_of(format.extensions.begin(), format.extensions.end(), [&](const std::string& extension) {
        const std::string ending = "." + extension;
        return name.size() > ending.size() &&
               VDString(name.substr(name.size() - ending.size())).CompareNoCase(ending.c_str()) == 0;
    });
}

}  // namespace

std::string VFMakeOutputName(VDCommandContext& context, const VDTestAccess& source, const std::string& text,
                             const std::string& folder, const VDFileType& format)
{
    const std::string filled = VFFillTemplate(source, text);
    std::string name = VFReplaceSigns(filled);
    if (name != filled)
        context.Warn({DaxToolError::NameChanged,
                      "Signs that a file name can't hold everywhere were replaced: " + VFPrintable(filled) + " becomes " + name,
                      VVRoutine});
    if (name.empty())
        VFFail(DaxToolError::BadName, "The name comes out empty: " + text, VVRoutine);
    if (!VFHasExtension(name, format) && !format.extensions.empty())
        name += "." + format.extensions.front();
    if (name.size() > VVLongestName)
        VFFail(DaxToolError::BadName,
               "The name comes out with " + std::to_string(name.size()) + " bytes, of which " +
                   std::to_string(VVLongestName) + " are allowed: " + name,
               VVRoutine);
    std::error_code none;
    if (!folder.empty() && !fs::is_directory(folder, none))
        VFFail(DaxToolError::OutputWrite, "There is no such folder: " + folder, VVRoutine);
    return (fs::path(folder) / name).string();
}
