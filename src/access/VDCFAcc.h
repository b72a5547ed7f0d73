#pragma once

#include "CfFamily.h"
#include "VDAccessCore.h"

#include "vdbase/VDCompBase.h"

/// Access to one test of complex frequency data, behind the `CFAcc` functions: checks and clamping around the plug-in's calls.
/// The methods, and the core's, correspond to the exported functions.
class VDCFAcc : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::CFAcc;
    static constexpr bool GuardedHandle = false;

    /// The texts of a channel, but for its title, which all families have.
    static const VDAccessText ChanUnits;
    static const VDAccessText XTitle;
    static const VDAccessText XUnits;
    static const VDAccessText YTitle;
    static const VDAccessText YUnits;
    static const VDAccessText ZTitle;
    static const VDAccessText ZUnits;

    VDCFAcc() : VDCompBase(HandleId), core_(VFCfFamily(), VFCfPlugins(), this) {}

    VDAccessCore& GetCore() { return core_; }

    /// @name Steps of the core
    /// @{
    bool FinishOpen(bool created);
    bool AddHeaderAttributes(LQChannelMapper& mapper);
    /// @}

    /// @name Values of the test as a whole
    /// The getters ask the plug-in; what the checks of the data calls go by is the object's own.
    /// @{
    bool GetLength(int key, long* length, const char* routine);
    bool GetNumber(int key, int* number, const char* routine);
    bool GetCount(int key, std::int64_t* count, const char* routine);
    bool GetComplex(char* isComplex);
    bool SetNumber(int key, int number, const char* routine);
    bool SetNumSpectra(std::int64_t spectra);
    bool SetNumLines(std::int64_t lines);
    bool SetComplex(char isComplex);
    /// @}

    /// @name Data
    /// @{
    bool GetData(int index, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind, std::int64_t* numRead,
                 void* values);
    bool GetLineAxisData(std::int64_t first, std::int64_t count, int kind, std::int64_t* numRead, void* values);
    bool GetSpectrumAxisData(std::int64_t first, std::int64_t count, int kind, std::int64_t* numRead, void* values);
    bool PutData(int index, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind, const void* values);
    bool PutLineAxisData(std::int64_t first, std::int64_t count, int kind, const void* values);
    bool PutSpectrumAxisData(std::int64_t first, std::int64_t count, int kind, const void* values);
    /// @}

private:
    const VDCFAccEntryPoints& Plugin() const { return core_.GetEntryPoints<VDCFAccEntryPoints>(); }
    bool SetCount(int key, std::int64_t count, std::int64_t* kept, const char* routine);
    bool CheckSpectrum(std::int64_t spectrum, const char* routine);
    bool CheckLine(std::int64_t line, const char* routine);
    /// Shortens a read to what there is, and tells of it.
    bool Clamp(int index, std::int64_t first, std::int64_t total, std::int64_t* count, std::int64_t* numRead,
               const char* routine);
    /// What a write of at least one value needs of the format.
    bool CheckGrowth(int index, std::int64_t first, std::int64_t count, std::int64_t total, const char* routine);

    std::int64_t numSpectra_ = 0;
    std::int64_t numLines_ = 0;
    VDAccessCore core_;  // the last member: it ends first, when the steps still have all that they need
};
