#pragma once

#include "vdarchive/Z4SlotList.h"

#include <memory>
#include <string_view>
#include <unordered_map>

/// An ordered list that owns its elements and finds them by their exact names. `T::GetName` gives a name that never changes
/// while the element is in the list; no two elements have the same one. A short list is searched as it stands, a long one
/// through an index. Element pointers stay valid until the element goes.
template <class T>
class Z4NamedList
{
public:
    int GetSize() const noexcept { return items_.GetSize(); }

    /// Null outside the list.
    T* At(int index) const noexcept { return index >= 0 && index < GetSize() ? items_[index].get() : nullptr; }

    /// Null if absent.
    T* Find(std::string_view name) const
    {
        if (!index_.empty()) {
            const auto found = index_.find(name);
            return found == index_.end() ? nullptr : found->second.item;
        }
        for (const auto& item : items_)
            if (NameOf(*item) == name)
                return item.get();
        return nullptr;
    }

    /// Takes an element to the end of the list. An element of that name stays, and the new one is dropped: null then.
    T* Append(std::unique_ptr<T> item)
    {
        if (Find(NameOf(*item)) != nullptr)
            return nullptr;
        T* const added = item.get();
        const std::size_t slot = items_.Append(std::move(item));
        if (!index_.empty())
            index_.emplace(NameOf(*added), Place{added, slot});
        else if (items_.GetSize() > LongestUnindexed)
            for (int i = 0; i < GetSize(); ++i)
                index_.emplace(NameOf(*items_[i]), Place{items_[i].get(), items_.SlotOf(i)});
        return added;
    }

    /// Puts an element in the place of the one of its name, or at the end if there is none.
    T* Replace(std::unique_ptr<T> item)
    {
        T* const added = item.get();
        const Place old = Take(NameOf(*item));
        if (old.item == nullptr)
            return Append(std::move(item));
        items_.InSlot(old.slot) = std::move(item);
        if (items_.GetSize() > LongestUnindexed)
            index_.emplace(NameOf(*added), Place{added, old.slot});
        return added;
    }

    /// False if there is none of that name.
    bool Remove(std::string_view name)
    {
        const Place old = Take(name);
        if (old.item == nullptr)
            return false;
        items_.Remove(old.slot, [this](const std::unique_ptr<T>& item, std::size_t slot) {
            if (const auto found = index_.find(NameOf(*item)); found != index_.end())
                found->second.slot = slot;
        });
        if (items_.GetSize() <= LongestUnindexed)
            index_.clear();
        return true;
    }

    /// Removes all elements for which the predicate is true.
    template <class Predicate>
    void RemoveIf(Predicate goes)
    {
        for (int i = GetSize(); i-- > 0;)
            if (const T& item = *items_[i]; goes(item))
                Remove(NameOf(item));
    }

    void Clear() noexcept
    {
        index_.clear();
        items_.Clear();
    }

private:
    static constexpr int LongestUnindexed = 32;
    struct Place
    {
        T* item = nullptr;
        std::size_t slot = 0;
    };

    static std::string_view NameOf(const T& item) { return item.GetName().View(); }

    /// Where the element of a name stands, which the index knows no longer; no element if there is none.
    Place Take(std::string_view name)
    {
        if (const auto found = index_.find(name); found != index_.end()) {
            const Place place = found->second;
            index_.erase(found);
            return place;
        }
        for (int i = 0; index_.empty() && i < GetSize(); ++i)
            if (NameOf(*items_[i]) == name)
                return {items_[i].get(), items_.SlotOf(i)};
        return {};
    }

    Z4SlotList<std::unique_ptr<T>> items_;
    std::unordered_map<std::string_view, Place> index_;  // empty while the list is short
};
