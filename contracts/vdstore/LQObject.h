#pragma once

#include "vdarchive/Z4Bytes.h"
#include "vdarchive/Z4Storage.h"
#include "vdstore/LQChannelMapper.h"

/// A data object: channels of one test with their metadata, in a node of a storage file or in memory alone. The data manager
/// makes and ends objects in files. One thread uses an object at a time. Changes are lost unless it is flushed or closed
/// with saving.
///
/// A `channel` is an index from 0; the same index addresses the channel in the mapper. A call with an index that doesn't
/// exist fails and records `VDStoreError::NoChannelIndex`.
class VDSTORE_API LQObject
{
public:
    static constexpr int ALL_CHANNELS = -1;

    virtual ~LQObject();
    LQObject(const LQObject&) = delete;
    LQObject& operator=(const LQObject&) = delete;

    LQChannelMapper* GetMapper() { return &mapper_; }
    const LQChannelMapper* GetMapper() const { return &mapper_; }

    virtual int GetChannelCount() const { return mapper_.GetChannelCount(); }
    /// Appends channels without number and data, or removes the last ones.
    virtual bool AdjustChannelCount(int count);
    virtual bool RemoveChannel(int channel);

    /// Points of a channel; 0 where there are none or there is no such channel.
    virtual std::int64_t GetElementCount(int channel) const;
    /// Cuts a channel, or lengthens it with points of value 0, which take no room.
    virtual bool AdjustElementCount(std::int64_t count, int channel);
    /// One of `Z4PropertyType` or of `LQDataType`; 0 where there are no data.
    virtual std::int32_t GetChannelDataType(int channel) const;

    bool GetChanTitle(VDString& title, int channel) const;
    bool SetChanTitle(const char* title, int channel);

    /// Brings what the object knows about itself into the attributes of the mapper: titles, units, rates, counts,
    /// statistics.
    /// @param keep     leaves an attribute that is there already
    /// @param channel  or `ALL_CHANNELS`, which brings the whole test's attributes, too
    virtual bool RefreshMetadata(bool keep, int channel);

    /// @name Error state
    /// The code of the last failure of a call on this object, as recorded.
    /// @{
    void ResetError() { error_ = 0; }
    void SetError(int code) { error_ = code; }
    int GetError() const { return error_; }
    bool IsError() const { return error_ != 0; }
    bool NoError() const { return error_ == 0; }
    /// @}

    /// What kind of object a node holds; the values stand in files.
    enum Kind : std::uint32_t {
        KindTimeSeries = 1,
        KindMetaData = 2,
        KindHistogram = 3,
        KindResultsTable = 4,
        KindSpectra = 5
    };

protected:
    LQObject();

    /// Whether there is such a channel; records the failure.
    bool CheckChannel(int channel) const;
    /// Notes the code of the last report; gives false.
    bool Fail() const;
    /// Records a report of this object; gives false.
    bool Report(int code, const char* text) const;

    /// A part that was to be replaced is half written: from now on the object can't be saved.
    void Break() { broken_ = true; }

    /// Null in memory.
    Z4Node* GetNode() const { return node_; }

private:
    friend class LQDataManager;

    /// What the object keeps beside mapper and streams.
    virtual void WriteContent(Z4ByteWriter& writer) const;
    virtual bool ReadContent(Z4ByteReader& reader);

    bool Attach(std::shared_ptr<Z4Storage> storage, Z4Node* node, bool isNew);
    bool Save();
    void Detach(bool revert);

    LQChannelMapper mapper_;
    mutable int error_ = 0;
    bool broken_ = false;
    std::shared_ptr<Z4Storage> storage_;
    Z4Node* node_ = nullptr;
};
