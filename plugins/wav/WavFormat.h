#pragma once

#include <cstdint>

/// The file types that this plug-in serves: one file id, a sub id for each container.
namespace WavFormat {

constexpr int FileId = 31000;

enum SubId : int {
    Wav = 1,   ///< RIFF (and RIFX, its big-endian form, which is read only): at most 4 GiB
    Rf64 = 2,  ///< RIFF with 64-bit sizes in a chunk of their own
    W64 = 3,   ///< chunks named by GUIDs, with 64-bit sizes
};

/// Class id text of the time-series access, as the manifest names it.
constexpr const char* AccessClass = "18988D63-4AAC-4F47-8C5C-8D36A5ACAEB1";

struct Type
{
    SubId subId;
    const char* keyword;
    const char* suffix;  ///< of the description
    const char* extension;
    int sndFormat;  ///< libsndfile's major format

    /// W64 has no chunk of texts.
    constexpr bool HasTexts() const { return subId != W64; }
};

constexpr Type Types[] = {
    {Wav, "WAV", "", "wav", 0x010000},
    {Rf64, "RF64", " (RF64)", "rf64", 0x220000},
    {W64, "W64", " (W64)", "w64", 0x0B0000},
};

/// The type of a pair of ids; null if it isn't one of this plug-in's.
constexpr const Type* Find(int fileId, int subId)
{
    for (const Type& type : Types)
        if (fileId == FileId && type.subId == subId)
            return &type;
    return nullptr;
}

/// The type that the first bytes of a file show; null for none.
const Type* Recognise(const unsigned char* header, std::int64_t size);

}  // namespace WavFormat
