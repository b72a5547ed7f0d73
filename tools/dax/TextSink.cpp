#include "TextSink.h"

#include "ToolError.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

VDTextSink::VDTextSink(int descriptor, std::string name)
    : descriptor_(descriptor), name_(std::move(name)), buffer_(std::make_unique_for_overwrite<char[]>(Capacity))
{
}

char* VDTextSink::Reserve(std::size_t size)
{
    if (Capacity - used_ < size)
        Flush();
    return buffer_.get() + used_;
}

void VDTextSink::Write(std::string_view text)
{
    if (Capacity - used_ < text.size())
        Flush();
    if (text.size() > Capacity) {
        WriteOut(text.data(), text.size());
        return;
    }
    std::memcpy(buffer_.get() + used_, text.data(), text.size());
    used_ += text.size();
}

void VDTextSink::Flush()
{
    const std::size_t size = used_;
    used_ = 0;  // also when writing fails, so that no later flush tries the same again
    WriteOut(buffer_.get(), size);
}

void VDTextSink::WriteOut(const char* data, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = write(descriptor_, data, size);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            if (errno == EPIPE)
                throw VDBrokenPipe();
            VFFailSystem(DaxToolError::OutputWrite, "Can't write to " + name_, "VDTextSink::Flush");
        }
        data += written;
        size -= static_cast<std::size_t>(written);
    }
}
