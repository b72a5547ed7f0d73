#include "support/TestSupport.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDIo.h"
#include "vdbase/VDTextIo.h"

#include <sys/stat.h>

#include <cstdint>
#include <limits>
#include <random>
#include <tuple>

using namespace std::string_literals;

namespace {

constexpr std::int64_t Largest = std::numeric_limits<std::int64_t>::max();

std::string Pattern(std::size_t size)
{
    std::string bytes(size, '\0');
    std::mt19937 random(7);
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

std::string ReadSome(VDIo& io, std::int64_t count)
{
    std::string bytes(static_cast<std::size_t>(count), '\0');
    std::int64_t got = -1;
    EXPECT_TRUE(io.ReadAtCur(count, bytes.data(), &got));
    bytes.resize(static_cast<std::size_t>(got));
    return bytes;
}

}  // namespace

TEST(Io, EveryWayOfReadingGivesTheSameBytes)
{
    const TestFolder folder;
    const std::string bytes = Pattern(300000);
    VDIo io(folder.Write("a.dat", bytes).c_str());
    ASSERT_TRUE(io.Open(VTOpenRead));
    EXPECT_EQ(io.GetFileSize(), 300000);
    for (const std::int64_t step : {1, 100, 511, 512, 513, 16383, 16384, 65536, 299999, 400000}) {
        ASSERT_TRUE(io.SetCurPos(0));
        std::string whole;
        for (std::string part = ReadSome(io, step); !part.empty(); part = ReadSome(io, step))
            whole += part;
        EXPECT_TRUE(whole == bytes) << "in steps of " << step;
    }
    // Jumps of all kinds between, inside and across what the buffer holds.
    std::mt19937 random(11);
    for (int turn = 0; turn < 3000; ++turn) {
        if (random() % 2 == 0) {
            ASSERT_TRUE(io.SetCurPos(random() % 310000));
        }
        const auto at = static_cast<std::size_t>(io.GetCurPos());
        const std::int64_t count = random() % (turn % 10 == 0 ? 100000 : 2000);
        const std::string expected = at < bytes.size() ? bytes.substr(at, static_cast<std::size_t>(count)) : "";
        ASSERT_TRUE(ReadSome(io, count) == expected) << count << " bytes at " << at;
    }
    EXPECT_TRUE(io.Close());
    ExpectNoError();
}

TEST(Io, EndsAndEdges)
{
    const TestFolder folder;
    const std::string file = folder.Write("a.dat", "0123456789");
    VDIo io(file.c_str());
    ASSERT_TRUE(io.Open(VTOpenRead));
    char buffer[600] = {};
    std::int64_t got = -1;
    for (const auto& [offset, count, expected] :
         {std::tuple(std::int64_t{0}, std::int64_t{512}, 10), {Largest - 1, 600, 0}, {Largest, Largest, 0}, {4, 600, 6}}) {
        EXPECT_TRUE(io.Read(offset, count, buffer, &got));
        EXPECT_EQ(got, expected) << "at " << offset;
        EXPECT_EQ(io.GetCurPos(), offset + expected);
    }
    EXPECT_TRUE(io.Read(4, 6, buffer, nullptr));
    EXPECT_FALSE(io.Read(5, 6, buffer, nullptr));
    ExpectErrorText(VDBaseError::FileRead, "The file can't be read: it ends too early\nFile : " + file);
    EXPECT_FALSE(io.Read(-1, 1, buffer, &got) || io.Read(0, -1, buffer, &got) || io.SetCurPos(-1));
    ExpectError(VDBaseError::FileRead, "negative", "VDIo::SetCurPos");
    EXPECT_FALSE(io.Write(0, 1, "x"));
    ExpectError(VDBaseError::FileWrite, file, "VDIo::Write");
    EXPECT_TRUE(io.Close());
    EXPECT_FALSE(io.ReadAtCur(1, buffer, &got));
    ExpectError(VDBaseError::FileRead, "isn't open", "VDIo::Read");

    VDIo empty(folder.Write("empty.dat", "").c_str());
    ASSERT_TRUE(empty.Open(VTOpenRead));
    EXPECT_EQ(ReadSome(empty, 512), "");
}

TEST(Io, OnlyFilesOpen)
{
    const TestFolder folder;
    const std::string pipe = folder.Name("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string none = folder.Name("none");
    using Row = std::tuple<std::string, int, const char*>;
    for (const auto& [name, mode, reason] :
         {Row(folder.Path(), VTOpenRead, "Is a directory"), Row(folder.Path(), VTOpenUpdate, "Is a directory"),
          Row(folder.Path(), VTOpenCreate, "Is a directory"), Row(none, VTOpenRead, "No such file or directory"),
          Row(none, VTOpenUpdate, "No such file or directory"), Row("", VTOpenRead, "No such file or directory"),
          Row(none, 3, "the mode is unknown"), Row(pipe, VTOpenRead, "it is a pipe or a device")}) {
        VFErrorClear();
        VDIo io(name.c_str());
        EXPECT_TRUE(!io.Open(mode) && !io.IsOpen());
        ExpectError(VDBaseError::FileOpen, std::string(reason) + "\nFile : " + name, "VDIo::Open");
    }
}

TEST(Io, ReadingSeesWhatWasWritten)
{
    const TestFolder folder;
    VDIo io(folder.Name("a.dat").c_str());
    ASSERT_TRUE(io.Open(VTOpenCreate));
    const std::string bytes = Pattern(5000);
    EXPECT_TRUE(io.WriteAtCur(5000, bytes.data()));
    EXPECT_EQ(io.GetCurPos(), 5000);
    ASSERT_TRUE(io.SetCurPos(0));
    EXPECT_EQ(ReadSome(io, 100), bytes.substr(0, 100));
    EXPECT_EQ(ReadSome(io, 100), bytes.substr(100, 100));
    EXPECT_TRUE(io.Write(200, 3, "new"));
    ASSERT_TRUE(io.SetCurPos(200));
    EXPECT_EQ(ReadSome(io, 4), std::string("new") + bytes.substr(203, 1));
    EXPECT_FALSE(io.Write(Largest, 1, "x"));
    ExpectError(VDBaseError::FileWrite, "File too large");
    EXPECT_TRUE(io.Write(7000, 0, nullptr));
    EXPECT_TRUE(io.Close());

    ASSERT_TRUE(io.Open(VTOpenUpdate));
    EXPECT_TRUE(io.Write(0, 1, "Z"));
    EXPECT_EQ(io.GetFileSize(), 5000);
    ASSERT_TRUE(io.SetCurPos(0));
    EXPECT_EQ(ReadSome(io, 2), std::string("Z") + bytes.substr(1, 1));

    VDIo full("/dev/full");
    ASSERT_TRUE(full.Open(VTOpenUpdate));
    EXPECT_FALSE(full.WriteAtCur(3, "abc"));
    ExpectError(VDBaseError::FileWrite, "No space left", "VDIo::Write");
    EXPECT_EQ(full.GetCurPos(), 0);
}

TEST(TextIo, LinesOfAllKinds)
{
    const TestFolder folder;
    const std::string longLine(65530, 'x');
    const std::string file =
        folder.Write("a.txt", "one\r\ntwo\rthree\n\n" + longLine + "12345678\r\n" + "a\0b"s + "\n\nlast");
    VDTextIo io(file.c_str());
    ASSERT_TRUE(io.Open(VTOpenRead));
    VDString line;
    // The line of 8 bytes has its end at once, behind the buffer's edge.
    using Row = std::pair<std::string, int>;
    for (const auto& [expected, maxLength] :
         {Row("one", 1000), Row("two", 1000), Row("three", 1000), Row("", 1000), Row(longLine, 65530), Row("12345678", 8),
          Row("a\0b"s, 1000), Row("", 1000), Row("last", 1000)}) {
        bool truncated = maxLength != 65530;
        ASSERT_TRUE(io.ReadString(&line, maxLength, &truncated));
        EXPECT_TRUE(line.Str() == expected && truncated == (maxLength == 65530)) << line.Left(20);
    }
    EXPECT_FALSE(io.ReadString(&line, 1000, nullptr));
    ExpectNoError();
    EXPECT_FALSE(io.ReadString(&line, 0, nullptr));
    ExpectError(VDBaseError::FileRead, "below 1", "VDTextIo::ReadString");
}

TEST(TextIo, WritesWhatItReads)
{
    const TestFolder folder;
    const std::string file = folder.Name("a.txt");
    std::string expected;
    {
        VDTextIo io(file.c_str());
        ASSERT_TRUE(io.Open(VTOpenCreate));
        for (int number = 0; number < 20000; ++number) {
            expected += std::to_string(number) + '\n';
            ASSERT_TRUE(io.WriteString(std::to_string(number).c_str()));
        }
    }
    EXPECT_TRUE(TestReadFile(file) == expected);

    VDTextIo full("/dev/full");
    ASSERT_TRUE(full.Open(VTOpenCreate));
    EXPECT_TRUE(full.WriteString("pending"));
    EXPECT_FALSE(full.Close());
    ExpectError(VDBaseError::FileWrite, "No space left");
    EXPECT_FALSE(full.WriteString("late"));
    EXPECT_FALSE(VDTextIo(file.c_str()).Open(VTOpenUpdate));
    ExpectError(VDBaseError::FileOpen, file, "VDTextIo::Open");
}
