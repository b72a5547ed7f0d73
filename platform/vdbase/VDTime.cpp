#include "vdbase/VDTime.h"

#include <chrono>

namespace {

bool IsInRange(int value, int first, int last)
{
    return value >= first && value <= last;
}

std::chrono::year_month_day DateOf(int year, int month, int day)
{
    return {std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
            std::chrono::day(static_cast<unsigned>(day))};
}

}  // namespace

bool VDTime::LoadVDTIME(int year, int month, int day, int hour, int minute, int second, int millisecond)
{
    // The ranges come first: the date's own fields hold less than an int.
    if (!IsInRange(year, 1, 9999) || !IsInRange(month, 1, 12) || !IsInRange(day, 1, 31) || !DateOf(year, month, day).ok())
        return false;
    if (!IsInRange(hour, 0, 23) || !IsInRange(minute, 0, 59) || !IsInRange(second, 0, 59) || !IsInRange(millisecond, 0, 999))
        return false;
    year_ = year;
    month_ = month;
    day_ = day;
    hour_ = hour;
    minute_ = minute;
    second_ = second;
    millisecond_ = millisecond;
    set_ = true;
    return true;
}

VDString VDTime::ToIsoText() const
{
    VDString text;
    if (set_)
        text.Format("%04d-%02d-%02dT%02d:%02d:%02d.%03d", year_, month_, day_, hour_, minute_, second_, millisecond_);
    return text;
}

void VDTimecode::SetVDTime(const VDTime& time)
{
    using namespace std::chrono;
    const sys_days date = DateOf(time.GetYear(), time.GetMonth(), time.GetDay());
    const auto whole = date.time_since_epoch() + hours(time.GetHour()) + minutes(time.GetMinute()) +
                       seconds(time.GetSecond()) + milliseconds(time.GetMillisecond());
    microseconds_ = duration_cast<microseconds>(whole).count();
}
