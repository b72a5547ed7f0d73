#pragma once

#include "vdstore/LQObject.h"

/// What the values of a channel of spectra are. The numbers stand in files.
enum LQSpectrumValue : int {
    LQSpectrumFloat = 1,
    LQSpectrumDouble = 2,
    LQSpectrumComplexFloat = 3,   ///< pairs of real and imaginary part
    LQSpectrumComplexDouble = 4,
};

/// Texts of a channel of spectra beside its title. X is the axis of the lines, Y that of the spectra, Z that of the values.
enum LQSpectraText : int {
    LQSpectraChanUnits,
    LQSpectraXTitle,
    LQSpectraXUnits,
    LQSpectraYTitle,
    LQSpectraYUnits,
    LQSpectraZTitle,
    LQSpectraZUnits,
    LQSpectraTexts  ///< their number
};

/// The two axes that all channels share.
enum LQSpectraAxis : int { LQSpectraLines, LQSpectraSpectra };

/// Spectra: each channel is a matrix of spectra by lines, kept spectrum by spectrum, with values of its own type. Spectra and
/// lines count from 0. Values and places of an axis that were never written are 0. Data go straight between the caller's buffer
/// and the file where the types agree, and through a small buffer where they don't.
class VDSTORE_API LQSpectra : public LQObject
{
public:
    ~LQSpectra() override;

    int GetChannelCount() const override { return channels_.GetSize(); }
    /// New channels have complex float values.
    bool AdjustChannelCount(int count) override;
    bool RemoveChannel(int channel) override;
    /// `Z4TypeFloat` or `Z4TypeDouble`, of complex values that of their parts.
    std::int32_t GetChannelDataType(int channel) const override;

    /// @name The test as a whole
    /// @{
    long GetType() const { return type_; }
    long GetSubType() const { return subType_; }
    void SetType(std::int32_t type) { type_ = type; }
    void SetSubType(std::int32_t subType) { subType_ = subType; }
    std::int64_t GetNumSpectra() const { return spectra_; }
    std::int64_t GetNumLines() const { return lines_; }
    /// Spectra behind the new end are gone.
    bool SetNumSpectra(std::int64_t spectra);
    /// Refused once there are values, but for the same number.
    bool SetNumLines(std::int64_t lines);
    /// Whether a channel has complex values.
    bool IsComplex() const;
    /// @}

    /// @name Channels
    /// @{
    /// A `LQSpectrumValue`; 0 if there is no such channel.
    int GetValueType(int channel) const;
    /// Refused once the channel has values, but for the same type.
    bool SetValueType(int channel, int type);
    bool HasValues(int channel) const;
    bool GetText(LQSpectraText text, int channel, VDString* value) const;
    bool SetText(LQSpectraText text, int channel, const char* value);
    /// @}

    /// @name Data
    /// All of the range must lie within the lines and, for reading, the spectra. A write makes spectra if need be.
    /// @param type  of the values in the buffer. Reading converts between single and double, and gives real values an imaginary
    ///              part of 0; complex values aren't given as real ones. Writing takes what loses nothing, and refuses all else with
    ///              `WrongDataType`; doubles make a channel of floats that has no values yet one of doubles
    /// @{
    bool GetData(std::int64_t spectrum, std::int64_t first, std::int64_t count, int type, void* values, int channel);
    bool SetData(std::int64_t spectrum, std::int64_t first, std::int64_t count, int type, const void* values, int channel);
    /// Values of an axis, within the lines or spectra that there are.
    bool GetAxis(LQSpectraAxis axis, std::int64_t first, std::int64_t count, double* values);
    bool SetAxis(LQSpectraAxis axis, std::int64_t first, std::int64_t count, const double* values);
    /// @}

private:
    friend class LQDataManager;

    struct Channel
    {
        int type = LQSpectrumComplexFloat;
        VDString texts[LQSpectraTexts];
        Z4Stream* stream = nullptr;
    };

    LQSpectra();

    /// Makes the streams of the axes.
    bool Begin(int recordSize);
    void WriteContent(Z4ByteWriter& writer) const override;
    bool ReadContent(Z4ByteReader& reader) override;
    bool ReadChannel(Z4ByteReader& reader, Z4Stream* stream);
    /// Null, recorded, if there is no such channel.
    const Channel* GetChannel(int channel) const;
    std::int64_t GetCount(LQSpectraAxis axis) const { return axis == LQSpectraLines ? lines_ : spectra_; }
    std::int64_t GetPlace(const Channel& channel, std::int64_t spectrum, std::int64_t first) const;
    bool CheckSize(std::int64_t spectra, std::int64_t lines) const;
    bool CheckRange(std::int64_t first, std::int64_t count, std::int64_t total) const;
    bool ReportValueType() const;
    template <class Part>
    bool Read(Z4Stream& stream, std::int64_t place, std::int64_t count, Part* parts);

    Z4SlotList<Channel> channels_;
    std::int32_t type_ = 0;
    std::int32_t subType_ = 0;
    std::int64_t spectra_ = 0;
    std::int64_t lines_ = 0;
    int recordSize_;
};
