#include "InputTest.h"

#include "ToolError.h"

VDInputTest::VDInputTest(VDCommandContext& context, const VDTestArguments& arguments)
    : VDInputTest(context, arguments, VFChooseTest(context.Registry(), arguments))
{
}

VDInputTest::VDInputTest(VDCommandContext& context, const VDTestArguments& arguments, VDFileIdHandle id)
    : id_(std::move(id)), test_(id_)
{
    const std::string damage = VFGetFormatText(test_.Get(), DaxFormatValue::Damage);
    if (damage.empty())
        return;
    const std::string text = "The file " + GetPath() + " is damaged. " + damage;
    if (arguments.strict)
        VFFail(DaxToolError::Damaged, text, "VDInputTest");
    context.Warn({DaxToolError::Damaged, text, "VDInputTest"});
}
