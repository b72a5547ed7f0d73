#pragma once

#include "AccessFamily.h"

#include <vector>

class VDAccessCore;
class LQChannelMapper;

/// The offsets of the channels of one test, in families whose description has them. They come from the metadata and are
/// added to the values that are read; one type stores its offsets beside the data and applies them itself.
class VDAccessOffsets
{
public:
    explicit VDAccessOffsets(VDAccessCore& core) : core_(core) {}

    /// Takes offsets into use or out of it, and tells the plug-in.
    bool SetUse(bool use);
    bool AreUsed() const { return used_; }
    /// Values that are read need their offset added.
    bool AreAdded() const { return used_ && !AreOwn(); }
    /// The type stores its offsets beside the data.
    bool AreOwn() const;

    bool AreRead() const { return read_; }
    /// Reads them once for each test.
    /// @param mapper  null if there is no metadata, and so no offsets
    bool Read(const LQChannelMapper* mapper);
    /// Makes sure that they are known.
    bool Need();
    /// They must be known.
    double operator[](int index) const { return offsets_[static_cast<std::size_t>(index)].value; }
    /// Makes the caller's own copy of the metadata speak of the values as they are given out.
    bool Apply(LQChannelMapper& mapper) const;
    /// Another test comes; whether offsets are in use stays.
    void Forget();

private:
    struct Offset
    {
        bool present = true;
        double value = 0;
    };

    bool ReadOwn(int index, Offset& offset);
    bool ApplyOwn(LQChannelMapper& mapper) const;

    VDAccessCore& core_;
    bool used_ = false;
    bool read_ = false;
    std::vector<Offset> offsets_;
};
