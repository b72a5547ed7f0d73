#include "TestDescription.h"

#include "ToolError.h"

VDTestDescription::VDTestDescription(const VDRegistry& registry, const VDIdentification& identification,
                                     const VDFileIdHandle& test)
    : type(VFGetFileType(registry, test)), identifiedBy(VFIdentifiedBy(identification, type))
{
    VDString text;
    VDString extension;
    VFCheck(FIDGetFilename(test.Get(), &text, &extension));
    path = text.Str();
    VFCheck(FIDGetTestTitle(test.Get(), &text));
    title = text.Str();
    VFCheck(FIDGetRunNumber(test.Get(), &run));
    VFCheck(FIDGetBurstNumber(test.Get(), &burst));
    VFCheck(FIDGetModeNumber(test.Get(), &mode, nullptr));
}

VDJson VDTestDescription::ToJson() const
{
    const auto orNull = [](int number) { return number < 0 ? VDJson() : VDJson(number); };
    return {{"path", path},
            {"fileId", type.fileId},
            {"subId", type.subId},
            {"keyword", type.keyword},
            {"description", type.description},
            {"accessType", type.accessName},
            {"accessTypeId", type.accessType},
            {"identifiedBy", identifiedBy},
            {"title", title},
            {"run", orNull(run)},
            {"burst", orNull(burst)},
            {"mode", orNull(mode)}};
}

void VDTestDescription::AddTo(VDTextTable& table) const
{
    table.Add({"Path", path});
    table.Add({"Format", type.description + " (" + type.keyword + ")"});
    table.Add({"File type", std::to_string(type.fileId) + ", sub id " + std::to_string(type.subId)});
    table.Add({"Access type", type.accessName});
    table.Add({"Identified by", identifiedBy});
    if (!title.empty())
        table.Add({"Title", title});
    const std::pair<const char*, int> divisions[] = {{"Run", run}, {"Burst", burst}, {"Mode", mode}};
    for (const auto& [name, number] : divisions)
        if (number >= 0)
            table.Add({name, std::to_string(number)});
}
