#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

/// A file that a fuzz target writes its input to. It goes with the object.
class FuzzFile
{
public:
    explicit FuzzFile(const char* extension)
        : name_((std::filesystem::temp_directory_path() / ("daxfuzz" + std::to_string(getpid()) + extension)).string())
    {
    }
    ~FuzzFile() { unlink(name_.c_str()); }
    FuzzFile(const FuzzFile&) = delete;
    FuzzFile& operator=(const FuzzFile&) = delete;

    /// Gives the file's name.
    const char* Write(std::string_view content)
    {
        std::ofstream file(name_, std::ios::binary | std::ios::trunc);
        if (!file.write(content.data(), static_cast<std::streamsize>(content.size())).flush())
            std::abort();
        return name_.c_str();
    }

private:
    std::string name_;
};

/// The input of a target as text.
inline std::string_view FuzzText(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}
