#include "VDXYAcc.h"

#include "frame/VFDaxReport.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQAttributeNames.h"
#include "vdstore/LQChannelMapper.h"

#include <string>
#include <unordered_set>

using namespace DaxMultiColumn;

// What describes the tables: read once, when the file is opened, and given out from here.

namespace {

VDString VFNumbered(const char* format, int index)
{
    VDString text;
    text.FormatRuntime(format, index + 1);
    return text;
}

/// Keywords are compared without regard to case.
std::string VFFolded(VDString keyword)
{
    keyword.MakeLower();
    return keyword.Str();
}

/// Each column that the file has no keyword for gets one that no other has.
void VFGiveKeywords(VDArray<VDXYFileCol>& columns)
{
    std::unordered_set<std::string> taken;
    for (const VDXYFileCol& column : columns)
        if (!column.keyword.IsEmpty())
            taken.insert(VFFolded(column.keyword));
    for (int index = 0; index < columns.GetSize(); ++index) {
        VDString& keyword = columns[index].keyword;
        if (!keyword.IsEmpty())
            continue;
        keyword = "Col";
        do
            keyword += VFNumbered("_%d", index);
        while (!taken.insert(VFFolded(keyword)).second);
    }
}

}  // namespace

bool VDXYAcc::SetChannelCount(int count)
{
    channels_.Clear();
    channels_.SetSize(count);
    return true;
}

bool VDXYAcc::FinishOpen(bool created)
{
    for (int channel = 0; !created && channel < Count(); ++channel)
        if (!LoadHeader(channel))
            return false;
    return true;
}

bool VDXYAcc::LoadHeader(int channel)
{
    int count = 0;
    if (!GetPluginCount(channel, NumDataSets, &count))
        return false;
    for (int dataSet = 0; dataSet < count; ++dataSet) {
        VDXYFileDataSet record;
        if (!LoadDataSet(channel, dataSet, &record))
            return false;
        channels_[channel].dataSets.AppendItem(std::move(record));
    }
    if (!LoadColumns(channel))
        return false;
    VFGiveKeywords(channels_[channel].columns);
    return true;
}

bool VDXYAcc::LoadDataSet(int channel, int dataSet, VDXYFileDataSet* record)
{
    const VDAccessSelector selector(channel, dataSet);
    if (!core_.GetHuge(selector, NumRows, &record->rows) ||
        !GetPluginText(selector, DaxMultiColumn::DataSetTitle, &record->title))
        return false;
    record->rows = std::max<std::int64_t>(record->rows, 0);
    if (record->title.IsEmpty())
        record->title = VFNumbered("Dataset %d", dataSet);
    return true;
}

bool VDXYAcc::LoadColumns(int channel)
{
    int count = 0;
    channels_[channel].columns.Clear();
    if (!GetPluginCount(channel, NumCols, &count))
        return false;
    for (int column = 0; column < count; ++column) {
        VDXYFileCol record;
        if (!LoadColumn(channel, column, &record))
            return false;
        channels_[channel].columns.AppendItem(std::move(record));
    }
    return true;
}

bool VDXYAcc::LoadColumn(int channel, int column, VDXYFileCol* record)
{
    const VDAccessSelector selector(channel, -1, column);
    long type = 0;
    if (!core_.GetLong(selector, ColType, &type) || !GetPluginText(selector, ColTitle, &record->title) ||
        !GetPluginText(selector, ColUnits, &record->units) || !GetPluginText(selector, ColKeyword, &record->keyword))
        return false;
    record->type = static_cast<int>(type);
    if (record->title.IsEmpty())
        record->title = VFNumbered("Column %d", column);
    return true;
}

bool VDXYAcc::GetPluginCount(int channel, int key, int* count)
{
    long value = 0;
    if (!core_.GetLong(channel, key, &value))
        return false;
    *count = static_cast<int>(std::clamp<long>(value, 0, std::numeric_limits<int>::max()));
    return true;
}

bool VDXYAcc::GetPluginText(const VDAccessSelector& selector, int key, VDString* text)
{
    VDVariant value;
    if (!core_.GetValue(selector, key, &value))
        return false;
    value.GetString(text);
    return true;
}

bool VDXYAcc::CheckChannel(int channel, const char* routine)
{
    return core_.CheckFileOpen(routine) && core_.CheckChannel(channel, false, routine);
}

bool VDXYAcc::CheckDataSet(int channel, int dataSet, bool allowAll, const char* routine)
{
    if (!CheckChannel(channel, routine))
        return false;
    const auto& dataSets = channels_[channel].dataSets;
    if (dataSets.IsEmpty())
        return core_.Report(channel, DaxError::NoDataSets, routine);
    return dataSets.IsIndex(dataSet) || (allowAll && IsAllSets(dataSet)) ||
           core_.Report(channel, DaxError::DataSetIndexRange, routine);
}

bool VDXYAcc::CheckColumn(int channel, int column, const char* routine)
{
    if (!CheckChannel(channel, routine))
        return false;
    const auto& columns = channels_[channel].columns;
    if (columns.IsEmpty())
        return core_.Report(channel, DaxError::NoColumns, routine);
    return columns.IsIndex(column) || core_.Report(channel, DaxError::ColumnIndexRange, routine);
}

bool VDXYAcc::CheckPlace(VDXYPlace place, const char* routine)
{
    return CheckDataSet(place.channel, place.dataSet, false, routine) && CheckColumn(place.channel, place.column, routine);
}

bool VDXYAcc::GetNumDataSets(int channel, int* count)
{
    *count = 0;
    if (!CheckChannel(channel, "GetNumDataSets"))
        return false;
    *count = channels_[channel].dataSets.GetSize();
    return true;
}

bool VDXYAcc::GetNumCols(int channel, int* count)
{
    *count = 0;
    if (!CheckChannel(channel, "GetNumCols"))
        return false;
    *count = channels_[channel].columns.GetSize();
    return true;
}

bool VDXYAcc::GetNumRows(int channel, int dataSet, std::int64_t* rows)
{
    *rows = 0;
    if (!CheckDataSet(channel, dataSet, false, "GetNumRows"))
        return false;
    *rows = channels_[channel].dataSets[dataSet].rows;
    return true;
}

bool VDXYAcc::GetDataSetTitle(int channel, int dataSet, VDString* title)
{
    if (!CheckDataSet(channel, dataSet, false, "GetDataSetTitle"))
        return false;
    *title = channels_[channel].dataSets[dataSet].title;
    return true;
}

bool VDXYAcc::SetDataSetTitle(int channel, int dataSet, const char* title)
{
    constexpr const char* routine = "SetDataSetTitle";
    return CheckDataSet(channel, dataSet, false, routine) && core_.CheckWritable(routine) &&
           core_.PutValue({channel, dataSet}, DaxMultiColumn::DataSetTitle, VDVariant(title));
}

bool VDXYAcc::AppendDataSet(int channel)
{
    constexpr const char* routine = "AppendDataSet";
    if (!CheckChannel(channel, routine) || !core_.CheckWritable(routine))
        return false;
    if (!core_.Call(routine, [&] { return Plugin().AppendDataSet(core_.GetInstance(), channel); }))
        return false;
    VDXYFileChan& record = channels_[channel];
    VDXYFileDataSet dataSet;
    if (!LoadDataSet(channel, record.dataSets.GetSize(), &dataSet))
        return false;
    record.limitsValid = false;
    const int index = record.dataSets.AppendItem(std::move(dataSet));
    // The columns may have come with it.
    return index > 0 || LoadColumns(channel);
}

bool VDXYAcc::SetNumRows(int channel, int dataSet, std::int64_t rows)
{
    constexpr const char* routine = "SetNumRows";
    if (!core_.CheckFileOpen(routine) || !core_.CheckWritable(routine) || !core_.CheckChannel(channel, true, routine))
        return false;
    const bool all = static_cast<std::uint32_t>(channel) == DaxChannel::All;
    const int first = all ? 0 : channel;
    const int last = all ? Count() - 1 : channel;
    for (int each = first; each <= last; ++each)
        if (!CheckDataSet(each, dataSet, false, routine))
            return false;
    if (rows < 0)
        return core_.Report(first, DaxError::InvalidPoint, routine);
    char extendable = 0;
    char common = 0;
    if (!core_.GetCapability(Extendable, &extendable) || !core_.GetCapability(CommonRows, &common))
        return false;
    const std::int64_t present = channels_[first].dataSets[dataSet].rows;
    if (!extendable && present != 0 && present != rows)
        return core_.Report(first, DaxError::CannotExtend, routine);
    for (int each = first; each <= last; ++each)
        if (!core_.PutValue({each, dataSet}, NumRows, VDVariant::FromHuge(rows)))
            return false;
    for (int each = common ? 0 : first; each <= (common ? Count() - 1 : last); ++each) {
        channels_[each].dataSets[dataSet].rows = rows;
        channels_[each].limitsValid = false;
    }
    return true;
}

bool VDXYAcc::GetColType(int channel, int column, int* type)
{
    if (!CheckColumn(channel, column, "GetColType"))
        return false;
    *type = channels_[channel].columns[column].type;
    return true;
}

bool VDXYAcc::GetColText(int channel, int column, VDString VDXYFileCol::*text, VDString* out, const char* routine)
{
    if (!CheckColumn(channel, column, routine))
        return false;
    *out = channels_[channel].columns[column].*text;
    return true;
}

bool VDXYAcc::SetColText(int channel, int column, int key, const char* text, const char* routine)
{
    return CheckColumn(channel, column, routine) && core_.CheckWritable(routine) &&
           core_.PutValue({channel, -1, column}, key, VDVariant(text));
}

bool VDXYAcc::GetMaxLength(int key, int* length, const char* routine)
{
    long longest = 0;
    if (!core_.CheckFileOpen(routine) || !core_.GetLong(DaxChannel::WholeFile, key, &longest))
        return false;
    *length = static_cast<int>(std::clamp<long>(longest, 0, std::numeric_limits<int>::max()));
    return true;
}

bool VDXYAcc::GetColEnumOptions(int channel, int column, VDArrayWithSort<long>* values, VDStringArray* texts)
{
    constexpr const char* routine = "GetColEnumOptions";
    values->Clear();
    texts->Clear();
    VDVariant list;
    if (!CheckColumn(channel, column, routine) || !core_.GetValue({channel, -1, column}, EnumOptions, &list))
        return false;
    const auto numbers = list[0].GetBuffer<std::int32_t>();
    const auto names = list[1].GetBuffer<VDString>();
    if (list.GetNumItems() != 2 || list[0].GetType() != VTVariantLongBuffer || list[1].GetType() != VTVariantStringBuffer ||
        numbers.size() != names.size())
        return core_.Report(channel, DaxError::EnumOptions, routine);
    for (std::size_t option = 0; option < numbers.size(); ++option) {
        values->AppendItem(numbers[option]);
        texts->AppendItem(names[option]);
    }
    return true;
}

bool VDXYAcc::SetColEnumOptions(int channel, int column, const VDArrayWithSort<long>* values, const VDStringArray* texts)
{
    constexpr const char* routine = "SetColEnumOptions";
    if (!CheckColumn(channel, column, routine) || !core_.CheckWritable(routine))
        return false;
    VDVariant numbers;
    VDVariant names;
    bool fit = values->GetSize() == texts->GetSize();
    if (!numbers.SetBufferSizeAndAllocate(VTVariantLongBuffer, values->GetSize()) ||
        !names.SetBufferSizeAndAllocate(VTVariantStringBuffer, texts->GetSize()))
        return core_.Report(channel, DaxError::OutOfMemory, routine);
    for (int option = 0; fit && option < values->GetSize(); ++option)
        fit = numbers.SetLongAt(option, (*values)[option]) && names.SetStringAt(option, (*texts)[option]);
    if (!fit)
        return core_.Report(channel, DaxError::InvalidArguments, routine);
    return core_.PutValue({channel, -1, column}, EnumOptions, VDVariant::FromList({numbers, names}));
}

template <auto EntryPoint>
bool VDXYAcc::AppendColumn(int channel, int type, const char* routine)
{
    if (!core_.Call(routine, [&] { return (Plugin().*EntryPoint)(core_.GetInstance(), channel, type); }))
        return false;
    VDXYFileChan& record = channels_[channel];
    VDXYFileCol column;
    if (!LoadColumn(channel, record.columns.GetSize(), &column))
        return false;
    record.columns.AppendItem(std::move(column));
    record.limitsValid = false;
    return true;
}

bool VDXYAcc::AppendCol(int channel, int type)
{
    constexpr const char* routine = "AppendCol";
    if (!CheckChannel(channel, routine) || !core_.CheckWritable(routine))
        return false;
    char enumerations = 0;
    if (type == DaxColumnType::Enumeration && !core_.GetCapability(Enumerations, &enumerations))
        return false;
    if (type == DaxColumnType::Enumeration && !enumerations)
        return core_.Report(channel, DaxError::NoEnumColumns, routine);
    return AppendColumn<&VDXYAccEntryPoints::AppendCol>(channel, type, routine);
}

bool VDXYAcc::AppendColWithStatus(int channel, int type)
{
    constexpr const char* routine = "AppendColWithStatus";
    return CheckChannel(channel, routine) && core_.CheckWritable(routine) &&
           AppendColumn<&VDXYAccEntryPoints::AppendColWithStatus>(channel, type, routine);
}

bool VDXYAcc::AddHeaderAttributes(LQChannelMapper& mapper)
{
    if (mapper.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, LQChannelMapper::GLOBAL) == nullptr)
        return false;
    for (int channel = 0; channel < Count(); ++channel) {
        Z4PropertySet* const set = mapper.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, channel);
        if (set == nullptr)
            return false;
        const VDXYFileChan& record = channels_[channel];
        set->PutLong(LQAttribute::NumCols, record.columns.GetSize());
        set->PutLong(LQAttribute::NumDataSets, record.dataSets.GetSize());
        for (int dataSet = 0; dataSet < record.dataSets.GetSize(); ++dataSet)
            set->PutHuge(VFNumbered(LQAttribute::NumRowsOfDataSet, dataSet), record.dataSets[dataSet].rows);
        VDString title;
        if (core_.GetChanTitle(channel, &title))
            set->PutString(LQAttribute::ChanTitle, title);
    }
    return true;
}
