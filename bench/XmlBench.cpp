// What the way of metadata to XML text and back costs beside Xerces alone, which writes and parses the same text; how it
// grows; and what the metadata take in memory.

#include "BenchRatios.h"

#include "daxlib/VDXmlMetaDataTranslator.h"
#include "vdstore/LQChannelMapper.h"
#include "vdxml/VDUXmlHelper.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <chrono>
#include <cstdio>

namespace {

constexpr int Channels = 10'000;
constexpr int ItemsPerChannel = 20;

/// Channels with one set of items of the usual types.
void Fill(LQChannelMapper& mapper, int channels, int items = ItemsPerChannel)
{
    for (int number = 1; number <= channels; ++number) {
        LQChannelEntry* const entry = mapper.Append();
        mapper.SetChannelNumber(number, entry);
        Z4PropertySet& set = *mapper.AdoptMetaDataSet("Sensor", nullptr, entry->GetIndex());
        for (int i = 0; i < items; ++i) {
            const std::string name = "Item" + std::to_string(i);
            if (i % 4 == 0)
                set.AddString(name.c_str(), "front left wheel");
            else if (i % 4 == 1)
                set.AddLong(name.c_str(), number);
            else
                set.AddDouble(name.c_str(), number / 7.0);
        }
    }
}

std::string ToText(LQChannelMapper& mapper)
{
    DOM_Document document = DOM_Document::CreateDocument();
    DOM_Element parent = document.CreateElement(VDUXmlHelper::VDToDOMString("MetaData"));
    VDUDataBuffer text;
    const bool good = VDXmlMetaDataTranslator().MetaDataToXml(&mapper, document, parent) &&
                      VDUXmlHelper::ConvertNodeTreeToText(parent.GetFirstChild(), &text);
    return good ? std::string(text.View()) : std::string();
}

bool FromText(const std::string& text, LQChannelMapper& mapper)
{
    char found = 0;
    const DOM_Document document = VDUXmlHelper::ParseXml(text.c_str(), static_cast<int>(text.size()));
    return VDXmlMetaDataTranslator().XmlToMetaData(document.GetDocumentElement(), &mapper, found) && found != 0;
}

const LQChannelMapper& FilledMapper()
{
    static LQChannelMapper mapper(nullptr);
    if (mapper.GetChannelCount() == 0)
        Fill(mapper, Channels);
    return mapper;
}

void BM_MapperToTextAndBack(benchmark::State& state)
{
    auto& mapper = const_cast<LQChannelMapper&>(FilledMapper());
    for (auto _ : state) {
        LQChannelMapper back(nullptr);
        if (!FromText(ToText(mapper), back) || back.GetChannelCount() != Channels)
            state.SkipWithError("the metadata did not come back");
    }
}
BENCHMARK(BM_MapperToTextAndBack)->Unit(benchmark::kMillisecond);

void BM_XercesWritesAndParses(benchmark::State& state)
{
    xercesc::XMLPlatformUtils::Initialize();
    const std::string text = ToText(const_cast<LQChannelMapper&>(FilledMapper()));
    const auto parse = [](const void* bytes, std::size_t size) {
        const xercesc::MemBufInputSource source(static_cast<const XMLByte*>(bytes), size, "bench");
        xercesc::XercesDOMParser parser;
        parser.parse(source);
        return parser.adoptDocument();
    };
    xercesc::DOMDocument* const tree = parse(text.data(), text.size());
    for (auto _ : state) {
        xercesc::MemBufFormatTarget target;
        xercesc::DOMImplementation* const maker = xercesc::DOMImplementation::getImplementation();
        xercesc::DOMLSOutput* const output = maker->createLSOutput();
        output->setByteStream(&target);
        xercesc::DOMLSSerializer* const writer = maker->createLSSerializer();
        writer->write(tree, output);
        writer->release();
        output->release();
        xercesc::DOMDocument* const again = parse(target.getRawBuffer(), target.getLen());
        if (again->getDocumentElement() == nullptr)
            state.SkipWithError("the text did not come back");
        again->release();
    }
    tree->release();
}
BENCHMARK(BM_XercesWritesAndParses)->Unit(benchmark::kMillisecond);

std::size_t AllocatedBytes()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void PrintMemory()
{
    LQChannelMapper mapper(nullptr);
    const std::size_t before = AllocatedBytes();
    Fill(mapper, Channels);
    const double bytes = static_cast<double>(AllocatedBytes() - before) / (Channels * ItemsPerChannel);
    std::printf("\nmemory of the metadata: %.0f bytes an item <= 150  %s\n", bytes, bytes <= 150 ? "kept" : "NOT KEPT");
}

void PrintGrowth()
{
    std::printf("\n%12s %18s %18s\n", "channels", "to text, us each", "back, us each");
    for (const int channels : {1'000, 10'000, 100'000}) {
        using Clock = std::chrono::steady_clock;
        const auto microsecondsEach = [channels](Clock::duration time) {
            return std::chrono::duration<double, std::micro>(time).count() / channels;
        };
        LQChannelMapper mapper(nullptr);
        Fill(mapper, channels, 4);
        const auto start = Clock::now();
        const std::string text = ToText(mapper);
        const auto middle = Clock::now();
        LQChannelMapper back(nullptr);
        const bool good = FromText(text, back);
        std::printf("%12d %18.2f %18.2f%s\n", channels, microsecondsEach(middle - start),
                    microsecondsEach(Clock::now() - middle), good ? "" : "  failed");
    }
}

}  // namespace

int main(int argc, char** argv)
{
    PrintMemory();
    PrintGrowth();
    return RunBenchRatios(argc, argv, {{"BM_MapperToTextAndBack", "BM_XercesWritesAndParses", 2.0}});
}
