#pragma once

#include "DbcText.h"

#include "daxlib/VDCanFrameDefinition.h"

#include <memory>
#include <unordered_map>
#include <unordered_set>

/// Reads one database into a list of frames. It keeps indexes of what it has read, so that time and memory stay in
/// proportion to the file whatever the file holds.
class VDDbcReader
{
public:
    using FrameList = VDArray<std::unique_ptr<VDCanFrameDefinition>>;

    /// The frames that are in the list already count as read.
    explicit VDDbcReader(FrameList& frames);

    /// @return false on a failure, which is recorded. The frames read until then are in the list.
    bool ReadFile(const char* filename, bool isUtf8);

private:
    using NameSet = std::unordered_set<std::string>;
    using ChanIndex = std::unordered_map<std::string_view, VDCanChanDefinition*>;

    /// The default of an attribute for all frames up to `end`, unless a frame got its own value after it.
    template <class Value>
    struct AttributeDefault
    {
        Value value{};
        int end = 0;
        int step = 0;
        std::unordered_map<int, int> ownStep;  ///< frame index -> step of its own value
    };

    bool ReadLines(const char* filename, bool isUtf8);
    /// These give 0, or the code of the failure; what its report carries behind the text is in `detail_`.
    int ReadLine(std::string_view line);
    int ReadNodes();
    int ReadFrame();
    int ReadSignal(std::string_view line);
    int ReadReceivers(std::string_view list, VDStringArray* receivers);
    int ReadComment();
    int ReadAttribute();
    int ReadAttributeDefault();
    int ReadValues();
    void ReadValueType();

    /// The index of the frame that a token names; -1, recorded, if there is none.
    int FindFrame(std::string_view token, int* frame);
    VDCanChanDefinition* FindChan(VDCanFrameDefinition* frame, std::string_view title);
    void AddFrame(std::unique_ptr<VDCanFrameDefinition> frame);
    void ApplyDefaults();
    bool CheckFrames();

    FrameList& frames_;
    VDCanFrameDefinition* current_ = nullptr;
    VDDbcTokens tokenizer_;
    std::string_view detail_;
    NameSet nodes_;
    NameSet frameNames_;
    bool hasDuplicateNames_ = false;
    std::unordered_map<unsigned long, int> frameById_;
    std::unordered_map<VDCanFrameDefinition*, std::pair<ChanIndex, int>> chanByTitle_;
    int step_ = 0;
    AttributeDefault<VDString> defaultMode_;
    AttributeDefault<double> defaultPeriod_;
    std::string scratch_;
};

/// Reports that the database has no such frame (-334406).
void VFReportFrameNotDefined(unsigned long id);
