#pragma once

#include "ResultsFile.h"

#include "daxlib/ComplexFrequencyPlugin.h"

/// Complex frequency access to one storage file: the spectra inside. Failures are recorded and give false. Channels are indexes
/// that the access object has checked; spectra and lines count from 1.
class ResultsCFSpectra
{
public:
    ~ResultsCFSpectra() { Close(); }

    bool SetId(VDFileId* id);
    bool Open(int mode);
    bool Close();
    bool Flush() { return LQGetDataManager()->Flush(spectra_); }
    static bool HasCapability(int capability);

    bool GetValue(long channel, int key, VDVariant& value) const;
    bool PutValue(long channel, int key, const VDVariant& value);
    bool GetData(long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind, void* values);
    bool PutData(long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind, const void* values);
    bool GetAxis(LQSpectraAxis axis, std::int64_t first, std::int64_t count, int kind, void* values);
    bool PutAxis(LQSpectraAxis axis, std::int64_t first, std::int64_t count, int kind, const void* values);
    bool LoadMetaData(LQChannelMapper** mapper);

private:
    bool SetValueTypes();
    bool SetComplex(bool isComplex);
    VDVariant GetFileValue(int key) const;
    bool PutFileValue(int key, const VDVariant& value);

    VDFileId* id_ = nullptr;  // the access object's, which outlives the instance
    ResultsFile file_;
    LQSpectra* spectra_ = nullptr;
};
