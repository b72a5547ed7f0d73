#pragma once

#include "daxlib/DaxHandle.h"
#include "vdbase/VDCompBase.h"
#include "vdstore/LQMetaDataHost.h"

#include <memory>

class LQDataManager;
class Z4File;

/// A metadata host in memory alone.
class VDMemMetaDataHost final : public LQMetaDataHost
{
public:
    ~VDMemMetaDataHost() override = default;
};

/// The metadata sidecar of a test. The operations that the `VMD` functions forward to have the function's name without the
/// prefix; VMD.h says what each does.
class VDVmdFile final : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::VmdFile;
    static constexpr bool GuardedHandle = true;

    VDVmdFile() : VDCompBase(HandleId) {}
    /// Closes; a failure of that is not recorded.
    ~VDVmdFile() override;

    bool Adopt(const char* filename, bool readMode);
    bool AdoptTestVmd(VDFileId* id, bool readMode);
    bool GetMetaData(LQChannelMapper** mapper);
    bool Flush();
    bool Clear();
    bool SetChannelNumberList(const VDArrayWithSort<long>& numbers);
    /// Writes a sidecar that was adopted for writing, and ends it. Does nothing a second time.
    bool Close();

private:
    bool CheckNotAdopted() const;
    bool CheckOpened(const char* routine) const;
    bool ReportFile(const char* reason) const;
    bool OpenToRead();
    bool OpenToWrite();
    bool CheckContent() const;
    bool AdoptHost();
    bool AddChannelsOfTest();
    bool MakeMemoryHost();
    bool Save();
    void Abandon();
    void Renumber();
    bool CanRenumber(const LQChannelMapper& mapper, long largest) const;

    VDString filename_;
    Z4File* file_ = nullptr;
    VDFileIdHandle fileId_;
    bool opened_ = false;
    bool created_ = false;  ///< the host was made by this object
    LQDataManager* manager_ = nullptr;
    std::unique_ptr<VDMemMetaDataHost> memoryHost_;
    LQMetaDataHost* host_ = nullptr;  ///< the file's
    VDArrayWithSort<long> numbers_{10};
};
