#pragma once

#include "vdarchive/VDStorageOs.h"

/// The right to write a file, held while another one takes its place; see `Z4Manager::HoldFile`.
class Z4FileHold
{
public:
    /// @param file  locked for writing; null where there is no file
    explicit Z4FileHold(std::unique_ptr<VDStorageFile> file) : file_(std::move(file)) {}
    bool HasFile() const { return file_ != nullptr; }

private:
    std::unique_ptr<VDStorageFile> file_;
};
