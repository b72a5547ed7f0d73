// Tests of several files that were found through the file of one channel.

#include "WholeTests.h"

#include "VDFileId.h"
#include "VDFileIdArray.h"

#include "daxlib/DaxHandle.h"

#include "vdbase/VFFilename.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

/// An id and the file of its one channel.
struct Search
{
    VDFileId* id;
    VDString filename;
    VDString bareStem;  ///< the stem without the digits at its end, which may be those of channels
};

VDString BareStem(const VDString& stem)
{
    int length = stem.GetLength();
    while (length > 1 && stem[length - 1] >= '0' && stem[length - 1] <= '9')
        --length;
    return stem.Left(length);
}

/// A text as a pattern that it matches. Signs that a list would take for something else become a "?".
VDString AsPattern(VDString text)
{
    for (const char sign : {'|', ';', '*'})
        text.Replace(sign, '?');
    return text;
}

/// What the bare stems of some tests in one folder have in common.
VDString CommonBeginning(const std::vector<Search>& searches)
{
    std::string_view common = searches.front().bareStem.View();
    for (const Search& search : searches) {
        const std::string_view stem = search.bareStem.View();
        const auto end = std::mismatch(common.begin(), common.end(), stem.begin(), stem.end()).first;
        common = common.substr(0, static_cast<std::size_t>(end - common.begin()));
    }
    return VDString(common);
}

bool ListTests(const VDString& stem, const VDString& extension, const VDChanSep* rules, VDFileIdArrayHandle& tests)
{
    VDString folder;
    VFSplitFilename(stem, &folder, nullptr, nullptr);
    const VDDirListHandle list(VFDirListCreate());
    return list && (rules == nullptr || VFDirListSetChanSep(list.Get(), rules) != 0) &&
           VFDirListSetPath(list.Get(), folder) != 0 &&
           VFDirListSetFilesMatching(list.Get(), AsPattern(stem.Mid(folder.GetLength())) + "*;x" + AsPattern(extension)) !=
               0 &&
           VFDirListCreateListWithInfo(list.Get()) != 0 && VFDirListGetFileIdArray(list.Get(), tests.Out()) != 0;
}

/// The id becomes the test, with the channel of this index alone.
bool TakeWholeTest(VDFileId* id, VDFileId* test, int channel)
{
    constexpr auto allButWholeList = ~std::uint32_t{VTFileIdCopyChannels};
    VDString extra;
    VDString associated;
    return FIDGetExtraMetadataFilename(id, &extra) && FIDGetAssociatedFilename(id, &associated) &&
           FIDSetAllChanSelect(test, 0) && FIDSetChanSelect(test, channel, 1) && FIDCopy(id, test, allButWholeList) &&
           FIDSetExtraMetadataFilename(id, extra) && FIDSetAssociatedFilename(id, associated);
}

/// Looks for all of them among the tests with this extension in their folder.
bool FindTests(const std::vector<Search>& searches, const VDString& extension, const VDChanSep* rules)
{
    VDFileIdArrayHandle tests;
    int count = 0;
    if (!ListTests(CommonBeginning(searches), extension, rules, tests) || FIAGetSize(tests.Get(), &count) == 0)
        return false;
    std::unordered_map<std::string, std::pair<int, int>> channels;  // test and channel by the channel's file
    for (int index = 0; index < count; ++index) {
        VDFileIdHandle test;
        int channelCount = 0;
        if (FIAGetAt(tests.Get(), index, test.Out()) == 0 || FIDGetNumChans(test.Get(), &channelCount) == 0)
            return false;
        for (int channel = 0; channel < channelCount; ++channel) {
            VDString filename;
            if (FIDGetChanFilename(test.Get(), channel, &filename) == 0)
                return false;
            channels.try_emplace(filename.Str(), index, channel);
        }
    }
    for (const Search& search : searches) {
        const auto found = channels.find(search.filename.Str());
        VDFileIdHandle test;
        if (found != channels.end() && (FIAGetAt(tests.Get(), found->second.first, test.Out()) == 0 ||
                                        !TakeWholeTest(search.id, test.Get(), found->second.second)))
            return false;
    }
    return true;
}

/// The tests to look for, by folder and extension.
class Searches
{
public:
    /// Takes an id that may be part of a test; any other one is left.
    bool Add(VDFileId* id)
    {
        const VDFileIdRecord& record = id->GetRecord();
        if (record.nameForm != VTNameFormTestPlusChannels || record.channels.GetSize() != 1)
            return true;
        Search search{id, {}, BareStem(record.filename)};
        if (FIDGetChanFilename(id, 0, &search.filename) == 0)
            return false;
        VDString folder;
        VFSplitFilename(search.bareStem, &folder, nullptr, nullptr);
        byPlace_[{folder.Str(), record.extension.Str()}].push_back(std::move(search));
        return true;
    }

    bool Run(const VDChanSep* rules) const
    {
        return std::all_of(byPlace_.begin(), byPlace_.end(),
                           [rules](const auto& place) { return FindTests(place.second, place.first.second, rules); });
    }

private:
    std::map<std::pair<std::string, std::string>, std::vector<Search>> byPlace_;
};

}  // namespace

bool VFFixTestsPlusChannels(VDFileIdArray& tests)
{
    Searches searches;
    int count = 0;
    tests.GetSize(&count);
    for (int index = 0; index < count; ++index) {
        VDFileIdHandle id;
        if (tests.GetAt(index, id.Out()) == 0 || !searches.Add(id.Get()))
            return false;
    }
    return searches.Run(nullptr);
}

int VDFileId::FixTestPlusChannels()
{
    Searches searches;
    // The rules are copied, as the id takes those of the test that is found.
    const std::optional<VDChanSep> rules = record_.chanSep;
    return searches.Add(this) && searches.Run(rules ? &*rules : nullptr);
}
