#include "TestListing.h"

#include "Identification.h"
#include "ToolError.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VDStringArray.h"
#include "vdbase/VFFilename.h"

#include <algorithm>

namespace {

/// Where to look, and for what.
struct VDPlace
{
    VDString folder;
    std::string pattern;
    bool recurse = false;
    std::string onlyFile;  ///< the last element of a file's name, where the text is one
};

std::string VFLastElement(const std::string& name)
{
    return name.substr(name.rfind('/') + 1);
}

VDPlace VFFindPlace(const std::string& text, bool recurse)
{
    if (VDFileSystem::DirectoryExists(text.c_str()))
        return {VDString(text), "*", recurse, {}};
    if (!VDFileSystem::FileExists(text.c_str()))
        return {{}, text, recurse, {}};
    VDPlace place;
    VFSplitFilename(text.c_str(), &place.folder, nullptr, nullptr);
    place.onlyFile = VFLastElement(text);
    // What a pattern has a meaning of its own for is any sign; the name is compared later.
    place.pattern = VFQuoteForSpec(place.onlyFile);
    std::replace(place.pattern.begin(), place.pattern.end(), '*', '?');
    if (place.pattern.front() == '@')
        place.pattern.front() = '?';
    return place;
}

/// Puts options behind each piece of a spec.
std::string VFAddOptions(std::string spec, const std::string& options)
{
    if (options.empty() || spec.starts_with('@'))
        return spec;
    for (std::size_t at = spec.find('|'); at != std::string::npos; at = spec.find('|', at + options.size() + 1))
        spec.insert(at, options);
    return spec + options;
}

bool VFHasFile(VDFileId* test, const std::string& lastElement)
{
    const std::vector<std::string> files = VFGetTestFiles(test);
    return std::any_of(files.begin(), files.end(),
                       [&](const std::string& file) { return VFLastElement(file) == lastElement; });
}

void VFTakeUnread(VDDirList* list, std::vector<VDUnreadFile>& unread)
{
    VDFileIdArrayHandle tests;
    VDStringArray names;
    VDStringArray texts;
    VFCheck(VFDirListGetLoadErrorDetails(list, tests.Out(), &texts));
    for (int index = 0; index < texts.GetSize(); ++index) {
        VDFileIdHandle test;
        VFCheck(FIAGetAt(tests.Get(), index, test.Out()));
        unread.push_back({VFSpecOf(test.Get()), texts[index].Str()});
    }
    VFCheck(VFDirListGetSkipped(list, &names, &texts));
    for (int index = 0; index < names.GetSize(); ++index)
        unread.push_back({names[index].Str(), texts[index].Str()});
}

void VFAppendNumber(std::string& spec, char letter, int number)
{
    if (number >= 0)
        spec += std::string(";") + letter + std::to_string(number);
}

}  // namespace

VDTestListing VFListTests(const std::string& text, const VDTestListOptions& options)
{
    const VDPlace place = VFFindPlace(text, options.recurse);
    const VDDirListHandle list(VFDirListCreate());
    VFCheck(static_cast<bool>(list));
    VFCheck(VFDirListSetPath(list.Get(), place.folder));
    VFCheck(VFDirListSetFilesMatching(list.Get(), VDString(VFAddOptions(place.pattern, options.filter))));
    VFCheck(VFDirListSetRecurseSubDirs(list.Get(), place.recurse ? 1 : 0));
    if (options.accessType != VTFileAccessAll)
        VFCheck(VFDirListSetFilterByAccessType(list.Get(), static_cast<VTFileAccessType>(options.accessType)));
    VFCheck(VFDirListSetErrorOnLoadDetails(list.Get(), 0, 1));
    VFCheck(VFDirListSetProgressCallback(list.Get(), options.progress, options.context));
    VFErrorClear();
    VFCheck(VFDirListCreateListWithInfo(list.Get()));

    VDTestListing listing;
    VDFileIdArrayHandle tests;
    int count = 0;
    VFCheck(VFDirListGetFileIdArray(list.Get(), tests.Out()));
    VFCheck(FIAGetSize(tests.Get(), &count));
    for (int index = 0; index < count; ++index) {
        VDFileIdHandle test;
        VFCheck(FIAGetAt(tests.Get(), index, test.Out()));
        if (place.onlyFile.empty() || VFHasFile(test.Get(), place.onlyFile))
            listing.tests.push_back(std::move(test));
    }
    VFTakeUnread(list.Get(), listing.unread);
    return listing;
}

std::string VFQuoteForSpec(const std::string& text)
{
    std::string quoted;
    for (const char sign : text) {
        quoted += sign == '|' ? '?' : sign;
        if (sign == ';')
            quoted += ';';
    }
    return quoted;
}

std::string VFSpecOf(VDFileId* test)
{
    VDString filename;
    VDString extension;
    int form = VTNameFormFile;
    int run = -1;
    int burst = -1;
    int mode = -1;
    VFCheck(FIDGetFilename(test, &filename, &extension));
    VFCheck(FIDGetNameForm(test, &form));
    VFCheck(FIDGetRunNumber(test, &run));
    VFCheck(FIDGetBurstNumber(test, &burst));
    VFCheck(FIDGetModeNumber(test, &mode, nullptr));

    std::string spec = VDFileSystem::GetFullPath(filename).Str();
    const std::string folder = VFMakePath(VDFileSystem::GetCurDirectory()).Str();
    if (!folder.empty() && spec.starts_with(folder))
        spec.erase(0, folder.size());
    if (form != VTNameFormFile)
        spec += ";x" + extension.Str();
    VFAppendNumber(spec, 'r', run);
    VFAppendNumber(spec, 'b', burst);
    VFAppendNumber(spec, 'm', mode);
    return spec;
}
