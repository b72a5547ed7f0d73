#pragma once

#include <string>
#include <vector>

/// A dataset 58 written byte by byte, with every field at hand to be made wrong.
struct UffBytes
{
    int function = 1;
    int type = 2;
    long long count = 4;
    int spacing = 1;
    std::string numbers = "  1.00000E+00  5.00000E-01  0.00000E+00";
    std::string id = "Force";
    int abscissa = 17;
    std::string data = "  1.00000E+00  2.00000E+00 -3.00000E+00  4.00000E+00\n";
    std::string head = "    58\n";
    std::string end = "    -1\n";
    std::string lineEnd = "\n";

    static std::string Right(long long value, std::size_t width)
    {
        const std::string text = std::to_string(value);
        return std::string(width - text.size(), ' ') + text;
    }
    /// The head of binary data.
    static std::string Binary(int order, std::size_t bytes, int format = 2)
    {
        return "    58b" + Right(order, 6) + Right(format, 6) + Right(11, 12) + Right(static_cast<long long>(bytes), 12) +
               "     0     0           0           0\n";
    }
    template <class T>
    static std::string Raw(const std::vector<T>& values, bool bigEndian)
    {
        std::string bytes;
        for (const T value : values) {
            std::string one(reinterpret_cast<const char*>(&value), sizeof value);
            bytes += bigEndian ? std::string(one.rbegin(), one.rend()) : one;
        }
        return bytes;
    }
    std::string Make() const
    {
        std::string header = "    -1\n" + head + id + "\nNONE\n07-Dec-17 14:38:01\nNONE\nNONE\n" + Right(function, 5) +
                             "         7    1         0 NONE              12  -3 HAMMER             9   1\n" + Right(type, 10) +
                             Right(count, 10) + Right(spacing, 10) + numbers + "\n" + Right(abscissa, 10) +
                             "    0    0    0 Abscissa             s                   \n"
                             "         8    0    1    0 Motion               mm                  \n"
                             "         0    0    0    0 NONE                 NONE                \n"
                             "         0    0    0    0 NONE                 NONE                \n";
        std::string text = header + (head.size() > 7 ? "" : data);
        if (lineEnd != "\n")
            for (std::size_t at = 0; (at = text.find('\n', at)) != text.npos; at += lineEnd.size())
                text.replace(at, 1, lineEnd);
        return text + (head.size() > 7 ? data : "") + end;
    }
};
