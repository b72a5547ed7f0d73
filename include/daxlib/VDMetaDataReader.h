#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDCompBase.h"

#include <memory>

class LQChannelMapper;

/// Fetches the metadata of any test, through the access family of its kind of data. Copies read the same open test; it is
/// closed with the last of them.
class DAX_API VDMetaDataReader : public VDCompBase
{
public:
    VDMetaDataReader();
    VDMetaDataReader(const VDMetaDataReader& other);
    VDMetaDataReader& operator=(const VDMetaDataReader& other);
    /// Calls `Release`.
    ~VDMetaDataReader() override;

    /// Opens a test for reading and takes a reference on its id.
    /// @param fileId  a `VDFileId`
    /// @return false if the reader has a test already, or if the test can't be opened; the reader is then as it was
    bool SetFileId(void* fileId);
    /// @param mapper  valid until `Release`
    /// @return false, and a null mapper, without a test
    bool GetMetaData(LQChannelMapper** mapper);
    /// Closes the test. Always true; does nothing without one.
    bool Release();

private:
    class Test;

    std::shared_ptr<Test> test_;
};
