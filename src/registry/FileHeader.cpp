#include "FileHeader.h"

#include "frame/VFDaxReport.h"

#include "daxlib/FID.h"

namespace {

/// Puts the name of the id's test into a report.
void VFNameTest(VDFileId* id, VDDaxReportDetail& detail)
{
    // A failure to name the test must not hide the report itself.
    const VDErrorMute mute;
    VDString extension;
    int nameForm = VTNameFormFile;
    if (!FIDGetFilename(id, &detail.name, &extension) || !FIDGetNameForm(id, &nameForm) || detail.name.IsEmpty())
        return;
    detail.label = nameForm == VTNameFormFile ? DaxText::Filename : DaxText::TestName;
    if (nameForm != VTNameFormFile)
        detail.name += VFDaxText(DaxText::Extension) + extension;
}

}  // namespace

bool VFReportForFile(int code, const char* routine, VDFileId* id, int chain, const VDString& text)
{
    VDDaxReportDetail detail = {.text = text, .chain = chain};
    VFNameTest(id, detail);
    return VFDaxReport(code, routine, detail) != 0;
}

bool VFGetFirstFilename(VDFileId* id, VDString* filename, const char* routine)
{
    if (!FIDGetChanFilename(id, 0, filename))
        return VFReportForFile(DaxError::IdentFilename, routine, id, 1);
    return !filename->IsEmpty() || VFReportForFile(DaxError::NoFilename, routine, id, 0);
}

bool VFReadFileHeader(VDFileId* id, VDIo& io, char* header, int* size, const char* routine)
{
    if (!io.Open(VTOpenRead))
        return VFReportForFile(DaxError::IdentOpen, routine, id, 1);
    std::int64_t numRead = 0;
    if (!io.ReadAtCur(VVHeaderSize, header, &numRead))
        return VFReportForFile(DaxError::IdentRead, routine, id, 1);
    *size = static_cast<int>(numRead);
    return *size > 0 || VFReportForFile(DaxError::IdentBlank, routine, id, 1);
}
