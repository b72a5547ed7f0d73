#include "VDOperationProgress.h"

#include "frame/VFDaxReport.h"

#include "vdbase/VFTrace.h"

#include <algorithm>

VDOperationProgress::~VDOperationProgress()
{
    if (started_)
        Tell([&] { object_->End(); });
}

bool VDOperationProgress::Start(int textId, double total)
{
    if (object_ == nullptr)
        return true;
    started_ = true;
    total_ = std::max(total, 1.0);
    const VDString text = VFDaxText(textId);
    char cancel = 0;
    Tell([&] { object_->Start(text, 1); });
    Tell([&] { object_->Update(0, &cancel); });
    return cancel == 0;
}

bool VDOperationProgress::Advance(std::int64_t work)
{
    if (object_ == nullptr)
        return true;
    done_ += static_cast<double>(work);
    const int percent = static_cast<int>(done_ * 100.0 / total_ + 0.5);
    char cancelUpdate = 0;
    char cancelCheck = 0;
    if (percent != percent_) {
        percent_ = percent;
        Tell([&] { object_->Update(percent, &cancelUpdate); });
    }
    Tell([&] { object_->Check(&cancelCheck); });
    return cancelUpdate == 0 && cancelCheck == 0;
}

template <class Function>
void VDOperationProgress::Tell(Function&& function)
{
    try {
        function();
    } catch (...) {
        VFTrace("Exception caused by failure in progress object\n");
    }
}
