#include "vdstore/LQArrayChannel.h"

#include "TableParts.h"
#include "ValueSwap.h"
#include "vdstore/VDStoreErrorCodes.h"

#include <algorithm>
#include <cstring>

LQArrayChannel::~LQArrayChannel() = default;

bool LQArrayChannel::Fail() const
{
    return table_.Fail();
}

bool LQArrayChannel::ReportDamaged() const
{
    return table_.Report(VDStoreError::ContentDamaged, "The place of a text of a table isn't in the file");
}

bool LQArrayChannel::CheckRead(std::int64_t first, std::int64_t count) const
{
    if (first >= 0 && count >= 0 && first <= dataSet_.rows && count <= dataSet_.rows - first)
        return true;
    return table_.Report(VDStoreError::OutOfRange, "A data set has no rows at this place");
}

bool LQArrayChannel::CheckWrite(std::int64_t first, std::int64_t count) const
{
    constexpr std::int64_t Largest = LQResultsTable::LargestRows;
    if (first >= 0 && count >= 0 && first <= Largest && count <= Largest - first)
        return true;
    return table_.Report(VDStoreError::OutOfRange, "A data set can't have rows at this place");
}

Z4Stream* LQArrayChannel::Find(Part part) const
{
    return dataSet_.cells[static_cast<std::size_t>(column_)].streams[part];
}

Z4Stream* LQArrayChannel::Adopt(Part part)
{
    Z4Stream*& stream = dataSet_.cells[static_cast<std::size_t>(column_)].streams[part];
    if (stream == nullptr)
        stream = table_.GetNode()->AddStream(table_.recordSize_);
    return stream;
}

std::int64_t LQArrayChannel::GetLength(Part part) const
{
    const Z4Stream* const stream = Find(part);
    return stream == nullptr ? 0 : stream->GetLength();
}

bool LQArrayChannel::Read(Part part, std::int64_t position, std::int64_t bytes, int size, void* buffer)
{
    const std::int64_t there = std::clamp<std::int64_t>(GetLength(part) - position, 0, bytes);
    if (there > 0 && !Find(part)->Read(position, there, buffer))
        return Fail();
    if (there < bytes)
        std::memset(static_cast<char*>(buffer) + there, 0, static_cast<std::size_t>(bytes - there));
    if (size > 1 && table_.GetNode()->NeedsSwap())
        VFSwapValues(buffer, bytes, size);
    return true;
}

bool LQArrayChannel::Write(Part part, std::int64_t position, std::int64_t bytes, const void* buffer)
{
    Z4Stream* const stream = Adopt(part);
    return (stream != nullptr && stream->Write(position, bytes, buffer)) || Fail();
}

void LQArrayChannel::Grow(std::int64_t rows)
{
    dataSet_.rows = std::max(dataSet_.rows, rows);
}

bool LQArrayChannel::GetStatus(std::int64_t first, std::int64_t count, std::uint16_t* words)
{
    return CheckRead(first, count) && Read(Status, first * 2, count * 2, 2, words);
}

bool LQArrayChannel::PutStatus(std::int64_t first, std::int64_t count, const std::uint16_t* words)
{
    if (!CheckWrite(first, count) || (count > 0 && !Write(Status, first * 2, count * 2, words)))
        return false;
    Grow(count > 0 ? first + count : 0);
    return true;
}

template <class T>
bool LQArrayChannelEx<T>::GetArray(std::int64_t first, std::int64_t count, T* values)
{
    constexpr auto Size = static_cast<int>(sizeof(T));
    return CheckRead(first, count) && Read(Values, first * Size, count * Size, Size, values);
}

template <class T>
bool LQArrayChannelEx<T>::PutArray(std::int64_t first, std::int64_t count, const T* values)
{
    constexpr auto Size = static_cast<std::int64_t>(sizeof(T));
    if (!CheckWrite(first, count) || (count > 0 && !Write(Values, first * Size, count * Size, values)))
        return false;
    Grow(count > 0 ? first + count : 0);
    return true;
}

template class LQArrayChannelEx<std::int16_t>;
template class LQArrayChannelEx<std::int32_t>;
template class LQArrayChannelEx<std::int64_t>;
template class LQArrayChannelEx<float>;
template class LQArrayChannelEx<double>;
