#include "DataWriter.h"
#include "Interrupt.h"
#include "SpectraTest.h"

#include <algorithm>

namespace {

/// Copies spectra, one after the other over all channels.
class SpectraWriter : public VDDataWriter
{
public:
    explicit SpectraWriter(const VDCopyPlan& plan) : plan_(plan), source_(static_cast<const VDSpectraTest&>(plan.source)) {}

    VDTestAccess& Access() override { return access_; }
    void WriteHeader(std::int64_t limit) override;
    void WriteData(std::int64_t limit, VDProgressBar& progress) override;

private:
    using PutAxis = int(VDCFAcc*, std::int64_t, std::int64_t, int, const void*);

    void WriteTexts(int index, const VDChannel& channel);
    void WriteAxis(const VDSpectraAxis& axis, std::int64_t count, PutAxis* put);

    const VDCopyPlan& plan_;
    const VDSpectraTest& source_;
    VDTestAccessOf<VDSpectraCalls> access_;
};

/// Texts that the format has no place for are found by a comparison later.
void SpectraWriter::WriteTexts(int index, const VDChannel& channel)
{
    const VDSpectraTexts& texts = source_.GetTexts(channel);
    const std::pair<int (*)(VDCFAcc*, int, const char*), const std::string&> calls[] = {
        {CFAccSetChanTitle, channel.title}, {CFAccSetChanUnits, channel.units}, {CFAccSetXTitle, texts.xTitle},
        {CFAccSetXUnits, texts.xUnits},     {CFAccSetYTitle, texts.yTitle},     {CFAccSetYUnits, texts.yUnits},
        {CFAccSetZTitle, texts.zTitle},     {CFAccSetZUnits, texts.zUnits}};
    for (const auto& [call, text] : calls)
        if (!text.empty())
            call(access_.Get(), index, text.c_str());
    VFErrorClear();
}

void SpectraWriter::WriteAxis(const VDSpectraAxis& axis, std::int64_t count, PutAxis* put)
{
    constexpr std::int64_t block = 65536;
    std::vector<double> values(static_cast<std::size_t>(std::min(block, count)));
    for (std::int64_t done = 0; axis.IsKnown() && done < count; done += block) {
        const std::int64_t some = std::min(block, count - done);
        axis.Read(done + 1, some, values.data());
        VFCheck(put(access_.Get(), done + 1, some, DaxSpectrumKind::Double, values.data()));
    }
}

void SpectraWriter::WriteHeader(std::int64_t limit)
{
    VFCheck(CFAccSetType(access_.Get(), source_.GetType()));
    VFCheck(CFAccSetSubType(access_.Get(), source_.GetSubType()));
    VFCheck(CFAccSetComplex(access_.Get(), source_.IsComplex() ? 1 : 0));
    const std::int64_t spectra = std::min(source_.Spectra().GetCount(), limit);
    VFCheck(CFAccSetNumLines(access_.Get(), source_.Lines().GetCount()));
    VFCheck(CFAccSetNumSpectra(access_.Get(), spectra));
    WriteAxis(source_.Lines(), source_.Lines().GetCount(), CFAccPutLineAxisData);
    WriteAxis(source_.Spectra(), spectra, CFAccPutSpectrumAxisData);
    for (int index = 0; index < static_cast<int>(plan_.channels.size()); ++index)
        WriteTexts(index, plan_.channels[static_cast<std::size_t>(index)]);
}

void SpectraWriter::WriteData(std::int64_t limit, VDProgressBar& progress)
{
    const std::int64_t spectra = std::min(source_.Spectra().GetCount(), limit);
    const std::int64_t lines = source_.Lines().GetCount();
    const std::int64_t block = source_.GetBlockLines(1);
    std::vector<VDSpectrumBlock> blocks;
    for (const VDChannel& channel : plan_.channels)
        blocks.emplace_back(source_.Get(), channel, source_.IsComplex());
    for (std::int64_t spectrum = 1; spectrum <= spectra; ++spectrum)
        for (std::size_t index = 0; index < blocks.size(); ++index)
            for (std::int64_t first = 1; first <= lines; first += block) {
                VDInterruptGuard::Check();
                const std::int64_t count = std::min(block, lines - first + 1);
                blocks[index].Read(spectrum, first, count);
                VFCheck(blocks[index].Write(access_.Get(), static_cast<int>(index), spectrum, first));
                progress.Advance(count);
            }
}

}  // namespace

std::unique_ptr<VDDataWriter> VFMakeSpectraWriter(const VDCopyPlan& plan)
{
    return std::make_unique<SpectraWriter>(plan);
}
