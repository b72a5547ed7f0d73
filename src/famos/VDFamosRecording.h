#pragma once

#include "bus/VDFamosPlacement.h"

#include "daxlib/DaxTypes.h"
#include "vdbase/VDIo.h"

#include <optional>
#include <string>
#include <unordered_map>

class LQChannelMapper;

/// What of a recording a test holds.
enum class VTFamosContent {
    Series,  ///< components whose values are evenly spaced
    Pairs,   ///< components with an x component of their own: of each pair the y and then the x component are channels
};

/// One Famos file with samples: what it declares, and its channels. A channel is a component; texts are given as UTF-8.
///
/// A file that is cut off or damaged keeps what is whole: the damage says what is missing.
class VDFamosRecording
{
public:
    /// Reads what the file declares. The file stays open.
    /// @return null, recorded, if it declares no channel that could be read
    static std::unique_ptr<VDFamosRecording> Open(const VDString& filename, VTFamosContent content);
    /// What a file that is open already declares.
    /// @return empty, recorded, if it declares nothing
    static std::optional<VDFamosHeader> ReadHeader(VDIo& file, std::string* damage);
    /// Whether the file is a stream of time-stamped frames.
    static bool IsTimeStamped(const VDFamosHeader& header);

    /// Whether the file holds any of it; damaged ones hold series.
    static bool Holds(const VDFamosHeader& header, VTFamosContent content);

    const VDString& GetFilename() const { return file_.GetFilename(); }
    const VDFamosHeader& GetHeader() const { return header_; }
    /// Empty for a sound file. Of the channels' values it says nothing.
    const std::string& GetDamage() const { return damage_; }

    std::size_t GetChannelCount() const { return channels_.size(); }
    VDString GetTitle(std::size_t channel) const;
    VDString GetUnits(std::size_t channel) const;
    VDString GetXUnits(std::size_t channel) const;
    /// A `DaxDataType`: one that holds every value as it is.
    int GetDataType(std::size_t channel) const;
    double GetSampleRate(std::size_t channel) const;
    /// Where the values lie. Without points, and with what is wrong in `damage`, if the keys of the channel don't say it.
    VDFamosLayout GetLayout(std::size_t channel, std::string* damage) const;
    /// @param layout  of the channel
    double GetBaseTime(std::size_t channel, const VDFamosLayout& layout) const;

    /// @name Metadata, in the set "ExtraDetails"
    /// @{
    void AddTo(LQChannelMapper& mapper) const;
    /// @param index  of the channel in the mapper
    void AddChannelTo(LQChannelMapper& mapper, int index, std::size_t channel, const VDFamosLayout& layout) const;
    /// @}

    /// The open file; null, recorded, if it can't be opened any more.
    VDIo* Use();
    bool IsInUse() const { return file_.IsOpen(); }
    void Rest() { file_.Close(); }

private:
    struct Channel
    {
        std::size_t group;
        std::size_t component;
    };

    explicit VDFamosRecording(const VDString& filename) : file_(filename) {}
    void ListChannels(VTFamosContent content);
    const VDFamosGroup& GroupOf(std::size_t channel) const { return header_.groups[channels_[channel].group]; }
    const VDFamosComponent& ComponentOf(std::size_t channel) const
    {
        return GroupOf(channel).components[channels_[channel].component];
    }
    static bool IsScaled(const VDFamosComponent& component);
    /// That of the component, else of its group; null if the file has none.
    const VDFamosScaling* AxisOf(std::size_t channel) const;
    const VDTime* TriggerOf(std::size_t channel) const;

    VDIo file_;
    VDFamosHeader header_;
    std::string damage_;
    std::vector<Channel> channels_;
    std::optional<VDFamosPlacement> placement_;
    std::unordered_map<int, const VDFamosDefinition*> groupDefinitions_;
};
