#pragma once

#include "UffHeader.h"

#include "vdstore/LQDataManager.h"

#include <memory>
#include <string>
#include <vector>

class VDStorageFile;

/// A universal file that is made: values come in any order, and are kept in a nameless file beside it until a flush writes all
/// datasets, one behind the other, and puts the whole file in its place in one step. Failures are recorded.
class UffWriter
{
public:
    virtual ~UffWriter();
    UffWriter(const UffWriter&) = delete;
    UffWriter& operator=(const UffWriter&) = delete;

    int GetNumChannels() const { return static_cast<int>(headers_.size()); }
    UffHeader& GetHeader(std::size_t channel)
    {
        isChanged_ = true;
        return headers_[channel];
    }
    const UffHeader& GetHeader(std::size_t channel) const { return headers_[channel]; }
    /// Header fields that the metadata have, but for those that are set as what they are.
    void TakeFields(std::size_t channel, const UffHeader& fields);
    void MarkChanged() { isChanged_ = true; }
    /// Writes the file, if anything changed since it was written.
    bool Flush();
    /// Whether text holds a value with all its digits.
    template <class T>
    static bool FitsText(T value);

protected:
    /// @param isText  of the form that is written
    UffWriter(const std::string& filename, bool isText, int channels);

    /// The storage in which values wait; null, recorded, if there is no room for one.
    Z4Storage* GetStorage();
    virtual bool WriteDatasets() = 0;

    /// @name Of a dataset that is written
    /// @{
    bool BeginDataset(const UffHeader& header);
    /// Numbers in the order of the dataset, behind those that were written.
    bool WriteNumbers(const UffHeader& header, const double* numbers, std::int64_t count);
    bool EndDataset();
    /// @}

    const bool isText_;
    LQDataManager& data_;
    Z4File* stage_ = nullptr;

private:
    bool Write(const std::string& bytes);
    bool FlushBytes();
    bool ReportSystem(int error) const;

    std::string filename_;
    std::vector<UffHeader> headers_;
    bool isChanged_ = true;
    std::unique_ptr<VDStorageFile> output_;
    std::string bytes_;
    std::int64_t written_ = 0;
    std::int64_t numbers_ = 0;  ///< of the dataset so far
};
