#pragma once

#include "UffAccess.h"

#include "daxlib/ComplexFrequencyPlugin.h"

/// A universal file of spectra that is made, with one spectrum a channel.
class UffSpectraWriter final : public UffWriter
{
public:
    /// @return null, recorded, on failure
    static std::unique_ptr<UffSpectraWriter> Create(const std::string& filename, bool isText, const std::vector<int>& types);
    ~UffSpectraWriter() override;

    /// The values as they were put.
    LQSpectra& GetSpectra() const { return *spectra_; }
    bool IsText() const { return isText_; }
    bool SetComplex(bool isComplex);

private:
    using UffWriter::UffWriter;
    bool WriteDatasets() override;
    bool WriteDataset(int channel, bool isEven, bool isSingleAxis);
    bool FindStep(double* first, double* step, bool* isEven, bool* isSingle);
    template <class Function>
    bool ForEachBlock(Function&& function);

    LQSpectra* spectra_ = nullptr;
};

/// Spectra of a universal file that are open for complex frequency access.
class UffSpectra final : public UffAccess
{
public:
    UffSpectra() : UffAccess(true, "UffCF") {}

    bool Open(int mode);
    bool GetCapability(int capability) const;
    bool GetValue(long channel, int key, VDVariant& value) const;
    bool PutValue(long channel, int key, const VDVariant& value);
    bool GetData(long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind, void* values);
    bool PutData(long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind, const void* values);
    bool GetLines(std::int64_t first, std::int64_t count, int kind, void* values);
    bool PutLines(std::int64_t first, std::int64_t count, int kind, const void* values);
    /// The place of the one spectrum on its axis.
    bool GetPlace(int kind, void* values) const;
    bool PutPlace(int kind, const void* values);

private:
    UffSpectraWriter& Writer() const { return static_cast<UffSpectraWriter&>(*writer_); }
    VDVariant GetFileValue(int key) const;
    VDVariant GetChannelValue(long channel, int key) const;
    bool PutFileValue(int key, const VDVariant& value);
    bool PutChannelText(long channel, int key, const VDVariant& value);
    bool FailKind() const;
    template <class T>
    bool ReadKind(long channel, std::int64_t first, std::int64_t count, int kind, void* values);
    template <class T>
    bool CheckText(std::int64_t count, const T* values) const;
};
