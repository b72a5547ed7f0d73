#pragma once

#include "UffFormat.h"
#include "UffIndex.h"
#include "UffValues.h"

#include <memory>
#include <optional>

/// A channel of a test: a dataset, or one part of it where a time series has no other room for the rest.
struct UffChannel
{
    std::size_t dataset;  ///< in the index
    UffValues::Part part;
};

/// Datasets that have what the channels of one test share.
struct UffTest
{
    bool isSpectra = false;
    bool hasNoStep = false;  ///< time series whose times are channels, as they don't grow evenly
    bool isText = false;     ///< of the first dataset
    std::string title;
    std::vector<UffChannel> channels;
};

/// A universal file that is open for reading, with its datasets arranged as tests. Failures are recorded.
class UffFile
{
public:
    /// @return null, recorded, if the file can't be read
    static std::unique_ptr<UffFile> Open(const char* filename, const char* routine);

    const std::vector<UffTest>& GetTests() const { return tests_; }
    /// The test of a run number, from 1, or the first one of its kind where the number is negative; null if there is none.
    const UffTest* FindTest(bool isSpectra, int run) const;
    /// The run number of a test: negative in a file of one.
    int GetRun(const UffTest& test) const { return tests_.size() < 2 ? -1 : static_cast<int>(&test - tests_.data()) + 1; }

    UffDataset& GetDataset(const UffChannel& channel) { return datasets_[channel.dataset]; }
    const UffDataset& GetDataset(const UffChannel& channel) const { return datasets_[channel.dataset]; }
    UffValues& GetValues() { return values_; }
    const UffIndex& GetIndex() const { return index_; }
    /// What a channel is called: the first text of the dataset that says something, with the part that it is.
    std::string GetTitle(const UffChannel& channel) const;
    std::string GetUnits(const UffChannel& channel) const;
    /// Datasets that aren't in a test, as text; empty if there are none.
    std::string GetPassedOver() const;

private:
    explicit UffFile(const char* filename) : io_(filename), values_(io_) {}
    void MakeTests();

    VDIo io_;
    UffIndex index_;
    std::vector<UffDataset> datasets_;
    UffValues values_;
    std::vector<UffTest> tests_;
    int notOffered_ = 0;
};

/// What a function is called.
std::string UffFunctionName(int function);
/// "NONE" stands for no text.
inline std::string UffText(const std::string& text)
{
    return text == "NONE" ? std::string() : text;
}
