#pragma once

#include "vdbase/VDIo.h"

/// A file of text lines. Reading takes "\n", "\r\n" and a lone "\r" as the end of a line; writing ends lines with "\n".
class VDBASE_API VDTextIo
{
public:
    explicit VDTextIo(const char* filename);
    ~VDTextIo();
    VDTextIo(const VDTextIo&) = delete;
    VDTextIo& operator=(const VDTextIo&) = delete;

    /// @param mode  `VTOpenRead` or `VTOpenCreate`
    bool Open(int mode);
    /// Writes what is pending. False, recorded, if that fails; the file is closed in any case.
    bool Close();

    /// Reads one line without its end.
    /// @param maxLength  a longer line is given in pieces of at most this many bytes
    /// @param truncated  set when the line goes on; may be null
    /// @return false at the end of the file, or recorded on a read failure or a length below 1
    bool ReadString(VDString* line, int maxLength, bool* truncated);
    bool WriteString(const char* line);

private:
    bool Fill();  ///< false at the end of the file and on failure; the count is then 0 or -1
    bool Flush();

    VDIo io_;
    std::unique_ptr<char[]> buffer_;
    int bufferCount_ = 0;
    int bufferNext_ = 0;
    bool writing_ = false;
    bool afterReturn_ = false;  ///< the last line ended in "\r", so that a "\n" that follows belongs to it
};
