#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// One frame of a log as `candump` writes it.
struct VDCanLogFrame
{
    static constexpr std::size_t MaxBytes = 64;

    std::string_view time;  ///< seconds, as a number of JSON; a date and a time of day as written; empty if the log has none
    bool timeIsDate = false;  ///< it is a date and a time of day
    unsigned long id = 0;     ///< an extended id bears the mark of a database
    bool isRemote = false;    ///< asks for the frame and has no data
    bool isError = false;     ///< tells of an error on the bus and has no frame's data
    std::size_t numBytes = 0;
    std::array<unsigned char, MaxBytes> data{};
};

/// Reads a line of a log in one of two forms, of which each may have a time in front and anything behind:
///
///     (1436509052.249713) can0 044#2A366C2BBA         as a log file; dots may stand between bytes
///     (1436509052.249713)  can0  044   [5]  2A 36 6C 2B BA       as on the screen
///
/// An id of eight hexadecimal digits is an extended one, or tells of an error with the bit 0x20000000. "##" and a digit of
/// flags mark a CAN FD frame, "R" and a length a remote frame, "_9" to "_F" behind eight bytes a raw length.
/// @return false for anything else
bool VFReadCanLogLine(std::string_view line, VDCanLogFrame* frame);

/// Reads hexadecimal bytes, between which dots or blanks may stand. False for anything else and for more than 64 bytes.
bool VFReadHexBytes(std::string_view text, VDCanLogFrame* frame);
