// Takes the input as the text of a test spec: what its pieces, parts and options say must agree with what a plain reading
// says, and a folder is listed by it.

#include "FuzzFile.h"

#include "daxlib/DaxHandle.h"
#include "registry/TestSpecText.h"

#include "vdbase/VFError.h"

#include <algorithm>

namespace {

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

/// Put together again, the parts say the same.
void CheckParts(std::string_view piece)
{
    const std::vector<VDString> parts = VFSplitSpecParts(piece);
    std::string joined;
    for (const VDString& part : parts) {
        Require(!part.IsEmpty());
        joined += joined.empty() ? "" : ";";
        for (const char sign : part.View())
            joined += sign == ';' ? std::string(";;") : std::string(1, sign);
    }
    // A sign of a name at the border of two parts can't be told from the border, whichever way it is read.
    if (std::none_of(parts.begin(), parts.end(),
                     [](const VDString& part) { return part.View().starts_with(';') || part.View().ends_with(';'); })) {
        Require(VFSplitSpecParts(joined) == parts);
    }
}

void CheckNumbers(std::string_view text)
{
    VDNumberRanges ranges;
    ranges.AddText(text);
    std::vector<std::int64_t> some;
    for (std::int64_t number = -300; number <= 300; ++number)
        if (ranges.Contains(number))
            some.push_back(number);
    VDNumberRanges again;
    for (const std::int64_t number : some)
        again.Add(number, number);
    Require(again.AreExactly(some));
    Require(ranges.IsEmpty() ? some.empty() : !ranges.AreExactly({}));
}

/// Lists an empty folder, so that nothing but the text decides.
void List(std::string_view text)
{
    static const std::string folder = [] {
        std::string path = (std::filesystem::temp_directory_path() / "daxfuzz.XXXXXX").string();
        Require(mkdtemp(path.data()) != nullptr);
        return path;
    }();
    const VDDirListHandle list(VFDirListCreate());
    VFDirListSetPath(list.Get(), folder);
    VFDirListSetFilesMatching(list.Get(), VDString("x" + std::string(text.substr(0, text.find('\0')))));
    VFDirListCreateList(list.Get());
    VDFileIdArrayHandle tests;
    int count = -1;
    Require(VFDirListGetFileIdArray(list.Get(), tests.Out()) != 0 && FIAGetSize(tests.Get(), &count) != 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = FuzzText(data, size);
    for (const std::string_view piece : VFSplitSpecPieces(text)) {
        Require(!piece.empty() && piece.find('|') == std::string_view::npos);
        CheckParts(piece);
        VDTestSpecOptions options;
        for (const VDString& part : VFSplitSpecParts(piece)) {
            VFReadSpecOptionInto(part, options);
            CheckNumbers(part.View());
        }
    }
    // Names lead anywhere: only what stays in the folder is listed.
    if (text.find('/') == std::string_view::npos && text.find("..") == std::string_view::npos)
        List(text);
    VFErrorClear();
    return 0;
}
