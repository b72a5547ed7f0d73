#include "UffValues.h"

#include "UffIndex.h"
#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFError.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

/// Points of binary data that are read at a time.
constexpr std::int64_t BlockPoints = 16384;

template <class Stored>
Stored Decode(const char* bytes, bool isBigEndian)
{
    using Bits = std::conditional_t<sizeof(Stored) == 4, std::uint32_t, std::uint64_t>;
    Bits bits;
    std::memcpy(&bits, bytes, sizeof bits);
    if (isBigEndian != (std::endian::native == std::endian::big)) {
        if constexpr (sizeof bits == 4)
            bits = __builtin_bswap32(bits);
        else
            bits = __builtin_bswap64(bits);
    }
    return std::bit_cast<Stored>(bits);
}

/// Takes one number of each point.
template <class Stored, class T>
void Spread(const char* from, std::int64_t stride, std::int64_t count, bool isBigEndian, T* to, int toStride)
{
    for (std::int64_t i = 0; i < count; ++i)
        to[i * toStride] = static_cast<T>(Decode<Stored>(from + i * stride, isBigEndian));
}

template <class T>
void Spread(int size, const char* from, std::int64_t stride, std::int64_t count, bool isBigEndian, T* to, int toStride)
{
    if (size == 4)
        Spread<float>(from, stride, count, isBigEndian, to, toStride);
    else
        Spread<double>(from, stride, count, isBigEndian, to, toStride);
}

template <class T>
void Clear(std::int64_t count, T* to, int stride)
{
    for (std::int64_t i = 0; i < count; ++i)
        to[i * stride] = 0;
}

}  // namespace

template <class T>
bool UffValues::ReadBinary(const UffDataset& dataset, std::int64_t first, std::int64_t count, Part part, T* values)
{
    const UffHeader& header = dataset.header;
    const std::int64_t size = dataset.GetPointBytes();
    const int valueBytes = header.IsDouble() ? 8 : 4;
    const std::int64_t abscissa = header.isEven ? 0 : dataset.abscissaBytes;
    const bool isNative = dataset.isBigEndian == (std::endian::native == std::endian::big);
    const bool isWhole = part == (header.IsComplex() ? Part::Complex : Part::Real);
    if (isNative && abscissa == 0 && isWhole && valueBytes == static_cast<int>(sizeof(T)))
        return io_.Read(dataset.offset + first * size, count * size, values, nullptr);
    const int stride = part == Part::Complex ? 2 : 1;
    for (std::int64_t done = 0; done < count; done += BlockPoints) {
        const std::int64_t some = std::min(count - done, BlockPoints);
        bytes_.resize(static_cast<std::size_t>(some * size));
        if (!io_.Read(dataset.offset + (first + done) * size, some * size, bytes_.data(), nullptr))
            return false;
        const char* const real = bytes_.data() + abscissa;
        T* const to = values + done * stride;
        const auto spread = [&](int bytes, const char* from, T* into) {
            Spread(bytes, from, size, some, dataset.isBigEndian, into, stride);
        };
        if (part == Part::Abscissa)
            spread(static_cast<int>(abscissa), bytes_.data(), to);
        if (part == Part::Real || part == Part::Complex)
            spread(valueBytes, real, to);
        if (part == Part::Imaginary || part == Part::Complex) {
            T* const into = to + (stride - 1);
            header.IsComplex() ? spread(valueBytes, real + valueBytes, into) : Clear(some, into, stride);
        }
    }
    return true;
}

UffDataset::Mark UffValues::FindStart(const UffDataset& dataset, std::int64_t part) const
{
    const auto behind =
        std::upper_bound(dataset.marks.begin(), dataset.marks.end(), part,
                         [](std::int64_t wanted, const UffDataset::Mark& mark) { return wanted < mark.part; });
    const UffDataset::Mark known = behind == dataset.marks.begin() ? UffDataset::Mark{0, dataset.offset} : behind[-1];
    return lastDataset_ == &dataset && last_.part <= part && last_.part > known.part ? last_ : known;
}

template <class T>
bool UffValues::ReadTextOnce(UffDataset& dataset, std::int64_t first, std::int64_t count, Part part, T* values,
                             bool* isIrregular)
{
    const UffHeader& header = dataset.header;
    const UffColumns columns = header.GetColumns();
    const std::int64_t parts = header.GetParts();
    const std::int64_t begin = first * parts;
    const std::int64_t end = begin + count * parts;
    const std::int64_t total = header.count * parts;
    const int realPart = header.isEven ? 0 : 1;
    UffDataset::Mark at = FindStart(dataset, begin);
    lines_.Seek(at.offset);
    std::vector<T> line;
    std::string_view text;
    const auto take = [&](std::int64_t number, T value) {
        const std::int64_t point = number / parts - first;
        const auto which = static_cast<int>(number % parts) - realPart;
        if (part == Part::Complex) {
            if (which >= 0)
                values[2 * point + which] = value;
        } else if (which == static_cast<int>(part) - static_cast<int>(Part::Real)) {
            values[point] = value;
        }
    };
    while (at.part < end && lines_.GetPlace() < dataset.end && lines_.Next(&text)) {
        line.clear();
        if (!lines_.IsWhole() && lines_.GetPlace() > dataset.end)
            text = text.substr(0, static_cast<std::size_t>(dataset.end - lines_.GetLineStart()));
        const auto expected =
            dataset.isRegular ? static_cast<int>(std::min<std::int64_t>(columns.GetCount(), total - at.part)) : 0;
        if (!UffReadLine(text, columns, expected, &line))
            break;
        if (header.isSingle)
            std::transform(line.begin(), line.end(), line.begin(),
                           [](T value) { return static_cast<T>(static_cast<float>(value)); });
        *isIrregular = dataset.isRegular && static_cast<int>(line.size()) != expected;
        if (*isIrregular)
            return false;
        const auto size = static_cast<std::int64_t>(line.size());
        const std::int64_t from = std::max<std::int64_t>(begin - at.part, 0);
        const std::int64_t to = std::min(end - at.part, size);
        if (parts == 1 && part == Part::Real && from < to)
            std::copy(line.begin() + from, line.begin() + to, values + (at.part + from - begin));
        else
            for (std::int64_t i = from; i < to; ++i)
                take(at.part + i, line[static_cast<std::size_t>(i)]);
        lastDataset_ = &dataset;
        last_ = {at.part, lines_.GetLineStart()};
        at.part += size;
        if (at.part <= end)
            last_ = {at.part, lines_.GetPlace()};
    }
    // What isn't in the lines after all makes the dataset irregular, too.
    *isIrregular = dataset.isRegular && at.part < end && !lines_.HasFailed();
    return at.part >= end;
}

template <class T>
bool UffValues::ReadText(UffDataset& dataset, std::int64_t first, std::int64_t count, Part part, T* values)
{
    if (part == Part::Imaginary && !dataset.header.IsComplex()) {
        Clear(count, values, 1);
        return true;
    }
    if (part == Part::Complex && !dataset.header.IsComplex())
        Clear(count, values + 1, 2);
    bool isIrregular = false;
    if (ReadTextOnce(dataset, first, count, part, values, &isIrregular))
        return true;
    lastDataset_ = nullptr;
    if (isIrregular && UffIndex::CountValues(io_, dataset) && first + count <= dataset.points &&
        ReadTextOnce(dataset, first, count, part, values, &isIrregular))
        return true;
    VFErrorSet(VDBaseError::FileRead, "The lines of dataset " + VDString(std::to_string(dataset.number).c_str()) +
                                          " don't hold the values that its header announces", "UffValues::Read", 1);
    return false;
}

template <class T>
bool UffValues::Read(UffDataset& dataset, std::int64_t first, std::int64_t count, Part part, T* values)
{
    return dataset.isText ? ReadText(dataset, first, count, part, values) : ReadBinary(dataset, first, count, part, values);
}

template bool UffValues::Read(UffDataset&, std::int64_t, std::int64_t, Part, float*);
template bool UffValues::Read(UffDataset&, std::int64_t, std::int64_t, Part, double*);
