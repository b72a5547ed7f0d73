#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// A growing block of bytes.
class VDUDataBuffer
{
public:
    void Append(const void* data, std::size_t size) { bytes_.append(static_cast<const char*>(data), size); }
    void Clear() noexcept { bytes_.clear(); }

    std::size_t GetSize() const noexcept { return bytes_.size(); }
    /// Closed by a zero byte that the size doesn't count; valid until the next change.
    const char* GetData() const noexcept { return bytes_.c_str(); }
    std::string_view View() const noexcept { return bytes_; }

private:
    std::string bytes_;
};
