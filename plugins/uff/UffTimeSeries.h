#pragma once

#include "UffAccess.h"

#include "daxlib/TimeSeriesPlugin.h"

/// A universal file of time responses that is made. Channels are single or double precision, as their ids say.
class UffTimeSeriesWriter final : public UffWriter
{
public:
    /// @return null, recorded, on failure
    static std::unique_ptr<UffTimeSeriesWriter> Create(const std::string& filename, bool isText, const std::vector<int>& types);
    ~UffTimeSeriesWriter() override;

    /// The values as they were put, and the channel there that has those of a channel here.
    LQTimeSeries& GetSeries() const { return *series_; }
    int GetPlace(long channel) const { return places_[static_cast<std::size_t>(channel)]; }
    bool IsText() const { return isText_; }

private:
    using UffWriter::UffWriter;
    bool WriteDatasets() override;
    bool WriteDataset(int channel);

    LQTimeSeries* series_ = nullptr;
    std::vector<int> places_;
};

/// The time responses of a universal file that is open for time-series access.
class UffTimeSeries final : public UffAccess
{
public:
    UffTimeSeries() : UffAccess(false, "UffTS") {}

    bool Open(int mode);
    bool GetCapability(int capability) const;
    bool GetValue(long channel, int key, VDVariant& value) const;
    bool PutValue(long channel, int key, const VDVariant& value);
    template <class T>
    bool GetData(long channel, std::int64_t first, std::int64_t count, T* values);
    template <class T>
    bool PutData(long channel, std::int64_t first, std::int64_t count, const T* values);

private:
    UffTimeSeriesWriter& Writer() const { return static_cast<UffTimeSeriesWriter&>(*writer_); }
    bool OpenNew();
    const UffAxis& GetValueAxis(long channel) const;
    VDVariant GetFileValue(int key) const;
    VDVariant GetChannelValue(long channel, int key) const;
    bool PutChannelValue(long channel, int key, const VDVariant& value);
    std::int64_t GetNumPoints(long channel) const;
};
