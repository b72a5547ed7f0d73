#include "daxlib/VDGeneralFileAccessType.h"

#include "NamedEntry.h"
#include "frame/CloneEntries.h"

VDGeneralFileAccessType::VDGeneralFileAccessType(int id, VDString name, char enabled)
    : id_(id), name_(name), enabled_(enabled)
{
}

VDGeneralFileAccessType::VDGeneralFileAccessType(const VDGeneralFileAccessType& other)
    : id_(other.id_), name_(other.name_), enabled_(other.enabled_)
{
    VFCloneEntries(fileTypes_, other.fileTypes_);
}

VDGeneralFileAccessType& VDGeneralFileAccessType::operator=(const VDGeneralFileAccessType& other)
{
    if (this != &other) {
        id_ = other.id_;
        name_ = other.name_;
        enabled_ = other.enabled_;
        VFCloneEntries(fileTypes_, other.fileTypes_);
    }
    return *this;
}

VDGeneralFileAccessType::~VDGeneralFileAccessType() = default;

VDGeneralFileType* VDGeneralFileAccessType::AddFileType(VDString keyword, int fileId, VDString extensions, char enabled,
                                                        char identifyAsStandard)
{
    const auto [present, conflict] =
        VFFindNamedEntry<&VDGeneralFileType::GetKeyword, &VDGeneralFileType::GetFileId>(fileTypes_, keyword, fileId);
    if (conflict)
        return nullptr;
    if (present != nullptr) {
        present->SetExtensions(extensions, 1);
        return present;
    }
    return GetFileType(fileTypes_.AppendItem(
        std::make_unique<VDGeneralFileType>(keyword, fileId, extensions, enabled, identifyAsStandard)));
}

void VDGeneralFileAccessType::ClearFileTypes()
{
    fileTypes_.Clear();
}
