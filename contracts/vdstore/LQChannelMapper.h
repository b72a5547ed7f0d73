#pragma once

#include "vdstore/LQChannelEntry.h"

class LQObject;

/// All metadata of a test: an ordered list of channels and one global slot for the test as a whole, each with an ordered
/// list of metadata sets. A set is a `Z4PropertySet`, and the mapper owns it; a pointer to one is valid until the set or its
/// channel goes.
///
/// An `index` is a channel's place in the list, from 0; where metadata is addressed, `GLOBAL` stands for the global slot. A
/// `number` is the channel's own: unique in the mapper, negative while unset. Any other index fails: null, false or a
/// negative result, and nothing is recorded except where `report` asks for it.
class VDSTORE_API LQChannelMapper
{
public:
    static constexpr int GLOBAL = -1;
    /// Name of the set that holds a channel's own attributes.
    static constexpr const char* ATTRIBUTES = "Attributes";

    /// An empty mapper.
    /// @param owner  the data object that it belongs to; null for one that stands alone
    explicit LQChannelMapper(LQObject* owner);
    ~LQChannelMapper();
    LQChannelMapper(const LQChannelMapper&) = delete;
    LQChannelMapper& operator=(const LQChannelMapper&) = delete;

    LQObject* GetOwner() const { return owner_; }

    /// @name Channels
    /// @{
    int GetChannelCount() const { return channels_.GetSize(); }
    /// Removes all channels and all metadata.
    void Clear();
    /// A new channel at the end, with no number and no title.
    LQChannelEntry* Append();
    /// Removes a channel with its metadata; those behind it move up by one.
    bool RemoveChannel(int index);
    LQChannelEntry* GetChannel(int index) const;

    /// Index of the channel of this number; -1 if there is none.
    int IndexFromNumber(long number, bool report) const;
    /// Number of the channel at an index; negative if it has none or there is no such channel.
    long NumberFromIndex(int index, bool report) const;
    /// False for a negative number and for one that another channel has.
    bool SetChannelNumber(long number, int index);
    bool SetChannelNumber(long number, LQChannelEntry* entry);
    /// False if there is no such channel. A channel without a number gives a negative one.
    bool GetChannelNumber(long& number, int index) const;
    bool GetChannelNumber(long& number, const LQChannelEntry* entry) const;
    bool SetChanTitle(const char* title, int index);
    bool SetChanTitle(const char* title, LQChannelEntry* entry);
    bool GetChanTitle(VDString& title, int index) const;
    /// @}

    /// @name Metadata sets
    /// @{
    /// 0 where there is no such channel.
    int GetMetaDataSetCount(int index) const;
    /// The set at a place in the slot's list; null outside it.
    Z4PropertySet* GetMetaDataSet(int set, int index) const;
    /// The set of this exact name; null if absent.
    Z4PropertySet* GetMetaDataSet(const char* name, int index) const;
    /// The set of this name, which is made at the end of the list if it is not there.
    /// @param created  whether it was made; may be null
    Z4PropertySet* AdoptMetaDataSet(const char* name, bool* created, int index);
    /// False if absent.
    bool DeleteMetaDataSet(const char* name, int index);
    /// @}

    /// @name Single items
    /// The item of a slot that is known by its name alone: that of the slot's attributes, else the first in its other sets.
    /// The typed calls give the value of a defined item, as `Z4Property::TakeValue` does if it is of another type; otherwise
    /// they give false and leave `value`. `GetStringMetaDataItem` takes text items only.
    /// @{
    Z4Property* GetMetaDataItem(const char* name, int index) const;
    bool GetStringMetaDataItem(const char* name, VDString* value, int index) const;
    bool GetDoubleMetaDataItem(const char* name, double* value, int index) const;
    bool GetHugeMetaDataItem(const char* name, std::int64_t* value, int index) const;
    bool GetLongMetaDataItem(const char* name, std::int32_t* value, int index) const;
    bool GetBooleanMetaDataItem(const char* name, bool* value, int index) const;
    /// @}

    /// @name Attributes
    /// Leave the slot's attributes with an item of this name, type and value, whatever was there. False if there is no such
    /// channel.
    /// @{
    bool SetStringAttribute(const char* name, const char* value, int index);
    bool SetDoubleAttribute(const char* name, double value, int index);
    bool SetHugeAttribute(const char* name, std::int64_t value, int index);
    bool SetLongAttribute(const char* name, std::int32_t value, int index);
    bool SetBooleanAttribute(const char* name, bool value, int index);
    /// @}

private:
    /// The slot of an index or of `GLOBAL`; null for any other.
    LQChannelEntry* GetSlot(int index) const;
    bool IsChannel(const LQChannelEntry* entry) const;
    Z4PropertySet* FindSetOfItem(const char* name, int index) const;

    LQObject* owner_;
    std::unique_ptr<LQChannelEntry> global_;
    Z4SlotList<std::unique_ptr<LQChannelEntry>> channels_;
    std::unordered_map<long, LQChannelEntry*> numbers_;
};
