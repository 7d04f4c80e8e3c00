#include "app/FileAccess.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace navro {
namespace {

std::string systemError(int error)
{
    return std::strerror(error);
}

std::string kindOf(const struct stat& info)
{
    if (S_ISDIR(info.st_mode))
        return "a folder";
    if (S_ISFIFO(info.st_mode))
        return "a FIFO";
    if (S_ISCHR(info.st_mode) || S_ISBLK(info.st_mode))
        return "a device";
    if (S_ISSOCK(info.st_mode))
        return "a socket";
    return "not a regular file";
}

FileRead failure(FileRead::Status status, FileError reason)
{
    FileRead result;
    result.status = status;
    result.reason = std::move(reason);
    return result;
}

class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor()
    {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return fd_; }
    // Closes now and reports the error close() found (a write that failed late on some file
    // systems shows only here).
    int close()
    {
        const int result = ::close(fd_);
        fd_ = -1;
        return result == 0 ? 0 : errno;
    }

private:
    int fd_;
};

std::optional<FileError> writeAll(int fd, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return systemError(errno);
        }
        bytes.remove_prefix(std::size_t(written));
    }
    return std::nullopt;
}

} // namespace

FileRead readRegularFile(const std::filesystem::path& path, std::size_t maxBytes)
{
    // A look before opening: opening a FIFO blocks, and opening some devices does something.
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return failure(FileRead::Status::missing, "no such file");
        return failure(FileRead::Status::failed, systemError(errno));
    }
    if (!S_ISREG(info.st_mode))
        return failure(FileRead::Status::notRegular, kindOf(info) + " is in the place of the file");
    if (std::size_t(info.st_size) > maxBytes)
        return failure(FileRead::Status::tooLarge, std::to_string(info.st_size) +
                                                       " bytes, more than the " +
                                                       std::to_string(maxBytes) + " expected");

    // Non-blocking all the same: the file may have been replaced since the look.
    Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (file.get() < 0)
        return failure(FileRead::Status::failed, systemError(errno));
    if (::fstat(file.get(), &info) != 0)
        return failure(FileRead::Status::failed, systemError(errno));
    if (!S_ISREG(info.st_mode))
        return failure(FileRead::Status::notRegular, kindOf(info) + " is in the place of the file");

    FileRead result;
    result.bytes.resize(std::min<std::size_t>(std::size_t(info.st_size), maxBytes) + 1);
    std::size_t filled = 0;
    for (;;) {
        if (filled == result.bytes.size()) {
            // Grown since the look: read on up to one byte past the cap.
            if (filled > maxBytes)
                return failure(FileRead::Status::tooLarge,
                               "more than the " + std::to_string(maxBytes) + " bytes expected");
            result.bytes.resize(std::min(maxBytes + 1, filled * 2 + 4096));
        }
        const ssize_t got =
            ::read(file.get(), result.bytes.data() + filled, result.bytes.size() - filled);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            return failure(FileRead::Status::failed, systemError(errno));
        }
        if (got == 0)
            break;
        filled += std::size_t(got);
    }
    if (filled > maxBytes)
        return failure(FileRead::Status::tooLarge,
                       "more than the " + std::to_string(maxBytes) + " bytes expected");
    result.bytes.resize(filled);
    result.status = FileRead::Status::ok;
    return result;
}

std::optional<FileError> writeFileAtomically(const std::filesystem::path& path,
                                             std::string_view bytes, mode_t mode)
{
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode))
        return kindOf(info) + " is in the way";

    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    // removeAbandonedTemporaries knows this name.
    std::string temporary = (folder / ("." + path.filename().string() + ".XXXXXX")).string();
    std::vector<char> name(temporary.begin(), temporary.end());
    name.push_back('\0');
    // mkstemp creates the file 0600, so nobody else can read it even before the mode is set.
    Descriptor file(::mkostemp(name.data(), O_CLOEXEC));
    if (file.get() < 0)
        return systemError(errno);
    temporary.assign(name.data());

    std::optional<FileError> error = writeAll(file.get(), bytes);
    if (!error && ::fchmod(file.get(), mode) != 0)
        error = systemError(errno);
    if (!error && ::fsync(file.get()) != 0)
        error = systemError(errno);
    if (const int closeError = file.close(); !error && closeError != 0)
        error = systemError(closeError);
    if (!error && ::rename(temporary.c_str(), path.c_str()) != 0)
        error = systemError(errno);
    if (error) {
        ::unlink(temporary.c_str());
        return error;
    }
    // The rename itself is only durable once the folder is.
    Descriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.get() >= 0)
        ::fsync(directory.get());
    return std::nullopt;
}

void removeAbandonedTemporaries(const std::filesystem::path& folder)
{
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().string();
        // "." + the file's name + "." + the six characters mkostemp chose.
        if (name.size() > 8 && name.front() == '.' && name[name.size() - 7] == '.' &&
            entry.is_regular_file(error))
            std::filesystem::remove(entry.path(), error);
    }
}

std::optional<FileError> makePrivateFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        return error.message();
    struct stat info {};
    if (::stat(folder.c_str(), &info) != 0)
        return systemError(errno);
    if (!S_ISDIR(info.st_mode))
        return kindOf(info) + " is in the place of the folder";
    if ((info.st_mode & 07777) != 0700 && ::chmod(folder.c_str(), 0700) != 0)
        return systemError(errno);
    return std::nullopt;
}

namespace {

// An XDG base folder: the variable's value, or `fallback` under the home folder. By the XDG base
// directory rules a relative value is invalid and ignored.
std::filesystem::path baseFolder(const char* variable, const char* fallback)
{
    if (const char* value = std::getenv(variable); value && value[0] == '/')
        return value;
    const char* home = std::getenv("HOME");
    if (!home || home[0] != '/') {
        const struct passwd* user = ::getpwuid(::getuid());
        home = user && user->pw_dir ? user->pw_dir : "/tmp";
    }
    return std::filesystem::path(home) / fallback;
}

} // namespace

std::filesystem::path dataFolder()
{
    return baseFolder("XDG_DATA_HOME", ".local/share") / "Navro";
}

std::filesystem::path configHome()
{
    return baseFolder("XDG_CONFIG_HOME", ".config");
}

} // namespace navro
