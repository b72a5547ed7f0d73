#include "InputTest.h"

#include "FormatValues.h"
#include "ToolError.h"

#include <filesystem>

VDInputTest::VDInputTest(VDCommandContext& context, const VDTestArguments& arguments)
    : VDInputTest(context, arguments, VFChooseTest(context.Registry(), arguments))
{
}

VDInputTest::VDInputTest(VDCommandContext& context, const VDTestArguments& arguments, VDFileIdHandle id)
    : id_(std::move(id)), test_(VFOpenDataTest(id_))
{
    if (test_->Access() == nullptr)
        return;
    const std::string damage = VFGetFormatText(Access(), DaxFormatValue::Damage);
    if (!damage.empty())
        Tell(context, arguments, DaxToolError::Damaged, "The file " + GetPath() + " is damaged. " + damage);
    TellOfSidecar(context, arguments);
}

const VDTimeSeriesTest& VDInputTest::GetTimeSeries() const
{
    if (const auto* const series = dynamic_cast<const VDTimeSeriesTest*>(test_.get()))
        return *series;
    VFFail(DaxToolError::NotTimeSeries, "The test holds no time series but " + DescribeFormat() + ": " + GetPath(),
           "VDInputTest::GetTimeSeries");
}

VDTestAccess& VDInputTest::Access() const
{
    if (VDTestAccess* const access = test_->Access())
        return *access;
    VFFail(DaxToolError::NotTimeSeries, "Nothing reads the data of " + DescribeFormat() + ": " + GetPath(),
           "VDInputTest::Access");
}

std::string VDInputTest::DescribeFormat() const
{
    int accessType = 0;
    VDString accessClass;
    VDString description;
    VFCheck(FIDGetAccessInfo(id_.Get(), &accessType, &accessClass, &description));
    return description.Str();
}

void VDInputTest::Tell(VDCommandContext& context, const VDTestArguments& arguments, int code, const std::string& text) const
{
    if (arguments.strict)
        VFFail(code, text, "VDInputTest");
    context.Warn({code, text, "VDInputTest"});
}

/// Metadata that lie beside the data and can't be read are no reason not to read the data.
void VDInputTest::TellOfSidecar(VDCommandContext& context, const VDTestArguments& arguments) const
{
    VDString name;
    std::error_code none;
    if (Access().KeepsMetaData() || VMDCreateFilenameFromFileId(id_.Get(), &name) == 0 ||
        !std::filesystem::exists(name.Str(), none))
        return;
    const VDVmdFileHandle sidecar(VMDCreate());
    if (sidecar && VMDAdoptTestVmd(sidecar.Get(), id_.Get(), true))
        return;
    const std::vector<VDErrorReport> reasons = VFTakeErrors();
    Tell(context, arguments, DaxToolError::MetaDataUnread,
         "The metadata in " + name.Str() + " can't be read" + (reasons.empty() ? "" : ": " + reasons.back().text.Str()));
}
