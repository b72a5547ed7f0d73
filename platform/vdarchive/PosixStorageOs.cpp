#include "PosixStorageFile.h"

#include <sys/stat.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

// As many as the system follows itself.
constexpr int MostLinks = 40;

class PosixStorageOs final : public VDStorageOs
{
public:
    int Open(const char* filename, VTStorageOpen mode, std::unique_ptr<VDStorageFile>* file) override
    {
        // A pipe that nobody writes to would otherwise hold the process up.
        const int flags = (mode == VTStorageOpen::Read ? O_RDONLY : O_RDWR) | O_NONBLOCK;
        Descriptor descriptor = Descriptor::Open(AT_FDCWD, filename, flags);
        if (!descriptor.IsOpen())
            return errno;
        struct stat status = {};
        if (fstat(descriptor.Get(), &status) != 0)
            return errno;
        if (!S_ISREG(status.st_mode))
            return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        *file = std::make_unique<PosixStorageFile>(std::move(descriptor));
        return 0;
    }

    int Resolve(const char* filename, VDString* place) override
    {
        // The system may refuse to follow a link that somebody else put there.
        struct stat status = {};
        if (stat(filename, &status) != 0 && errno != ENOENT)
            return errno;
        std::error_code error;
        fs::path path = fs::absolute(filename, error);
        for (int links = 0; !error && fs::is_symlink(path, error); ++links) {
            if (links == MostLinks)
                return ELOOP;
            path = path.parent_path() / fs::read_symlink(path, error);
        }
        if (error && error.value() != ENOENT)
            return error.value();
        const fs::path name = path.filename();
        if (name.empty() || name == "." || name == "..")
            return EISDIR;
        const fs::path folder = fs::canonical(path.parent_path(), error);
        if (error)
            return error.value();
        *place = (folder / name).string();
        return 0;
    }

    int Make(const char* place, const VDStorageFile* replaced, std::unique_ptr<VDStorageFile>* file) override
    {
        const fs::path path = fs::path(place).parent_path();
        Descriptor folder = Descriptor::Open(AT_FDCWD, path.c_str(), O_PATH | O_DIRECTORY);
        if (!folder.IsOpen())
            return errno;
        const mode_t mode = replaced == nullptr ? 0666 : 0600;
        std::string hiddenName;
        Descriptor descriptor = Descriptor::Open(folder.Get(), ".", O_TMPFILE | O_RDWR, mode);
        if (!descriptor.IsOpen() || access(PosixStorageFile::OpenName(descriptor.Get()).c_str(), F_OK) != 0) {
            hiddenName = PosixStorageFile::HiddenName();
            descriptor = Descriptor::Open(folder.Get(), hiddenName.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
        }
        if (!descriptor.IsOpen())
            return errno;
        auto made = std::make_unique<PosixStorageFile>(std::move(descriptor), std::move(folder), std::move(hiddenName));
        if (replaced != nullptr)
            made->TakeRightsOf(static_cast<const PosixStorageFile&>(*replaced));
        *file = std::move(made);
        return 0;
    }
};

}  // namespace

VDStorageFile::~VDStorageFile() = default;
VDStorageOs::~VDStorageOs() = default;

VDStorageOs& VDStorageOs::System()
{
    static PosixStorageOs system;
    return system;
}
