#include "MapperCodec.h"

#include "vdarchive/Z4PropertyCodec.h"

namespace {

constexpr std::size_t SmallestSetBytes = 8;
constexpr std::size_t SmallestChannelBytes = 16;

void PutSets(Z4ByteWriter& writer, const LQChannelMapper& mapper, int index)
{
    const int count = mapper.GetMetaDataSetCount(index);
    writer.Put(static_cast<std::uint32_t>(count));
    for (int i = 0; i < count; ++i)
        VFPutPropertySet(writer, *mapper.GetMetaDataSet(i, index));
}

void GetSets(Z4ByteReader& reader, LQChannelMapper& mapper, int index)
{
    const std::uint32_t count = reader.GetCount(SmallestSetBytes);
    for (std::uint32_t i = 0; i < count && reader.IsGood(); ++i) {
        bool created = false;
        Z4PropertySet* const set = mapper.AdoptMetaDataSet(reader.GetText(), &created, index);
        if (!created || !VFGetProperties(reader, *set))
            reader.Fail();
    }
}

}  // namespace

void VFPutMapper(Z4ByteWriter& writer, const LQChannelMapper& mapper)
{
    PutSets(writer, mapper, LQChannelMapper::GLOBAL);
    writer.Put(static_cast<std::uint32_t>(mapper.GetChannelCount()));
    for (int i = 0; i < mapper.GetChannelCount(); ++i) {
        const LQChannelEntry& channel = *mapper.GetChannel(i);
        writer.Put(static_cast<std::int64_t>(channel.GetNumber()));
        writer.PutText(channel.GetTitle().View());
        PutSets(writer, mapper, i);
    }
}

bool VFGetMapper(Z4ByteReader& reader, LQChannelMapper& mapper)
{
    mapper.Clear();
    GetSets(reader, mapper, LQChannelMapper::GLOBAL);
    const std::uint32_t count = reader.GetCount(SmallestChannelBytes);
    for (std::uint32_t i = 0; i < count && reader.IsGood(); ++i) {
        LQChannelEntry* const channel = mapper.Append();
        const auto number = static_cast<long>(reader.Get<std::int64_t>());
        mapper.SetChanTitle(reader.GetText(), channel);
        if (number >= 0 && !mapper.SetChannelNumber(number, channel))
            reader.Fail();
        GetSets(reader, mapper, channel->GetIndex());
    }
    return reader.IsGood();
}
