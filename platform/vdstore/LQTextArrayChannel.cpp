#include "TableParts.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <string>
#include <vector>

// A text lies anywhere in a stream of bytes, and its value says where. Texts that were written in order lie one behind the
// other, so that many of them are read in one go.

namespace {

/// Texts whose places are looked at together, and bytes that are moved together.
constexpr std::int64_t BlockRows = 2048;
constexpr std::int64_t BlockBytes = 256 * 1024;

constexpr std::int64_t LargestText = std::numeric_limits<int>::max();

}  // namespace

/// As it stands in the stream of values.
struct LQTextArrayChannel::Place
{
    std::int64_t offset = 0;
    std::int64_t length = 0;
};

bool LQTextArrayChannel::GetTexts(std::int64_t first, std::int64_t count, VDString* texts)
{
    if (!CheckRead(first, count))
        return false;
    std::int64_t bytes = 0;
    for (std::int64_t done = 0; done < count; done += BlockRows)
        if (!GetBlock(first + done, std::min(BlockRows, count - done), &bytes, texts + done))
            return false;
    return true;
}

/// @param bytes  of all texts so far; no two texts share any
bool LQTextArrayChannel::GetBlock(std::int64_t first, std::int64_t count, std::int64_t* bytes, VDString* texts)
{
    std::array<Place, BlockRows> places;
    if (!Read(Values, first * std::int64_t(sizeof(Place)), count * std::int64_t(sizeof(Place)), 8, places.data()))
        return false;
    const std::int64_t length = GetLength(Texts);
    for (const Place& place : std::span(places).first(static_cast<std::size_t>(count))) {
        if (place.offset < 0 || place.length < 0 || place.offset > length || place.length > length - place.offset ||
            place.length > LargestText || place.length > length - *bytes)
            return ReportDamaged();
        *bytes += place.length;
    }
    for (std::int64_t done = 0; done < count;) {
        // As many as lie one behind the other, if they aren't too long together.
        const Place* const run = places.data() + done;
        std::int64_t size = run->length;
        std::int64_t some = 1;
        for (; done + some < count && size + run[some].length <= BlockBytes &&
               (run[some].length == 0 || run[some].offset == run->offset + size);
             ++some)
            size += run[some].length;
        if (!GetRun(run, some, texts + done))
            return false;
        done += some;
    }
    return true;
}

bool LQTextArrayChannel::GetRun(const Place* places, std::int64_t count, VDString* texts)
{
    std::int64_t size = 0;
    for (std::int64_t i = 0; i < count; ++i)
        size += places[i].length;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (size > 0 && !Read(Texts, places->offset, size, 1, bytes.data()))
        return false;
    if (count == 1) {
        *texts = VDString(std::move(bytes));
        return true;
    }
    std::string_view rest = bytes;
    for (std::int64_t i = 0; i < count; ++i) {
        const auto length = static_cast<std::size_t>(places[i].length);
        texts[i] = VDString(rest.substr(0, length));
        rest.remove_prefix(length);
    }
    return true;
}

bool LQTextArrayChannel::PutTexts(std::int64_t first, std::int64_t count, const VDString* texts)
{
    if (!CheckWrite(first, count))
        return false;
    for (std::int64_t done = 0; done < count; done += BlockRows)
        if (!PutBlock(first + done, std::min(BlockRows, count - done), texts + done))
            return false;
    return true;
}

/// A text that is no longer than the one before takes its place; any other goes to the end.
bool LQTextArrayChannel::PutBlock(std::int64_t first, std::int64_t count, const VDString* texts)
{
    constexpr auto Size = std::int64_t(sizeof(Place));
    std::array<Place, BlockRows> places = {};
    const std::int64_t present = std::clamp<std::int64_t>(GetLength(Values) / Size - first, 0, count);
    if (present > 0 && !Read(Values, first * Size, present * Size, 8, places.data()))
        return false;
    const std::int64_t begin = GetLength(Texts);
    std::string added;
    std::int64_t end = begin;
    const auto flush = [&] {
        const auto size = static_cast<std::int64_t>(added.size());
        const bool good = added.empty() || Write(Texts, end - size, size, added.data());
        added.clear();
        return good;
    };
    for (std::int64_t i = 0; i < count; ++i) {
        const std::string_view text = texts[i].View();
        Place& place = places[static_cast<std::size_t>(i)];
        const auto length = static_cast<std::int64_t>(text.size());
        const bool fits = length > 0 && place.length >= length && place.offset >= 0 && place.offset <= begin - place.length;
        if (fits) {
            if (!Write(Texts, place.offset, length, text.data()))
                return false;
        } else if (length > 0) {
            place.offset = end;
            added += text;
            end += length;
            if (std::int64_t(added.size()) >= BlockBytes && !flush())
                return false;
        }
        place.length = length;
    }
    if (!flush() || !Write(Values, first * Size, count * Size, places.data()))
        return false;
    Grow(first + count);
    return true;
}
