#include "TextSink.h"

#include "Printable.h"
#include "ToolError.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
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

void VFWriteNewFile(const std::string& name, const std::function<void(VDTextSink& out)>& write)
{
    const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0)
        VFFailSystem(DaxToolError::OutputWrite, "Can't open " + name, "VFWriteNewFile");
    const std::unique_ptr<const int, void (*)(const int*)> closer(&descriptor, [](const int* file) { close(*file); });
    VDTextSink out(descriptor, name);
    write(out);
    out.Flush();
}
