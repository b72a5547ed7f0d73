#include "FamosInspect.h"

#include "bus/VDFamosUtil.h"
#include "bus/VDFamosValues.h"

#include "vdbase/VDUnicodeString.h"

#include <algorithm>
#include <limits>
#include <sstream>
#include <vector>

namespace {

using Json = nlohmann::ordered_json;

Json Blocks(const VDFamosHeader& header)
{
    Json blocks = Json::array();
    for (const VDFamosDataBlock& block : header.dataBlocks)
        blocks.push_back({{"index", block.index}, {"start", block.start}, {"length", block.length}});
    return blocks;
}

Json Buffers(const VDFamosHeader& header)
{
    Json buffers = Json::array();
    for (const auto& description : header.bufferDescriptions)
        for (const VDFamosBuffer& buffer : description.buffers)
            buffers.push_back({{"fields", buffer.integers}, {"times", buffer.times}});
    return buffers;
}

Json ValuesOf(VDIo& file, const VDFamosLayout& layout, VDFamosValues& values)
{
    constexpr std::int64_t piece = 10'000;
    const std::int64_t count = layout.count;
    std::vector<double> points(static_cast<std::size_t>(std::min(count, piece)));
    Json result = {{"points", count}, {"cut", count < layout.declared}};
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    double sum = 0;
    for (std::int64_t first = 0; first < count; first += piece) {
        const std::int64_t part = std::min(piece, count - first);
        if (!values.Read(file, layout, first, part, points.data()))
            return result;
        if (first == 0)
            result["first"] = points[0];
        for (std::int64_t index = 0; index < part; ++index) {
            const double value = points[static_cast<std::size_t>(index)];
            least = std::min(least, value);
            greatest = std::max(greatest, value);
            sum += value;
        }
        result["last"] = points[static_cast<std::size_t>(part - 1)];
    }
    if (count > 0)
        result.update({{"min", least}, {"max", greatest}, {"sum", sum}});
    return result;
}

}  // namespace

bool VFInspectFamosValues(const std::string& filename, Json* document)
{
    VDFamosUtil famos;
    VDIo file(filename.c_str());
    if (!famos.Open(VDString(filename), "") || !file.Open(VTOpenRead))
        return false;
    VDFamosValues values;
    VDFamosLayout layout;
    const VDFamosPlacement placement(famos.GetHeader(), file.GetFileSize());
    Json& list = (*document)["components"] = Json::array();
    for (std::size_t group = 0; group < famos.GetHeader().groups.size(); ++group) {
        const auto& components = famos.GetHeader().groups[group].components;
        for (std::size_t index = 0; index < components.size(); ++index) {
            const auto& names = components[index].channelNames;
            Json entry = {{"name", names.empty() ? "" : VFTextAsUtf8(names[0].name).Str()}};
            if (placement.Find(group, index, &layout))
                entry.update(ValuesOf(file, layout, values));
            list.push_back(std::move(entry));
        }
    }
    return true;
}

bool VFInspectFamos(const std::string& filename, const std::string& database, Json* document)
{
    VDFamosUtil famos;
    unsigned long count = 0;
    if (!famos.Open(VDString(filename), VDString(database)) || !famos.GetChannelCount(&count))
        return false;
    const VDFamosHeader& header = famos.GetHeader();
    std::size_t components = 0;
    Json channels = Json::array();
    for (const auto& group : header.groups) {
        components += group.components.size();
        for (const VDFamosComponent& component : group.components)
            for (const VDFamosChannelName& name : component.channelNames)
                channels.push_back(VFTextAsUtf8(name.name).Str());
    }
    Json& out = *document;
    out["groups"] = header.groups.size();
    out["components"] = components;
    out["channels"] = std::move(channels);
    out["channelCount"] = count;
    out["buffers"] = Buffers(header);
    out["dataBlocks"] = Blocks(header);
    out["timeStamped"] = famos.IsTimeStamped();
    if (!famos.IsTimeStamped())
        return true;
    Json& types = out["frameTypes"] = Json::array();
    for (int index = 0; index < famos.GetFrameTypes().GetCount(); ++index) {
        const VDCanFrameType& type = *famos.GetFrameTypes().GetFrameType(index);
        types.push_back({{"id", type.frameId}, {"bytes", type.numBytes}, {"count", type.count}});
    }
    Json& titles = out["timeStampChannels"] = Json::array();
    for (std::size_t index = 0; index < famos.GetTimeStampChanCount(); ++index)
        titles.push_back(VFTextAsUtf8(famos.GetTimeStampChan(index).GetTitle()).Str());
    return true;
}

std::string VFFamosInspectText(const Json& document)
{
    std::ostringstream text;
    for (const auto& [key, value] : document.items()) {
        if (!value.is_array()) {
            text << key << ": " << value.dump() << '\n';
            continue;
        }
        text << key << ":\n";
        for (const Json& item : value)
            text << "  " << (item.is_string() ? item.get<std::string>() : item.dump()) << '\n';
    }
    return text.str();
}
