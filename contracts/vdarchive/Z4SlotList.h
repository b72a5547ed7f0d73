#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// An ordered list from any place of which elements can be taken quickly. An element stands in a slot, a number that stays
/// the same while others come and go; its index is the number of elements before it. As long as nothing was taken out both
/// are the same. Otherwise finding one from the other takes the logarithm of the size, and taking out as much on average.
template <class T>
class Z4SlotList
{
public:
    int GetSize() const noexcept { return static_cast<int>(items_.size() - gone_); }

    /// For an index in the list, and a slot that is taken.
    T& operator[](int index) noexcept { return items_[SlotOf(index)]; }
    const T& operator[](int index) const noexcept { return items_[SlotOf(index)]; }
    T& InSlot(std::size_t slot) noexcept { return items_[slot]; }

    std::size_t SlotOf(int index) const noexcept
    {
        auto before = static_cast<std::uint32_t>(index);
        if (gone_ == 0)
            return before;
        std::size_t slot = 0;
        for (std::size_t step = std::bit_floor(items_.size()); step > 0; step /= 2)
            if (slot + step <= items_.size() && counts_[slot + step] <= before) {
                slot += step;
                before -= counts_[slot];
            }
        return slot;
    }
    int IndexOf(std::size_t slot) const noexcept
    {
        if (gone_ == 0)
            return static_cast<int>(slot);
        std::uint32_t index = 0;
        for (; slot > 0; slot &= slot - 1)
            index += counts_[slot];
        return static_cast<int>(index);
    }

    /// @return the slot of the new last element
    std::size_t Append(T item)
    {
        items_.push_back(std::move(item));
        if (gone_ > 0) {
            isGone_.push_back(false);
            counts_.push_back(CountAt(items_.size()));
        }
        return items_.size() - 1;
    }

    /// @param moved  is called with each element that gets another slot, and that slot
    template <class Moved>
    void Remove(std::size_t slot, Moved moved)
    {
        if (gone_ == 0)
            StartCounting();
        items_[slot] = T();
        isGone_[slot] = true;
        ++gone_;
        for (std::size_t at = slot + 1; at < counts_.size(); at += at & -at)
            --counts_[at];
        if (gone_ >= items_.size() / 2)
            Compact(moved);
    }

    void Clear() noexcept
    {
        items_.clear();
        StopCounting();
    }
    void Reserve(std::size_t size) { items_.reserve(size); }

    /// In order, for a loop that doesn't change the list.
    template <class List>
    class Iterator
    {
    public:
        Iterator(List& list, std::size_t slot) : list_(list), slot_(slot) { SkipGone(); }
        auto& operator*() const { return list_.items_[slot_]; }
        Iterator& operator++()
        {
            ++slot_;
            SkipGone();
            return *this;
        }
        bool operator!=(const Iterator& other) const { return slot_ != other.slot_; }

    private:
        void SkipGone()
        {
            while (list_.gone_ > 0 && slot_ < list_.items_.size() && list_.isGone_[slot_])
                ++slot_;
        }

        List& list_;
        std::size_t slot_;
    };
    auto begin() { return Iterator<Z4SlotList>(*this, 0); }
    auto end() { return Iterator<Z4SlotList>(*this, items_.size()); }
    auto begin() const { return Iterator<const Z4SlotList>(*this, 0); }
    auto end() const { return Iterator<const Z4SlotList>(*this, items_.size()); }

private:
    /// The count at a place, from 1, whose slot is taken, from those before it.
    std::uint32_t CountAt(std::size_t at) const
    {
        std::uint32_t count = 1;
        for (std::size_t step = 1; step < (at & -at); step *= 2)
            count += counts_[at - step];
        return count;
    }
    void StartCounting()
    {
        isGone_.assign(items_.size(), false);
        counts_.assign(1, 0);
        counts_.reserve(items_.size() + 1);
        while (counts_.size() <= items_.size())
            counts_.push_back(CountAt(counts_.size()));
    }
    void StopCounting() noexcept
    {
        gone_ = 0;
        isGone_.clear();
        counts_.clear();
    }
    template <class Moved>
    void Compact(Moved moved)
    {
        std::size_t to = 0;
        for (std::size_t from = 0; from < items_.size(); ++from) {
            if (isGone_[from])
                continue;
            if (from != to) {
                items_[to] = std::move(items_[from]);
                moved(items_[to], to);
            }
            ++to;
        }
        items_.resize(to);
        StopCounting();
    }

    std::vector<T> items_;               // by slot
    std::size_t gone_ = 0;               // slots that are empty; while there are none, the two below are empty, too
    std::vector<bool> isGone_;           // by slot
    std::vector<std::uint32_t> counts_;  // taken slots in the sections of a binary indexed tree, from 1
};
