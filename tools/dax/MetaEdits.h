#pragma once

#include "vdarchive/Z4Property.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class LQChannelMapper;

/// Changes of metadata, which are made all together or not at all.
class VDMetaEdits
{
public:
    /// @param text      "Set.Item=value": the set ends at the first dot, the item at the first "="
    /// @param type      without one an item that is there keeps its type; a new one is an int64 or a double if the value reads
    ///                  as such, else a string
    /// @param channels  numbers; none for the test as a whole
    void Put(const std::string& text, std::optional<Z4PropertyType> type, const std::vector<int>& channels);
    /// @param text  "Set.Item"
    void Remove(const std::string& text, const std::vector<int>& channels);
    /// Puts each own item of a mapper.
    /// @param keep  items that are there stay
    void Take(const LQChannelMapper& mapper, bool keep);

    bool IsEmpty() const { return edits_.empty(); }
    /// Throws, naming the first change that this mapper can't take.
    void Check(const LQChannelMapper& mapper) const;
    /// Makes the changes, which `Check` has passed.
    /// @return how many items were put and removed
    int Apply(LQChannelMapper& mapper) const;
    /// Leaves out changes of channels that a mapper doesn't have, and gives their numbers.
    std::vector<int> DropOtherChannels(const LQChannelMapper& mapper);

private:
    struct Edit
    {
        std::optional<int> channel;  ///< number; none for the test as a whole
        std::string set;
        std::string item;
        /// The new value in the place of one that is there or null; null where it can't have it. Empty to remove the item.
        std::function<std::unique_ptr<Z4Property>(const Z4Property* present)> value;
        bool keep = false;
        std::string valueText;  ///< for a report

        std::string Name() const;
    };

    void Add(const Edit& edit, const std::vector<int>& channels);
    static void CheckOne(const LQChannelMapper& mapper, const Edit& edit);

    std::vector<Edit> edits_;
};
