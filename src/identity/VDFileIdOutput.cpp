// Names of tests that are to be written.

#include "VDFileId.h"
#include "VDFileIdNameWatch.h"

#include "daxlib/DaxHandle.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFFilename.h"

namespace {

/// The parts of an output's name.
struct OutputName
{
    VDString folder;
    VDString base;
    VDString extension;
};

OutputName SplitName(const VDFileIdRecord& source)
{
    OutputName name;
    VFSplitFilename(source.filename, &name.folder, &name.base, &name.extension);
    if (source.nameForm == VTNameFormFile || source.folderTest)
        return name;
    // A stem has no extension: what stands behind a dot in it tells tests apart.
    name.base = source.filename.Mid(name.folder.GetLength());
    name.extension.Empty();
    return name;
}

/// What tells apart the outputs of the sub-tests of one file.
VDString SubTestText(const VDFileIdRecord& source)
{
    VDString text;
    const auto append = [&text](char letter, std::int32_t value) {
        VDString part;
        part.Format("_%c%02d_", letter, value);
        if (value >= 0)
            text += part;
    };
    append('r', source.run);
    append('b', source.burst);
    append('m', source.mode);
    return text;
}

/// Changes the part of the name that the form is about.
/// @return 0, or the code of the failure
int ApplyForm(OutputName& name, int form, const VDString& text, const VDString& sourceExtension)
{
    switch (form) {
    case VTOutputSameName:
        return 0;
    case VTOutputNewExtension:
        if (!text.IsEmpty())
            name.extension = text;
        return VDFileSystem::CompareFilenames(name.extension, sourceExtension) == 0 ? DaxError::OutputExtension : 0;
    case VTOutputPrefix:
        name.base = text + name.base;
        return text.IsEmpty() ? DaxError::OutputPrefix : 0;
    case VTOutputSuffix:
        name.base += text;
        return text.IsEmpty() ? DaxError::OutputSuffix : 0;
    case VTOutputNewFolder:
        name.folder = text;
        return text.IsEmpty() ? DaxError::OutputFolder : 0;
    case VTOutputNewName:
        name.base = text;
        return text.IsEmpty() ? DaxError::OutputName : 0;
    default:
        return DaxError::OutputNameForm;
    }
}

}  // namespace

int VDFileId::CreateOutputFromId(VDFileId* source, std::uint32_t mask, int nameForm, const char* text)
{
    const NameWatch watch(*this);
    // The source may be the target.
    const VDFileIdRecord from = source->record_;
    OutputName name = SplitName(from);
    name.base += SubTestText(from);
    if (Copy(source, mask) == 0)
        return 0;
    const VDFileInfoHandle info(FINFCreate());
    int form = VTNameFormFile;
    if (!info || FINFGetNameForm(info.Get(), nullptr, record_.fileId, record_.subId, &form) == 0)
        return 0;
    const bool sameType = record_.fileId == from.fileId && record_.subId == from.subId;
    if (!sameType && FINFGetDefaultExtension(info.Get(), nullptr, record_.fileId, record_.subId, "", &name.extension) == 0)
        return 0;
    if (name.extension.IsEmpty())
        name.extension = from.extension;
    if (const int failure = ApplyForm(name, nameForm, text, from.extension); failure != 0)
        return ReportWithStem(failure, __func__);

    record_.nameForm = static_cast<VTNameForm>(form);
    record_.extension = name.extension;
    record_.originalExtension = name.extension;
    if (form != VTNameFormFile && !name.base.View().ends_with('_'))
        name.base += '_';
    record_.filename = VFBuildFilename(name.folder, name.base, form == VTNameFormFile ? name.extension.c_str() : "");
    record_.identified = true;
    record_.infoLoaded = true;
    record_.identByExtension = false;
    UpdateFullPathName();
    return 1;
}
