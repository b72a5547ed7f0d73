#pragma once

#include <array>
#include <cstdint>
#include <string>

/// The texts that a file may carry about itself, in the order in which libsndfile counts them.
class WavTexts
{
public:
    struct Kind
    {
        const char* name;   ///< as hosts ask for it
        int sndText;        ///< one of libsndfile's `SF_STR_...`
        const char* chunk;  ///< id in the list "INFO" of a file; null for one that WAV and RF64 have no place for
    };
    static constexpr std::size_t Count = 10;
    static const std::array<Kind, Count> Kinds;

    /// The kind of a name, without regard to case; `Count` if there is none.
    static std::size_t Find(const char* name);

    const std::string& Get(std::size_t kind) const { return texts_[kind]; }
    void Set(std::size_t kind, std::string text) { texts_[kind] = std::move(text); }

    /// The chunk of a WAV or RF64 file that carries them; empty if there is nothing to carry.
    std::string MakeChunk() const;

private:
    std::array<std::string, Count> texts_;
};
