// Opens, reads, checks and goes on writing a storage file. The input is the file from its commit slot on: a byte that
// chooses, the 32 bytes of the slot that say where directory and end are, and the body. Unless the choice says otherwise all
// checksums are made to fit, from the leaves to the slot, so that what they protect is reached.

#include "FuzzFile.h"

#include "daxlib/DaxHandle.h"
#include "vdarchive/Z4Bytes.h"
#include "vdbase/VDHeader.h"
#include "vdbase/VFChecksum.h"
#include "vdstore/LQDataManager.h"

#include <algorithm>
#include <vector>

namespace {

constexpr std::size_t Body = 12288;
constexpr std::size_t Slot = 8192;
constexpr std::size_t SlotFields = 32;
constexpr std::uint64_t HistogramKind = 3;
// The bits of the byte that chooses
constexpr int Unsealed = 1;
constexpr int Written = 2;
constexpr int AsTest = 4;
constexpr int OfHistograms = 8;

/// Makes the checksums of a file fit as far as what they are over can be found.
class Sealer
{
public:
    explicit Sealer(std::string& file) : file_(file) {}

    void Run()
    {
        SealDirectory(Slot + 16);
        PutSum(Slot + 120, Slot, 120);
    }

private:
    std::uint64_t Number(std::size_t at, std::size_t count) const
    {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < count && at + i < file_.size(); ++i)
            value |= std::uint64_t(static_cast<unsigned char>(file_[at + i])) << (8 * i);
        return value;
    }
    void PutSum(std::size_t at, std::size_t from, std::size_t count)
    {
        Z4ByteWriter sum;
        sum.Put(VFChecksum(file_.data() + from, static_cast<std::int64_t>(count)));
        file_.replace(at, std::min<std::size_t>(8, file_.size() - at), sum.Bytes().substr(0, file_.size() - at));
    }
    bool IsInside(std::uint64_t from, std::uint64_t count) const
    {
        return from <= file_.size() && count <= file_.size() - from && ++steps_ < 10'000;
    }
    /// Seals what a ref leads to, and then the ref.
    template <class Call>
    void SealRef(std::size_t ref, Call inner)
    {
        const std::uint64_t from = Number(ref, 8);
        const std::uint64_t size = Number(ref + 8, 8);
        if (!IsInside(ref, 24) || !IsInside(from, size))
            return;
        inner(static_cast<std::size_t>(from), static_cast<std::size_t>(from + size));
        PutSum(ref + 16, static_cast<std::size_t>(from), static_cast<std::size_t>(size));
    }
    void SealDirectory(std::size_t ref)
    {
        SealRef(ref, [this](std::size_t at, std::size_t end) {
            std::uint64_t count = Number(at + 4, 4);
            for (at += 8; at < end && count > 0; --count) {
                at += 4 + static_cast<std::size_t>(Number(at, 4)) + 4;
                if (Number(at - 4, 4) == HistogramKind)
                    SealDescriptions(static_cast<std::size_t>(Number(at, 8)), static_cast<std::size_t>(Number(at + 24, 8)));
                SealRef(at, [](std::size_t, std::size_t) {});
                SealRef(at + 24, [this](std::size_t from, std::size_t to) { SealTable(from, to); });
                at += 48;
            }
        });
    }
    /// The descriptions of histograms, whose checksums stand in the content, as far as they lie in the first record of their
    /// stream.
    void SealDescriptions(std::size_t content, std::size_t table)
    {
        std::uint64_t channels = Number(content + 4, 4);
        content += 8;
        for (table += 4; channels > 0 && IsInside(content, 25) && IsInside(table, 40); --channels) {
            content += 5;
            content += 4 + static_cast<std::size_t>(Number(content, 4));
            const std::uint64_t record = Number(static_cast<std::size_t>(Number(table + 24, 8)) + 12, 8);
            const std::uint64_t binBytes = Number(content, 8);
            const std::uint64_t size = Number(table + 4, 8) - binBytes;
            if (IsInside(content, 16) && IsInside(record, binBytes) && IsInside(record + binBytes, size))
                PutSum(content + 8, static_cast<std::size_t>(record + binBytes), static_cast<std::size_t>(size));
            content += 16;
            table += 16 + 24 * static_cast<std::size_t>(Number(table + 12, 4) & 0xffffU);
        }
    }
    void SealTable(std::size_t at, std::size_t end)
    {
        std::uint64_t streams = Number(at, 4);
        for (at += 4; at < end && streams > 0; --streams) {
            std::uint64_t blocks = Number(at + 12, 4);
            for (at += 16; at < end && blocks > 0; --blocks, at += 24) {
                const std::uint64_t size = Number(at + 4, 4);
                const std::uint64_t from = Number(at + 8, 8);
                if (IsInside(from, size) && IsInside(at, 24))
                    PutSum(at + 16, static_cast<std::size_t>(from), static_cast<std::size_t>(size));
            }
        }
    }

    std::string& file_;
    mutable int steps_ = 0;
};

std::string MakeFile(std::string_view input)
{
    std::string file(Body, '\0');
    VDHeader(154, (input[0] & OfHistograms) != 0 ? 6 : 11, VDHeader::Size).GetHeader(file.data());
    Z4ByteWriter start;
    for (const char byte : std::string_view("Z4COMMIT"))
        start.Put(static_cast<std::uint8_t>(byte));
    start.Put(std::uint64_t(1));
    file.replace(Slot, 16, start.Bytes());
    file.replace(Slot + 16, SlotFields, input.substr(1, SlotFields));
    file += input.substr(1 + SlotFields);
    if ((input[0] & Unsealed) == 0)
        Sealer(file).Run();
    return file;
}

void ReadPieces(LQTimeSeries& series)
{
    constexpr std::int64_t Points = 20'000;
    std::vector<float> floats(Points);
    std::vector<double> doubles(Points);
    for (int channel = 0; channel < std::min(series.GetChannelCount(), 50); ++channel) {
        const std::int64_t count = series.GetElementCount(channel);
        for (const std::int64_t first : {std::int64_t(0), count / 2, count - 7}) {
            series.GetData(first, Points, nullptr, floats.data(), channel);
            series.GetDataDoublePrecision(first, Points, nullptr, doubles.data(), channel);
        }
    }
    series.RefreshMetadata(false, LQObject::ALL_CHANNELS);
}

/// Reads all histograms, and puts each in the place of the next.
void UseHistograms(LQHistogram& histograms, bool writable)
{
    const VDHistHandle histogram(VFHistCreate());
    for (int channel = 0; channel < std::min(histograms.GetChannelCount(), 50); ++channel) {
        double min = 0;
        double max = 0;
        if (!histograms.SaveTo(histogram.Get(), channel))
            continue;
        VFHistGetZLimits(histogram.Get(), &min, &max);
        VFHistAddStaticOffset(histogram.Get(), max);
        if (writable)
            histograms.LoadFrom(histogram.Get(), (channel + 1) % histograms.GetChannelCount());
    }
    histograms.RefreshMetadata(false, LQObject::ALL_CHANNELS);
}

/// Reads spectra as they are and converted, and writes behind the last one.
void UseSpectra(LQSpectra& spectra, bool writable)
{
    constexpr std::int64_t Lines = 5'000;
    std::vector<double> values(2 * Lines);
    const std::int64_t lines = std::min(spectra.GetNumLines(), Lines);
    const std::int64_t last = spectra.GetNumSpectra() - 1;
    for (int channel = 0; channel < std::min(spectra.GetChannelCount(), 50); ++channel) {
        VDString text;
        spectra.GetText(LQSpectraZUnits, channel, &text);
        for (const int type : {LQSpectrumDouble, LQSpectrumComplexFloat, LQSpectrumComplexDouble}) {
            spectra.GetData(0, 0, lines, type, values.data(), channel);
            spectra.GetData(last, spectra.GetNumLines() - lines, lines, type, values.data(), channel);
        }
        if (writable)
            spectra.SetData(last + 1, 0, lines, LQSpectrumComplexFloat, values.data(), channel);
    }
    spectra.GetAxis(LQSpectraLines, 0, lines, values.data());
    spectra.GetAxis(LQSpectraSpectra, std::max<std::int64_t>(last, 0), 1, values.data());
    if (writable && spectra.SetAxis(LQSpectraSpectra, 0, 1, values.data()))
        spectra.SetNumSpectra(last);
}

void Use(const char* filename, bool writable)
{
    LQDataManager& manager = *LQGetDataManager();
    Z4File* const file = manager.GetFileManager()->OpenFile(filename, writable);
    if (file == nullptr)
        return;
    if (LQTimeSeries* const series = manager.OpenTimeSeries(file->GetRoot(), "TimeSeries")) {
        ReadPieces(*series);
        const float value = 1;
        if (writable && series->SetData(10'000, 1, &value, 0))
            series->AdjustElementCount(20, 0);
        manager.Close(series, writable);
    }
    if (LQHistogram* const histograms = manager.OpenHistogram(file->GetRoot(), "Histogram")) {
        UseHistograms(*histograms, writable);
        manager.Close(histograms, writable);
    }
    if (LQSpectra* const spectra = manager.OpenSpectra(file->GetRoot(), "ComplexFrequency")) {
        UseSpectra(*spectra, writable);
        manager.Close(spectra, writable);
    }
    if (LQMetaDataHost* const host = manager.AdoptMetaDataHost(file->GetRoot(), "MetaData", nullptr))
        manager.Close(host, writable);
    manager.GetFileManager()->CloseFile(file, writable);
}

void ReadHistograms(VDFileId* test)
{
    const VDHistAccHandle acc(HFAccCreate());
    if (!HFAccSetId(acc.Get(), test, 0) || !HFAccOpen(acc.Get(), 1))
        return;
    int count = 0;
    HFAccGetNumChans(acc.Get(), &count);
    for (int channel = 0; channel < std::min(count, 20); ++channel) {
        VDHistHandle histogram;
        HFAccGetHistogram(acc.Get(), channel, histogram.Out());
    }
    LQChannelMapper* mapper = nullptr;
    HFAccGetMetaData(acc.Get(), &mapper);
}

/// The way of a host: identified, opened, read.
void UseAsTest(const char* filename)
{
    const VDFileIdHandle file(FIDCreate());
    const VDFileInfoHandle info(FINFCreate());
    const VDTsAccHandle acc(TSAccCreate());
    VDFileIdArrayHandle tests;
    VDFileIdHandle test;
    if (!FIDSetFilename(file.Get(), VTNameFormFile, filename, "") ||
        !FINFIdentifyFile(info.Get(), file.Get(), 1, tests.Out()) || !FIAGetAt(tests.Get(), 0, test.Out()))
        return;
    ReadHistograms(test.Get());
    if (!TSAccSetId(acc.Get(), test.Get(), 0) || !TSAccOpen(acc.Get(), VTTsAccOpenRead))
        return;
    long count = 0;
    TSAccGetNumChans(acc.Get(), &count);
    std::vector<double> values(5'000);
    for (int channel = 0; channel < std::min(count, 20L); ++channel) {
        std::int64_t numRead = 0;
        double max = 0;
        VDString title;
        TSAccGetDataDoublePrecision(acc.Get(), channel, 1, 5'000, &numRead, values.data());
        TSAccGetStatDoublePrecision(acc.Get(), channel, VTTsAccStatMax, &max);
        TSAccGetChanTitle(acc.Get(), channel, &title);
    }
    LQChannelMapper* mapper = nullptr;
    TSAccGetMetaData(acc.Get(), &mapper);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file(".z4t");
    if (size < 1 + SlotFields)
        return 0;
    const char* const filename = file.Write(MakeFile(FuzzText(data, size)));
    VDStringArray findings;
    const bool isSound = LQGetDataManager()->GetFileManager()->CheckFile(filename, &findings);
    Use(filename, false);
    if ((data[0] & AsTest) != 0)
        UseAsTest(filename);
    if ((data[0] & Written) == 0)
        return 0;
    Use(filename, true);
    // A sound file is sound after more was written to it.
    if (isSound && !LQGetDataManager()->GetFileManager()->CheckFile(filename, &findings))
        std::abort();
    return 0;
}
