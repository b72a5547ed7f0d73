#pragma once

#include "vdbase/VDString.h"

#include <cstdint>

/// A point of civil time (Gregorian, no time zone), exact to the millisecond.
class VDBASE_API VDTime
{
public:
    VDTime() = default;

    /// False, and the object unchanged, if a field is out of range (month 1 to 12, day within the month, hour 0 to 23,
    /// minute and second 0 to 59, millisecond 0 to 999; year 1 to 9999).
    bool LoadVDTIME(int year, int month, int day, int hour, int minute, int second, int millisecond);
    bool IsSet() const { return set_; }

    int GetYear() const { return year_; }
    int GetMonth() const { return month_; }
    int GetDay() const { return day_; }
    int GetHour() const { return hour_; }
    int GetMinute() const { return minute_; }
    int GetSecond() const { return second_; }
    int GetMillisecond() const { return millisecond_; }

    /// "2012-12-12T17:41:34.000"; empty while nothing is set.
    VDString ToIsoText() const;

private:
    int year_ = 1970;
    int month_ = 1;
    int day_ = 1;
    int hour_ = 0;
    int minute_ = 0;
    int second_ = 0;
    int millisecond_ = 0;
    bool set_ = false;
};

/// A time as a count of microseconds since 1970-01-01T00:00:00.
class VDBASE_API VDTimecode
{
public:
    void SetVDTime(const VDTime& time);
    std::int64_t GetUTCTimeInMicroSeconds() const { return microseconds_; }

private:
    std::int64_t microseconds_ = 0;
};
