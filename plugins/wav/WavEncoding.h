#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// How the samples of a file lie in it: the encodings that can be written in place. All are little-endian; whole numbers
/// stand for -1 to 1.
struct WavEncoding
{
    int sndFormat;  ///< libsndfile's name, without the container
    int bits;
    bool isFloat;

    /// The encoding of this name, as libsndfile spells it, without regard to case; null for one that can't be written.
    static const WavEncoding* Find(const char* name);
    /// That of libsndfile's format, whatever container it names; null for one that can't be written.
    static const WavEncoding* Find(int sndFormat);
    /// For values that may be any of a channel type.
    static const WavEncoding& ForFloats();
    static const WavEncoding& ForDoubles();
    /// Name of any of libsndfile's encodings, for instance "Signed 16 bit PCM".
    static std::string GetName(int sndFormat);

    std::string GetName() const { return GetName(sndFormat); }
    std::int64_t GetBytes() const { return bits / 8; }
    /// Its values need more than the precision of a float.
    bool IsWide() const { return bits > (isFloat ? 32 : 24); }
    /// The byte of which silence consists.
    unsigned char GetZero() const { return bits == 8 ? 0x80 : 0; }

    /// The first value that is none of the encoding, so that it would come back as another one; `count` if all are. A 32-bit
    /// float takes every double, narrowed.
    template <class T>
    std::int64_t FindUnfit(const T* values, std::int64_t count) const;
    /// Turns values, all of which fit, into bytes, and back.
    template <class T>
    void Encode(const T* values, std::int64_t count, unsigned char* bytes) const;
    template <class T>
    void Decode(const unsigned char* bytes, std::int64_t count, T* values) const;
};
