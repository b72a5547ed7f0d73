#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

/// Thrown when whoever reads the standard output has gone. That is no error: the program ends quietly.
class VDBrokenPipe
{
};

/// A buffered writer onto a file descriptor, which stays the caller's. Text is formatted straight into its buffer. What is
/// not flushed is lost with the object, because a destructor couldn't report a failure.
class VDTextSink
{
public:
    /// @param name  for error reports
    VDTextSink(int descriptor, std::string name);

    /// Room for `size` bytes (at most `MaxReserve`); what was written there counts from the `Commit` on.
    char* Reserve(std::size_t size);
    void Commit(char* end) { used_ = static_cast<std::size_t>(end - buffer_.get()); }

    void Write(std::string_view text);
    void Flush();

    static constexpr std::size_t MaxReserve = 1024;

private:
    static constexpr std::size_t Capacity = std::size_t{1} << 18;

    void WriteOut(const char* data, std::size_t size);

    int descriptor_;
    std::string name_;
    std::unique_ptr<char[]> buffer_;
    std::size_t used_ = 0;
};
