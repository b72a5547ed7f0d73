#include "UffTest.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdbase/VDFileSystem.h"
#include "vdstore/LQChannelMapper.h"

TEST_F(UffTest, EachFormOfDataGivesItsValues)
{
    const Values real = {1, 2, -3, 4};
    struct Case
    {
        const char* name;
        UffBytes file;
        Values values = {1, 2, -3, 4};
    };
    const Case cases[] = {
        {"single", {}},
        {"carriage returns", {.lineEnd = "\r\n"}},
        {"double",
         {.type = 4, .data = "  1.000000000000E+00  2.000000000000D+00 -3.000000000000E+00   4.00000000000+000\n"}},
        {"run together", {.data = " 1.00000E+000 2.00000E+000-3.00000E+000 4.00000E+000\n"}},
        {"run together, out of columns", {.data = "1.0 2.0-3.0 4.0\n"}},
        {"other numbers on a line", {.data = "1 2\n-3 4\n"}},
        {"one a line with a blank line", {.data = "1\n2\n\n-3\n4\n"}},
        {"numbers left out and too large",
         {.count = 6, .data = "  1.00000E+00              -3.00000E+00  4.00000E+00        1E+02\n"},
         {1, 0, -3, 4, 100}},
        {"more values than announced", {.count = 2}, {1, 2}},
        {"little-endian singles", {.data = UffBytes::Raw<float>({1, 2, -3, 4}, false), .head = UffBytes::Binary(1, 16)}},
        {"big-endian singles", {.data = UffBytes::Raw<float>({1, 2, -3, 4}, true), .head = UffBytes::Binary(2, 16)}},
        {"big-endian doubles",
         {.type = 4,
          .data = UffBytes::Raw<double>({1, 2, -3, 4}, true),
          .head = UffBytes::Binary(2, 32),
          .lineEnd = "\r\n"}},
        {"a length that isn't right",
         {.data = UffBytes::Raw<float>({1, 2, -3, 4}, false) + "\n", .head = UffBytes::Binary(1, 99)}},
        {"no length", {.data = UffBytes::Raw<float>({1, 2, -3, 4}, false), .head = UffBytes::Binary(1, 0)}},
    };
    for (const Case& tried : cases) {
        SCOPED_TRACE(tried.name);
        const auto tests = Tests(tried.file.Make() + "    -1\n    15\n  1 2 3\n    -1\n" + UffBytes{.id = "Second"}.Make());
        ASSERT_EQ(tests.size(), 1U);
        const VDTsAccHandle acc = OpenTimes(tests[0].Get());
        EXPECT_EQ(Points(acc.Get(), 0), tried.values);
        EXPECT_EQ(Points(acc.Get(), 1), real) << "the dataset behind it";
        EXPECT_EQ(FormatText(acc.Get(), "PassedOver"), "15 (1)");
        EXPECT_EQ(FormatText(acc.Get(), "Damage").empty(),
                  std::string(tried.name).find("numbers left") == std::string::npos);
    }
}

TEST_F(UffTest, HeadersBecomeChannelsAndMetaData)
{
    const auto tests = Tests(UffBytes{.id = "Kraft f\xfcr m/s\xb2"}.Make());
    const VDTsAccHandle acc = OpenTimes(tests[0].Get());
    EXPECT_EQ(TestValue<TSAccGetChanTitle>(acc.Get(), 0), "Kraft f\xc3\xbcr m/s\xc2\xb2");
    EXPECT_EQ(TestValue<TSAccGetSampleRate>(acc.Get(), 0), 2);
    EXPECT_EQ(TestValue<TSAccGetBaseTime>(acc.Get(), 0), 1);
    EXPECT_EQ(TestValue<TSAccGetYUnits>(acc.Get(), 0), "mm");
    EXPECT_EQ(TestValue<TSAccGetXTitle>(acc.Get()), "Abscissa");
    const auto* set = TestValue<TSAccGetMetaData>(acc.Get())->GetMetaDataSet("Dataset58", 0);
    ASSERT_NE(set, nullptr);
    const std::pair<const char*, const char*> fields[] = {{"ID3", "07-Dec-17 14:38:01"},
                                                          {"FunctionId", "7"},
                                                          {"ResponseNode", "12"},
                                                          {"ResponseDirection", "-3"},
                                                          {"ReferenceEntity", "HAMMER"},
                                                          {"ReferenceDirection", "1"},
                                                          {"NumValues", "4"},
                                                          {"AbscissaIncrement", "0.5"},
                                                          {"OrdinateLabel", "Motion"},
                                                          {"OrdinateForceExponent", "1"},
                                                          {"OrdinateDenominatorUnits", "NONE"}};
    for (const auto& [name, value] : fields)
        EXPECT_EQ(set->GetProperty(name, true)->ToString(), value) << name;
}

TEST_F(UffTest, FunctionsMakeUpTestsByWhatTheyShare)
{
    const std::string pairs = " 1.00000E+00  2.00000E+00  1.50000E+00 -3.00000E+00\n";
    const std::string content = UffBytes{.function = 4, .type = 5, .count = 2, .abscissa = 18}.Make() + UffBytes{}.Make() +
                                UffBytes{.function = 4, .type = 5, .count = 2, .id = "Other", .abscissa = 18}.Make() +
                                UffBytes{.function = 6, .abscissa = 18}.Make() +
                                UffBytes{.count = 2, .spacing = 0, .id = "Uneven", .data = pairs}.Make() +
                                UffBytes{.function = 12,
                                         .type = 6,
                                         .count = 2,
                                         .spacing = 0,
                                         .abscissa = 18,
                                         .data = "  1.00000E+01  1.000000000000E+00  2.000000000000E+00\n  3.00000E+01  "
                                                 "3.000000000000E+00  4.000000000000E+00\n"}
                                    .Make() +
                                UffBytes{.function = 11, .abscissa = 8}.Make() + UffBytes{.function = 7}.Make();
    const auto tests = Tests(content);
    std::vector<std::string> titles;
    for (const auto& test : tests)
        titles.push_back(std::to_string(TestInt<FIDGetRunNumber>(test)) + " " + TestText<FIDGetTestTitle>(test) + " " +
                         std::to_string(TestInt<FIDGetNumChans>(test)));
    EXPECT_EQ(titles,
              (std::vector<std::string>{"1 Frequency response, 2 lines 2", "2 Time series 2", "3 Coherence, 4 lines 1",
                                        "4 Time series over uneven times 2", "5 Spectrum, 2 lines 1"}));
    VDCFAccHandle spectra = OpenSpectra(tests[0].Get());
    EXPECT_EQ(Lines(spectra.Get(), 1), (Values{1, 2, -3, 4}));
    EXPECT_EQ(Axis(spectra.Get()), (Values{1, 1.5}));
    EXPECT_EQ(TestValue<CFAccGetType>(spectra.Get()), DaxSpectrumType::FrequencyResponse);
    double real[2] = {};
    EXPECT_FALSE(CFAccGetData(spectra.Get(), 0, 1, 1, 2, DaxSpectrumKind::Double, nullptr, real));
    spectra = OpenSpectra(tests[2].Get());
    EXPECT_EQ(TestValue<CFAccGetComplex>(spectra.Get()), 0);
    EXPECT_EQ(Lines(spectra.Get(), 0), (Values{1, 0, 2, 0, -3, 0, 4, 0}));
    spectra = OpenSpectra(tests[4].Get());
    EXPECT_EQ(Axis(spectra.Get()), (Values{10, 30}));
    EXPECT_EQ(Lines(spectra.Get(), 0), (Values{1, 2, 3, 4}));
    // Times at no equal distance are a channel of their own.
    const VDTsAccHandle times = OpenTimes(tests[3].Get());
    EXPECT_EQ(Points(times.Get(), 0), (Values{1, 1.5}));
    EXPECT_EQ(Points(times.Get(), 1), (Values{2, -3}));
    EXPECT_EQ(TestValue<TSAccGetChanTitle>(times.Get(), 0), "Uneven (Abscissa)");
    EXPECT_EQ(FormatText(times.Get(), "PassedOver"), "functions that are neither of time nor of frequency (1)");
}

TEST_F(UffTest, WhatIsWholeOfACutFileIsRead)
{
    struct Case
    {
        UffBytes file;
        std::size_t size;  ///< of the data
    };
    // The values and the mark at the end.
    const Case cases[] = {
        {{}, 53},
        {{.type = 4, .data = "  1.000000000000E+00  2.000000000000E+00 -3.000000000000E+00  4.000000000000E+00\n"}, 81},
        {{.data = UffBytes::Raw<float>({1, 2, -3, 4}, false), .head = UffBytes::Binary(1, 16)}, 16}};
    const Values whole = {1, 2, -3, 4};
    for (const Case& tried : cases) {
        const std::string content = tried.file.Make();
        const std::size_t start = content.size() - tried.file.end.size() - tried.size;
        for (std::size_t size = start; size < content.size() - 1; ++size) {
            SCOPED_TRACE(size - start);
            const auto tests = Tests(content.substr(0, size));
            ASSERT_EQ(tests.size(), 1U);
            const VDTsAccHandle acc = OpenTimes(tests[0].Get());
            const Values read = Points(acc.Get(), 0);
            EXPECT_EQ(read, Values(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(read.size())));
            const std::size_t width = tried.size / 4;
            EXPECT_EQ(read.size(), std::min<std::size_t>((size - start) / width, 4));
            EXPECT_EQ(FormatText(acc.Get(), "Damage").empty(), size >= start + tried.size + 6);
        }
    }
    // Headers that are cut or wrong leave what else is there.
    const std::string good = UffBytes{}.Make();
    for (const UffBytes& bad : {UffBytes{.type = 3}, UffBytes{.count = -1}, UffBytes{.spacing = 7},
                                UffBytes{.numbers = " nothing"}, UffBytes{.data = "", .head = UffBytes::Binary(1, 16, 1)}}) {
        const auto tests = Tests(good + bad.Make() + good);
        ASSERT_EQ(tests.size(), 1U);
        EXPECT_EQ(TestInt<FIDGetNumChans>(tests[0]), 2);
        EXPECT_NE(FormatText(OpenTimes(tests[0].Get()).Get(), "Damage"), "");
    }
    EXPECT_TRUE(Tests("    -1\n   164\n         1SI\n    -1\n").empty());
    ExpectError(-333281, "Passed over: 164 (1)");
}

TEST_F(UffTest, ClaimsByContentAndNoOthersFiles)
{
    const std::string good = UffBytes{}.Make();
    const std::string mesh = "    -1\n    15\n";
    const std::tuple<const char*, std::string, bool> cases[] = {
        {"a.uff", good, true},   {"a.dat", good, true},      {"a.UNV", mesh + good, true}, {"a.txt", mesh + good, false},
        {"a.txt", "    -1\n    58\n    12\n    13\n", false}, {"a.uff", "-1,58\n", false},      {"b.uff", "", false}};
    for (const auto& [name, content, claimed] : cases)
        EXPECT_EQ(!Identify(folder_.Write(name, content)).empty(), claimed) << name << content;
}
