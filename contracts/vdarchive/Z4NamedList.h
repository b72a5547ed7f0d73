#pragma once

#include <algorithm>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

/// An ordered list that owns its elements and finds them by their exact names. `T::GetName` gives a name that never changes
/// while the element is in the list; no two elements have the same one. A short list is searched as it stands, a long one
/// through an index. Element pointers stay valid until the element goes.
template <class T>
class Z4NamedList
{
public:
    int GetSize() const noexcept { return static_cast<int>(items_.size()); }

    /// Null outside the list.
    T* At(int index) const noexcept
    {
        return index >= 0 && index < GetSize() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
    }

    /// Null if absent.
    T* Find(std::string_view name) const
    {
        if (!index_.empty()) {
            const auto found = index_.find(name);
            return found == index_.end() ? nullptr : found->second;
        }
        const auto found =
            std::find_if(items_.begin(), items_.end(), [name](const auto& item) { return NameOf(*item) == name; });
        return found == items_.end() ? nullptr : found->get();
    }

    /// Takes an element to the end of the list. An element of that name stays, and the new one is dropped: null then.
    T* Append(std::unique_ptr<T> item)
    {
        if (Find(NameOf(*item)) != nullptr)
            return nullptr;
        T* const added = items_.emplace_back(std::move(item)).get();
        if (!index_.empty())
            index_.emplace(NameOf(*added), added);
        else if (items_.size() > LongestUnindexed)
            for (const auto& each : items_)
                index_.emplace(NameOf(*each), each.get());
        return added;
    }

    /// Puts an element in the place of the one of its name, or at the end if there is none.
    T* Replace(std::unique_ptr<T> item)
    {
        T* const old = Find(NameOf(*item));
        if (old == nullptr)
            return Append(std::move(item));
        T* const added = item.get();
        index_.erase(NameOf(*old));
        *PlaceOf(old) = std::move(item);
        if (items_.size() > LongestUnindexed)
            index_.emplace(NameOf(*added), added);
        return added;
    }

    /// False if there is none of that name.
    bool Remove(std::string_view name)
    {
        T* const old = Find(name);
        if (old == nullptr)
            return false;
        index_.erase(name);
        items_.erase(PlaceOf(old));
        if (items_.size() <= LongestUnindexed)
            index_.clear();
        return true;
    }

    /// Removes all elements for which the predicate is true, in one pass.
    template <class Predicate>
    void RemoveIf(Predicate goes)
    {
        for (auto& item : items_)
            if (goes(std::as_const(*item))) {
                index_.erase(NameOf(*item));
                item.reset();
            }
        std::erase(items_, nullptr);
        if (items_.size() <= LongestUnindexed)
            index_.clear();
    }

    void Clear() noexcept
    {
        index_.clear();
        items_.clear();
    }

private:
    static constexpr std::size_t LongestUnindexed = 16;

    static std::string_view NameOf(const T& item) { return item.GetName().View(); }
    auto PlaceOf(const T* item)
    {
        return std::find_if(items_.begin(), items_.end(), [item](const auto& each) { return each.get() == item; });
    }

    std::vector<std::unique_ptr<T>> items_;
    std::unordered_map<std::string_view, T*> index_;  // empty while the list is short
};
