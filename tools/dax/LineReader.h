#pragma once

#include <memory>
#include <string>
#include <string_view>

/// The lines of a file, or of the standard input under the name "-", in constant memory. "\n", "\r\n" and a lone "\r" end a
/// line.
class VDLineReader
{
public:
    /// Throws for a file that can't be opened.
    explicit VDLineReader(const std::string& name);
    ~VDLineReader();
    VDLineReader(const VDLineReader&) = delete;
    VDLineReader& operator=(const VDLineReader&) = delete;

    /// The next line, without its end; it is valid until the next call. Of a line of more than `MaxLine` bytes the rest is
    /// left out. Throws when reading fails.
    /// @return false at the end
    bool Read(std::string_view* line);

    static constexpr std::size_t MaxLine = 4096;

private:
    bool Fill();
    bool ReadPart(std::string_view* part);

    std::string name_;
    int file_;
    bool owned_;
    std::unique_ptr<char[]> buffer_;
    std::size_t next_ = 0;
    std::size_t end_ = 0;
    bool lineEnded_ = true;     ///< the last part ended its line
    bool afterReturn_ = false;  ///< with "\r", so that a "\n" that follows belongs to it
};
