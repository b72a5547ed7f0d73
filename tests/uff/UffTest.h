#pragma once

#include "support/TestFileId.h"
#include "support/TestTimeSeries.h"
#include "support/UffBytes.h"

#include "daxlib/daxlib.h"

#include <bit>
#include <cstring>
#include <string>
#include <vector>

constexpr int UffFileId = 31002;

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
