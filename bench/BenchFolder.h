#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

/// A folder for the files of one run; it goes with the object. A program that can't have one ends.
class BenchFolder
{
public:
    BenchFolder() : path_((std::filesystem::temp_directory_path() / "daxbench.XXXXXX").string())
    {
        if (mkdtemp(path_.data()) != nullptr)
            return;
        std::perror(path_.c_str());
        std::exit(1);
    }
    ~BenchFolder()
    {
        std::error_code none;
        std::filesystem::remove_all(path_, none);
    }
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;

    const std::string& Path() const { return path_; }
    std::string Name(const std::string& entry) const { return path_ + "/" + entry; }

private:
    std::string path_;
};
