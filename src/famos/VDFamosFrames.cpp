#include "VDFamosFrames.h"

#include "frame/VFDaxReport.h"

#include <algorithm>

namespace {

constexpr std::int64_t VVMostBytes = 128 * 1024 * 1024;

}  // namespace

VDFamosFrames::VDFamosFrames(VDIo& file, const std::vector<VDFamosDataBlock>& dataBlocks, VDCanFrameTypeList& types)
    : stream_(file, dataBlocks, types), types_(types)
{
    std::int64_t bytes = 0;
    for (int index = 0; index < types_.GetCount() && bytes <= VVMostBytes; ++index) {
        const VDCanFrameType& type = *types_.GetFrameType(index);
        bytes += type.count * (StrideOf(type) + static_cast<std::int64_t>(sizeof(std::int64_t))) +
                 static_cast<std::int64_t>(sizeof(Run));
    }
    keepsAll_ = bytes <= VVMostBytes;
}

const VDFamosFrames::Run* VDFamosFrames::Find(const VDCanFrameType& type, std::int64_t frame)
{
    const auto holds = [this, &type, frame] {
        const auto found = runs_.find(&type);
        const bool isIn =
            found != runs_.end() && frame >= found->second.first && frame < found->second.first + found->second.count;
        return isIn ? &found->second : nullptr;
    };
    if (const Run* const run = holds(); run != nullptr)
        return run;
    if (!Pass(keepsAll_ ? nullptr : &type, keepsAll_ ? 0 : frame))
        return nullptr;
    const Run* const run = holds();
    if (run == nullptr)  // the file has changed
        VFDaxReportError(DaxError::FamosRead, "VDFamosFrames::Find");
    return run;
}

/// Takes the frames of one id from a number on, or those of all ids.
bool VDFamosFrames::Pass(const VDCanFrameType* wanted, std::int64_t first)
{
    runs_.clear();
    if (wanted == nullptr || wanted != passed_ || first < passedFrames_) {
        stream_.ResetRead();
        passedFrames_ = 0;
    }
    passed_ = nullptr;
    const std::int64_t most =
        wanted != nullptr ? VVMostBytes / (StrideOf(*wanted) + static_cast<std::int64_t>(sizeof(std::int64_t))) : 0;
    for (;;) {
        bool endOfData = false;
        if (!stream_.ReadFrame(true, &endOfData))
            return false;
        if (endOfData)
            return true;
        const VDCanFrameType* const type = types_.Find(static_cast<int>(stream_.GetFrameId()));
        if (type == nullptr || (wanted != nullptr && (type != wanted || passedFrames_++ < first)))
            continue;
        Run& run = runs_[type];
        if (run.count == 0) {
            run.first = first;
            run.stride = StrideOf(*type);
        }
        Take(*type, run);
        if (wanted != nullptr && run.count >= most) {
            passed_ = wanted;
            return true;
        }
    }
}

void VDFamosFrames::Take(const VDCanFrameType& type, Run& run) const
{
    const int bytes = std::min(stream_.GetNumBytes(), type.numBytes);
    const unsigned char* const data = stream_.GetData();
    if (bytes < type.numBytes)
        run.shortOnes.push_back(run.first + run.count);
    run.data.insert(run.data.end(), data, data + bytes);
    ++run.count;
    run.data.resize(static_cast<std::size_t>(run.count * run.stride));
    run.timeStamps.push_back(stream_.GetTimeStamp());
}
