#pragma once

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

/// A growing list with value semantics. An index outside the list is no fault: reading gives a default element, and a
/// write to it is lost (each such access gets a fresh element of the calling thread).
template <class T>
class VDArray
{
    static_assert(!std::is_same_v<T, bool>, "use char for flags");

public:
    /// @param growStep  by how many elements the storage grows at a time while the list is short
    explicit VDArray(int growStep = 10) : growStep_(growStep < 1 ? 1 : growStep) {}

    int GetSize() const noexcept { return static_cast<int>(items_.size()); }
    bool IsEmpty() const noexcept { return items_.empty(); }

    /// New elements are default ones; a negative size counts as 0.
    void SetSize(int size) { items_.resize(static_cast<std::size_t>(std::max(size, 0))); }
    void Reserve(int size) { items_.reserve(static_cast<std::size_t>(std::max(size, 0))); }
    /// Empties the list and frees its storage.
    void Clear() { std::vector<T>().swap(items_); }

    /// Gives the index of the new element.
    int AppendItem(T item)
    {
        if (items_.size() == items_.capacity() && items_.size() < static_cast<std::size_t>(growStep_) * 8)
            items_.reserve(items_.size() + static_cast<std::size_t>(growStep_));
        items_.push_back(std::move(item));
        return GetSize() - 1;
    }
    /// The other list may be this one.
    void Append(const VDArray& other)
    {
        for (std::size_t index = 0, count = other.items_.size(); index < count; ++index)
            items_.push_back(other.items_[index]);
    }

    /// False if the index is outside the list.
    bool RemoveAt(int index)
    {
        if (!IsIndex(index))
            return false;
        items_.erase(items_.begin() + index);
        return true;
    }

    T& operator[](int index) { return IsIndex(index) ? items_[static_cast<std::size_t>(index)] : Stray(); }
    const T& operator[](int index) const { return IsIndex(index) ? items_[static_cast<std::size_t>(index)] : Stray(); }

    bool IsIndex(int index) const noexcept { return index >= 0 && index < GetSize(); }

    T* GetData() noexcept { return items_.data(); }
    const T* GetData() const noexcept { return items_.data(); }
    auto begin() noexcept { return items_.begin(); }
    auto end() noexcept { return items_.end(); }
    auto begin() const noexcept { return items_.begin(); }
    auto end() const noexcept { return items_.end(); }

protected:
    std::vector<T> items_;

private:
    static T& Stray()
    {
        thread_local T stray{};
        stray = T{};
        return stray;
    }

    int growStep_;
};

/// A `VDArray` whose elements have an order.
template <class T>
class VDArrayWithSort : public VDArray<T>
{
public:
    using VDArray<T>::VDArray;

    void Sort() { std::sort(this->items_.begin(), this->items_.end()); }
    /// Removes all but the first of equal neighbours.
    void RemoveDuplicates() { this->items_.erase(std::unique(this->items_.begin(), this->items_.end()), this->items_.end()); }
    /// First index of the value from `start` on; -1 if absent.
    int Find(const T& value, int start = 0) const
    {
        for (int index = std::max(start, 0); index < this->GetSize(); ++index)
            if (this->items_[static_cast<std::size_t>(index)] == value)
                return index;
        return -1;
    }
};
