#include "VDXYAcc.h"

#include "frame/DaxErrorCodes.h"

using namespace DaxMultiColumn;

// Status words: 16 bits that go with each value of some columns. What they say is the plug-in's.

bool VDXYAcc::GetStatusWordEnabled(VDXYPlace place, char* enabled)
{
    constexpr const char* routine = "GetStatusWordEnabled";
    *enabled = 0;
    VDVariant answer;
    bool flag = false;
    if (!CheckPlace(place, routine) || !core_.GetValue(SelectorOf(place), StatusWordEnabled, &answer))
        return false;
    if (!answer.GetBoolean(&flag))
        return core_.Report(place.channel, DaxError::HeaderValue, routine);
    *enabled = flag ? 1 : 0;
    return true;
}

bool VDXYAcc::GetStatusBitText(VDXYPlace place, int bit, VDString* text)
{
    constexpr const char* routine = "GetStatusBitText";
    VDVariant answer;
    if (!CheckPlace(place, routine) ||
        !core_.GetValue(SelectorOf(place), StatusBitText, &answer, VDVariant(static_cast<long>(bit))))
        return false;
    return answer.GetString(text) || core_.Report(place.channel, DaxError::HeaderValue, routine);
}

bool VDXYAcc::SetStatusBitText(VDXYPlace place, int bit, const char* text)
{
    constexpr const char* routine = "SetStatusBitText";
    VDVariant number;
    number.SetUnsignedLong(static_cast<unsigned>(bit));
    return CheckPlace(place, routine) && core_.CheckWritable(routine) &&
           core_.PutValue(SelectorOf(place), StatusBitText, VDVariant::FromList({number, VDVariant(text)}));
}

/// The steps that all ways of reading status words share around the call into the plug-in.
template <class Function>
bool VDXYAcc::GetStatusRange(VDXYPlace place, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                             const char* routine, Function&& function)
{
    std::int64_t unwanted = 0;
    if (numRead == nullptr)
        numRead = &unwanted;
    *numRead = 0;
    char enabled = 0;
    if (!CheckPlace(place, routine) || !GetStatusWordEnabled(place, &enabled))
        return false;
    if (!enabled)
        return core_.Report(place.channel, DaxError::NoStatusWords, routine);
    if (!CutRange(place, first, &count, routine))
        return false;
    if (count > 0 && !core_.Call(routine, [&] { return function(count); }))
        return false;
    *numRead = count;
    return true;
}

bool VDXYAcc::GetStatusWordBitData(VDXYPlace place, int bit, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                                   char* flags)
{
    return GetStatusRange(place, first, count, numRead, "GetStatusWordBitData", [&](std::int64_t some) {
        return Plugin().GetStatusWordBitData(core_.GetInstance(), place.channel, place.dataSet, place.column, bit, first, some,
                                             flags);
    });
}

bool VDXYAcc::GetStatusWordData(VDXYPlace place, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                                std::uint16_t* words)
{
    return GetStatusRange(place, first, count, numRead, "GetStatusWordData", [&](std::int64_t some) {
        return Plugin().GetStatusWordData(core_.GetInstance(), place.channel, place.dataSet, place.column, first, some, words);
    });
}

bool VDXYAcc::GetDataValidData(VDXYPlace place, std::int64_t first, std::int64_t count, std::int64_t* numRead, char* valid)
{
    return GetStatusRange(place, first, count, numRead, "GetDataValidData", [&](std::int64_t some) {
        return Plugin().GetDataValidData(core_.GetInstance(), place.channel, place.dataSet, place.column, first, some, valid);
    });
}

bool VDXYAcc::GetStatusElement(VDXYPlace place, std::int64_t row, VDVariant* value, char* valid, char* hasStatus,
                               VDStringArray* bitTexts)
{
    *valid = 1;
    *hasStatus = 1;
    char enabled = 0;
    if (!CheckPlace(place, "GetStatusElement") || !GetDataElement(place, row, value) || !GetStatusWordEnabled(place, &enabled))
        return false;
    if (!enabled) {
        *hasStatus = 0;
        return true;
    }
    const auto together = core_.LockInstance();
    std::int64_t numRead = 0;
    char isValid = 0;
    std::uint16_t word = 0;
    if (!GetDataValidData(place, row, 1, &numRead, &isValid) || !GetStatusWordData(place, row, 1, &numRead, &word))
        return false;
    for (int bit = 0; bit < DaxStatusWord::NumBits; ++bit) {
        VDString text;
        if ((word >> bit & 1) == 0)
            continue;
        if (!GetStatusBitText(place, bit, &text))
            return false;
        bitTexts->AppendItem(text);
    }
    *valid = isValid != 0 ? 1 : 0;
    return true;
}
