#include "VDFamosPairs.h"

#include "FamosFormat.h"
#include "frame/VFDaxReport.h"

#include "daxlib/FID.h"
#include "daxlib/MultiColumnPlugin.h"

#include <algorithm>

namespace {

constexpr long VVBlockRows = 16384;
constexpr int VVRead = 1;

bool Fail(int code, const char* routine, int chain = 0)
{
    return VFDaxReport(code, routine, {.chain = chain}) != 0;
}

}  // namespace

bool VDFamosPairs::SetId(VDFileId* id, char create)
{
    int fileId = 0;
    int subId = 0;
    Close();
    if (!FIDGetFileId(id, &fileId, &subId) || !FIDAddRef(id))
        return false;
    fileId_.Reset(id);
    if (fileId != FamosFormat::FileId || subId != FamosFormat::Pairs)
        return Fail(DaxError::FamosFileId, "VDFamosPairs::SetId");
    return create == 0 || Fail(DaxError::FamosWrite, "VDFamosPairs::SetId");
}

bool VDFamosPairs::Open(int mode)
{
    Close();
    int count = 0;
    if (mode != VVRead)
        return Fail(DaxError::FamosWrite, "VDFamosPairs::Open");
    bool good = fileId_ && FIDGetNumChans(fileId_.Get(), &count) != 0;
    for (int index = 0; good && index < count; ++index)
        good = AddPair(index);
    if (!good) {
        Close();
        return Fail(DaxError::FamosFileOpen, "VDFamosPairs::Open", 1);
    }
    if (const std::string damage = files_.GetDamage(); !damage.empty())
        damage_.insert(0, damage + (damage_.empty() ? "" : " "));
    return true;
}

bool VDFamosPairs::Close()
{
    pairs_.clear();
    files_.Clear();
    damage_.clear();
    mapper_.reset();
    return true;
}

/// A channel of the id counts pairs, of which each is two channels of the recording: y and x.
bool VDFamosPairs::AddPair(int index)
{
    Pair pair{};
    std::size_t channel = 0;
    int number = 0;
    if (!files_.FindChannel(fileId_.Get(), index, &pair.file, &channel) || !FIDGetChanNumber(fileId_.Get(), index, &number))
        return false;
    const VDFamosRecording& recording = files_.Get(pair.file);
    if (channel >= recording.GetChannelCount() / 2)
        return Fail(DaxError::FamosChannelRange, "VDFamosPairs::Open");
    for (std::size_t column = 0; column < 2; ++column) {
        const std::size_t source = 2 * channel + 1 - column;
        pair.columns[column] = {source, recording.GetLayout(source, &damage_),
                                recording.GetDataType(source) == DaxDataType::Float};
    }
    const std::int64_t x = pair.columns[0].layout.count;
    const std::int64_t y = pair.columns[1].layout.count;
    pair.number = number;
    pair.rows = std::min(x, y);
    if (x != y)
        damage_ += (damage_.empty() ? "" : " ") + std::string("\"") + recording.GetTitle(2 * channel).Str() + "\" has " +
                   std::to_string(y) + " values for " + std::to_string(x) + " of x.";
    pairs_.push_back(std::move(pair));
    return true;
}

bool VDFamosPairs::GetCapability(int capability)
{
    using namespace DaxMultiColumn;
    return capability == LargeDataSets || capability == ChannelTitles || capability == KeepsMetaData ||
           capability == NoSerialisation;
}

const VDFamosPairs::Pair* VDFamosPairs::FindPair(long channel) const
{
    return channel >= 0 && channel < static_cast<long>(pairs_.size()) ? &pairs_[static_cast<std::size_t>(channel)] : nullptr;
}

VDVariant VDFamosPairs::GetChannelValue(const Pair& pair, long column, int key) const
{
    using namespace DaxMultiColumn;
    const VDFamosRecording& recording = files_.Get(pair.file);
    const Column& chosen = pair.columns[column == 1 ? 1 : 0];
    switch (key) {
    case NumDataSets:
        return VDVariant(1L);
    case NumCols:
        return VDVariant(2L);
    case NumRows:
        return VDVariant::FromHuge(pair.rows);
    case ColType:
        return VDVariant(static_cast<long>(chosen.isFloat ? DaxColumnType::Float : DaxColumnType::Double));
    case ColTitle:
        return VDVariant(recording.GetTitle(chosen.channel));
    case ColUnits:
        return VDVariant(recording.GetUnits(chosen.channel));
    case ColKeyword:
        return VDVariant(column == 1 ? "Y" : "X");
    case ChanTitle:
        return VDVariant(recording.GetTitle(pair.columns[1].channel));
    case ActualChanNumber:
        return VDVariant(pair.number);
    case StatusWordEnabled:
        return VDVariant(false);
    default:
        return {};
    }
}

bool VDFamosPairs::GetValue(long channel, long column, int key, VDVariant* value)
{
    using namespace DaxMultiColumn;
    VDVariant answer;
    if (key == FormatSpecific) {
        GetFormatSpecific(value);
        return true;
    }
    if (key == MaxTitle || key == MaxUnits)
        answer = VDVariant(0L);
    else if (key == BufferSize)
        answer = VDVariant(VVBlockRows);
    else if (const Pair* const pair = FindPair(channel); pair != nullptr)
        answer = GetChannelValue(*pair, column, key);
    if (!answer.IsNull())
        *value = std::move(answer);
    return true;
}

void VDFamosPairs::GetFormatSpecific(VDVariant* list) const
{
    VDString name;
    (*list)[0].GetString(&name);
    if (name.CompareNoCase(DaxFormatValue::Damage) == 0)
        list->AppendItem(VDVariant(damage_.c_str()));
}

template <class Value>
bool VDFamosPairs::Read(long channel, long column, std::int64_t first, std::int64_t count, Value* values)
{
    constexpr const char* routine = "VDFamosPairs::GetData";
    const Pair* const pair = FindPair(channel);
    if (pair == nullptr || column < 0 || column > 1)
        return Fail(DaxError::FamosChannelRange, routine);
    if (first < 1 || count < 0 || count > pair->rows - (first - 1))
        return Fail(DaxError::FamosReadPastEnd, routine);
    return files_.Read(pair->file, pair->columns[column].layout, first - 1, count, values) ||
           Fail(DaxError::FamosRead, routine, 1);
}

bool VDFamosPairs::GetData(long channel, long column, std::int64_t first, std::int64_t count, float* values)
{
    return Read(channel, column, first, count, values);
}

bool VDFamosPairs::GetData(long channel, long column, std::int64_t first, std::int64_t count, VDVariant* values)
{
    const auto floats = values->GetBuffer<float>();
    const auto doubles = values->GetBuffer<double>();
    const auto room = static_cast<std::int64_t>(std::max(floats.size(), doubles.size()));
    if (count > room)
        return Fail(DaxError::FamosReadPastEnd, "VDFamosPairs::GetData");
    return floats.empty() ? Read(channel, column, first, count, doubles.data())
                          : Read(channel, column, first, count, floats.data());
}

bool VDFamosPairs::GetElement(long channel, long column, std::int64_t row, VDVariant* value)
{
    double number = 0;
    if (!Read(channel, column, row, 1, &number))
        return false;
    *value = FindPair(channel)->columns[column].isFloat ? VDVariant(static_cast<float>(number)) : VDVariant(number);
    return true;
}

bool VDFamosPairs::LoadMetaData(LQChannelMapper** mapper)
{
    if (mapper_ == nullptr) {
        auto made = std::make_unique<LQChannelMapper>(nullptr);
        for (std::size_t file = 0; file < files_.GetCount(); ++file)
            files_.Get(file).AddTo(*made);
        for (const Pair& pair : pairs_) {
            const int index = made->Append()->GetIndex();
            const VDFamosRecording& recording = files_.Get(pair.file);
            made->SetChannelNumber(pair.number, index);
            made->SetChanTitle(recording.GetTitle(pair.columns[1].channel), index);
            recording.AddChannelTo(*made, index, pair.columns[1].channel, pair.columns[1].layout);
        }
        mapper_ = std::move(made);
    }
    *mapper = mapper_.get();
    return true;
}
