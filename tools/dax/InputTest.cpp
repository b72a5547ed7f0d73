#include "InputTest.h"

#include "ToolError.h"

#include "daxlib/TimeSeriesPlugin.h"

#include <filesystem>

VDInputTest::VDInputTest(VDCommandContext& context, const VDTestArguments& arguments)
    : VDInputTest(context, arguments, VFChooseTest(context.Registry(), arguments))
{
}

VDInputTest::VDInputTest(VDCommandContext& context, const VDTestArguments& arguments, VDFileIdHandle id)
    : id_(std::move(id)), test_(id_)
{
    const std::string damage = VFGetFormatText(test_.Get(), DaxFormatValue::Damage);
    if (!damage.empty())
        Tell(context, arguments, DaxToolError::Damaged, "The file " + GetPath() + " is damaged. " + damage);
    TellOfSidecar(context, arguments);
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
    char keeps = 0;
    VFCheck(TSAccGetCapability(test_.Get(), DaxTimeSeries::KeepsMetaData, &keeps));
    std::error_code none;
    if (keeps != 0 || VMDCreateFilenameFromFileId(id_.Get(), &name) == 0 || !std::filesystem::exists(name.Str(), none))
        return;
    const VDVmdFileHandle sidecar(VMDCreate());
    if (sidecar && VMDAdoptTestVmd(sidecar.Get(), id_.Get(), true))
        return;
    const std::vector<VDErrorReport> reasons = VFTakeErrors();
    Tell(context, arguments, DaxToolError::MetaDataUnread,
         "The metadata in " + name.Str() + " can't be read" + (reasons.empty() ? "" : ": " + reasons.back().text.Str()));
}
