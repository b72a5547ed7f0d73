#include "CsvDialect.h"

#include "vdbase/VDString.h"

#include <iterator>

namespace {

struct Value
{
    const char* text;   ///< as hosts see it
    const char* other;  ///< what may be put as well
    int code;
};

constexpr Value Separators[] = {{"Comma", ",", ','}, {"Semicolon", ";", ';'}, {"Tab", "\t", '\t'}, {"Blank", " ", ' '}};
constexpr Value Decimals[] = {{"Point", ".", '.'}, {"Comma", ",", ','}};
constexpr Value Headers[] = {{"Yes", "True", 1}, {"No", "False", 0}};
constexpr Value UnitForms[] = {{"No", "False", CsvDialect::NoUnits},
                               {"Line", "Yes", CsvDialect::UnitsLine},
                               {"Brackets", "[]", CsvDialect::UnitsInBrackets}};
constexpr Value Encodings[] = {{"UTF-8", "UTF8", CsvDialect::Utf8},
                               {"UTF-8 with mark", "UTF-8-SIG", CsvDialect::Utf8WithMark},
                               {"Windows-1252", "CP1252", CsvDialect::Windows1252}};
constexpr Value LineEnds[] = {{"LF", "\n", 0}, {"CRLF", "\r\n", 1}, {"CR", "\r", 2}};
constexpr const char* LineEndTexts[] = {"\n", "\r\n", "\r"};

struct Entry
{
    const char* name;
    const Value* values;  ///< null for free text
    std::size_t count;
};

template <std::size_t Size>
constexpr Entry Make(const char* name, const Value (&values)[Size])
{
    return {name, values, Size};
}

constexpr Entry Entries[CsvSettings::Count] = {
    Make("Separator", Separators), Make("DecimalSign", Decimals), Make("Header", Headers), Make("Units", UnitForms),
    Make("Encoding", Encodings),   Make("LineEnd", LineEnds),     {"Comment", nullptr, 0}};

const Value* FindValue(std::size_t key, const std::string& text)
{
    const VDString wanted(text);
    for (std::size_t index = 0; index < Entries[key].count; ++index) {
        const Value& value = Entries[key].values[index];
        if (wanted.CompareNoCase(value.text) == 0 || wanted.CompareNoCase(value.other) == 0)
            return &value;
    }
    return nullptr;
}

int LineEndCode(const std::string& lineEnd)
{
    int code = 0;
    while (code < 2 && lineEnd != LineEndTexts[code])
        ++code;
    return code;
}

int GetCode(const CsvDialect& dialect, std::size_t key)
{
    switch (key) {
    case CsvSettings::Separator:
        return dialect.separator;
    case CsvSettings::DecimalSign:
        return dialect.decimal;
    case CsvSettings::Header:
        return dialect.header;
    case CsvSettings::Units:
        return dialect.units;
    case CsvSettings::Encoding:
        return dialect.encoding;
    default:
        return LineEndCode(dialect.lineEnd);
    }
}

void SetCode(CsvDialect& dialect, std::size_t key, int code)
{
    switch (key) {
    case CsvSettings::Separator:
        dialect.separator = static_cast<char>(code);
        break;
    case CsvSettings::DecimalSign:
        dialect.decimal = static_cast<char>(code);
        break;
    case CsvSettings::Header:
        dialect.header = code != 0;
        break;
    case CsvSettings::Units:
        dialect.units = static_cast<CsvDialect::Units>(code);
        break;
    case CsvSettings::Encoding:
        dialect.encoding = static_cast<CsvDialect::Encoding>(code);
        break;
    default:
        dialect.lineEnd = LineEndTexts[code];
    }
}

}  // namespace

const char* CsvSettings::GetName(std::size_t key)
{
    return Entries[key].name;
}

std::size_t CsvSettings::Find(const char* name)
{
    std::size_t key = 0;
    while (key < Count && VDString(Entries[key].name).CompareNoCase(name) != 0)
        ++key;
    return key;
}

bool CsvSettings::Put(std::size_t key, const std::string& text)
{
    if (Entries[key].values != nullptr && FindValue(key, text) == nullptr)
        return false;
    texts_[key] = text;
    return true;
}

void CsvSettings::ApplyTo(CsvDialect& dialect) const
{
    for (std::size_t key = 0; key < Count; ++key) {
        if (!texts_[key])
            continue;
        if (key == Comment)
            dialect.comment = *texts_[key];
        else
            SetCode(dialect, key, FindValue(key, *texts_[key])->code);
    }
}

std::string CsvSettings::GetText(const CsvDialect& dialect, std::size_t key)
{
    if (key == Comment)
        return dialect.comment;
    const int code = GetCode(dialect, key);
    const Value* value = Entries[key].values;
    while (value->code != code)
        ++value;
    return value->text;
}
