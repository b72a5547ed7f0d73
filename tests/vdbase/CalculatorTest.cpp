#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDCalculator.h"
#include "vdbase/VDUnicodeString.h"

#include "support/TestSupport.h"

#include <cmath>
#include <limits>
#include <map>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

class NamedValues : public VDCalculator
{
public:
    void GetVariableByName(const char* name, VDVariant& value) override
    {
        ++asked[name];
        value = values[name];
    }
    void GetVariableByIndex(int index, VDVariant& value) override { value.SetDouble(index * 100); }
    bool IsVariableNameValid(const char* name, int* index) override
    {
        if (std::string(name) == "#Indexed#")
            *index = 3;
        return std::string(name) != "#Forbidden#";
    }
    bool IsFunctionNameValid(const char* name) override
    {
        return std::string_view("twice throws join eval").find(name) != std::string_view::npos;
    }
    bool ExecuteUserFunction(const VDString& name, VDArray<VDVariant> arguments, VDVariant* result) override
    {
        double number = 0;
        VDString text;
        if (name == "throws")
            throw 7;
        if (name == "twice") {
            result->SetDouble(arguments[0].ConvertToDouble(&number) ? 2 * number : 0);
        } else if (name == "join") {
            for (const VDVariant& each : arguments)
                if (VDString piece; each.ConvertToString(&piece))
                    text += piece + ";";
            result->SetString(text);
        } else if (name == "eval" && arguments[0].GetString(&text)) {
            if (!EvaluateToDouble(text, &number))
                return false;
            result->SetDouble(number);
        }
        return true;
    }

    std::map<std::string, VDVariant> values = {
        {"#Gain#", VDVariant(2.5)},           {"#Name#", VDVariant("Bar")},
        {"#Run#", VDVariant("007")},          {"#On#", VDVariant(true)},
        {"#chan?(#A#==1).B#", VDVariant(7L)}, {"#Pointer#", VDVariant(static_cast<void*>(this))}};
    std::map<std::string, int> asked;
};

double Evaluate(VDCalculator& calculator, const std::string& expression)
{
    double value = -999;
    EXPECT_TRUE(calculator.EvaluateToDouble(expression.c_str(), &value))
        << expression << ": " << VFErrorGetText(VFGetBaseLibError());
    return value;
}

std::string Repeated(const std::string& text, int count)
{
    std::string all;
    for (int each = 0; each < count; ++each)
        all += text;
    return all;
}

}  // namespace

TEST(Calculator, EvaluatesOperatorsFunctionsAndTexts)
{
    NamedValues calculator;
    const std::pair<const char*, double> rows[] = {
        {"-2^2 + sqrt(16) + MAX(1, 7)", 7},
        {"2^3^2 - 2^-1", 511.5},
        {"1--1", 2},
        {"7 % 4 - 8 / 2 / 2", 1},
        {"mod(-7, 4)", -3},
        {" \t1\r\n+\v\f1\n", 2},
        {"0x1F + 1e1 + .5 + 5. + 1E-1", 46.6},
        {"1e-400 + 4.9e-324 * 0", 0},
        {"floor(-1.5)*1000 + ceil(1.2)*100 + round(2.5)*10 + trunc(-1.7)", -1771},
        {"sign(-3) + sign(0) + min(3, 2, 1) + sum(1,2,3) + atan2(0, 1) + hypot(3,4)", 11},
        {"1 < 2 == true", 1},
        {"1 + 1 == 2 && 3 > 2 or nonsense(1)", -1},
        {"(0 ? 2 : 0 ? 3 : 4) + (1 ? 0 ? 5 : 6 : 7)", 10},
        {"!0 + !5 * 2", 1},
        {"6 & 3 | 8 == 10", 1},
        {"1/0", Infinity},
        {"-inf", -Infinity},
        {"\"a\" < \"b\" and \"x\\\"#1\\\\\" == \"x\"\"#1\\\\\" and \"C:\\dir\" != \"C:\"", 1},
        {"\"a\" + \"b\" == \"ab\" && strlen(toupper(\"abc\")) == 3 && tolower(\"Ab\") == \"ab\"", 1},
        {"str2dbl(\" 2.5 \")", 2.5},
        {"#Gain# * 2 + #Indexed# + twice(4)", 313},
        {"#chan?(#A#==1).B# + 1", 8},
        {"#Run# == 7 and #Run# == \"007\" and #On# == \"TRUE\" and #Name# != 3 and not #Name# == 3", 1},
        {"false && #Missing# || true || #Missing#", 1},
        {"join(\"a\", 1, #On#, #Name#) == \"a;1;True;Bar;\"", 1},
        {"eval(\"1+eval(\"\"2*#Gain#\"\")\") + #Gain#", 8.5},
        {"join() == \"\"", 1},
    };
    for (const auto& [expression, value] : rows) {
        double result = -1;
        calculator.EvaluateToDouble(expression, &result);
        EXPECT_DOUBLE_EQ(result, value) << expression;
    }
    EXPECT_TRUE(std::isnan(Evaluate(calculator, "max(1, nan, 2)")) && std::isnan(Evaluate(calculator, "1 % 0")));
    for (const char* const text : {"a\"b", "\\", "x\\\"", "C:\\dir\\", "#", ""}) {
        calculator.values["#Text#"].SetString(text);
        EXPECT_EQ(Evaluate(calculator, "#Text# == " + VDCalculator::Quoted(text).Str()), 1) << text;
    }
}

TEST(Calculator, SaysWhatIsWrongAndWhere)
{
    struct Row
    {
        const char* expression;
        int position;
        const char* what;
    };
    const Row unreadable[] = {
        {"", 1, "it is empty"},
        {"2+", 3, "a value is missing before the end"},
        {"2+)", 3, "a value is missing before \")\""},
        {"1 2", 3, "an operator is missing before \"2\""},
        {"1e5x", 4, "an operator is missing"},
        {"(1+(2)", 1, "the bracket is not closed"},
        {"1)", 2, "has no \"(\""},
        {"max(1,(2,3))", 9, "outside the brackets"},
        {"max(1 ? 2, 3)", 7, "has no \":\""},
        {"1 : 2", 3, "has no \"?\""},
        {"#A# = 1", 5, "\"==\" compares"},
        {"0 < #A# < 10", 9, "can't be chained"},
        {"1 $ 2", 3, "\"$\" has no meaning"},
        {"\"a", 1, "no closing quote"},
        {"1 + #chan?(#A#", 5, "no closing \"#\""},
        {"1e999", 1, "too large"},
        {"0xZ", 1, "hexadecimal"},
        {"1 + x", 5, "\"x\" is unknown"},
        {"sin", 1, "has no brackets"},
        {"1+thrice(4)", 3, "no function \"thrice\""},
        {"#Forbidden#", 1, "no variable"},
        {"atan2(1)", 1, "takes 2 arguments, not 1"},
        {"max()", 1, "takes 1 or more arguments, not 0"},
        {"sin(1,)", 7, "a value is missing"},
    };
    NamedValues calculator;
    double value = 5;
    bool truth = true;
    const auto expectReport = [](int code, const Row& row) {
        const std::string where = "at position " + std::to_string(row.position) + ": ";
        ExpectError(code, where);
        ExpectError(code, row.what);
    };
    for (const Row& row : unreadable) {
        EXPECT_FALSE(calculator.SetExpression(row.expression)) << row.expression;
        expectReport(VDBaseError::ExpressionText, row);
        EXPECT_FALSE(calculator.EvaluateExpressionToBoolean(&truth));
        expectReport(VDBaseError::ExpressionValue, {"", 1, "no expression is set"});
    }
    const Row failing[] = {
        {"1 + #Missing#", 5, "\"#Missing#\" has no value"},
        {"#Pointer#", 1, "has no value"},
        {"2 * #Name#", 3, "\"Bar\" stands where a number is needed"},
        {"1 || #Name# && #Name#", 0, nullptr},
        {"1 && #Name#", 3, "neither true nor false"},
        {"#Name# < 3", 8, "can't be compared"},
        {"1.5 & 1", 5, "bits"},
        {"1 + throws(1)", 5, "\"throws\" has failed"},
        {"str2dbl(\"x\")", 1, "is no number"},
        {"strlen(1)", 1, "needs a text"},
        {"\"a\"", 1, "the result is the text \"a\""},
    };
    for (const Row& row : failing) {
        value = 5;
        ASSERT_TRUE(calculator.SetExpression(row.expression)) << row.expression;
        EXPECT_EQ(calculator.EvaluateToDouble(&value), row.what == nullptr) << row.expression;
        if (row.what != nullptr) {
            expectReport(VDBaseError::ExpressionValue, row);
            EXPECT_EQ(value, 5);
        }
    }
    // What a function of the derived class recorded stays beneath.
    EXPECT_FALSE(calculator.EvaluateToDouble("eval(\"1+\")", &value));
    ExpectError(VDBaseError::ExpressionValue, "\"eval\" has failed");
    EXPECT_TRUE(VFErrorCheck(VDBaseError::ExpressionText));

    VDCalculator plain;
    for (const char* const unknown : {"#x#", "foo(1)"})
        EXPECT_FALSE(plain.SetExpression(unknown)) << unknown;
    EXPECT_FALSE(plain.SetExpression(nullptr));
    EXPECT_EQ(Evaluate(plain, "1 < 2"), 1);
}

TEST(Calculator, EvaluatesACompiledExpressionManyTimesAndAsksOnce)
{
    NamedValues calculator;
    bool truth = true;
    ASSERT_TRUE(calculator.SetExpression("#Gain# * #Gain# > 9 || #Name# == \"Foo#1\""));
    EXPECT_TRUE(calculator.EvaluateExpressionToBoolean(&truth) && !truth);
    EXPECT_TRUE(calculator.asked["#Gain#"] == 1 && calculator.asked["#Name#"] == 1);
    calculator.values["#Gain#"].SetDouble(4);
    EXPECT_TRUE(calculator.EvaluateExpressionToBoolean(&truth) && truth);
    EXPECT_TRUE(calculator.asked["#Gain#"] == 2 && calculator.asked["#Name#"] == 1);
}

TEST(Calculator, TakesAnyShapeOfTheLongestText)
{
    NamedValues calculator;
    constexpr int longest = VDCalculator::MaxExpression;
    constexpr int half = longest / 2 - 1;
    const std::pair<std::string, double> shapes[] = {
        {Repeated("(", half) + "1" + Repeated(")", half), 1},
        {Repeated("-", longest - 1) + "1", -1},
        {"1" + Repeated("^1", half), 1},
        {"1" + Repeated("+1", half), half + 1},
        {Repeated("1?", half / 2) + "3" + Repeated(":2", half / 2), 3},
        {"0" + Repeated("?1:0", longest / 4 - 1), 0},
        {Repeated("abs(", longest / 5 - 1) + "2" + Repeated(")", longest / 5 - 1), 2},
        {"max(1" + Repeated(",2", half - 3) + ")", 2},
        {"1" + Repeated("&&1", longest / 3 - 1), 1},
        {"#Gain#" + Repeated("+#Gain#", longest / 7 - 1), 2.5 * (longest / 7)},
        {Repeated(" ", longest - 1) + "4", 4},
    };
    for (const auto& [expression, value] : shapes)
        EXPECT_EQ(Evaluate(calculator, expression), value) << expression.substr(0, 10);
    double value = 0;
    EXPECT_FALSE(calculator.EvaluateToDouble(Repeated("(", longest).c_str(), &value));
    ExpectError(VDBaseError::ExpressionText, "at position 65537: a value is missing before the end");
    EXPECT_FALSE(calculator.EvaluateToDouble(Repeated("1", longest + 1).c_str(), &value));
    ExpectError(VDBaseError::ExpressionText, "longer than 65536");
    // Few signs that would make very long texts.
    calculator.values["#Name#"].SetString(Repeated("x", 1'000'000).c_str());
    EXPECT_FALSE(calculator.EvaluateToDouble(("\"\" == #Name#" + Repeated("+#Name#", 100)).c_str(), &value));
    ExpectError(VDBaseError::ExpressionValue, "too long");
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
