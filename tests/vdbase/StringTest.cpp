#include "support/TestSupport.h"

#include "vdbase/VDKeyValueArray.h"
#include "vdbase/VDSelArrayTemplate.h"
#include "vdbase/VDStringArray.h"

#include <limits>

namespace {

std::string Joined(const VDStringArray& list)
{
    std::string joined;
    for (const VDString& item : list)
        joined += item.Str() + '|';
    return joined;
}

}  // namespace

TEST(String, PartsAreCutToTheTextAndComparedByBytes)
{
    const VDString text("abcdef");
    EXPECT_EQ(text.Left(2) + '|' + text.Left(99) + '|' + text.Left(-1), "ab|abcdef|");
    EXPECT_EQ(text.Right(2) + '|' + text.Right(99) + '|' + text.Right(-1), "ef|abcdef|");
    EXPECT_EQ(text.Mid(5, std::numeric_limits<int>::max()) + '|' + text.Mid(-3, 2) + '|' + text.Mid(6), "f|ab|");
    EXPECT_EQ(VDString("abc", 2) + '|' + VDString("abc", 99), "ab|abc");
    EXPECT_TRUE(VDString("abc", -1).IsEmpty() && VDString(nullptr, 3).IsEmpty());
    EXPECT_TRUE(text[6] == 0 && text[-1] == 0);

    EXPECT_TRUE(text.Find("cd", 1) == 2 && text.ReverseFind('x') == -1);
    EXPECT_TRUE(text.Find("ab", 1) == -1 && text.Find("a", 99) == -1 && text.Find('c', -5) == 2);
    // Bytes count as unsigned, so that other than ASCII characters come last.
    EXPECT_GT(VDString("\xC3\xA4").Compare("z"), 0);
    EXPECT_EQ(VDString("ChAn_1").CompareNoCase("cHaN_1"), 0);
    EXPECT_NE(VDString("\xC3\x84").CompareNoCase("\xC3\xA4"), 0);
    EXPECT_LT(VDString("chan").CompareNoCase("CHANNEL"), 0);
    EXPECT_EQ(VDString(nullptr).Compare(""), 0);
}

TEST(String, ChangesTakeTheirOwnTextAndLongResults)
{
    VDString text("x");
    text.Format("%s-%s-%d", text.c_str(), text.c_str(), 7);
    EXPECT_EQ(text, "x-x-7");
    const std::string longText(3000, 'q');
    text.Format("<%s>", longText.c_str());
    EXPECT_EQ(text.Str(), "<" + longText + ">");
    text = text.c_str() + 2999;
    text += text.c_str();
    EXPECT_EQ(text, "qq>qq>");

    text = " \t a b\xC3\x84\r\n\v\f";
    text.Trim();
    text.MakeUpper();
    EXPECT_EQ(text, "A B\xC3\x84");
    text.MakeLower();
    EXPECT_EQ(text, "a b\xC3\x84");
    text = " \r\n";
    text.Trim();
    EXPECT_EQ(text, "");
}

TEST(StringArray, SplitsKeepingEmptyPartsAndFindsFromBothEnds)
{
    VDStringArray list;
    EXPECT_EQ(list.SplitString("a;;b,", ";,"), 4);
    EXPECT_EQ(Joined(list), "a||b||");
    EXPECT_EQ(list.SplitString("", ";"), 0);
    EXPECT_EQ(list.SplitString("a=b=c", "=", 2), 2);
    EXPECT_EQ(Joined(list), "a|b=c|");
    EXPECT_EQ(list.SplitString(list[1], "="), 2) << "one of its own texts";
    EXPECT_EQ(Joined(list), "b|c|");

    list.SplitString("b A b a", " ");
    EXPECT_TRUE(list.Find("b") == 0 && list.Find("b", 0) == 2);
    EXPECT_TRUE(list.Find("c", 0) == -1 && list.FindNoCase("a") == 1);
    VDStringArray upper = list;
    upper.MakeUpper();
    EXPECT_TRUE(list.AreEqual(upper, 1));
    EXPECT_FALSE(list.AreEqual(upper, 0) || list.AreEqual(VDStringArray(), 1));
    list.Sort();
    EXPECT_EQ(Joined(list), "A|a|b|b|");
}

TEST(Array, AnIndexOutsideIsNoFaultAndLeavesNothingBehind)
{
    VDStringArray list;
    list[0] = "lost";
    list[-1] = "lost";
    EXPECT_TRUE(list[0] == "" && static_cast<const VDStringArray&>(list)[3] == "");
    EXPECT_TRUE(list.IsEmpty() && !list.RemoveAt(0));
    list.AppendItem("a");
    list.Append(list);
    list.Append(list);
    EXPECT_EQ(Joined(list), "a|a|a|a|");
}

TEST(SelArray, RangeTextJoinsRunsAndStopsAtTheLimit)
{
    const auto text = [](std::initializer_list<long> numbers, int limit = 100) {
        VDSelArrayTemplate<long> list(10, limit);
        for (const long number : numbers)
            list.Add(number);
        return list.GetRangeText().Str();
    };
    EXPECT_EQ(text({}), "");
    EXPECT_EQ(text({1, 2, 3, 7, 9, 10}), "1-3,7,9,10");
    EXPECT_EQ(text({7, 7, 8}), "7,7,8");
    EXPECT_EQ(text({11, 13, 15}, 6), "11,13~");
    EXPECT_EQ(text({11, 12, 13}, 2), "~");
    EXPECT_EQ(text({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), "1-10");
    const long last = std::numeric_limits<long>::max();
    EXPECT_EQ(text({last, std::numeric_limits<long>::min()}), std::to_string(last) + "," + std::to_string(-last - 1));
}

TEST(KeyValueArray, CaseCountsUnlessTurnedOff)
{
    VDKeyValueArray pairs;
    for (const auto& [key, value] : {std::pair("Rate", "1"), std::pair("rate", "2"), std::pair("Rate", "3")})
        pairs.Set(key, value);
    EXPECT_EQ(pairs.GetSize(), 2);
    VDString value;
    EXPECT_TRUE(pairs.Get("Rate", &value) && value == "3");
    EXPECT_TRUE(!pairs.Get("RATE", &value) && value == "");
    pairs.SetKeyType(1);
    EXPECT_TRUE(pairs.Get("RATE", &value));
    // A pair may be set from the list's own texts while the list grows.
    for (int index = 0; index < 100; ++index)
        pairs.Set(VDString("key ") + std::to_string(index).c_str(), pairs.GetKeyAt(pairs.GetSize() - 1));
    EXPECT_EQ(pairs.GetValueAt(101), "key 98");
}
