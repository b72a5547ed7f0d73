#include "daxlib/VDGeneralFiles.h"

#include "NamedEntry.h"
#include "frame/CloneEntries.h"

VDGeneralFiles::VDGeneralFiles() = default;

VDGeneralFiles::VDGeneralFiles(const VDGeneralFiles& other) : version_(other.version_)
{
    VFCloneEntries(accessTypes_, other.accessTypes_);
}

VDGeneralFiles& VDGeneralFiles::operator=(const VDGeneralFiles& other)
{
    if (this != &other) {
        version_ = other.version_;
        VFCloneEntries(accessTypes_, other.accessTypes_);
    }
    return *this;
}

VDGeneralFiles::~VDGeneralFiles() = default;

VDGeneralFileAccessType* VDGeneralFiles::GetAccessTypeFromId(int id) const
{
    for (const auto& accessType : accessTypes_)
        if (accessType->GetId() == id)
            return accessType.get();
    return nullptr;
}

VDGeneralFileType* VDGeneralFiles::GetFileTypeFromFileId(int fileId) const
{
    VDGeneralFileType* found = nullptr;
    for (const auto& accessType : accessTypes_)
        for (int index = 0; index < accessType->GetFileTypes(); ++index)
            if (accessType->GetFileType(index)->GetFileId() == fileId) {
                // A later access type may replace what an earlier one declares, so the search goes on there.
                found = accessType->GetFileType(index);
                break;
            }
    return found;
}

VDGeneralFileAccessType* VDGeneralFiles::AddAccessType(int id, VDString name, char enabled)
{
    const auto [present, conflict] =
        VFFindNamedEntry<&VDGeneralFileAccessType::GetName, &VDGeneralFileAccessType::GetId>(accessTypes_, name, id);
    if (conflict)
        return nullptr;
    if (present != nullptr) {
        present->SetEnabled(enabled);
        return present;
    }
    return GetAccessType(accessTypes_.AppendItem(std::make_unique<VDGeneralFileAccessType>(id, name, enabled)));
}

void VDGeneralFiles::ClearAccessTypes()
{
    accessTypes_.Clear();
}
