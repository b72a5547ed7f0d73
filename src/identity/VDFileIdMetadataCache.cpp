// The metadata that a file id keeps in memory.

#include "VDFileId.h"

#include "daxlib/VDMetaDataReader.h"

namespace {

VDStringArray CopyOf(const VDStringArray* list)
{
    return list != nullptr ? *list : VDStringArray();
}

}  // namespace

int VDFileId::SetMetadataKeywords(VDStringArray* global, VDStringArray* globalTypes, VDStringArray* channel,
                                  VDStringArray* channelTypes, char load)
{
    if (!record_.metadata)
        record_.metadata.emplace();
    VDFileIdMetadata::KeywordList globalList = {CopyOf(global), CopyOf(globalTypes)};
    VDFileIdMetadata::KeywordList channelList = {CopyOf(channel), CopyOf(channelTypes)};
    if (record_.metadata->AreKeywords(globalList, channelList))
        return 1;
    const auto hasTypes = [](const VDFileIdMetadata::KeywordList& list) {
        return list.keywords.GetSize() == list.types.GetSize();
    };
    if (hasTypes(globalList) && hasTypes(channelList))
        record_.metadata->SetKeywords(std::move(globalList), std::move(channelList));
    return load != 0 ? LoadMetadata() : 1;
}

int VDFileId::HasMetadata(char* hasKeywords, char* loaded) const
{
    const bool has = record_.metadata && record_.metadata->HasKeywords();
    VFGiveTwo(hasKeywords, has, loaded, has && record_.metadata->IsLoaded());
    return 1;
}

int VDFileId::GetMetadataKeywords(VDStringArray* global, VDStringArray* channel) const
{
    if (!record_.metadata)
        return 0;
    return VFGiveTwo(global, record_.metadata->GetGlobalKeywords(), channel, record_.metadata->GetChannelKeywords());
}

int VDFileId::LoadMetadata()
{
    if (!record_.metadata || !record_.metadata->HasKeywords())
        return 0;
    record_.metadata->DropValues();
    VDMetaDataReader reader;
    LQChannelMapper* mapper = nullptr;
    if (!reader.SetFileId(this) || !reader.GetMetaData(&mapper) || mapper == nullptr || !record_.metadata)
        return 0;
    record_.metadata->Load(*mapper);
    return 1;
}

int VDFileId::GetMetadata(int channel, const char* keyword, VDVariant* value)
{
    if (value == nullptr || keyword == nullptr || !record_.metadata)
        return 0;
    if (!record_.metadata->IsLoaded())
        if (LoadMetadata() == 0)
            return 0;
    const VDVariant* const found = record_.metadata->GetValue(channel, keyword);
    return found != nullptr ? VFGive(value, *found) : 0;
}

int VDFileId::ClearMetadata(char keepKeywords)
{
    if (keepKeywords != 0)
        DropMetadataValues();
    else
        record_.metadata.reset();
    return 1;
}

void VDFileId::DropMetadataValues()
{
    if (record_.metadata)
        record_.metadata->DropValues();
}
