#include "VDXYAcc.h"

#include "XYValues.h"
#include "frame/DaxErrorCodes.h"

using namespace DaxMultiColumn;

namespace {

constexpr std::int64_t SmallDataSetLimit = 2'000'000'000;

/// Values that are converted at a time: what stays in the processor's cache.
constexpr std::int64_t ConvertedBlock = 4096;

}  // namespace

bool VDXYAcc::CutRange(VDXYPlace place, std::int64_t first, std::int64_t* count, const char* routine)
{
    if (first < 1)
        return core_.Report(place.channel, DaxError::InvalidPoint, routine);
    *count = std::clamp<std::int64_t>(*count, 0, std::max<std::int64_t>(RowsOf(place) - first + 1, 0));
    return true;
}

bool VDXYAcc::GetDataF(VDXYPlace place, std::int64_t first, std::int64_t count, std::int64_t* numRead, float* values)
{
    constexpr const char* routine = "GetDataF";
    if (!CheckPlace(place, routine))
        return false;
    const int type = ColumnOf(place).type;
    if (!DaxColumnType::IsNumeric(type))
        return core_.Report(place.channel, DaxError::NotNumericColumn, routine);
    const std::int64_t asked = count;
    if (!CutRange(place, first, &count, routine))
        return false;
    if (numRead != nullptr)
        *numRead = count;
    else if (count < asked)
        return core_.Report(place.channel, DaxError::EndOfFile, routine);
    if (count == 0)
        return true;
    if (type == DaxColumnType::Float)
        return core_.Call(routine, [&] {
            return Plugin().GetDataF(core_.GetInstance(), place.channel, place.dataSet, place.column, first, count, values);
        });
    for (std::int64_t done = 0; done < count; done += ConvertedBlock) {
        const std::int64_t some = std::min(ConvertedBlock, count - done);
        if (!Fetch(place, first + done, some, &block_))
            return false;
        if (!VFToFloats(block_, some, values + done))
            return core_.Report(place.channel, DaxError::VariantData, routine);
    }
    return true;
}

bool VDXYAcc::GetData(VDXYPlace place, std::int64_t first, std::int64_t count, VDVariant* values)
{
    constexpr const char* routine = "GetData";
    return CheckPlace(place, routine) && CutRange(place, first, &count, routine) && Fetch(place, first, count, values);
}

/// Reads a range that was checked.
bool VDXYAcc::Fetch(VDXYPlace place, std::int64_t first, std::int64_t count, VDVariant* values)
{
    constexpr const char* routine = "GetData";
    const int bufferType = DaxColumnType::BufferType(ColumnOf(place).type);
    if (bufferType == VTVariantNull)
        values->Clear();
    else if (!values->FitBuffer(bufferType, count))
        return core_.Report(place.channel, DaxError::OutOfMemory, routine);
    if (count == 0)
        return true;
    if (!core_.Call(routine, [&] {
            return Plugin().GetData(core_.GetInstance(), place.channel, place.dataSet, place.column, first, count, values);
        }))
        return false;
    return values->GetBufferSize() >= count || core_.Report(place.channel, DaxError::VariantData, routine);
}

bool VDXYAcc::GetDataElement(VDXYPlace place, std::int64_t row, VDVariant* value)
{
    constexpr const char* routine = "GetDataElement";
    value->Clear();
    if (!CheckPlace(place, routine))
        return false;
    if (row < 1)
        return core_.Report(place.channel, DaxError::InvalidPoint, routine);
    if (row > RowsOf(place))
        return core_.Report(place.channel, DaxError::EndOfFile, routine);
    return core_.Call(routine, [&] {
        return Plugin().GetDataElement(core_.GetInstance(), place.channel, place.dataSet, place.column, row, value);
    });
}

bool VDXYAcc::CheckPut(VDXYPlace place, std::int64_t first, std::int64_t count, std::int64_t* last, const char* routine)
{
    if (first < 1)
        return core_.Report(place.channel, DaxError::InvalidPoint, routine);
    char extendable = 0;
    char large = 0;
    if (!core_.GetCapability(Extendable, &extendable) || !core_.GetCapability(LargeDataSets, &large))
        return false;
    constexpr std::int64_t maxRow = std::numeric_limits<std::int64_t>::max();
    *last = count - 1 > maxRow - first ? maxRow : first + count - 1;
    if (!extendable && *last > RowsOf(place))
        return core_.Report(place.channel, DaxError::CannotExtend, routine);
    return large || *last <= SmallDataSetLimit || core_.Report(place.channel, DaxError::TooManyPoints, routine);
}

/// The steps that all ways of writing values share around the call into the plug-in.
template <class Function>
bool VDXYAcc::Put(VDXYPlace place, std::int64_t first, std::int64_t count, const char* routine, Function&& function)
{
    if (!CheckPlace(place, routine) || !core_.CheckWritable(routine))
        return false;
    if (count < 1)
        return true;
    std::int64_t last = 0;
    if (!CheckPut(place, first, count, &last, routine))
        return false;
    // A write that fails may have changed something, too.
    channels_[place.channel].limitsValid = false;
    return core_.Call(routine, function) &&
           (last <= RowsOf(place) || SetNumRows(place.channel, place.dataSet, last));
}

bool VDXYAcc::PutDataF(VDXYPlace place, std::int64_t first, std::int64_t count, const float* values)
{
    return Put(place, first, count, "PutDataF", [&] {
        return Plugin().PutDataF(core_.GetInstance(), place.channel, place.dataSet, place.column, first, count, values);
    });
}

bool VDXYAcc::PutData(VDXYPlace place, std::int64_t first, VDVariant* values)
{
    constexpr const char* routine = "PutData";
    if (!values->IsNull() && values->GetType() < VTVariantShortBuffer)
        return CheckPlace(place, routine) && core_.Report(place.channel, DaxError::VariantBuffer, routine);
    return Put(place, first, values->GetBufferSize(), routine, [&] {
        return Plugin().PutData(core_.GetInstance(), place.channel, place.dataSet, place.column, first, values);
    });
}

bool VDXYAcc::PutDataElement(VDXYPlace place, std::int64_t row, VDVariant* value)
{
    return Put(place, row, 1, "PutDataElement", [&] {
        return Plugin().PutDataElement(core_.GetInstance(), place.channel, place.dataSet, place.column, row, value);
    });
}

bool VDXYAcc::PutStatusWordData(VDXYPlace place, std::int64_t first, std::int64_t count, const std::uint16_t* words)
{
    constexpr const char* routine = "PutStatusWordData";
    if (!CheckPlace(place, routine) || !core_.CheckWritable(routine))
        return false;
    if (count < 1)
        return true;
    std::int64_t last = 0;
    // The limits stay: they are those of the values.
    return CheckPut(place, first, count, &last, routine) && core_.Call(routine, [&] {
        return Plugin().PutStatusWordData(core_.GetInstance(), place.channel, place.dataSet, place.column, first, count, words);
    }) && (last <= RowsOf(place) || SetNumRows(place.channel, place.dataSet, last));
}
