#include "support/TestSupport.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDIo.h"
#include "vdbase/VDTextIo.h"

#include <sys/stat.h>

#include <cstdint>
#include <limits>
#include <random>

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
    EXPECT_TRUE(io.ReadAtCur(512, buffer, &got));
    EXPECT_EQ(got, 10);
    EXPECT_EQ(io.GetCurPos(), 10);
    EXPECT_TRUE(io.Read(Largest - 1, 600, buffer, &got));
    EXPECT_EQ(got, 0);
    EXPECT_TRUE(io.Read(Largest, Largest, buffer, &got));
    EXPECT_EQ(got, 0);
    EXPECT_TRUE(io.Read(4, 600, buffer, &got));
    EXPECT_EQ(got, 6);

    EXPECT_TRUE(io.Read(4, 6, buffer, nullptr));
    EXPECT_FALSE(io.Read(5, 6, buffer, nullptr));
    ExpectErrorText(VDBaseError::FileRead, "The file can't be read: it ends too early\nFile : " + file);
    EXPECT_FALSE(io.Read(-1, 1, buffer, &got));
    EXPECT_FALSE(io.Read(0, -1, buffer, &got));
    EXPECT_FALSE(io.SetCurPos(-1));
    ExpectError(VDBaseError::FileRead, "negative", "VDIo::SetCurPos");
    EXPECT_FALSE(io.Write(0, 1, "x"));
    ExpectError(VDBaseError::FileWrite, file, "VDIo::Write");
    EXPECT_TRUE(io.Close());
    EXPECT_FALSE(io.ReadAtCur(1, buffer, &got));
    ExpectError(VDBaseError::FileRead, "isn't open", "VDIo::Read");

    VDIo empty(folder.Write("empty.dat", "").c_str());
    ASSERT_TRUE(empty.Open(VTOpenRead));
    EXPECT_TRUE(empty.ReadAtCur(512, buffer, &got));
    EXPECT_EQ(got, 0);
}

TEST(Io, OnlyFilesOpen)
{
    const TestFolder folder;
    const std::string pipe = folder.Name("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const struct
    {
        std::string name;
        int mode;
        const char* reason;
    } rows[] = {{folder.Path(), VTOpenRead, "Is a directory"},       {folder.Path(), VTOpenUpdate, "Is a directory"},
                {folder.Path(), VTOpenCreate, "Is a directory"},     {folder.Name("none"), VTOpenRead, "No such file"},
                {folder.Name("none"), VTOpenUpdate, "No such file"}, {pipe, VTOpenRead, "it is a pipe or a device"},
                {folder.Name("none"), 3, "the mode is unknown"},     {"", VTOpenRead, "No such file"}};
    for (const auto& row : rows) {
        VFErrorClear();
        VDIo io(row.name.c_str());
        EXPECT_FALSE(io.Open(row.mode));
        EXPECT_FALSE(io.IsOpen());
        ExpectError(VDBaseError::FileOpen, std::string(row.reason), "VDIo::Open");
        ExpectError(VDBaseError::FileOpen, "\nFile : " + row.name);
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
        folder.Write("a.txt", "one\r\ntwo\rthree\n\n" + longLine + "12345678\r\n" + std::string("a\0b", 3) + "\n\nlast");
    VDTextIo io(file.c_str());
    ASSERT_TRUE(io.Open(VTOpenRead));
    VDString line;
    bool truncated = true;
    for (const std::string& expected : {std::string("one"), std::string("two"), std::string("three"), std::string()}) {
        ASSERT_TRUE(io.ReadString(&line, 1000, &truncated));
        EXPECT_EQ(line.Str(), expected);
        EXPECT_FALSE(truncated);
    }
    ASSERT_TRUE(io.ReadString(&line, 65530, &truncated));
    EXPECT_TRUE(line.Str() == longLine && truncated);
    ASSERT_TRUE(io.ReadString(&line, 8, &truncated));  // its end follows at once, behind the buffer's edge
    EXPECT_EQ(line.Str(), "12345678");
    EXPECT_FALSE(truncated);
    for (const std::string& expected : {std::string("a\0b", 3), std::string(), std::string("last")}) {
        ASSERT_TRUE(io.ReadString(&line, 1000, nullptr));
        EXPECT_EQ(line.Str(), expected);
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
