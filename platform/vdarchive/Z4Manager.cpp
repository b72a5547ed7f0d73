#include "vdarchive/Z4Manager.h"

#include "BlockFile.h"
#include "StorageCheck.h"
#include "vdarchive/VDStorageOs.h"

#include <cerrno>

Z4Manager::Z4Manager() : os_(VDStorageOs::System()) {}

Z4File* Z4Manager::OpenFile(const char* filename, bool writable)
{
    return Z4File::Open(os_, filename, writable).release();
}

Z4File* Z4Manager::CreateFile(const char* filename, const Z4FileInfo* info)
{
    return Z4File::Create(os_, filename, info).release();
}

Z4File* Z4Manager::AdoptFile(const char* filename, const Z4FileInfo* info, bool* created)
{
    std::unique_ptr<VDStorageFile> present;
    const bool isNew = os_.Open(filename, VTStorageOpen::Read, &present) == ENOENT;
    if (created != nullptr)
        *created = isNew;
    return isNew ? CreateFile(filename, info) : OpenFile(filename, true);
}

bool Z4Manager::CloseFile(Z4File* file, bool save)
{
    const std::unique_ptr<Z4File> ended(file);
    return ended != nullptr && ended->Close(save);
}

std::unique_ptr<Z4FileHold> Z4Manager::HoldFile(const char* filename)
{
    std::unique_ptr<VDStorageFile> file;
    return BlockFile::Hold(os_, filename, &file) ? std::make_unique<Z4FileHold>(std::move(file)) : nullptr;
}

bool Z4Manager::CheckFile(const char* filename, VDStringArray* findings)
{
    StorageCheck check(os_);
    check.Run(filename);
    *findings = check.GetFindings();
    return findings->GetSize() == 0;
}
