// Lists of names in a file.

#include "VDDirList.h"

#include "frame/VFDaxReport.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDTextIo.h"
#include "vdbase/VFFilename.h"
#include "vdbase/VFNumber.h"

namespace {

constexpr const char* VVRoutine = "VDDirList::ProcessAtFile";
constexpr int VVTrimBeginning = 2;
/// What a name can have at most.
constexpr int VVLongestLine = 4096;
constexpr std::string_view VVWhiteSpace = " \t\r\n\v\f";
constexpr std::string_view VVByteOrderMark = "\xef\xbb\xbf";

bool VFFail()
{
    return VFDaxReport(DaxError::AtFile, VVRoutine, {.chain = 1}) != 0;
}

void VFAddIfFile(const VDString& folder, std::string_view name, VDStringArray* names)
{
    const VDString whole = VFBuildFilename(folder, VDString(name));
    if (!name.empty() && VDFileSystem::FileExists(whole))
        names->AppendItem(whole);
}

/// Adds every beginning of a line that is a file and ends at white space or with the line.
void VFAddCandidates(const VDString& folder, std::string_view line, VDStringArray* names)
{
    for (std::size_t end = line.find_first_of(VVWhiteSpace); end != std::string_view::npos;
         end = line.find_first_of(VVWhiteSpace, end + 1)) {
        // A name may itself end in white space; most don't.
        if (end > 0 && VVWhiteSpace.find(line[end - 1]) == std::string_view::npos)
            VFAddIfFile(folder, line.substr(0, end), names);
        if (end + 1 < line.size())
            VFAddIfFile(folder, line.substr(0, end + 1), names);
    }
    VFAddIfFile(folder, line, names);
}

}  // namespace

bool VDDirList::ProcessAtFile()
{
    options_ = {};
    nameFilter_.Empty();
    VDStringArray names;
    if (!ReadAtFile(&names))
        return VFFail();
    if (names.IsEmpty())
        return VFDaxReportError(DaxError::AtFileNames, VVRoutine) != 0;
    return TakeFiles(names) || VFFail();
}

bool VDDirList::ReadAtFile(VDStringArray* names)
{
    const VDString filename = pattern_.Mid(1);
    VDString folder;
    VDTextIo here(filename);
    VDTextIo there(VFBuildFilename(path_, filename));
    VDTextIo* io = &here;
    if (!here.Open(VTOpenRead)) {
        if (path_.IsEmpty())
            return true;
        if (!there.Open(VTOpenRead))
            return false;
        io = &there;
        folder = path_;
    }
    VDString line;
    bool goesOn = false;
    bool isFirst = true;
    VFErrorClear();
    for (bool isRest = false; io->ReadString(&line, VVLongestLine, &goesOn); isRest = goesOn, isFirst = false) {
        // What is too long for a name isn't the name of anything, and neither is the rest of it.
        if (isRest || goesOn)
            continue;
        if (isFirst && line.View().starts_with(VVByteOrderMark))
            line = line.Mid(static_cast<int>(VVByteOrderMark.size()));
        VFSqueeze(&line, VVTrimBeginning);
        VFAddCandidates(folder, line.View(), names);
        if (!CheckAbortIfDue())
            return false;
    }
    return !VFErrorCheck(VDBaseError::FileRead);
}
