#include "CsvFormatValues.h"

#include "daxlib/DaxTypes.h"
#include "vdstore/LQChannelMapper.h"

namespace CsvFormatValues {

std::optional<VDVariant> Get(const VDString& name, const CsvDialect& dialect, const std::string& damage,
                             const std::string& unfit)
{
    const auto is = [&](const char* known) { return name.CompareNoCase(known) == 0; };
    if (is(DaxFormatValue::Names)) {
        VDVariant names = VDVariant::FromList({});
        for (std::size_t key = 0; key < CsvSettings::Count; ++key)
            if (key != CsvSettings::Comment || !dialect.comment.empty())
                names.AppendItem(VDVariant(CsvSettings::GetName(key)));
        return names;
    }
    if (is(DaxFormatValue::Damage))
        return VDVariant(damage.c_str());
    if (is(DaxFormatValue::Unfit))
        return VDVariant(unfit.c_str());
    const std::size_t key = CsvSettings::Find(name.c_str());
    if (key == CsvSettings::Count)
        return {};
    return VDVariant(CsvSettings::GetText(dialect, key).c_str());
}

bool Put(const VDVariant& value, CsvSettings& settings, std::string& why)
{
    VDString name;
    VDString text;
    value[0].GetString(&name);
    const std::size_t key = CsvSettings::Find(name.c_str());
    if (key == CsvSettings::Count)
        why = "A table as text can't hold the value " + name.Str() + ".";
    else if (!value[1].ConvertToString(&text))
        why = name.Str() + " is a text.";
    else if (!settings.Put(key, text.Str()))
        why = name.Str() + " can't be " + text.Str() + ".";
    return why.empty();
}

bool AddMetaData(LQChannelMapper& mapper, const CsvDialect& dialect)
{
    if (dialect.comment.empty())
        return true;
    Z4PropertySet* const set = mapper.AdoptMetaDataSet("ExtraDetails", nullptr, LQChannelMapper::GLOBAL);
    if (set == nullptr)
        return false;
    set->AddString(CsvSettings::GetName(CsvSettings::Comment), dialect.comment.c_str());
    return true;
}

}  // namespace CsvFormatValues
