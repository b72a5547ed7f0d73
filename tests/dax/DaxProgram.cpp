#include "DaxProgram.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <sstream>

namespace {

template <class Number>
std::string Bytes(Number value)
{
    return {reinterpret_cast<const char*>(&value), sizeof value};  // little-endian machines only, as WAV is
}

template <class Sample>
std::string MakeWav(std::uint16_t format, int rate, int channels, const std::vector<Sample>& samples)
{
    const auto frame = static_cast<std::uint16_t>(static_cast<std::size_t>(channels) * sizeof(Sample));
    const auto size = static_cast<std::uint32_t>(samples.size() * sizeof(Sample));
    return "RIFF" + Bytes(36 + size) + "WAVEfmt " + Bytes(16) + Bytes(format) + Bytes(static_cast<std::uint16_t>(channels)) +
           Bytes(rate) + Bytes(rate * frame) + Bytes(frame) + Bytes(static_cast<std::uint16_t>(sizeof(Sample) * 8)) +
           "data" + Bytes(size) + std::string(reinterpret_cast<const char*>(samples.data()), size);
}

}  // namespace

std::vector<int> DaxResult::Codes() const
{
    std::vector<int> codes;
    for (const auto& error : Json().value("errors", nlohmann::json::array()))
        codes.push_back(error.value("code", 0));
    return codes;
}

std::set<std::string> DaxResult::Lost() const
{
    const auto document = Json();
    EXPECT_TRUE(status == 0 && document["lost"].is_array()) << out;
    std::set<std::string> lost;
    for (const auto& loss : document["lost"])
        lost.insert(loss["what"].get<std::string>());
    return lost;
}

pid_t DaxProgram::Start(const std::vector<std::string>& arguments, int out) const
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
    if (out >= 0)
        posix_spawn_file_actions_adddup2(&actions, out, 1);
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

DaxResult DaxProgram::Run(std::vector<std::string> arguments, const std::vector<std::string>& more) const
{
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Wait(Start(arguments));
}

nlohmann::json DaxProgram::Json(const std::vector<std::string>& arguments) const
{
    const DaxResult result = Run(arguments, {"--json"});
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    return result.Json();
}

void DaxProgram::ExpectFailure(const std::vector<std::string>& arguments, int code) const
{
    const DaxResult result = Run(arguments, {"--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.Codes(), std::vector<int>{code}) << result.out;
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
