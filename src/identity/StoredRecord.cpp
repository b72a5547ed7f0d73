#include "StoredRecord.h"

#include "frame/VFDaxReport.h"

VDStoredLimits VDStoredLimits::Of(const VDFileIdRecord& record)
{
    return {record.nameForm, record.dataSource, record.chanDigits};
}

bool VDStoredLimits::Check(const char* routine) const
{
    if (nameForm != VTNameFormFile && nameForm != VTNameFormTestPlusChannels)
        return VFDaxReport(DaxError::InvalidNameForm, routine, {.chain = 1}) != 0;
    if (dataSource < VTDataSourceDisk || dataSource > VTDataSourceStore3)
        return VFDaxReport(DaxError::InvalidDataSource, routine, {.chain = 1}) != 0;
    // The rules of the preferences may say that a number has no least width.
    if (chanDigits < 0 || chanDigits > 10)
        return VFDaxReport(DaxError::InvalidNumChanDigits, routine, {.chain = 1}) != 0;
    return true;
}

void VDStoredLimits::Apply(VDFileIdRecord& record) const
{
    record.nameForm = static_cast<VTNameForm>(nameForm);
    record.dataSource = static_cast<VTDataSource>(dataSource);
    record.chanDigits = static_cast<std::int32_t>(chanDigits);
}
