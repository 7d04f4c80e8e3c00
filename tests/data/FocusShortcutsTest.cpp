#include "data/FocusShortcuts.h"

#include "app/Log.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace navro {
namespace {

namespace fs = std::filesystem;

class Folder {
public:
    Folder()
        : path_(fs::temp_directory_path() /
                ("navro-shortcuts-" + std::to_string(::getpid()) + "-" + std::to_string(++count)))
    {
        fs::remove_all(path_);
        fs::create_directories(path_);
    }
    ~Folder() { fs::remove_all(path_); }
    const fs::path& path() const { return path_; }

    fs::path file(const std::string& name, fs::perms perms)
    {
        const fs::path file = path_ / name;
        std::ofstream(file) << "#!/bin/sh\n";
        fs::permissions(file, perms);
        return file;
    }

private:
    static inline int count = 0;
    fs::path path_;
};

constexpr auto executable = fs::perms::owner_all | fs::perms::group_read;
constexpr auto plain = fs::perms::owner_read | fs::perms::owner_write;

TEST(FocusShortcuts, ListsTheExecutableFilesByNameIgnoringCase)
{
    Folder folder;
    folder.file("dnd-on", executable);
    folder.file("Calm", executable);
    folder.file("calm", executable);
    folder.file("Banner off", executable);
    folder.file("notes.txt", plain);
    folder.file(".hidden", executable);
    fs::create_directory(folder.path() / "a folder");
    ::mkfifo((folder.path() / "a pipe").c_str(), 0755);
    Folder outside;
    fs::create_symlink(outside.file("target", executable), folder.path() / "linked");
    fs::create_symlink(folder.path() / "nowhere", folder.path() / "dangling");
    fs::create_symlink(outside.file("plain target", plain), folder.path() / "linked plain");

    EXPECT_EQ(listFocusShortcuts(folder.path()),
              (std::vector<std::string>{"Banner off", "Calm", "calm", "dnd-on", "linked"}));
}

TEST(FocusShortcuts, AMissingFolderIsNoErrorAndAFileInItsPlaceIsLogged)
{
    CapturingLogSink log;
    Folder folder;
    EXPECT_TRUE(listFocusShortcuts(folder.path() / "not yet").empty());
    EXPECT_TRUE(log.lines.empty());

    const fs::path file = folder.file("Shortcuts", executable);
    EXPECT_TRUE(listFocusShortcuts(file).empty());
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("could not list the focus actions")) << log.lines[0];
}

TEST(FocusShortcuts, NamesCanOnlyMeanAFileInTheFolder)
{
    for (std::string_view name : {"dnd-on", "Focus on.sh", "نمط التركيز", "..x"})
        EXPECT_TRUE(isFocusShortcutName(name)) << name;
    for (std::string_view name : {"", ".", "..", "../dnd-on", "/usr/bin/rm", "a/b"})
        EXPECT_FALSE(isFocusShortcutName(name)) << name;
    EXPECT_FALSE(isFocusShortcutName(std::string_view("a\0b", 3)));
}

} // namespace
} // namespace navro
