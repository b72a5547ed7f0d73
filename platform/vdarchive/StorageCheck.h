#pragma once

#include "RecordIndex.h"
#include "vdarchive/Z4File.h"
#include "vdbase/VDStringArray.h"

#include <vector>

/// Compares all of a storage file's last commit with its checksums.
class StorageCheck
{
public:
    explicit StorageCheck(VDStorageOs& os) : os_(os) {}

    void Run(const char* filename);
    /// One text for each thing that is wrong.
    const VDStringArray& GetFindings() const { return findings_; }

private:
    void CheckStream(Z4Node& node, int stream);
    bool CheckRun(Z4Stream& stream, std::int64_t record, const RecordIndex::Run& run, const std::uint64_t* sums,
                  const VDString& where);
    void AddLastReport(const VDString& where);

    VDStorageOs& os_;
    VDStringArray findings_;
    std::vector<unsigned char> buffer_;
};
