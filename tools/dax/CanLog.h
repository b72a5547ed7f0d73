#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// One frame of a log as `candump` writes it.
struct VDCanLogFrame
{
    static constexpr std::size_t MaxBytes = 64;

    std::string_view time;  ///< seconds, as written
    unsigned long id = 0;   ///< an extended id bears the mark of a database
    bool isRemote = false;  ///< asks for the frame and has no data
    std::size_t numBytes = 0;
    std::array<unsigned char, MaxBytes> data{};
};

/// Reads a line such as "(1436509052.249713) can0 044#2A366C2BBA". An id of eight hexadecimal digits is an extended one,
/// "##" and a digit of flags mark a CAN FD frame, and dots may stand between bytes. What follows the frame is passed over.
/// @return false for anything else, error frames included
bool VFReadCanLogLine(std::string_view line, VDCanLogFrame* frame);

/// Reads hexadecimal bytes, between which dots or blanks may stand. False for anything else and for more than 64 bytes.
bool VFReadHexBytes(std::string_view text, VDCanLogFrame* frame);
