#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDVariant.h"

/// Answers what a FileFormat plug-in is asked of a type whose tests are a file each.
/// @param arguments  a list that begins with file id and sub id
/// @param find       gives the record of such a type, which has a keyword, or null
/// @param extension  gives the default extension of a record
template <class Find, class Extension>
void VFAnswerFileType(const char* key, const VDVariant& arguments, VDVariant* answer, Find&& find, Extension&& extension)
{
    long fileId = 0;
    long subId = 0;
    arguments[0].GetLong(&fileId);
    arguments[1].GetLong(&subId);
    const auto* const type = find(static_cast<int>(fileId), static_cast<int>(subId));
    const VDString asked(key);
    answer->Clear();
    if (type == nullptr)
        return;
    if (asked == "NameForm")
        answer->AppendItem(VDVariant(static_cast<long>(VTNameFormFile)));
    else if (asked == "FormatKeyword")
        answer->AppendItem(VDVariant(type->keyword));
    else if (asked == "DefaultExtension")
        answer->AppendItem(VDVariant(extension(*type)));
}
