#include "daxlib/VFDaxMetaDataExpression.h"
#include "support/TestSupport.h"
#include "vdbase/VDBaseErrorCodes.h"
#include "vdstore/LQChannelMapper.h"

#include <cmath>

namespace {

constexpr int Global = LQChannelMapper::GLOBAL;
constexpr int Every = -1;
constexpr int OfTest = -2;

/// Channels numbered 3 and 7. Both have a set "Info" with the item "Where" that names their index, the test has one, too.
class MetaDataExpression : public testing::Test
{
protected:
    MetaDataExpression()
    {
        VFErrorClear();
        for (const long number : {3L, 7L})
            EXPECT_TRUE(mapper_.SetChannelNumber(number, mapper_.Append()));
        for (const int slot : {0, 1, Global})
            Set("Info", slot).AddString("Where", std::to_string(slot).c_str());
        Set("Sensor", 1).AddDouble("Gain", 2.5);
        Set("Test", Global).AddString("Operator", "Bar");
        Set("Test", Global).AddString("Run", " 007 ");
        Set("Test", Global).AddString("Quoted", "a \"b\" C:\\");
        Set("Test", Global).AdoptDouble("Unknown", nullptr);
        Set("Time", Global).AddFloat("SampleRate", 1000);
        Set("Time", Global).AddString("BaseTime", "0.5");
        Set("Time", Global).AddLong("PMin", 1001);
        Set("Time", Global).AdoptLong("PMax", nullptr);
        Set("Types", Global).AddBoolean("On", true);
        Set("Types", Global).AddUnsHuge("Huge", std::uint64_t{1} << 63);
        Set("Types", Global).AddFloat("Tenth", 0.1F);
    }

    Z4PropertySet& Set(const char* name, int slot) { return *mapper_.AdoptMetaDataSet(name, nullptr, slot); }

    /// The item's text; "-" if there is none, "failed" if the call fails.
    std::string Item(const char* keyword, int channel, bool global = false)
    {
        Z4Property* item = nullptr;
        if (!VFDaxGetMetaDataItem(&mapper_, keyword, channel, &item, global, mappers_, channels_))
            return item == nullptr ? "failed" : "failed with an item";
        return item == nullptr ? "-" : item->ToString().Str();
    }

    std::string Expanded(const char* text, bool keep = false, bool fail = false, bool quote = false, int channel = Every)
    {
        VDString both(text);
        return VFDaxEvaluateStringFromMeta(both, &mapper_, channel, fail, &both, keep, nullptr, nullptr, quote)
                   ? both.Str()
                   : "failed" + both.Str();
    }

    std::string Value(const char* text, int channel, int* type = nullptr)
    {
        VDString expression(text);
        VDString result("before");
        return VFDaxEvaluateValueFromMeta(expression, &mapper_, channel, &result, type) ? result.Str()
                                                                                        : "failed" + result.Str();
    }

    double Double(const char* text, int channel)
    {
        VDString expression(text);
        double value = -999;
        const bool done = VFDaxEvaluateDoubleFromMeta(expression, &mapper_, channel, &value);
        EXPECT_TRUE(done || value == -999) << "untouched";
        return value;
    }

    LQChannelMapper mapper_{nullptr};
    VDArray<LQChannelMapper*>* mappers_ = nullptr;
    VDArrayWithSort<long>* channels_ = nullptr;
};

}  // namespace

TEST_F(MetaDataExpression, FindsItemsByKeyword)
{
    const struct
    {
        const char* keyword;
        int channel;
        const char* found;
        const char* foundInTest;  ///< if the test is searched, too
    } rows[] = {
        {"Gain", Every, "2.5", "2.5"},
        {"Gain", 0, "-", "-"},
        {"gain", Every, "-", "-"},
        {"Where", Every, "0", "0"},
        {"Where", 1, "1", "1"},
        {"Where", OfTest, "-1", "-1"},
        {"Where", 9, "-", "-1"},
        {"Where", -5, "-", "-1"},
        {"Operator", 1, "-", "Bar"},
        {"chan7.sensor.Gain", 0, "2.5", "2.5"},
        {"CHAN+7.Where", OfTest, "1", "1"},
        {"chan7.Operator", 0, "-", "Bar"},
        {"chanCurrent.Where", 1, "1", "1"},
        {"chancurrent.Where", Every, "-", "-"},
        {"chan.Where", 1, "-", "-"},
        {"chan?(#Gain#>2).Where", 0, "1", "1"},
        {"chan?(#Info.Where# == \"1\" and #Operator# == \"Bar\").chan3.Where", 0, "-", "-"},
        {"chan?(true)", 0, "-", "-"},
        {"test.Where", 0, "-1", "-1"},
        {"chan3.test.Info.Where", 0, "-1", "-1"},
        {"Test.Operator", Every, "Bar", "Bar"},
        {"TEST.Where", 0, "-1", "-1"},
        {"info.Where", 1, "1", "1"},
        {"#Info.Where#", 1, "1", "1"},
        {".Where", 1, "-", "-"},
        {"", Every, "-", "-"},
        {"data2.Where", 1, "-", "-"},
        {"database.Where", 1, "-", "-"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Item(row.keyword, row.channel), row.found) << row.keyword << " in " << row.channel;
        EXPECT_EQ(Item(row.keyword, row.channel, true), row.foundInTest) << row.keyword << " in " << row.channel;
    }
    ExpectNoError();
    // A set of that name in a channel comes before the test; a word in lower case is the selector alone.
    Set("Test", 0).AddString("Operator", "Foo");
    EXPECT_TRUE(Item("Test.Operator", Every) == "Foo" && Item("test.Operator", Every) == "Bar");

    EXPECT_EQ(Item("chan?(#Gain#>2.Where", 0), "failed");
    ExpectError(-327702, "No closing brace found", "VFDaxGetMetaDataItem");
    for (const char* const bad : {"chan?().Where", "chan?(#Gain#>).Where", "chan?(max(1,2)>1).Where", "chan?(nope(1)"}) {
        EXPECT_EQ(Item(bad, 0), "failed") << bad;
        if (std::string(bad).ends_with("e"))
            ExpectError(-327703, "Invalid expression", "VFDaxGetMetaDataItem");
        EXPECT_TRUE(VFErrorCheck(VDBaseError::ExpressionText)) << "what is wrong and where";
    }
    Z4Property* item = nullptr;
    EXPECT_FALSE(VFDaxGetMetaDataItem(nullptr, "x", 0, &item, true, nullptr, nullptr));
    EXPECT_FALSE(VFDaxGetMetaDataItem(&mapper_, "x", 0, nullptr, true, nullptr, nullptr));
}

TEST_F(MetaDataExpression, SelectsAmongMappers)
{
    LQChannelMapper other(nullptr);
    for (int channel = 0; channel < 2; ++channel)
        other.AdoptMetaDataSet("Info", nullptr, other.Append()->GetIndex())
            ->AddString("Where", channel == 0 ? "other 0" : "other 1");
    VDArray<LQChannelMapper*> mappers;
    VDArrayWithSort<long> channels;
    for (LQChannelMapper* const each : {&mapper_, &other, static_cast<LQChannelMapper*>(nullptr)})
        mappers.AppendItem(each);
    mappers_ = &mappers;
    EXPECT_EQ(Item("data2.Where", 0), "other 0");
    channels_ = &channels;
    for (const long each : {-1L, 1L})
        channels.AppendItem(each);
    const std::pair<const char*, const char*> rows[] = {
        {"data1.Where", "0"},
        {"DATA2.Where", "other 1"},
        {"data2.chancurrent.Where", "other 0"},
        {"data2.chan?(#Gain#>2).Where", "other 1"},
        {"data3.Where", "-"},
        {"data0.Where", "-"},
        {"data-2147483648.Where", "-"},
    };
    for (const auto& [keyword, found] : rows)
        EXPECT_EQ(Item(keyword, 0, true), found) << keyword;
}

TEST_F(MetaDataExpression, ExpandsTexts)
{
    const std::pair<const char*, const char*> rows[] = {
        {"run by #test.Operator#, #Missing#", "run by Bar, "},
        {"#Gain##chan3.Info.Where#", "2.50"},
        {"f(#Gain#) #chan?(#Gain#>2).Where#", "f(2.5) 1"},
        {"100 #", "100 #"},
        {"#Gain# and #Gain", "2.5 and #Gain"},
        {"#a)# #Gain#", "#a)# #Gain#"},
        {"#Unknown#", "Undefined"},
        {"#On# #Tenth# #Huge#", "True 0.1 9223372036854775808"},
        {"eval(#test.Operator#+#Run#+#Gain#+#On#)", "eval(\"Bar\"+ 007 +2.5+True)"},
        {"#test.Operator# eval(", "\"Bar\" eval("},
        {"eval(#Quoted#)", "eval(\"a \\\"b\\\" C:\\\\\")"},
        {"var_exist(#Gain#)*#Gain# var_exist(#Missing#)", "var_exist(#Gain#)*2.5 var_exist(#Missing#)"},
        {"#tmin# #TMax#", "1.5 Undefined"},
        {"<#TAbs#>", "<>"},
    };
    for (const auto& [text, expanded] : rows)
        EXPECT_EQ(Expanded(text), expanded) << text;
    EXPECT_EQ(Expanded("( #Operator# #Operator#", false, false, true), "( \"Bar\" Bar");
    EXPECT_EQ(Expanded("#Missing# #TAbs#", true), "#Missing# #TAbs#");
    EXPECT_EQ(Expanded("var_exist(#Missing#) #Gain#", false, true), "var_exist(#Missing#) 2.5");
    ExpectNoError();
    EXPECT_EQ(Expanded("#Gain# #Missing#", true, true), "failed");
    ExpectErrorText(-327696, "Can't find meta data item : #Missing#");
    ExpectError(-327696, {}, "VFDaxEvaluateStringFromMeta");
    EXPECT_EQ(Expanded("#chan?(1#", true), "#chan?(1#") << "the bracket leaves the token open";
    EXPECT_EQ(Expanded("#chan?(1=1).x#"), "failed");
    ExpectError(-327703, {}, "VFDaxGetMetaDataItem");

    // Rates that give no time.
    for (const char* const rate : {"0", "-1", "nan"}) {
        Set("Time", Global).PutString("SampleRate", rate);
        EXPECT_EQ(Expanded("#TMin#", true), "#TMin#") << rate;
    }
    Set("Time", Global).PutString("SampleRate", "fast");
    EXPECT_EQ(Expanded("#TMin#"), "1000.5") << "1 per second";
}

TEST_F(MetaDataExpression, GivesValuesAndNumbers)
{
    int type = 0;
    const struct
    {
        const char* expression;
        int channel;
        const char* value;
        double number;  ///< -999 for a failure
    } rows[] = {
        {"Gain", Every, "2.5", 2.5},
        {"#Gain#", Every, "2.5", 2.5},
        {"#Gain#*2+#Info.Where#", Every, "6", 6},
        {"#Gain#*2", 0, "failed", -999},
        {"#PMin#/#SampleRate#", 9, "1.001", 1.001},
        {"Run", 0, " 007 ", 7},
        {"#Operator# == \"Bar\" && #On# == \"TRUE\"", OfTest, "1", 1},
        {"Tenth", OfTest, "0.1", static_cast<double>(0.1F)},
        {"1/3", OfTest, "0.3333333333", 1.0 / 3},
        {"Operator", OfTest, "Bar", -999},
        {"Unknown", OfTest, "", -999},
        {"#Unknown#+1", OfTest, "failed", -999},
        {"#Where#*100+#chan?(#Gain#>2).Where#", Every, "1", 1},
        {"#chancurrent.Gain#", Every, "2.5", 2.5},
        {"nope", OfTest, "failed", -999},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Value(row.expression, row.channel), row.value) << row.expression;
        EXPECT_EQ(Double(row.expression, row.channel), row.number) << row.expression;
    }
    EXPECT_EQ(Value("Huge", OfTest, &type), "9223372036854775808");
    EXPECT_EQ(type, Z4TypeUnsHuge);
    EXPECT_EQ(Value("#Huge#*0", OfTest, &type), "0");
    EXPECT_EQ(type, Z4TypeString);

    VFErrorClear();
    EXPECT_EQ(Value("#Gain# + #Nope#", Every), "failed");
    ExpectErrorText(-327697, "Can't evaluate meta data expression : #Gain# + #Nope#");
    ExpectError(-327697, {}, "VFDaxEvaluateValueFromMeta");
    EXPECT_TRUE(VFErrorCheck(VDBaseError::ExpressionValue)) << "the cause lies beneath";
    Double("1+", Every);
    ExpectError(-327697, {}, "VFDaxEvaluateDoubleFromMeta");
    EXPECT_TRUE(VFErrorCheck(VDBaseError::ExpressionText));
    // What is wrong inside a variable comes through, however many channels were tried.
    EXPECT_EQ(Value("1+#chan?(1=1).x#", Every), "failed");
    EXPECT_TRUE(VFErrorCheck(-327703) && VFErrorCheck(-327697));
}
