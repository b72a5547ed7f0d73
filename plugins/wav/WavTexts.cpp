#include "WavTexts.h"

#include "vdbase/VDString.h"

#include <sndfile.h>

#include <string_view>

const std::array<WavTexts::Kind, WavTexts::Count> WavTexts::Kinds = {{
    {"Title", SF_STR_TITLE, "INAM"},
    {"Copyright", SF_STR_COPYRIGHT, "ICOP"},
    {"Software", SF_STR_SOFTWARE, "ISFT"},
    {"Artist", SF_STR_ARTIST, "IART"},
    {"Comment", SF_STR_COMMENT, "ICMT"},
    {"Date", SF_STR_DATE, "ICRD"},
    {"Album", SF_STR_ALBUM, "IPRD"},
    {"License", SF_STR_LICENSE, nullptr},
    {"TrackNumber", SF_STR_TRACKNUMBER, "ITRK"},
    {"Genre", SF_STR_GENRE, "IGNR"},
}};

namespace {

std::string Chunk(std::string_view id, std::string body)
{
    std::string chunk(id);
    for (int shift = 0; shift < 32; shift += 8)
        chunk += static_cast<char>(body.size() >> shift);
    if (body.size() % 2 != 0)
        body += '\0';
    return chunk + body;
}

}  // namespace

std::size_t WavTexts::Find(const char* name)
{
    std::size_t kind = 0;
    while (kind < Count && VDString(Kinds[kind].name).CompareNoCase(name) != 0)
        ++kind;
    return kind;
}

std::string WavTexts::MakeChunk() const
{
    std::string list;
    for (std::size_t kind = 0; kind < Count; ++kind)
        if (Kinds[kind].chunk != nullptr && !texts_[kind].empty())
            list += Chunk(Kinds[kind].chunk, texts_[kind] + '\0');
    return list.empty() ? list : Chunk("LIST", "INFO" + list);
}
