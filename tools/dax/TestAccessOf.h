#pragma once

#include "TestAccess.h"
#include "ToolError.h"

#include "daxlib/ComplexFrequencyPlugin.h"
#include "daxlib/HistogramPlugin.h"
#include "daxlib/MetaDataPlugin.h"
#include "daxlib/MultiColumnPlugin.h"
#include "daxlib/TimeSeriesPlugin.h"

#include <type_traits>

/// The access object of one family as a `VDTestAccess`. `Calls` says where the families differ; see those below.
template <class Calls>
class VDTestAccessOf : public VDTestAccess
{
public:
    VDTestAccessOf() : acc_(Calls::Create()) { VFCheck(static_cast<bool>(acc_)); }

    auto* Get() const { return acc_.Get(); }

    int SetId(VDFileId* id, bool create) override { return Calls::SetId(Get(), id, create ? 1 : 0); }
    int Open(VTTestOpen mode) override { return Calls::Open(Get(), Calls::FirstOpenMode + static_cast<int>(mode)); }
    int Close() override { return Calls::Close(Get()); }
    bool KeepsMetaData() const override { return Can(Calls::KeepsMetaData); }
    bool IsWritable() const override { return Can(Calls::Writable); }
    int GetMetaData(LQChannelMapper** mapper) const override { return Calls::GetMetaData(Get(), mapper); }
    int GetFormatValue(const char* name, VDVariant* value) const override
    {
        return Value(Calls::GetFormatValue, name, value);
    }
    int SetFormatValue(const char* name, VDVariant* value) override { return Value(Calls::SetFormatValue, name, value); }

    /// Whether the format has a capability of its family; throws if it can't be asked.
    bool Can(int capability) const
    {
        char answer = 0;
        VFCheck(Calls::GetCapability(Get(), capability, &answer));
        return answer != 0;
    }

private:
    /// Of the file as a whole: -1 for each selector of the family, be it one or three.
    template <class Call>
    int Value(Call call, const char* name, VDVariant* value) const
    {
        if constexpr (std::is_invocable_v<Call, typename Calls::Object*, int, const char*, VDVariant*>)
            return call(Get(), -1, name, value);
        else
            return call(Get(), -1, -1, -1, name, value);
    }

    typename Calls::Handle acc_;
};

struct VDTsCalls
{
    using Object = VDTsAcc;
    using Handle = VDTsAccHandle;
    static constexpr auto Create = TSAccCreate;
    static constexpr auto SetId = TSAccSetId;
    static constexpr auto Open = TSAccOpen;
    static constexpr auto Close = TSAccClose;
    static constexpr auto GetCapability = TSAccGetCapability;
    static constexpr auto GetMetaData = TSAccGetMetaData;
    static constexpr auto GetFormatValue = TSAccGetFormatSpecificValue;
    static constexpr auto SetFormatValue = TSAccSetFormatSpecificValue;
    static constexpr int FirstOpenMode = 0;
    static constexpr int KeepsMetaData = DaxTimeSeries::KeepsMetaData;
    static constexpr int Writable = DaxTimeSeries::Writable;
};

struct VDMetaCalls
{
    using Object = VDMetaAcc;
    using Handle = VDMetaAccHandle;
    static constexpr auto Create = MetaAccCreate;
    static constexpr auto SetId = MetaAccSetId;
    static constexpr auto Open = MetaAccOpen;
    static constexpr auto Close = MetaAccClose;
    static constexpr auto GetCapability = MetaAccGetCapability;
    static constexpr auto GetMetaData = MetaAccGetMetaData;
    static constexpr auto GetFormatValue = MetaAccGetFormatSpecificValue;
    static constexpr auto SetFormatValue = MetaAccSetFormatSpecificValue;
    static constexpr int FirstOpenMode = 1;
    static constexpr int KeepsMetaData = DaxMetaData::KeepsMetaData;
    static constexpr int Writable = DaxMetaData::KeepsMetaData;
};

struct VDHistogramCalls
{
    using Object = VDHistAcc;
    using Handle = VDHistAccHandle;
    static constexpr auto Create = HFAccCreate;
    static constexpr auto SetId = HFAccSetId;
    static constexpr auto Open = HFAccOpen;
    static constexpr auto Close = HFAccClose;
    static constexpr auto GetCapability = HFAccGetCapability;
    static constexpr auto GetMetaData = HFAccGetMetaData;
    static constexpr auto GetFormatValue = HFAccGetFormatSpecificValue;
    static constexpr auto SetFormatValue = HFAccSetFormatSpecificValue;
    static constexpr int FirstOpenMode = 1;
    static constexpr int KeepsMetaData = DaxHistogram::KeepsMetaData;
    static constexpr int Writable = DaxHistogram::Writable;
};

struct VDTableCalls
{
    using Object = VDXYAcc;
    using Handle = VDXYAccHandle;
    static constexpr auto Create = XYAccCreate;
    static constexpr auto SetId = XYAccSetId;
    static constexpr auto Open = XYAccOpen;
    static constexpr auto Close = XYAccClose;
    static constexpr auto GetCapability = XYAccGetCapability;
    static constexpr auto GetMetaData = XYAccGetMetaData;
    static constexpr auto GetFormatValue = XYAccGetFormatSpecificValue;
    static constexpr auto SetFormatValue = XYAccSetFormatSpecificValue;
    static constexpr int FirstOpenMode = 0;
    static constexpr int KeepsMetaData = DaxMultiColumn::KeepsMetaData;
    static constexpr int Writable = DaxMultiColumn::Writable;
};

struct VDSpectraCalls
{
    using Object = VDCFAcc;
    using Handle = VDCFAccHandle;
    static constexpr auto Create = CFAccCreate;
    static constexpr auto SetId = CFAccSetId;
    static constexpr auto Open = CFAccOpen;
    static constexpr auto Close = CFAccClose;
    static constexpr auto GetCapability = CFAccGetCapability;
    static constexpr auto GetMetaData = CFAccGetMetaData;
    static constexpr auto GetFormatValue = CFAccGetFormatSpecificValue;
    static constexpr auto SetFormatValue = CFAccSetFormatSpecificValue;
    static constexpr int FirstOpenMode = 1;
    static constexpr int KeepsMetaData = DaxComplexFrequency::KeepsMetaData;
    static constexpr int Writable = DaxComplexFrequency::Writable;
};
