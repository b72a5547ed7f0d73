#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

/// An open descriptor, closed with the object; below 0 if there is none.
class Descriptor
{
public:
    explicit Descriptor(int value = -1) : value_(value) {}
    Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Descriptor()
    {
        if (value_ >= 0)
            close(value_);
    }
    /// `openat` with a folder, or `AT_FDCWD`; `errno` stands if it fails.
    static Descriptor Open(int folder, const char* filename, int flags, mode_t mode = 0666)
    {
        int value = -1;
        do
            value = openat(folder, filename, flags | O_CLOEXEC, mode);
        while (value < 0 && errno == EINTR);
        return Descriptor(value);
    }

    int Get() const { return value_; }
    bool IsOpen() const { return value_ >= 0; }

private:
    int value_;
};
