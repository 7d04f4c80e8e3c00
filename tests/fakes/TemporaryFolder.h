#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>

namespace navro {

// A fresh folder under /tmp for one test, removed with all it holds when the test ends, even
// after the test took its own permissions away.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        char name[] = "/tmp/navro-test-XXXXXX";
        if (::mkdtemp(name) == nullptr)
            std::abort();
        path_ = name;
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const
    {
        return path_ / name;
    }

private:
    std::filesystem::path path_;
};

// The bytes of a file, empty where there is none.
inline std::string readBytes(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// Writes a file the way another program would, making its folder where missing.
inline void writeBytes(const std::filesystem::path& path, const std::string& bytes)
{
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
    std::ofstream(path, std::ios::binary) << bytes;
}

// The permission bits of a file or folder (0 where there is none).
inline unsigned permissionsOf(const std::filesystem::path& path)
{
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0)
        return 0;
    return info.st_mode & 07777;
}

} // namespace navro
