#pragma once

#include "vdbase/VDArray.h"
#include "vdbase/VDString.h"

#include <string>
#include <string_view>

class LQChannelMapper;
class Z4Property;

/// What the selector `dataN.` chooses from; either may be null.
struct VDMetaDataSources
{
    VDArray<LQChannelMapper*>* mappers = nullptr;
    VDArrayWithSort<long>* channels = nullptr;
};

/// A keyword whose selectors have been worked out: it knows where to look and for what, and can look for several channel
/// arguments. The grammar stands at the exported functions.
class VDMetaDataKeyword
{
public:
    /// False, with a report, for a `chan?(` that can't be read. The mappers must outlive the object.
    bool Read(LQChannelMapper& mapper, std::string_view keyword, const VDMetaDataSources& sources);

    /// Gives the item or null. False if a set is missing from a mapper.
    bool Find(int channel, bool searchGlobal, Z4Property** item) const;

    /// @name The two halves of `Find`
    /// Whether a selector that selects nothing ends the search at once; then what the channels have, and what the test has
    /// for all channels alike.
    /// @{
    bool IsNowhere(int channel) const;
    bool FindInChannels(int channel, Z4Property** item) const;
    bool FindInTest(bool searchGlobal, Z4Property** item) const;
    /// @}

private:
    enum class Where { Argument, Current, Channel, Test, Nowhere };
    struct Names
    {
        std::string set;  ///< empty for any
        std::string item;
    };

    void ReadData(std::string_view* rest, const VDMetaDataSources& sources);
    bool ReadChannelQuery(std::string_view* rest);
    void ReadChannel(std::string_view* rest);
    static Names ReadNames(std::string_view rest);
    bool FindInSlot(const Names& names, long slot, Z4Property** item) const;

    LQChannelMapper* given_ = nullptr;
    LQChannelMapper* working_ = nullptr;
    Where where_ = Where::Argument;
    long channel_ = 0;
    Names names_;
    bool mayBeTest_ = false;  // "Test." may be a selector as well as a set
    Names namesInTest_;
};
