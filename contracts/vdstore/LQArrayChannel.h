#pragma once

#include "vdarchive/Z4Stream.h"
#include "vdbase/VDString.h"
#include "vdstore/VDStoreApi.h"

#include <cstdint>

class LQResultsTable;
struct LQTableDataSet;

/// The values of one column of one data set. The table owns it; it goes with the table or its channel. Rows count from 0.
///
/// What is written behind the data set's last row makes the data set longer; rows that were never written are 0, or empty,
/// and take no room. A read must stay within the data set's rows. A failure gives false and is recorded.
class VDSTORE_API LQArrayChannel
{
public:
    virtual ~LQArrayChannel();
    LQArrayChannel(const LQArrayChannel&) = delete;
    LQArrayChannel& operator=(const LQArrayChannel&) = delete;

    /// @name Status words, of a column that has them
    /// @{
    bool GetStatus(std::int64_t first, std::int64_t count, std::uint16_t* words);
    bool PutStatus(std::int64_t first, std::int64_t count, const std::uint16_t* words);
    /// @}

protected:
    LQArrayChannel(LQResultsTable& table, LQTableDataSet& dataSet, int column)
        : table_(table), dataSet_(dataSet), column_(column)
    {
    }

    /// What a cell keeps in streams.
    enum Part { Values, Texts, Status };

    bool CheckRead(std::int64_t first, std::int64_t count) const;
    bool CheckWrite(std::int64_t first, std::int64_t count) const;
    /// Reads values that lie one behind the other; what isn't there is 0.
    /// @param size  of one number in bytes, for turning those of the other byte order
    bool Read(Part part, std::int64_t position, std::int64_t bytes, int size, void* buffer);
    bool Write(Part part, std::int64_t position, std::int64_t bytes, const void* buffer);
    std::int64_t GetLength(Part part) const;
    /// Rows were written.
    void Grow(std::int64_t rows);
    bool Fail() const;
    bool ReportDamaged() const;

private:
    Z4Stream* Find(Part part) const;
    Z4Stream* Adopt(Part part);

    LQResultsTable& table_;
    LQTableDataSet& dataSet_;
    int column_;
};

/// Numbers. `T` is std::int16_t, std::int32_t, std::int64_t, float or double. They go straight between the caller's memory and
/// the file.
template <class T>
class VDSTORE_API LQArrayChannelEx : public LQArrayChannel
{
public:
    using Value = T;

    bool GetArray(std::int64_t first, std::int64_t count, T* values);
    bool PutArray(std::int64_t first, std::int64_t count, const T* values);

private:
    friend class LQResultsTable;
    using LQArrayChannel::LQArrayChannel;
};

/// Texts of any length, up to 2^31 - 1 bytes. One that is written over with a longer one leaves its room unused.
class VDSTORE_API LQTextArrayChannel : public LQArrayChannel
{
public:
    using Value = VDString;

    bool GetTexts(std::int64_t first, std::int64_t count, VDString* texts);
    bool PutTexts(std::int64_t first, std::int64_t count, const VDString* texts);

private:
    friend class LQResultsTable;
    using LQArrayChannel::LQArrayChannel;

    struct Place;
    bool GetBlock(std::int64_t first, std::int64_t count, std::int64_t* bytes, VDString* texts);
    bool GetRun(const Place* places, std::int64_t count, VDString* texts);
    bool PutBlock(std::int64_t first, std::int64_t count, const VDString* texts);
};
