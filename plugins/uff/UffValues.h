#pragma once

#include "UffDataset.h"
#include "UffLines.h"

#include <vector>

/// Reads the values of datasets. Binary data go by their places; text is read on from where the last call for the dataset
/// ended, or from the nearest known place.
class UffValues
{
public:
    /// What of a point is wanted.
    enum class Part { Abscissa, Real, Imaginary, Complex };

    explicit UffValues(VDIo& io) : io_(io), lines_(io) {}

    /// @param first   point, from 0; the points must be there
    /// @param values  gets a number a point, or two for `Complex`; imaginary parts of real values are 0
    /// @return false, recorded, if the file fails or its text isn't what it was taken for
    template <class T>
    bool Read(UffDataset& dataset, std::int64_t first, std::int64_t count, Part part, T* values);

private:
    template <class T>
    bool ReadText(UffDataset& dataset, std::int64_t first, std::int64_t count, Part part, T* values);
    template <class T>
    bool ReadTextOnce(UffDataset& dataset, std::int64_t first, std::int64_t count, Part part, T* values, bool* isIrregular);
    template <class T>
    bool ReadBinary(const UffDataset& dataset, std::int64_t first, std::int64_t count, Part part, T* values);
    UffDataset::Mark FindStart(const UffDataset& dataset, std::int64_t part) const;

    VDIo& io_;
    UffLines lines_;
    std::vector<char> bytes_;
    /// Where the last read of text ended: at the line that holds the next number.
    const UffDataset* lastDataset_ = nullptr;
    UffDataset::Mark last_{};
};
