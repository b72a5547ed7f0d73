#include "support/TestSupport.h"

#include "vdbase/VDComStr.h"
#include "vdbase/VDKeyValueArray.h"
#include "vdbase/VDSelArrayTemplate.h"
#include "vdbase/VDStringArray.h"
#include "vdbase/VFMemory.h"

#include <cstring>
#include <limits>

TEST(String, PositionsAndLengthsAreCutToTheText)
{
    const VDString text("abcdef");
    EXPECT_EQ(text.Left(2), "ab");
    EXPECT_EQ(text.Left(99), "abcdef");
    EXPECT_EQ(text.Left(-1), "");
    EXPECT_EQ(text.Right(2), "ef");
    EXPECT_EQ(text.Right(99), "abcdef");
    EXPECT_EQ(text.Right(-1), "");
    EXPECT_EQ(text.Mid(4), "ef");
    EXPECT_EQ(text.Mid(6), "");
    EXPECT_EQ(text.Mid(1, 2), "bc");
    EXPECT_EQ(text.Mid(5, std::numeric_limits<int>::max()), "f");
    EXPECT_EQ(text.Mid(-3, 2), "ab");
    EXPECT_EQ(text[6], 0);
    EXPECT_EQ(text[-1], 0);
    EXPECT_EQ(VDString("abc", 99), "abc");
    EXPECT_EQ(VDString("abc", 2), "ab");
    EXPECT_EQ(VDString("abc", -1), "");
    EXPECT_EQ(VDString(nullptr, 3), "");
}

TEST(String, FindsAndCompares)
{
    const VDString text("one two one");
    EXPECT_EQ(text.Find("one"), 0);
    EXPECT_EQ(text.Find("one", 1), 8);
    EXPECT_EQ(text.Find("one", 99), -1);
    EXPECT_EQ(text.Find('w', -5), 5);
    EXPECT_EQ(text.ReverseFind('o'), 8);
    EXPECT_EQ(text.ReverseFind('x'), -1);
    EXPECT_LT(VDString("ab").Compare("b"), 0);
    // Bytes count as unsigned, so that other than ASCII characters come last.
    EXPECT_GT(VDString("\xC3\xA4").Compare("z"), 0);
    EXPECT_EQ(VDString("ChAn_1").CompareNoCase("cHaN_1"), 0);
    EXPECT_NE(VDString("\xC3\x84").CompareNoCase("\xC3\xA4"), 0);
    EXPECT_LT(VDString("chan").CompareNoCase("CHANNEL"), 0);
    EXPECT_EQ(VDString(nullptr).Compare(""), 0);
}

TEST(String, FormatTakesItsOwnTextAndLongResults)
{
    VDString text("x");
    text.Format("%s-%s-%d", text.c_str(), text.c_str(), 7);
    EXPECT_EQ(text, "x-x-7");
    const std::string longText(3000, 'q');
    text.Format("<%s>", longText.c_str());
    EXPECT_EQ(text.Str(), "<" + longText + ">");
    text = text.c_str() + 2999;
    EXPECT_EQ(text, "qq>");
    text += text.c_str();
    EXPECT_EQ(text, "qq>qq>");
}

TEST(String, TrimsAndChangesCase)
{
    VDString text(" \t a b\xC3\x84\r\n\v\f");
    text.TrimRight();
    EXPECT_EQ(text, " \t a b\xC3\x84");
    text.TrimLeft();
    text.MakeUpper();
    EXPECT_EQ(text, "A B\xC3\x84");
    text.MakeLower();
    EXPECT_EQ(text, "a b\xC3\x84");
    text = " \r\n";
    text.Trim();
    EXPECT_TRUE(text.IsEmpty());
}

TEST(StringArray, SplitsKeepingEmptyParts)
{
    VDStringArray parts;
    EXPECT_EQ(parts.SplitString("a;;b,", ";,"), 4);
    EXPECT_EQ(parts[1], "");
    EXPECT_EQ(parts[2], "b");
    EXPECT_EQ(parts[3], "");
    EXPECT_EQ(parts.SplitString("", ";"), 0);
    EXPECT_EQ(parts.SplitString("a=b=c", "=", 2), 2);
    EXPECT_EQ(parts[1], "b=c");
    EXPECT_EQ(parts.SplitString(parts[1], "="), 2);
    EXPECT_EQ(parts[0], "b");
}

TEST(StringArray, FindsForwardsAndBackwards)
{
    VDStringArray list;
    for (const char* item : {"b", "A", "b", "a"})
        list.AppendItem(item);
    EXPECT_EQ(list.Find("b"), 0);
    EXPECT_EQ(list.Find("b", 0), 2);
    EXPECT_EQ(list.Find("c", 0), -1);
    EXPECT_EQ(list.FindNoCase("a"), 1);
    VDStringArray upper = list;
    upper.MakeUpper();
    EXPECT_TRUE(list.AreEqual(upper, 1));
    EXPECT_FALSE(list.AreEqual(upper, 0));
    list.Sort();
    EXPECT_EQ(list[0], "A");
    EXPECT_EQ(list[3], "b");
    EXPECT_FALSE(list.AreEqual(VDStringArray(), 1));
}

TEST(Array, AnIndexOutsideIsNoFaultAndLeavesNothingBehind)
{
    VDStringArray list;
    list[0] = "lost";
    list[-1] = "lost";
    EXPECT_EQ(list[0], "");
    EXPECT_EQ(static_cast<const VDStringArray&>(list)[3], "");
    EXPECT_EQ(list.GetSize(), 0);
    EXPECT_FALSE(list.RemoveAt(0));
    list.AppendItem("a");
    list.Append(list);
    list.Append(list);
    EXPECT_EQ(list.GetSize(), 4);
    EXPECT_EQ(list[3], "a");
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
    EXPECT_EQ(text({4, 5}), "4,5");
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
    pairs.Set("Rate", "1");
    pairs.Set("rate", "2");
    pairs.Set("Rate", "3");
    EXPECT_EQ(pairs.GetSize(), 2);
    VDString value("old");
    EXPECT_TRUE(pairs.Get("Rate", &value));
    EXPECT_EQ(value, "3");
    EXPECT_FALSE(pairs.Get("RATE", &value));
    EXPECT_EQ(value, "");
    pairs.SetKeyType(1);
    EXPECT_TRUE(pairs.Get("RATE", &value));
    EXPECT_EQ(pairs.GetKeyAt(1), "rate");
    EXPECT_EQ(pairs.GetValueAt(2), "");
    // A pair may be set from the list's own texts while the list grows.
    for (int index = 0; index < 100; ++index)
        pairs.Set(VDString("key ") + std::to_string(index).c_str(), pairs.GetKeyAt(pairs.GetSize() - 1));
    EXPECT_EQ(pairs.GetValueAt(101), "key 98");
}

TEST(ComStr, OwnsWhatItReceives)
{
    VDComStr received;
    for (const char* text : {"first", "second"}) {
        *received.GetPtr() = static_cast<char*>(std::memcpy(VFRealloc(nullptr, 3), text, 3));
        *received.GetLenPtr() = 3;
    }
    EXPECT_EQ(received.Get(), "sec");
    received.GetPtr();
    EXPECT_EQ(received.Get(), "");
}
