#include "vdarchive/Z4File.h"

#include "BlockFile.h"

Z4File::Z4File(std::shared_ptr<BlockFile> file, const Z4FileInfo& info)
    : file_(std::move(file)),
      info_(info),
      root_(new Z4Storage(file_, static_cast<std::uint32_t>(info.GetDefaultStreamIndexSize())))
{
}

Z4File::~Z4File()
{
    // An object that is still open keeps the storage, but can't do anything with it any more.
    file_->Close();
}

std::unique_ptr<Z4File> Z4File::Open(VDStorageOs& os, const char* filename, bool writable)
{
    std::shared_ptr<BlockFile> file = BlockFile::Open(os, filename, writable);
    if (file == nullptr)
        return nullptr;
    std::unique_ptr<Z4File> opened(new Z4File(std::move(file), Z4FileInfo()));
    if (!opened->root_->Load())
        return nullptr;
    opened->info_.SetDefaultStreamIndexSize(opened->root_->blockRecords_);
    return opened;
}

std::unique_ptr<Z4File> Z4File::Create(VDStorageOs& os, const char* filename, const Z4FileInfo* info)
{
    std::shared_ptr<BlockFile> file = BlockFile::Create(os, filename);
    if (file == nullptr)
        return nullptr;
    return std::unique_ptr<Z4File>(new Z4File(std::move(file), info == nullptr ? Z4FileInfo() : *info));
}

const VDString& Z4File::GetFilename() const
{
    return file_->GetFilename();
}

bool Z4File::IsWritable() const
{
    return file_->IsWritable();
}

int Z4File::GetOpSys() const
{
    return file_->GetOpSys();
}

int Z4File::GetSubType() const
{
    return file_->GetSubType();
}

bool Z4File::SetSubType(int subType)
{
    return file_->SetSubType(subType);
}

bool Z4File::Close(bool save)
{
    // Objects commit themselves; only a file without any has nothing yet.
    const bool isNew = file_->IsWritable() && file_->GetSlot().generation == 0;
    const bool good = !save || !isNew || root_->Commit(nullptr);
    file_->Close();
    return good;
}
