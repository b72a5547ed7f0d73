#include "vdbase/VFError.h"

#include <algorithm>
#include <new>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace {

// Plain per-thread values, which need no construction check. The data path clears at every call, and usually there is
// nothing to clear; the model spares it the look-up of the thread's storage.
__attribute__((tls_model("initial-exec"))) thread_local bool VVHasReports = false;
thread_local int VVMuteDepth = 0;
// Destructors of other objects may still report when the thread's record is already destroyed.
thread_local bool VVRecordGone = false;

}  // namespace

/// The reports of one thread, the oldest first.
class VDErrorRecord
{
public:
    // A cascade without end keeps its cause (the oldest reports) and its outcome (the newest).
    static constexpr std::size_t maxReports = 64;

    ~VDErrorRecord()
    {
        VVHasReports = false;
        VVRecordGone = true;
    }

    /// Null at the end of the thread.
    static VDErrorRecord* OfThread()
    {
        if (VVRecordGone)
            return nullptr;
        thread_local VDErrorRecord record;
        return &record;
    }

    void Set(VDErrorReport report, bool onTop)
    {
        if (!onTop)
            reports_.clear();
        else if (hasLastResort_)
            reports_.push_back(std::move(lastResort_));
        if (reports_.size() == maxReports)
            reports_.erase(reports_.begin() + maxReports / 2);
        reports_.push_back(std::move(report));
        hasLastResort_ = false;
        VVHasReports = true;
    }

    /// Keeps of a report what needs no memory: the code and, if it is short, the text.
    void SetLastResort(int code, std::string_view text)
    {
        lastResort_.code = code;
        lastResort_.text = VDString(text.size() <= ShortText ? text : std::string_view());
        Clear();
        hasLastResort_ = true;
        VVHasReports = true;
    }

    void Clear()
    {
        reports_.clear();
        hasLastResort_ = false;
        VVHasReports = false;
    }

    std::span<const VDErrorReport> Reports() const
    {
        return hasLastResort_ ? std::span(&lastResort_, 1) : std::span<const VDErrorReport>(reports_);
    }

    /// Changes places with other reports.
    void Swap(std::vector<VDErrorReport>& reports)
    {
        reports_.swap(reports);
        hasLastResort_ = false;
        VVHasReports = !reports_.empty();
    }

private:
    static constexpr std::size_t ShortText = 15;  ///< what a string keeps in itself

    std::vector<VDErrorReport> reports_;
    VDErrorReport lastResort_;  ///< stands alone, for a report that there was no memory for
    bool hasLastResort_ = false;
};

namespace {

const VDErrorReport& LastReport(const VDErrorRecord* record)
{
    static const VDErrorReport none;
    return record == nullptr || record->Reports().empty() ? none : record->Reports().back();
}

}  // namespace

VDBaseException::~VDBaseException() = default;

int VFErrorSet(int code, const char* text, const char* routine, int chain)
{
    VDErrorRecord* record = VVMuteDepth == 0 ? VDErrorRecord::OfThread() : nullptr;
    if (record == nullptr)
        return 0;
    try {
        // The report is built first: its text may belong to one that is about to go.
        record->Set({code, text, routine}, chain != 0);
    } catch (const std::bad_alloc&) {
        record->SetLastResort(code, text == nullptr ? "" : text);
    }
    return 0;
}

bool VFErrorCheck(int code)
{
    if (!VVHasReports)
        return false;
    const auto reports = VDErrorRecord::OfThread()->Reports();
    return std::any_of(reports.begin(), reports.end(), [&](const VDErrorReport& report) { return report.code == code; });
}

void VFErrorClear()
{
    if (VVHasReports && VVMuteDepth == 0)
        VDErrorRecord::OfThread()->Clear();
}

void VFErrorEnableNew(int flag)
{
    if (flag == 0)
        ++VVMuteDepth;
    else if (VVMuteDepth > 0)
        --VVMuteDepth;
}

const VDErrorRecord* VFGetBaseLibError()
{
    return VDErrorRecord::OfThread();
}

int VFErrorGetCode(const VDErrorRecord* record)
{
    return LastReport(record).code;
}

VDString VFErrorGetText(const VDErrorRecord* record)
{
    return LastReport(record).text;
}

VDString VFErrorGetRoutine(const VDErrorRecord* record)
{
    return LastReport(record).routine;
}

VDString VFErrorGetBriefString(const VDErrorRecord* record)
{
    const std::string_view text = LastReport(record).text.View();
    return VDString(text.substr(0, text.find_first_of("\r\n")));
}

VDArray<VDErrorReport> VFErrorGetReports(const VDErrorRecord* record)
{
    VDArray<VDErrorReport> reports;
    if (record != nullptr)
        for (const VDErrorReport& report : record->Reports())
            reports.AppendItem(report);
    return reports;
}

void VFErrorSetAll(const VDArray<VDErrorReport>& reports, int chain)
{
    for (const VDErrorReport& report : reports) {
        VFErrorSet(report.code, report.text, report.routine, chain);
        chain = 1;
    }
}

VDErrorCapture::VDErrorCapture() : muteDepth_(std::exchange(VVMuteDepth, 0))
{
    if (VDErrorRecord* record = VDErrorRecord::OfThread())
        record->Swap(before_);
}

VDErrorCapture::~VDErrorCapture()
{
    VVMuteDepth = muteDepth_;
    if (VDErrorRecord* record = VDErrorRecord::OfThread())
        record->Swap(before_);
}
