#pragma once

#include "TsFamily.h"
#include "VDAccessCore.h"
#include "VDTimeFileChan.h"

#include "daxlib/TSAcc.h"
#include "vdbase/VDCompBase.h"
#include "vdstore/LQChannelMapper.h"

#include <span>
#include <vector>

/// Access to one time-series test, behind the `TSAcc` functions: checks, clamping, cursors and offsets around the plug-in's
/// calls. Data goes straight between the caller's buffer and the plug-in. The methods, and the core's, correspond to the
/// exported functions.
class VDTsAcc : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::TsAcc;
    static constexpr bool GuardedHandle = false;

    VDTsAcc() : VDCompBase(HandleId), core_(VFTsFamily(), VFTsPlugins(), this) {}

    VDAccessCore& GetCore() { return core_; }

    /// @name Steps of the core
    /// @{
    bool SetChannelCount(int count);
    bool FinishOpen(bool created);
    /// Brings the statistics up to date and hands them to a plug-in that stores them.
    bool FlushStats();
    bool AddHeaderAttributes(LQChannelMapper& mapper);
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

    /// @name Statistics and full-scale limits; `Value` is float or double
    /// @{
    template <class Value>
    bool GetStat(int index, int id, Value* value);
    bool GetPointStat(int index, int id, std::int64_t* point);
    template <class Value>
    bool GetAllStats(int index, Value* max, Value* min, Value* mean, Value* sdev, Value* rms, std::int64_t* pointOfMax,
                     std::int64_t* pointOfMin, std::int64_t* pointOfAbs);
    bool SetStats(int index, float max, float min, float mean, float sdev, float rms, std::int64_t pointOfMax,
                  std::int64_t pointOfMin, std::int64_t pointOfAbs);
    bool SetStatsMonitor(char enable, char recalculate);
    bool CalcStats(int index);
    bool GetFullScaleLimits(int index, float* low, float* high);
    bool SetFullScaleLimits(int index, float limit, float otherLimit);
    bool GetFullScaleValid(int index, char* valid);
    /// @}

private:
    int Count() const { return channels_.GetSize(); }
    static bool IsAll(int index) { return static_cast<std::uint32_t>(index) == DaxChannel::All; }
    /// A `DaxDataType`; float where the id doesn't say.
    int DataType(int index) const;
    bool IsDouble(int index) const { return DataType(index) == DaxDataType::Double; }
    bool IsDigital(int index) const;
    /// Calls `function(Value)`, `Value` being the type of the channel's statistics.
    template <class Function>
    auto WithStatsType(int index, Function&& function) const
    {
        return IsDouble(index) ? function(double()) : function(float());
    }
    const VDTsAccEntryPoints& Plugin() const { return core_.GetEntryPoints<VDTsAccEntryPoints>(); }
    bool CheckOpenAndChannel(int index, bool allowAll, const char* routine);
    bool LoadHeader();
    /// Writes a header value of one channel or all, and keeps it in the records that it holds for.
    /// @param keep  gets such a record, and the channel for which the value that it holds was written
    template <class Keep>
    bool SetHeaderValue(int index, int key, const VDVariant& value, Keep&& keep);
    /// Tells of points that were written behind the last one.
    bool Grow(int index, std::int64_t points);

    bool LoadStats(int index);
    double RmsWithOffset(int index);
    template <class Value>
    void Monitor(int index, std::int64_t first, std::int64_t count, const Value* values);
    /// Brings what is gathered up to a point behind the last one without reading, if that can be done.
    template <class Value>
    void GatherUpTo(int index, std::int64_t first);
    bool HasFormatFlag(int index, const char* name);
    bool FinishStats(int index);
    bool CalcStatsForFlush(int index);
    bool PutStats(int index);

    bool AddChannelAttributes(LQChannelMapper& mapper, int index);
    bool AddsOffsets() const { return !takesRawValues_ && core_.GetOffsets().AreAdded(); }
    /// They must be known (`VDAccessOffsets::Need`).
    float GetOffset(int index) const { return static_cast<float>(core_.GetOffsets()[index]); }
    template <class Value>
    bool AddOffset(int index, std::int64_t count, Value* values);

    bool takesRawValues_ = false;
    VDArray<VDTimeFileChan> channels_;
    VDAccessCore core_;  // the last member: it ends first, when the steps still have all that they need
};
