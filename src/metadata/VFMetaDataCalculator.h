#pragma once

#include "MetaDataKeyword.h"

#include "vdbase/VDCalculator.h"

#include <optional>
#include <string>
#include <unordered_map>

/// Channel arguments that are no index.
namespace VDMetaDataChannel {
constexpr int Every = -1;  ///< every channel, in the order of their indexes
constexpr int Test = -2;   ///< the metadata of the test as a whole
}  // namespace VDMetaDataChannel

/// The calculator over the metadata of a mapper: its variables are keywords, looked up in a channel that can change between
/// evaluations, else in the test. It keeps what doesn't depend on the channel, so the mapper must not change in its life.
class VFMetaDataCalculator : public VDCalculator
{
public:
    /// @param mapper   not owned
    /// @param channel  an index, or one of `VDMetaDataChannel`
    /// @param numeric  other than 0 hands texts that are numbers over as such and booleans as "TRUE" and "FALSE"; otherwise
    ///                 they keep their type
    VFMetaDataCalculator(LQChannelMapper* mapper, long channel, char numeric);

    void SetChannel(long channel) { channel_ = channel; }
    /// Lets the keywords that could not be read be read, and reported, again.
    void ForgetFailures();

    void GetVariableByName(const char* name, VDVariant& value) override;
    /// There is none beyond the calculator's own.
    bool IsFunctionNameValid(const char*) override { return false; }

private:
    struct Variable
    {
        bool isRead = false;
        VDMetaDataKeyword keyword;
        std::optional<Z4Property*> inTest;  // what the test has for all channels alike
    };

    Z4Property* Find(Variable& variable) const;

    LQChannelMapper* mapper_;
    long channel_;
    char numeric_;
    std::unordered_map<std::string, Variable> variables_;
};
