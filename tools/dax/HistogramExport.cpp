#include "HistogramTest.h"
#include "Interrupt.h"
#include "NumberText.h"
#include "Printable.h"
#include "TestExport.h"

namespace {

class HistogramExport : public VDTestExport
{
public:
    HistogramExport(const VDHistogramTest& test, const VDReadSelection& selection)
        : test_(test), channels_(selection.channels.Choose(test))
    {
    }

    std::vector<VDCsvPart> MakeParts() const override
    {
        std::vector<VDCsvPart> parts;
        for (const VDChannel& channel : channels_) {
            const std::string number = std::to_string(channel.number);
            parts.push_back(
                {"channel " + number, "_ch" + number, {{"channel", channel.number}}, [this, &channel](VDTextSink& out) {
                     return WriteCsv(channel, out);
                 }});
        }
        return parts;
    }
    std::string WhyParts(const std::vector<VDCsvPart>& parts) const override
    {
        return "There are " + std::to_string(parts.size()) +
               " histograms, which can't share one CSV; write them to files with --out, or choose one with --chan";
    }
    void WriteJson(VDTextSink& out) const override;

private:
    std::int64_t WriteCsv(const VDChannel& channel, VDTextSink& out) const;
    void WriteJsonBins(const VDHistogram& histogram, VDTextSink& out) const;

    const VDHistogramTest& test_;
    std::vector<VDChannel> channels_;
};

/// An axis as columns: from, to and, if there are any, the bins' labels.
void VFWriteAxisHead(const VDHistAxis& axis, const char* usual, VDTextSink& out)
{
    const std::string title = axis.title.IsEmpty() ? usual : axis.title.Str();
    out.Write(VFCsvText(VFWithUnits(title + " from", axis.units.Str())) + "," +
              VFCsvText(VFWithUnits(title + " to", axis.units.Str())) + ",");
    if (axis.labels.GetSize() > 0)
        out.Write(VFCsvText(title + " label") + ",");
}

void VFWriteAxisCells(const VDHistAxis& axis, std::int64_t bin, VDTextSink& out)
{
    out.Commit(VFPutNumber(out.Reserve(NumberTextSize), VFLowerBorder(axis, bin)));
    out.Write(",");
    out.Commit(VFPutNumber(out.Reserve(NumberTextSize), VFUpperBorder(axis, bin)));
    out.Write(",");
    if (axis.labels.GetSize() > 0)
        out.Write((bin < axis.labels.GetSize() ? VFCsvText(axis.labels[static_cast<int>(bin)].Str()) : std::string()) + ",");
}

std::int64_t HistogramExport::WriteCsv(const VDChannel& channel, VDTextSink& out) const
{
    const VDHistogram histogram = test_.GetHistogram(channel);
    const VDHistDescription& description = histogram.GetDescription();
    VFWriteAxisHead(description.x, "x", out);
    if (description.is3D)
        VFWriteAxisHead(description.y, "y", out);
    const std::string title = description.zTitle.IsEmpty() ? channel.title : description.zTitle.Str();
    out.Write(VFCsvText(VFWithUnits(title.empty() ? "value" : title, description.zUnits.Str())) + "\n");
    for (std::int64_t y = 0; y < description.y.binCount; ++y) {
        VDInterruptGuard::Check();
        for (std::int64_t x = 0; x < description.x.binCount; ++x) {
            VFWriteAxisCells(description.x, x, out);
            if (description.is3D)
                VFWriteAxisCells(description.y, y, out);
            out.Commit(histogram.PutText(out.Reserve(NumberTextSize), x, y, false));
            out.Write("\n");
        }
    }
    return histogram.CountBins();
}

/// A list of the x bins for each y bin.
void HistogramExport::WriteJsonBins(const VDHistogram& histogram, VDTextSink& out) const
{
    const VDHistDescription& description = histogram.GetDescription();
    for (std::int64_t y = 0; y < description.y.binCount; ++y) {
        VDInterruptGuard::Check();
        out.Write(y == 0 ? "[" : ",\n[");
        for (std::int64_t x = 0; x < description.x.binCount; ++x) {
            if (x > 0)
                out.Write(",");
            out.Commit(histogram.PutText(out.Reserve(NumberTextSize), x, y, true));
        }
        out.Write("]");
    }
}

void HistogramExport::WriteJson(VDTextSink& out) const
{
    out.Write("{\"path\":" + VFJsonText(VFGetTestFiles(test_.GetId()).front(), -1) + ",\"channels\":[");
    const char* separator = "\n";
    for (const VDChannel& channel : channels_) {
        try {
            const VDHistogram histogram = test_.GetHistogram(channel);
            std::string text = VFJsonText(test_.DescribeChannel(channel), -1);
            text.pop_back();  // its closing brace: the bins belong inside
            out.Write(separator + text + ",\"bins\":[");
            WriteJsonBins(histogram, out);
            out.Write("]}");
        } catch (const VDFailure&) {
            out.Write("]");
            throw;
        }
        separator = ",\n";
    }
    out.Write("]");
}

}  // namespace

std::unique_ptr<VDTestExport> VFMakeHistogramExport(const VDDataTest& test, const VDReadSelection& selection)
{
    return std::make_unique<HistogramExport>(static_cast<const VDHistogramTest&>(test), selection);
}
