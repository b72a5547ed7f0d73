#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <set>

/// Finds the slots of a list by a key that need not be unique. It is made at the first search and kept up to date from then
/// on, so that a list that nobody searches pays nothing. A copy is made anew when it is needed.
template <class Key>
class VDSlotIndex
{
public:
    static constexpr std::size_t None = std::numeric_limits<std::size_t>::max();

    VDSlotIndex() = default;
    VDSlotIndex(const VDSlotIndex&) {}
    VDSlotIndex& operator=(const VDSlotIndex&)
    {
        Drop();
        return *this;
    }

    /// The first slot of a key; `None` if there is none.
    /// @param enterAll  makes the index: calls `Enter` for everything in the list
    template <class EnterAll>
    std::size_t Find(const Key& key, EnterAll enterAll)
    {
        if (!entries_) {
            entries_ = std::make_unique<Entries>();
            enterAll(*this);
        }
        return FindNext(key, 0);
    }
    /// The first slot of a key from this one on, once the index was searched.
    std::size_t FindNext(const Key& key, std::size_t slot) const
    {
        const auto found = entries_->lower_bound({key, slot});
        return found != entries_->end() && found->key == key ? found->slot : None;
    }

    void Enter(const Key& key, std::size_t slot)
    {
        if (entries_)
            entries_->insert({key, slot});
    }
    void Remove(const Key& key, std::size_t slot)
    {
        if (entries_)
            entries_->erase({key, slot});
    }
    void Drop() { entries_.reset(); }

private:
    /// A pair's own order would compare texts by where they are.
    struct Entry
    {
        Key key;
        std::size_t slot;
        bool operator<(const Entry& other) const { return key == other.key ? slot < other.slot : key < other.key; }
    };
    using Entries = std::set<Entry>;

    std::unique_ptr<Entries> entries_;
};
