#include "vdbase/VDCalculator.h"
#include "vdbase/VDUnicodeString.h"

#include "support/TestSupport.h"

#include <map>
#include <optional>

namespace {

class NamedValues : public VDCalculator
{
public:
    void GetVariableByName(const char* name, VDVariant& value) override { value = values[name]; }
    void GetVariableByIndex(int index, VDVariant& value) override { value.SetDouble(index * 100); }
    bool IsVariableNameValid(const char* name, int* index) override
    {
        if (std::string(name) == "#Indexed#")
            *index = 3;
        return std::string(name) != "#Forbidden#";
    }
    bool ExecuteUserFunction(const VDString& name, VDArray<VDVariant> arguments, VDVariant* result) override
    {
        double first = 0;
        if (name != "twice" || arguments.GetSize() != 1 || !arguments[0].ConvertToDouble(&first))
            return false;
        result->SetDouble(2 * first);
        return true;
    }

    std::map<std::string, VDVariant> values = {{"#Gain#", VDVariant(2.5)},
                                               {"#Name#", VDVariant("Bar")},
                                               {"#On#", VDVariant(true)},
                                               {"#chan?(#A#==1).B#", VDVariant(7L)}};
};

double Evaluate(VDCalculator& calculator, const char* expression)
{
    double value = -999;
    EXPECT_TRUE(calculator.EvaluateToDouble(expression, &value)) << expression;
    return value;
}

}  // namespace

TEST(CalculatorTest, EvaluatesExpressions)
{
    VDCalculator plain;
    EXPECT_EQ(Evaluate(plain, "2*(1+0.5)"), 3);
    EXPECT_EQ(Evaluate(plain, "-2^2 + sqrt(16) + max(1, 7)"), 7);
    EXPECT_EQ(Evaluate(plain, "1 < 2"), 1);
    double value = 5;
    for (const char* bad : {"", "2+", "(", "#x#", "#x", "foo(1)", "x", "\"a\"", "zeros(9999)", "1 2"})
        EXPECT_FALSE(plain.EvaluateToDouble(bad, &value)) << bad;
    EXPECT_FALSE(plain.EvaluateToDouble(std::string(VDCalculator::MaxExpression + 1, '1').c_str(), &value));
    EXPECT_FALSE(plain.EvaluateToDouble(nullptr, &value));
    EXPECT_EQ(value, 5);

    NamedValues named;
    EXPECT_EQ(Evaluate(named, "#Gain# * 2 + #Indexed# + twice(4)"), 313);
    EXPECT_EQ(Evaluate(named, "#chan?(#A#==1).B# + 1"), 8);
    for (const char* bad : {"#Missing# + 1", "#Forbidden#", "thrice(4)"})
        EXPECT_FALSE(named.EvaluateToDouble(bad, &value)) << bad;

    const auto truthOf = [](VDCalculator& calculator) {
        bool truth = false;
        return calculator.EvaluateExpressionToBoolean(&truth) ? std::optional(truth) : std::nullopt;
    };
    EXPECT_FALSE(truthOf(plain).has_value());
    EXPECT_FALSE(named.SetExpression("#Gain# >"));
    ASSERT_TRUE(named.SetExpression("#Gain# > 3 || #Name# == \"Foo#1\""));
    EXPECT_EQ(truthOf(named), false);
    named.values["#Gain#"].SetDouble(4);
    EXPECT_EQ(truthOf(named), true);
    ASSERT_TRUE(named.SetExpression("#Name# == \"Bar\" && #On#"));
    EXPECT_EQ(truthOf(named), true);
}

TEST(UnicodeStringTest, Converts)
{
    VDUnicodeString unicode;
    VDString text("before");
    ASSERT_TRUE(VFUtf8ToUnicode("a\xC3\xA9\xE2\x82\xAC", &unicode));
    ASSERT_TRUE(unicode.GetVDStringViaEncoding(&text));
    EXPECT_STREQ(text, "a\xE9\x80");
    EXPECT_STREQ(VDUnicodeString::FromEncoding(text).GetUtf8(), "a\xC3\xA9\xE2\x82\xAC");
    ASSERT_TRUE(VFUtf8ToUnicode("\xF0\x9F\x98\x80", &unicode));
    EXPECT_FALSE(unicode.GetVDStringViaEncoding(&text));
    EXPECT_STREQ(text, "a\xE9\x80");
    EXPECT_STREQ(unicode.GetUtf8(), "\xF0\x9F\x98\x80");
    // Cut, overlong, surrogate, too large, lone.
    for (const char* bad :
         {"\xC3", "\xE2\x82", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80", "\xFF"})
        EXPECT_FALSE(VFUtf8ToUnicode(bad, &unicode)) << bad;
    EXPECT_STREQ(VFTextAsUtf8("\xE9"), "\xC3\xA9");
    EXPECT_STREQ(VFTextAsUtf8("\xC3\xA9"), "\xC3\xA9");
    for (int byte = 1; byte < 256; ++byte) {
        const char one[] = {static_cast<char>(byte), 0};
        ASSERT_TRUE(VDUnicodeString::FromEncoding(one).GetVDStringViaEncoding(&text));
        EXPECT_STREQ(text, one);
    }
}
