#include "DaxProgram.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstring>
#include <sstream>

namespace {

template <class Number>
void Put(std::string& bytes, Number value)
{
    char raw[sizeof(Number)];
    std::memcpy(raw, &value, sizeof(Number));  // little-endian machines only, as WAV is
    bytes.append(raw, sizeof(Number));
}

template <class Sample>
std::string MakeWav(int format, int rate, int channels, const std::vector<Sample>& samples)
{
    const auto frame = static_cast<std::uint32_t>(channels) * sizeof(Sample);
    const auto size = static_cast<std::uint32_t>(samples.size() * sizeof(Sample));
    std::string bytes = "RIFF";
    Put(bytes, 36 + size);
    bytes += "WAVEfmt ";
    Put(bytes, std::uint32_t{16});
    Put(bytes, static_cast<std::uint16_t>(format));
    Put(bytes, static_cast<std::uint16_t>(channels));
    Put(bytes, static_cast<std::uint32_t>(rate));
    Put(bytes, static_cast<std::uint32_t>(static_cast<std::uint32_t>(rate) * frame));
    Put(bytes, static_cast<std::uint16_t>(frame));
    Put(bytes, static_cast<std::uint16_t>(sizeof(Sample) * 8));
    bytes += "data";
    Put(bytes, size);
    for (const Sample sample : samples)
        Put(bytes, sample);
    return bytes;
}

}  // namespace

std::vector<int> DaxResult::Codes() const
{
    std::vector<int> codes;
    for (const auto& error : Json().value("errors", nlohmann::json::array()))
        codes.push_back(error.value("code", 0));
    return codes;
}

pid_t DaxProgram::Start(const std::vector<std::string>& arguments) const
{
    std::vector<char*> argv = {const_cast<char*>("dax")};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    unsetenv("DAX_SYS");  // the folder of the installation, where the plug-ins are named
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, 1, folder_.Name("out").c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, folder_.Name("err").c_str(), flags, 0600);
    pid_t process = -1;
    EXPECT_EQ(posix_spawn(&process, DAX_PROGRAM, &actions, nullptr, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

DaxResult DaxProgram::Wait(pid_t process) const
{
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, TestReadFile(folder_.Name("out")),
            TestReadFile(folder_.Name("err"))};
}

DaxResult DaxProgram::Run(const std::vector<std::string>& arguments) const
{
    return Wait(Start(arguments));
}

std::string MakeWav16(int rate, int channels, const std::vector<std::int16_t>& samples)
{
    return MakeWav(1, rate, channels, samples);
}

std::string MakeWavFloat(int rate, int channels, const std::vector<float>& samples)
{
    return MakeWav(3, rate, channels, samples);
}

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}
