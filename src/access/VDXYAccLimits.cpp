#include "VDXYAcc.h"

#include "VDOperationProgress.h"
#include "XYValues.h"
#include "frame/VFDaxReport.h"

using namespace DaxMultiColumn;

// The limits of columns: those of a whole channel are worked out at once and kept until something is written.

bool VDXYAcc::GetColLimits(VDXYPlace place, VDVariant* minimum, VDVariant* maximum)
{
    constexpr const char* routine = "GetColLimits";
    minimum->Clear();
    maximum->Clear();
    if (!CheckDataSet(place.channel, place.dataSet, true, routine) || !CheckColumn(place.channel, place.column, routine))
        return false;
    char given = 0;
    VDVariant list;
    if (!core_.GetCapability(GivesLimits, &given) || (given && !core_.GetValue(SelectorOf(place), ColLimits, &list)))
        return false;
    if (list.GetNumItems() == 2) {
        *minimum = list[0];
        *maximum = list[1];
        if (*minimum > *maximum)
            std::swap(*minimum, *maximum);
        return true;
    }
    if (!channels_[place.channel].limitsValid && !CalcColLimits(place.channel))
        return false;
    VDXYLimits limits;
    const auto& known = ColumnOf(place).limits;
    if (IsAllSets(place.dataSet))
        for (const VDXYLimits& each : known)
            limits.Include(each);
    else if (static_cast<std::size_t>(place.dataSet) < known.size())
        limits = known[static_cast<std::size_t>(place.dataSet)];
    if (limits.Exist()) {
        minimum->SetDouble(limits.minimum);
        maximum->SetDouble(limits.maximum);
    }
    return true;
}

bool VDXYAcc::CalcColLimits(int channel)
{
    constexpr const char* routine = "CalcColLimits";
    if (!CheckChannel(channel, routine))
        return false;
    VDXYFileChan& record = channels_[channel];
    record.limitsValid = false;
    double rows = 0;
    for (const VDXYFileDataSet& dataSet : record.dataSets)
        rows += static_cast<double>(dataSet.rows);
    VDOperationProgress progress(core_.GetProgressObject());
    if (!progress.Start(DaxText::CalculatingLimits, rows * record.columns.GetSize()))
        return ReportAborted();
    int blockSize = 0;
    if (!core_.GetBufferSize(&blockSize))
        return false;
    for (int column = 0; column < record.columns.GetSize(); ++column) {
        VDXYFileCol& each = record.columns[column];
        each.limits.clear();
        for (int dataSet = 0; DaxColumnType::IsNumeric(each.type) && dataSet < record.dataSets.GetSize(); ++dataSet) {
            VDXYLimits limits;
            if (!CalcColLimits({channel, dataSet, column}, blockSize, progress, &limits))
                return false;
            each.limits.push_back(limits);
        }
    }
    record.limitsValid = true;
    return true;
}

/// A data set without rows isn't read and has no limits.
bool VDXYAcc::CalcColLimits(VDXYPlace place, std::int64_t blockSize, VDOperationProgress& progress, VDXYLimits* limits)
{
    constexpr const char* routine = "CalcColLimits";
    const std::int64_t rows = RowsOf(place);
    for (std::int64_t done = 0; done < rows;) {
        const std::int64_t some = std::min(blockSize, rows - done);
        if (!GetData(place, done + 1, some, &block_))
            return VFDaxReport(DaxError::XyRead, core_.Routine(routine), {.chain = 1}) != 0;
        if (!VFIncludeValues(block_, some, *limits))
            return core_.Report(place.channel, DaxError::XyRead, routine);
        done += some;
        if (!progress.Advance(some))
            return ReportAborted();
    }
    return true;
}

bool VDXYAcc::ReportAborted()
{
    return VFDaxReportError(DaxError::OperationAborted, core_.Routine("CalcColLimits")) != 0;
}
