#include "ItemTypes.h"

#include "ToolError.h"

#include <array>

namespace {

struct TypeWord
{
    Z4PropertyType type;
    const char* word;
};

constexpr std::array<TypeWord, 13> VVTypeWords = {{{Z4TypeBoolean, "boolean"},
                                                   {Z4TypeUnsChar, "uint8"},
                                                   {Z4TypeUnsShort, "uint16"},
                                                   {Z4TypeShort, "int16"},
                                                   {Z4TypeUnsLong, "uint32"},
                                                   {Z4TypeLong, "int32"},
                                                   {Z4TypeUnsHuge, "uint64"},
                                                   {Z4TypeHuge, "int64"},
                                                   {Z4TypeFloat, "float"},
                                                   {Z4TypeDouble, "double"},
                                                   {Z4TypeString, "string"},
                                                   {Z4TypeText, "text"},
                                                   {Z4TypeDoubleList, "double list"}}};

}  // namespace

const char* VFItemTypeWord(Z4PropertyType type)
{
    for (const TypeWord& each : VVTypeWords)
        if (each.type == type)
            return each.word;
    return "unknown";
}

Z4PropertyType VFItemType(const std::string& word)
{
    for (const TypeWord& each : VVTypeWords)
        if (VDString(each.word).CompareNoCase(word.c_str()) == 0)
            return each.type;
    VFFail(DaxToolError::Usage, "'" + word + "' is no type of an item; these are: " + VFItemTypeWords(), "dax");
}

std::string VFItemTypeWords()
{
    std::string words;
    for (const TypeWord& each : VVTypeWords)
        words += (words.empty() ? "" : ", ") + std::string(each.word);
    return words;
}
