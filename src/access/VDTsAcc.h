#pragma once

#include "TsFamily.h"
#include "VDAccessCore.h"

#include "daxlib/TSAcc.h"
#include "vdbase/VDCompBase.h"
#include "vdstore/LQChannelMapper.h"

#include <memory>

/// What a time-series access object knows of one channel of the open test.
struct VDTimeFileChan
{
    double sampleRate = 1.0;     ///< points per x unit
    double baseTime = 0.0;       ///< x value of point 1
    std::int64_t numPoints = 0;
    std::int64_t nextPoint = 1;  ///< sequential cursor
    std::int64_t lastPoint = 0;  ///< end of the sequential chunk, 0 for none
};

/// Access to one time-series test, behind the `TSAcc` functions: checks, clamping, cursors and offsets around the plug-in's
/// calls. Data goes straight between the caller's buffer and the plug-in. The methods correspond to the exported functions.
class VDTsAcc : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::TsAcc;
    static constexpr bool GuardedHandle = false;

    VDTsAcc();
    ~VDTsAcc() override;

    /// @name Life
    /// @{
    bool SetId(VDFileId* id, char create);
    /// @param mode  a `VTTsAccOpenMode`
    bool Open(int mode);
    bool Close();
    bool Flush();
    bool GetCapability(int capability, char* answer);
    bool GetBufferSize(long* points);
    bool SetProgressObject(void* progress);
    /// @}

    /// @name Channels
    /// @{
    bool GetNumChans(long* count) const;
    bool GetChans(VDArrayWithSort<long>* numbers) const;
    bool GetChanIndex(int number, int* index);
    bool IsValidChan(int number, char* valid);
    bool GetActualChanNumber(int index, long* number);
    bool GetChanTitle(int index, VDString* title);
    bool SetChanTitle(int index, const char* title);
    /// @}

    /// @name Header values
    /// @{
    /// @param routine  names the export, of which there is one for each data type
    bool GetNumPoints(int index, std::int64_t* points, const char* routine);
    bool GetSampleRate(int index, double* rate);
    bool GetBaseTime(int index, double* time);
    bool SetSampleRate(int index, double rate);
    bool SetBaseTime(int index, double time);
    bool SetNumPoints(int index, std::int64_t points);
    /// A text of the whole file, such as the X title.
    bool GetFileText(int key, VDString* text, const char* routine);
    bool SetFileText(int key, const char* text, const char* routine);
    bool GetMaxLength(int key, long* length, const char* routine);
    bool GetYTitle(int index, VDString* title);
    bool GetYUnits(int index, VDString* units);
    bool SetChanText(int index, int key, const char* text, const char* routine);
    bool PointToTime(int index, std::int64_t point, double* time);
    bool TimeToPoint(int index, double time, std::int64_t* point);
    /// @}

    /// @name Data; `Value` is float, double, std::uint32_t or std::uint64_t
    /// @{
    template <class Value>
    bool GetData(int index, std::int64_t first, std::int64_t count, std::int64_t* numRead, Value* values);
    bool PrepareSequential(int index, std::int64_t first, std::int64_t last);
    template <class Value>
    bool GetNext(int index, std::int64_t count, std::int64_t* numRead, Value* values);
    template <class Value>
    bool PutData(int index, std::int64_t first, std::int64_t count, const Value* values);
    template <class Value>
    bool PutNext(int index, std::int64_t count, const Value* values);
    /// @}

    /// @name Format-specific values, metadata and offsets
    /// @{
    bool GetFormatSpecificValue(int index, const char* name, VDVariant* value);
    bool SetFormatSpecificValue(int index, const char* name, VDVariant* value);
    bool GetMetaData(LQChannelMapper** mapper);
    bool SetUseOffset(char useOffset);
    /// @}

private:
    int Count() const { return channels_.GetSize(); }
    const VDTsAccEntryPoints& Plugin() const { return core_.GetEntryPoints<VDTsAccEntryPoints>(); }
    bool CheckOpenAndChannel(int index, bool allowAll, const char* routine);
    bool LoadHeader();
    /// Writes a header value of one channel or all, and keeps it in the records that it holds for.
    template <class Keep>
    bool SetHeaderValue(int index, int key, const VDVariant& value, Keep&& keep);

    bool FetchMapper(LQChannelMapper** mapper);
    bool ReadOffsets(LQChannelMapper& mapper);
    bool ApplyMetaDataOffsets(LQChannelMapper& mapper) const;
    bool ApplyScheduleOffsets(LQChannelMapper& mapper) const;
    bool GetScheduleOffset(int index, char* present, float* offset);
    /// The type stores its offsets beside the data, and its plug-in applies them.
    bool AppliesOwnOffsets() const;
    template <class Value>
    bool AddOffset(int index, std::int64_t count, Value* values);

    VDAccessCore core_;
    bool useOffset_ = false;
    bool offsetsRead_ = false;
    VDArray<float> offsets_;
    VDArray<char> offsetPresent_;
    VDArray<VDTimeFileChan> channels_;
    void* progress_ = nullptr;
    std::unique_ptr<LQChannelMapper> cachedMapper_;
};
