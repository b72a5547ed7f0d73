#include "ReplaceFile.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFError.h"
#include "vdbase/VFFilename.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <random>
#include <string>

namespace {

bool WriteAll(int file, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(file, text.data(), text.size());
        if (written < 0 && errno != EINTR)
            return false;
        text.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
}

/// Makes a file beside `filename`, under a name that nobody can have put a link at.
int CreateBeside(const char* filename, std::string* name)
{
    VDString folder;
    VFSplitFilename(filename, &folder, nullptr, nullptr);
    std::random_device chance;
    int file = -1;
    do {
        *name = VFBuildFilename(folder, (".xml-" + std::to_string(chance()) + std::to_string(chance())).c_str()).Str();
        file = open(name->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    } while (file < 0 && errno == EEXIST);
    return file;
}

bool WriteWhole(int file, const char* replaced, std::initializer_list<std::string_view> parts)
{
    for (const std::string_view part : parts)
        if (!WriteAll(file, part))
            return false;
    struct stat status = {};
    return (stat(replaced, &status) != 0 || fchmod(file, status.st_mode & 07777) == 0) && fsync(file) == 0;
}

}  // namespace

bool VFReplaceFile(const char* filename, std::initializer_list<std::string_view> parts)
{
    std::string beside;
    const int file = CreateBeside(filename, &beside);
    bool done = file >= 0 && WriteWhole(file, filename, parts);
    int error = errno;
    if (file >= 0 && close(file) != 0 && done) {
        error = errno;
        done = false;
    }
    if (done && rename(beside.c_str(), filename) != 0) {
        error = errno;
        done = false;
    }
    if (done)
        return true;
    if (file >= 0)
        unlink(beside.c_str());
    VDString text;
    text.Format("The file can't be written: %s\nFile : %s", std::strerror(error), filename);
    return VFErrorSet(VDBaseError::FileWrite, text, "VDUXmlHelper::SaveNodeTreeToFile", 0) != 0;
}
