#pragma once

#include "UffDataset.h"
#include "UffLines.h"

#include <map>
#include <string>
#include <vector>

/// What is in a universal file, found by one pass through its text; binary data are skipped over.
class UffIndex
{
public:
    /// @return false, recorded, if the file can't be read; what is wrong with its content is no failure
    bool Read(VDIo& io);

    /// Hands the datasets over, in the order of the file.
    std::vector<UffDataset> TakeDatasets() { return std::move(datasets_); }
    /// Datasets that aren't functions or can't be read, as "15 (1), 164 (2)"; empty if there are none.
    std::string GetPassedOver() const;
    /// What is missing or wrong; empty for a sound file.
    std::string GetDamage() const;

    /// Whether a line stands between datasets.
    static bool IsMark(std::string_view line);
    /// Brings the places of text data, and their number, up to what the lines really hold.
    static bool CountValues(VDIo& io, UffDataset& dataset);

private:
    bool ReadDataset(UffLines& lines, std::string_view head);
    bool ReadHeader(UffLines& lines, UffDataset& dataset, std::string* problem);
    bool FindBinaryData(UffLines& lines, std::string_view head, UffDataset& dataset);
    bool FindMark(UffLines& lines, UffDataset& dataset);
    bool FindText(UffLines& lines, VDIo& io, UffDataset& dataset);
    bool SkipToMark(UffLines& lines);
    void PassOver(const std::string& type) { ++passedOver_[type]; }
    void ComplainOfEnd(const UffDataset& dataset);
    void Complain(const UffDataset& dataset, const std::string& problem);

    VDIo* io_ = nullptr;
    std::int64_t fileSize_ = 0;
    int functions_ = 0;  ///< datasets 58 that were met
    std::vector<UffDataset> datasets_;
    std::map<std::string, int> passedOver_;
    std::vector<std::string> damage_;
    int moreDamage_ = 0;
};
