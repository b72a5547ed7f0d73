#pragma once

#include "support/TestFileId.h"
#include "support/TestTimeSeries.h"

#include "daxlib/daxlib.h"

#include <bit>
#include <cstring>
#include <string>
#include <vector>

constexpr int UffFileId = 31002;

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

/// The plug-in is configured as an installation does it.
class UffTest : public testing::Test
{
protected:
    UffTest() { TestWriteFile(TestHomeFolder(), "plugins.d/uff.toml", TestReadFile(UFF_MANIFEST)); }

    /// The tests of a file; empty if it isn't recognised.
    static std::vector<VDFileIdHandle> Identify(const std::string& filename)
    {
        VFErrorClear();
        const VDFileInfoHandle info(FINFCreate());
        VDFileIdArrayHandle array;
        std::vector<VDFileIdHandle> tests;
        int size = 0;
        if (FINFIdentifyFile(info.Get(), TestId(filename).Get(), 1, array.Out()) && FIAGetSize(array.Get(), &size))
            for (int i = 0; i < size; ++i)
                FIAGetAt(array.Get(), i, tests.emplace_back().Out());
        return tests;
    }
    std::vector<VDFileIdHandle> Tests(const std::string& content) const { return Identify(folder_.Write("test.uff", content)); }

    static VDTsAccHandle OpenTimes(VDFileId* id, int mode = VTTsAccOpenRead)
    {
        VDTsAccHandle acc = BindTest(id, mode >= VTTsAccOpenCreate);
        EXPECT_TRUE(TSAccOpen(acc.Get(), mode)) << VFErrorGetText(VFGetBaseLibError()).Str();
        return acc;
    }
    static VDCFAccHandle OpenSpectra(VDFileId* id, int mode = 1)
    {
        VDCFAccHandle acc(CFAccCreate());
        EXPECT_TRUE(CFAccSetId(acc.Get(), id, mode > 2) && CFAccOpen(acc.Get(), mode))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        return acc;
    }
    static std::vector<double> Points(VDTsAcc* acc, int channel)
    {
        std::int64_t count = TestValue<TSAccGetNumPoints>(acc, channel);
        std::vector<double> values(static_cast<std::size_t>(count));
        EXPECT_TRUE(TSAccGetDataDoublePrecision(acc, channel, 1, count, &count, values.data()))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        return values;
    }
    static std::vector<double> Lines(VDCFAcc* acc, int channel)
    {
        std::int64_t count = TestValue<CFAccGetNumLines>(acc);
        std::vector<double> values(static_cast<std::size_t>(2 * count));
        EXPECT_TRUE(CFAccGetData(acc, channel, 1, 1, count, DaxSpectrumKind::ComplexDouble, &count, values.data()))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        return values;
    }
    static std::vector<double> Axis(VDCFAcc* acc)
    {
        std::int64_t count = TestValue<CFAccGetNumLines>(acc);
        std::vector<double> values(static_cast<std::size_t>(count));
        EXPECT_TRUE(CFAccGetLineAxisData(acc, 1, count, DaxSpectrumKind::Double, &count, values.data()));
        return values;
    }
    static std::string FormatText(VDTsAcc* acc, const char* name)
    {
        VDVariant value;
        VDString text;
        EXPECT_TRUE(TSAccGetFormatSpecificValue(acc, -1, name, &value));
        value.GetString(&text);
        return text.Str();
    }

    TestFolder folder_;
};

using Values = std::vector<double>;
