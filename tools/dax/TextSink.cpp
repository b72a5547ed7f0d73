#include "TextSink.h"

#include "Printable.h"
#include "ToolError.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <unistd.h>

bool VFWriteAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            // Whoever made the descriptor, a terminal that is shared for instance, may have made it one that doesn't wait.
            pollfd ready = {descriptor, POLLOUT, 0};
            if (poll(&ready, 1, -1) < 0 && errno != EINTR)
                return false;
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

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
        WriteOut(text);
        return;
    }
    std::memcpy(buffer_.get() + used_, text.data(), text.size());
    used_ += text.size();
}

void VDTextSink::PutLine(std::string_view text)
{
    Write(VFPrintable(text));
    Write("\n");
}

void VDTextSink::Flush()
{
    const std::size_t size = used_;
    used_ = 0;  // also when writing fails, so that no later flush tries the same again
    WriteOut({buffer_.get(), size});
}

void VDTextSink::WriteOut(std::string_view bytes)
{
    if (VFWriteAll(descriptor_, bytes))
        return;
    if (errno == EPIPE)
        throw VDBrokenPipe();
    VFFailSystem(DaxToolError::OutputWrite, "Can't write to " + name_, "VDTextSink::Flush");
}
