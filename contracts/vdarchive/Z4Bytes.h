#pragma once

#include "vdbase/VDString.h"

#include <bit>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

/// Values to bytes and back, always little-endian, whatever the machine. Texts are a 32-bit length and their bytes.

/// Collects bytes.
class Z4ByteWriter
{
public:
    template <std::unsigned_integral T>
    void Put(T value)
    {
        for (std::size_t i = 0; i < sizeof(T); ++i)
            bytes_ += static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i));
    }
    template <std::signed_integral T>
    void Put(T value)
    {
        Put(static_cast<std::make_unsigned_t<T>>(value));
    }
    void Put(bool value) { Put(static_cast<std::uint8_t>(value)); }
    void Put(float value) { Put(std::bit_cast<std::uint32_t>(value)); }
    void Put(double value) { Put(std::bit_cast<std::uint64_t>(value)); }
    void PutText(std::string_view text)
    {
        Put(static_cast<std::uint32_t>(text.size()));
        bytes_ += text;
    }

    const std::string& Bytes() const noexcept { return bytes_; }
    std::string Take() { return std::move(bytes_); }

private:
    std::string bytes_;
};

/// Takes values from bytes that nobody vouches for. A value that is not there fails the reader for good: it and all later
/// ones are 0 or empty, so that a caller may look at `IsGood` once at the end.
class Z4ByteReader
{
public:
    explicit Z4ByteReader(std::string_view bytes) : bytes_(bytes) {}

    template <class T>
    T Get()
    {
        if constexpr (std::same_as<T, float>) {
            return std::bit_cast<float>(Get<std::uint32_t>());
        } else if constexpr (std::same_as<T, double>) {
            return std::bit_cast<double>(Get<std::uint64_t>());
        } else if constexpr (std::same_as<T, bool>) {
            return Get<std::uint8_t>() != 0;
        } else {
            const std::string_view taken = Take(sizeof(T));
            std::uint64_t value = 0;
            for (std::size_t i = taken.size(); i-- > 0;)
                value = value << 8 | static_cast<unsigned char>(taken[i]);
            return static_cast<T>(value);
        }
    }
    VDString GetText() { return VDString(Take(Get<std::uint32_t>())); }
    /// A number of items that are to follow. More than can be there, if each has at least so many bytes, fails the reader.
    std::uint32_t GetCount(std::size_t bytesPerItem)
    {
        const auto count = Get<std::uint32_t>();
        if (count > bytes_.size() / bytesPerItem)
            Fail();
        return good_ ? count : 0;
    }

    /// For what a value itself gives away as wrong.
    void Fail()
    {
        good_ = false;
        bytes_ = {};
    }
    bool IsGood() const noexcept { return good_; }
    bool IsAtEnd() const noexcept { return good_ && bytes_.empty(); }

private:
    std::string_view Take(std::size_t count)
    {
        if (count > bytes_.size())
            Fail();
        const std::string_view taken = bytes_.substr(0, good_ ? count : 0);
        bytes_.remove_prefix(taken.size());
        return taken;
    }

    std::string_view bytes_;
    bool good_ = true;
};
