#include "app/SafeStorage.h"

#include "app/Log.h"
#include "app/Version.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace navro::SafeStorage {
namespace {

// Copies a regular file to a new file `to` (0600), never replacing one. False when anything fails;
// a partial copy is removed.
bool copyToNewFile(const std::filesystem::path& from, const std::filesystem::path& to)
{
    const int source = ::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (source < 0)
        return false;
    struct stat info {};
    if (::fstat(source, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(source);
        return false;
    }
    const int target = ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (target < 0) {
        ::close(source);
        return false;
    }
    bool ok = true;
    char buffer[64 * 1024];
    for (;;) {
        const ssize_t got = ::read(source, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            ok = got == 0;
            break;
        }
        for (ssize_t done = 0; done < got;) {
            const ssize_t written = ::write(target, buffer + done, std::size_t(got - done));
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0) {
                ok = false;
                break;
            }
            done += written;
        }
        if (!ok)
            break;
    }
    ::close(source);
    if (::close(target) != 0)
        ok = false;
    if (!ok)
        ::unlink(to.c_str());
    return ok;
}

} // namespace

std::string backupName(const std::string& fileName, std::string_view version, WallTime now)
{
    const std::filesystem::path name(fileName);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch());
    std::string backup = name.stem().string() + ".unreadable-" + std::string(version) + "-" +
                         std::to_string(seconds.count());
    // extension() keeps its dot, and is empty for a name without one.
    return backup + name.extension().string();
}

void backUpUnreadable(const std::filesystem::path& file, WallTime now)
{
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        return;
    const std::string backup = backupName(file.filename().string(), applicationVersion(), now);
    copyToNewFile(file, file.parent_path() / backup);
    logLine("could not read " + file.filename().string() + "; kept a copy at " + backup);
}

} // namespace navro::SafeStorage
