#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Makes Famos files for tests and benchmarks.

/// One key: "|CK,1,3,1,1;".
inline std::string FamosKey(std::string_view name, std::string_view fields, int version = 1)
{
    std::string key("|");
    for (const std::string& part : {std::string(name), std::to_string(version), std::to_string(fields.size())})
        key.append(part).append(",");
    return key.append(fields).append(";");
}

/// A string field: its length and its bytes.
inline std::string FamosText(std::string_view text)
{
    return std::to_string(text.size()) + "," + std::string(text);
}

inline std::string FamosStart()
{
    return FamosKey("CF", "1", 2) + FamosKey("CK", "1,1");
}

/// A group with one component: number format and channel name.
inline std::string FamosGroup(int numberFormat, std::string_view channel)
{
    return FamosKey("CG", "1,1,1") + FamosKey("CC", "1,1") +
           FamosKey("CP", "1,4," + std::to_string(numberFormat) + ",32,0,0,1,0") +
           FamosKey("CN", "0,0,0," + FamosText(channel) + ",0,");
}

/// The header of a recording of time-stamped frames.
inline std::string FamosStampedStart()
{
    return FamosStart() + FamosKey("CG", "1,1,1") + FamosKey("NT", "12,12,2012,17,41,34.5") + FamosKey("CC", "1,1") +
           FamosKey("CP", "1,4,10,32,0,0,1,0") + FamosKey("CR", "1,0.0001,2.5,1,1,s");
}

/// One record of a frame stream.
inline std::string FamosRecord(std::uint32_t id, std::string_view data, std::uint64_t timeStamp = 0, unsigned topBits = 0)
{
    std::string record;
    const auto put = [&record](std::uint64_t value, int bytes) {
        for (int index = 0; index < bytes; ++index)
            record += static_cast<char>(value >> (8 * index));
    };
    put((12 + data.size()) | topBits << 14, 2);
    put(timeStamp, 6);
    put(id, 4);
    record += data;
    record.resize((record.size() + 3) / 4 * 4, '\xEE');
    return record;
}

/// Cuts a stream of records into 512-byte blocks.
/// The records need not fill the last one: a further block, which is to be passed over, says how much of it is unused.
inline std::string FamosBlocks(const std::vector<std::string>& records)
{
    constexpr std::size_t room = 508;
    std::string stream;
    std::vector<std::size_t> starts;
    for (const std::string& record : records) {
        starts.push_back(stream.size());
        stream += record;
    }
    const std::size_t unused = (room - stream.size() % room) % room;
    stream.resize(stream.size() + unused, '\x55');
    std::string blocks;
    std::size_t record = 0;
    for (std::size_t from = 0; from < stream.size(); from += room) {
        while (record < starts.size() && starts[record] < from)
            ++record;
        const bool begins = record < starts.size() && starts[record] < from + room;
        const unsigned first = begins ? static_cast<unsigned>(4 + starts[record] - from) : 512;
        blocks += {0, 0, static_cast<char>(first), static_cast<char>(first >> 8)};
        blocks += stream.substr(from, room);
    }
    std::string last(512, '\0');
    last[0] = static_cast<char>(unused);
    last[1] = static_cast<char>(unused >> 8);
    return unused == 0 ? blocks : blocks + last;
}

/// Samples with an index field as wide as recorders write it.
inline std::string FamosSamples(std::string_view data)
{
    return FamosKey("CS", "         1," + std::string(data));
}
