#include "platform/linux/FileInstanceLock.h"

#include "app/FileAccess.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace navro {
namespace {

class FileInstanceLock final : public InstanceLock {
public:
    explicit FileInstanceLock(int fd) : fd_(fd) {}
    // Closing the last descriptor of the file releases the lock.
    ~FileInstanceLock() override { ::close(fd_); }
    FileInstanceLock(const FileInstanceLock&) = delete;
    FileInstanceLock& operator=(const FileInstanceLock&) = delete;

private:
    int fd_;
};

InstanceLockAttempt unavailable(const std::filesystem::path& file, const std::string& why)
{
    InstanceLockAttempt attempt;
    attempt.detail = file.string() + ": " + why;
    return attempt;
}

// "process 1234" from what the holder wrote, or a plain description while it has not yet.
std::string holderOf(int fd)
{
    char text[32] = {};
    const ssize_t got = ::pread(fd, text, sizeof text - 1, 0);
    char* end = nullptr;
    const long pid = got > 0 ? std::strtol(text, &end, 10) : 0;
    if (pid <= 0 || end == text)
        return "another process";
    return "process " + std::to_string(pid);
}

} // namespace

InstanceLockAttempt lockInstanceFile(const std::filesystem::path& file)
{
    // Not through a symbolic link, and without blocking should something other than a file have
    // taken its place.
    const int fd = ::open(file.c_str(),
                          O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0600);
    if (fd < 0)
        return unavailable(file, std::strerror(errno));
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        return unavailable(file, "not a regular file");
    }
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        InstanceLockAttempt attempt;
        if (error == EWOULDBLOCK) {
            attempt.outcome = InstanceLockAttempt::Outcome::heldByAnother;
            attempt.detail = holderOf(fd);
        } else {
            attempt = unavailable(file, std::strerror(error));
        }
        ::close(fd);
        return attempt;
    }
    // Should this fail, the lock holds all the same; only the others' log lines lack the id.
    const std::string pid = std::to_string(::getpid()) + "\n";
    [[maybe_unused]] const bool written =
        ::ftruncate(fd, 0) == 0 && ::pwrite(fd, pid.data(), pid.size(), 0) == ssize_t(pid.size());
    InstanceLockAttempt attempt;
    attempt.outcome = InstanceLockAttempt::Outcome::held;
    attempt.lock = std::make_unique<FileInstanceLock>(fd);
    return attempt;
}

std::filesystem::path instanceLockPath()
{
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    struct stat info {};
    if (runtime && runtime[0] == '/' && ::stat(runtime, &info) == 0 && S_ISDIR(info.st_mode))
        return std::filesystem::path(runtime) / "navro.lock";
    return std::filesystem::path("/tmp") / ("navro-" + std::to_string(::getuid())) / "navro.lock";
}

InstanceLockAttempt takeInstanceLock()
{
    const std::filesystem::path file = instanceLockPath();
    // Without a runtime folder the lock lives in a folder of Navro's own, which must be private:
    // anyone could have made a folder of that name first.
    if (file.parent_path().parent_path() == "/tmp") {
        if (const auto error = makePrivateFolder(file.parent_path()))
            return unavailable(file, *error);
        struct stat info {};
        if (::lstat(file.parent_path().c_str(), &info) != 0 || info.st_uid != ::getuid())
            return unavailable(file, "its folder belongs to someone else");
    }
    return lockInstanceFile(file);
}

} // namespace navro
