#include "LineReader.h"

#include "ToolError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr std::size_t VVCapacity = 65536;

/// Reads what there is, and waits for it where the descriptor doesn't.
ssize_t VFReadSome(int file, char* buffer, std::size_t size)
{
    while (true) {
        const ssize_t got = read(file, buffer, size);
        if (got >= 0)
            return got;
        pollfd ready = {file, POLLIN, 0};
        if (errno == EAGAIN ? poll(&ready, 1, -1) < 0 && errno != EINTR : errno != EINTR)
            return got;
    }
}

/// The first of the two ends of a line; `end` if there is none.
const char* VFFindEnd(const char* from, const char* end)
{
    const auto find = [from](char byte, const char* until) {
        const void* found = std::memchr(from, byte, static_cast<std::size_t>(until - from));
        return found == nullptr ? until : static_cast<const char*>(found);
    };
    return find('\r', find('\n', end));
}

}  // namespace

VDLineReader::VDLineReader(const std::string& name)
    : name_(name == "-" ? "the standard input" : name),
      file_(name == "-" ? STDIN_FILENO : open(name.c_str(), O_RDONLY | O_CLOEXEC)),
      owned_(name != "-"),
      buffer_(std::make_unique_for_overwrite<char[]>(VVCapacity))
{
    if (file_ < 0)
        VFFailSystem(DaxToolError::InputRead, "Can't open " + name_, "VDLineReader");
}

VDLineReader::~VDLineReader()
{
    if (owned_)
        close(file_);
}

/// Makes room for a whole line behind what is left, and reads on.
bool VDLineReader::Fill()
{
    std::memmove(buffer_.get(), buffer_.get() + next_, end_ - next_);
    end_ -= next_;
    next_ = 0;
    const ssize_t got = VFReadSome(file_, buffer_.get() + end_, VVCapacity - end_);
    if (got < 0)
        VFFailSystem(DaxToolError::InputRead, "Can't read " + name_, "VDLineReader");
    end_ += static_cast<std::size_t>(got);
    return got > 0;
}

/// A line, or as much of it as is taken at a time.
bool VDLineReader::ReadPart(std::string_view* part)
{
    while (true) {
        if (afterReturn_ && next_ < end_) {
            next_ += buffer_[next_] == '\n' ? 1 : 0;
            afterReturn_ = false;
        }
        const char* const from = buffer_.get() + next_;
        const std::size_t size = std::min(end_ - next_, MaxLine);
        const char* const stop = VFFindEnd(from, from + size);
        lineEnded_ = stop != from + size;
        if (!lineEnded_ && size < MaxLine && Fill())
            continue;
        *part = {from, stop};
        next_ += part->size() + (lineEnded_ ? 1 : 0);
        afterReturn_ = lineEnded_ && *stop == '\r';
        return lineEnded_ || !part->empty();
    }
}

bool VDLineReader::Read(std::string_view* line)
{
    std::string_view rest;
    while (!lineEnded_ && ReadPart(&rest)) {
    }
    return ReadPart(line);
}
