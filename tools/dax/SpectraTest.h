#pragma once

#include "DataTest.h"
#include "TestAccessOf.h"

/// Texts of a channel of spectra: its axes are those of the lines, the spectra and the values.
struct VDSpectraTexts
{
    std::string xTitle;
    std::string xUnits;
    std::string yTitle;
    std::string yUnits;
    std::string zTitle;
    std::string zUnits;
};

/// One of the two axes that all channels share. An axis that the file doesn't have counts its places.
class VDSpectraAxis
{
public:
    using Get = int(VDCFAcc*, std::int64_t, std::int64_t, int, std::int64_t*, void*);

    VDSpectraAxis(VDCFAcc* acc, Get* get, std::int64_t count);

    std::int64_t GetCount() const { return count_; }
    bool IsKnown() const { return known_; }
    /// Values of the places from `first`, from 1, on; throws if that fails.
    void Read(std::int64_t first, std::int64_t count, double* values) const;
    /// The places whose values lie in a range: the first, and how many up to the last one. The axis is looked through.
    /// @return false if there is none
    bool Find(double from, double to, std::int64_t* first, std::int64_t* count) const;

private:
    VDCFAcc* acc_;
    Get* get_;
    std::int64_t count_;
    bool known_ = false;
};

/// Values of a part of one spectrum of a channel.
class VDSpectrumBlock
{
public:
    VDSpectrumBlock(VDCFAcc* acc, const VDChannel& channel, bool isComplex);

    /// Throws if that fails or there are fewer.
    void Read(std::int64_t spectrum, std::int64_t firstLine, std::int64_t count);
    int Write(VDCFAcc* acc, int channel, std::int64_t spectrum, std::int64_t firstLine) const;
    /// @param part  0 the real one, 1 the imaginary one
    char* PutText(char* at, std::int64_t index, int part, bool json) const;
    int GetParts() const { return parts_; }

private:
    VDCFAcc* acc_;
    int channel_;
    bool isDouble_;
    int parts_;
    int kind_;
    std::int64_t count_ = 0;
    std::vector<float> floats_;
    std::vector<double> doubles_;
};

/// A complex frequency test that is open for reading.
class VDSpectraTest : public VDDataTest
{
public:
    explicit VDSpectraTest(VDFileId* id);

    VDTestAccess* Access() const override { return &access_; }
    VDCFAcc* Get() const { return access_.Get(); }
    int GetType() const { return type_; }
    int GetSubType() const { return subType_; }
    bool IsComplex() const { return complex_; }
    const VDSpectraTexts& GetTexts(const VDChannel& channel) const
    {
        return texts_[static_cast<std::size_t>(channel.index)];
    }
    VDSpectraAxis Lines() const { return {Get(), CFAccGetLineAxisData, lines_}; }
    VDSpectraAxis Spectra() const { return {Get(), CFAccGetSpectrumAxisData, spectra_}; }
    /// Lines that suit the format for blocks of so many channels together, in bounds of memory.
    std::int64_t GetBlockLines(std::size_t channels) const;

    void DescribeTest(VDJson& document) const override;
    void DescribeTest(VDTextTable& table) const override;
    VDJson DescribeChannel(const VDChannel& channel) const override;
    std::int64_t CountValues(const VDChannel& channel, std::int64_t limit) const override;
    const char* ValueWord() const override { return "lines"; }
    VDJson Sample(const VDChannel& channel) const override;
    void PrintChannels(const VDJson& described, VDTextSink& out) const override;

private:
    mutable VDTestAccessOf<VDSpectraCalls> access_;
    int type_ = 0;
    int subType_ = 0;
    std::int64_t spectra_ = 0;
    std::int64_t lines_ = 0;
    bool complex_ = false;
    std::vector<VDSpectraTexts> texts_;
};
