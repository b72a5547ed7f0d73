#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// Thrown when whoever reads the standard output has gone. That is no error: the program ends quietly.
class VDBrokenPipe
{
};

/// Writes bytes to a descriptor, however it takes them: one that isn't ready is waited for.
/// @return false, with the reason in `errno`, on failure
bool VFWriteAll(int descriptor, std::string_view bytes);

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

    /// Bytes as they are.
    void Write(std::string_view text);
    /// A line of text for people, in which whatever comes from files is made fit for a terminal.
    void PutLine(std::string_view text);
    void Flush();

    static constexpr std::size_t MaxReserve = 1024;

private:
    static constexpr std::size_t Capacity = std::size_t{1} << 18;

    void WriteOut(std::string_view bytes);

    int descriptor_;
    std::string name_;
    std::unique_ptr<char[]> buffer_;
    std::size_t used_ = 0;
};

/// Makes a file, which must not be there, and writes it; throws if that fails.
void VFWriteNewFile(const std::string& name, const std::function<void(VDTextSink& out)>& write);
