// Runs every file of the folders that are given through a fuzz target, so that a corpus is tested under any compiler.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv)
{
    int replayed = 0;
    for (int index = 1; index < argc; ++index) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[index])) {
            if (!entry.is_regular_file())
                continue;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
            std::printf("%s\n", entry.path().c_str());
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
            ++replayed;
        }
    }
    // An empty corpus is a mistake of whoever called.
    std::printf("%d files replayed\n", replayed);
    return replayed > 0 ? 0 : 1;
}
