#include "Interrupt.h"
#include "NumberText.h"
#include "Printable.h"
#include "SpectraTest.h"
#include "TestExport.h"
#include "ToolError.h"

#include <algorithm>

namespace {

/// Places of an axis, from 1.
struct Places
{
    std::int64_t first = 1;
    std::int64_t count = 0;
};

class SpectraExport : public VDTestExport
{
public:
    SpectraExport(const VDSpectraTest& test, const VDReadSelection& selection)
        : test_(test), channels_(selection.channels.Choose(test)), lineAxis_(test.Lines()), spectrumAxis_(test.Spectra())
    {
        ChooseSpectra(selection.spectra);
        ChooseLines(selection.lines);
    }

    std::vector<VDCsvPart> MakeParts() const override
    {
        VDJson numbers = VDJson::array();
        for (const VDChannel& channel : channels_)
            numbers.push_back(channel.number);
        return {{"channels " + VFChannelListText(channels_, ','), "", {{"channels", numbers}}, [this](VDTextSink& out) {
                     return WriteCsv(out);
                 }}};
    }
    std::string WhyParts(const std::vector<VDCsvPart>&) const override { return {}; }
    void WriteJson(VDTextSink& out) const override;

private:
    void ChooseSpectra(const std::string& text);
    void ChooseLines(const std::string& text);
    void WriteCsvHeader(VDTextSink& out) const;
    std::int64_t WriteCsv(VDTextSink& out) const;
    void WriteCsvRows(std::int64_t spectrum, std::vector<VDSpectrumBlock>& blocks, VDTextSink& out) const;
    void WriteJsonAxis(const VDSpectraAxis& axis, const Places& places, VDTextSink& out) const;
    void WriteJsonChannel(const VDChannel& channel, VDTextSink& out) const;
    void WriteJsonPart(VDSpectrumBlock& block, std::int64_t spectrum, int part, VDTextSink& out) const;

    const VDSpectraTest& test_;
    std::vector<VDChannel> channels_;
    VDSpectraAxis lineAxis_;
    VDSpectraAxis spectrumAxis_;
    Places spectra_;
    Places lines_;
};

void SpectraExport::ChooseSpectra(const std::string& text)
{
    spectra_.count = spectrumAxis_.GetCount();
    if (text.empty())
        return;
    const auto range = VDNumberRange<std::int64_t>::Read("--spectrum", text);
    spectra_.first = std::max<std::int64_t>(range.first, 1);
    spectra_.count = std::min(range.last, spectrumAxis_.GetCount()) - spectra_.first + 1;
    if (spectra_.count < 1)
        VFFail(DaxToolError::UnknownSpectrum,
               "There is no spectrum " + text + "; there are " + std::to_string(spectrumAxis_.GetCount()),
               "VFMakeSpectraExport");
}

void SpectraExport::ChooseLines(const std::string& text)
{
    lines_.count = lineAxis_.GetCount();
    if (text.empty())
        return;
    const auto range = VDNumberRange<double>::Read("--lines", text);
    if (!lineAxis_.Find(range.first, range.last, &lines_.first, &lines_.count))
        VFFail(DaxToolError::UnknownSpectrum, "There is no line in " + text, "VFMakeSpectraExport");
}

void SpectraExport::WriteCsvHeader(VDTextSink& out) const
{
    const auto orElse = [](const std::string& title, const char* usual) {
        return title.empty() ? std::string(usual) : title;
    };
    const VDSpectraTexts texts = channels_.empty() ? VDSpectraTexts() : test_.GetTexts(channels_.front());
    if (spectra_.count > 1)
        out.Write(VFCsvText(VFWithUnits(orElse(texts.yTitle, "spectrum"), texts.yUnits)) + ",");
    out.Write(VFCsvText(VFWithUnits(orElse(texts.xTitle, lineAxis_.IsKnown() ? "frequency" : "line"), texts.xUnits)));
    for (const VDChannel& channel : channels_) {
        const std::string title = orElse(channel.title, ("Channel " + std::to_string(channel.number)).c_str());
        if (test_.IsComplex())
            out.Write("," + VFCsvText(VFWithUnits(title + " real", channel.units)) + "," +
                      VFCsvText(VFWithUnits(title + " imag", channel.units)));
        else
            out.Write("," + VFCsvText(VFWithUnits(title, channel.units)));
    }
    out.Write("\n");
}

std::int64_t SpectraExport::WriteCsv(VDTextSink& out) const
{
    WriteCsvHeader(out);
    std::vector<VDSpectrumBlock> blocks;
    for (const VDChannel& channel : channels_)
        blocks.emplace_back(test_.Get(), channel, test_.IsComplex());
    for (std::int64_t spectrum = spectra_.first; spectrum < spectra_.first + spectra_.count; ++spectrum)
        WriteCsvRows(spectrum, blocks, out);
    return spectra_.count * lines_.count;
}

void SpectraExport::WriteCsvRows(std::int64_t spectrum, std::vector<VDSpectrumBlock>& blocks, VDTextSink& out) const
{
    double at = 0;
    spectrumAxis_.Read(spectrum, 1, &at);
    const std::int64_t block = test_.GetBlockLines(blocks.size());
    std::vector<double> places(static_cast<std::size_t>(std::min(block, lines_.count)));
    for (std::int64_t done = 0; done < lines_.count; done += block) {
        VDInterruptGuard::Check();
        const std::int64_t first = lines_.first + done;
        const std::int64_t count = std::min(block, lines_.count - done);
        lineAxis_.Read(first, count, places.data());
        for (VDSpectrumBlock& each : blocks)
            each.Read(spectrum, first, count);
        for (std::int64_t line = 0; line < count; ++line) {
            if (spectra_.count > 1) {
                out.Commit(VFPutNumber(out.Reserve(NumberTextSize), at));
                out.Write(",");
            }
            out.Commit(VFPutNumber(out.Reserve(NumberTextSize), places[static_cast<std::size_t>(line)]));
            for (const VDSpectrumBlock& each : blocks)
                for (int part = 0; part < each.GetParts(); ++part) {
                    out.Write(",");
                    out.Commit(each.PutText(out.Reserve(NumberTextSize), line, part, false));
                }
            out.Write("\n");
        }
    }
}

void SpectraExport::WriteJsonAxis(const VDSpectraAxis& axis, const Places& places, VDTextSink& out) const
{
    constexpr std::int64_t block = 4096;
    std::vector<double> values(static_cast<std::size_t>(std::min(block, places.count)));
    for (std::int64_t done = 0; done < places.count; done += block) {
        const std::int64_t count = std::min(block, places.count - done);
        axis.Read(places.first + done, count, values.data());
        for (std::int64_t index = 0; index < count; ++index) {
            if (done + index > 0)
                out.Write(",");
            out.Commit(VFPutJsonNumber(out.Reserve(NumberTextSize), values[static_cast<std::size_t>(index)]));
        }
    }
}

void SpectraExport::WriteJsonPart(VDSpectrumBlock& values, std::int64_t spectrum, int part, VDTextSink& out) const
{
    const std::int64_t block = test_.GetBlockLines(1);
    for (std::int64_t done = 0; done < lines_.count; done += block) {
        VDInterruptGuard::Check();
        const std::int64_t count = std::min(block, lines_.count - done);
        values.Read(spectrum, lines_.first + done, count);
        for (std::int64_t index = 0; index < count; ++index) {
            if (done + index > 0)
                out.Write(",");
            out.Commit(values.PutText(out.Reserve(NumberTextSize), index, part, true));
        }
    }
}

void SpectraExport::WriteJsonChannel(const VDChannel& channel, VDTextSink& out) const
{
    std::string text = VFJsonText(test_.DescribeChannel(channel), -1);
    text.pop_back();  // its closing brace: the values belong inside
    out.Write(text + ",\"spectra\":[");
    VDSpectrumBlock values(test_.Get(), channel, test_.IsComplex());
    for (std::int64_t spectrum = spectra_.first; spectrum < spectra_.first + spectra_.count; ++spectrum) {
        out.Write(spectrum == spectra_.first ? "\n{" : ",\n{");
        for (int part = 0; part < values.GetParts(); ++part) {
            out.Write(part == 0 ? "\"real\":[" : ",\"imag\":[");
            try {
                WriteJsonPart(values, spectrum, part, out);
            } catch (const VDFailure&) {
                out.Write("]}]}");
                throw;
            }
            out.Write("]");
        }
        out.Write("}");
    }
    out.Write("]}");
}

void SpectraExport::WriteJson(VDTextSink& out) const
{
    VDJson head = {{"path", VFGetTestFiles(test_.GetId()).front()}};
    test_.DescribeTest(head);
    std::string text = VFJsonText(head, -1);
    text.pop_back();
    out.Write(text + ",\"firstSpectrum\":" + std::to_string(spectra_.first) +
              ",\"firstLine\":" + std::to_string(lines_.first) + ",\"spectrumAxisValues\":[");
    WriteJsonAxis(spectrumAxis_, spectra_, out);
    out.Write("],\"lineAxisValues\":[");
    WriteJsonAxis(lineAxis_, lines_, out);
    out.Write("],\"channels\":[");
    const char* separator = "\n";
    for (const VDChannel& channel : channels_) {
        out.Write(separator);
        separator = ",\n";
        try {
            WriteJsonChannel(channel, out);
        } catch (const VDFailure&) {
            out.Write("]");
            throw;
        }
    }
    out.Write("]");
}

}  // namespace

std::unique_ptr<VDTestExport> VFMakeSpectraExport(const VDDataTest& test, const VDReadSelection& selection)
{
    return std::make_unique<SpectraExport>(static_cast<const VDSpectraTest&>(test), selection);
}
