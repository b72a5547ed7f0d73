#pragma once

#include "VDAccessOffsets.h"

#include "daxlib/DaxHandle.h"

#include <memory>

/// The metadata of the test that an access object is bound to: what the format keeps, or the sidecar of a format that keeps
/// none, the caller's own copy where the family makes one, and the offsets that come from it.
class VDAccessMetaData
{
public:
    explicit VDAccessMetaData(VDAccessCore& core);
    ~VDAccessMetaData();

    VDAccessOffsets& GetOffsets() { return offsets_; }
    const VDAccessOffsets& GetOffsets() const { return offsets_; }

    /// Gives the metadata of the open test. The mapper stays the core's, the sidecar's or the plug-in's.
    /// @param withHeader  has the attributes added that describe the test, where the family does so at all
    bool Get(LQChannelMapper** mapper, bool withHeader);
    /// Whether the test has any, without making a sidecar for it.
    bool Exist();
    /// Has the offsets read from it.
    bool ReadOffsets();

    /// A file was opened.
    void Begin(bool created);
    /// Hands the sidecar's mapper to the plug-in, which may find use for it in the file.
    bool HandOver();
    /// Writes the sidecar of a file that stands on disk as it is now.
    bool Flush();
    /// Ends the sidecar, written if it is new or changed.
    /// @return false, recorded, if that failed
    bool Close();
    /// Drops the caller's own copy.
    void DropCopy();
    /// Another test comes.
    void Forget();

private:
    bool Fetch(LQChannelMapper** mapper, bool withHeader);
    bool FetchFromPlugin(LQChannelMapper** mapper, bool withHeader);
    bool FetchFromSidecar(LQChannelMapper** mapper, bool withHeader);
    bool AdoptSidecar();
    bool Extend(LQChannelMapper& mapper) const;

    VDAccessCore& core_;
    VDAccessOffsets offsets_;
    VDVmdFileHandle sidecar_;
    std::unique_ptr<LQChannelMapper> copy_;
    bool replacesSidecar_ = false;  ///< one may stand there that describes the file that was there before this one
};
