#include "app/FileAccess.h"

#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"
#include "app/Log.h"
#include "app/SafeStorage.h"
#include "app/Version.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace navro {
namespace {

namespace fs = std::filesystem;

class FileAccessTest : public ::testing::Test {
protected:
    fs::path put(const std::string& name, const std::string& bytes)
    {
        writeBytes(folder_ / name, bytes);
        return folder_ / name;
    }

    TemporaryFolder temporary;
    const fs::path folder_ = temporary.path();
};

TEST_F(FileAccessTest, ReadsARegularFileWholeAndWithinItsCap)
{
    const fs::path file = put("notes.json", std::string("{\"a\":1}\0tail", 12));
    const FileRead read = readRegularFile(file, 12);
    ASSERT_TRUE(read.ok()) << read.reason;
    EXPECT_EQ(read.bytes, std::string("{\"a\":1}\0tail", 12));

    const FileRead tooLarge = readRegularFile(file, 11);
    EXPECT_EQ(tooLarge.status, FileRead::Status::tooLarge);
    EXPECT_TRUE(tooLarge.bytes.empty());

    const FileRead empty = readRegularFile(put("empty", ""), 10);
    ASSERT_TRUE(empty.ok());
    EXPECT_TRUE(empty.bytes.empty());
}

TEST_F(FileAccessTest, SpecialFilesAreRefusedWithoutBlocking)
{
    const fs::path fifo = folder_ / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    fs::create_directory(folder_ / "folder");
    fs::create_symlink("/dev/zero", folder_ / "zero");

    struct Case {
        fs::path path;
        FileRead::Status status;
        std::string reason;
    };
    for (const Case& c : {Case{fifo, FileRead::Status::notRegular, "a FIFO"},
                          Case{folder_ / "folder", FileRead::Status::notRegular, "a folder"},
                          Case{folder_ / "zero", FileRead::Status::notRegular, "a device"},
                          Case{folder_ / "absent", FileRead::Status::missing, "no such file"},
                          Case{folder_ / "absent/below", FileRead::Status::missing, ""}}) {
        const FileRead read = readRegularFile(c.path, 1 << 20);
        EXPECT_EQ(read.status, c.status) << c.path;
        EXPECT_NE(read.reason.find(c.reason), std::string::npos) << read.reason;
    }
}

TEST_F(FileAccessTest, AtomicWritesArePrivateAndReplaceTheWholeFile)
{
    const fs::path file = folder_ / "clipboard.plist";
    ASSERT_EQ(writeFileAtomically(file, "first version, longer"), std::nullopt);
    ASSERT_EQ(writeFileAtomically(file, "second"), std::nullopt);
    EXPECT_EQ(readBytes(file), "second");
    EXPECT_EQ(permissionsOf(file), 0600u);
    // No temporary file is left beside it.
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 1);
}

TEST_F(FileAccessTest, AFailedWriteSaysWhyAndLeavesWhateverIsInTheWayAlone)
{
    ASSERT_EQ(::mkfifo((folder_ / "notes.json").c_str(), 0600), 0);
    fs::create_directory(folder_ / "shelf.json");
    // A plain file where the folder should be: no user, root included, can write below it.
    put("Navro", "not a folder");
    for (const auto& [target, error] :
         std::vector<std::pair<std::string, std::string>>{{"notes.json", "a FIFO is in the way"},
                                                          {"shelf.json", "a folder is in the way"},
                                                          {"Navro/notes.json", "Not a directory"}})
        EXPECT_EQ(writeFileAtomically(folder_ / target, "{}"), error) << target;
    EXPECT_TRUE(fs::is_fifo(folder_ / "notes.json"));
    EXPECT_TRUE(fs::is_directory(folder_ / "shelf.json"));
    EXPECT_EQ(readBytes(folder_ / "Navro"), "not a folder");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 3)
        << "no temporary is left behind";
}

TEST_F(FileAccessTest, OnlyTheTemporariesOfAtomicWritesAreRemovedAsAbandoned)
{
    const fs::path file = put("clipboard.plist", "whole");
    // What a write cut short leaves: its temporary, as mkostemp names it.
    const fs::path abandoned = put(".clipboard.plist.a1B2c3", "half");
    const fs::path image = put(".5F1D2C3B.png.Zz09Xy", "half");
    const fs::path hidden = put(".hidden", "mine");
    const fs::path shortSuffix = put(".notes.json.abc", "not ours");
    fs::create_directory(folder_ / ".folder.ABCDEF");
    removeAbandonedTemporaries(folder_);
    EXPECT_FALSE(fs::exists(abandoned));
    EXPECT_FALSE(fs::exists(image));
    for (const fs::path& kept : {file, hidden, shortSuffix, folder_ / ".folder.ABCDEF"})
        EXPECT_TRUE(fs::exists(kept)) << kept;
    removeAbandonedTemporaries(folder_ / "missing"); // nothing to do, nothing thrown
}

TEST_F(FileAccessTest, PrivateFoldersAreCreatedWithTheirParentsAndMadePrivate)
{
    const fs::path data = folder_ / "share/Navro";
    ASSERT_EQ(makePrivateFolder(data), std::nullopt);
    EXPECT_EQ(permissionsOf(data), 0700u);
    fs::permissions(data, fs::perms::all);
    ASSERT_EQ(makePrivateFolder(data), std::nullopt);
    EXPECT_EQ(permissionsOf(data), 0700u);

    put("plain", "x");
    EXPECT_TRUE(makePrivateFolder(folder_ / "plain").has_value());
}

TEST_F(FileAccessTest, TheDataAndConfigFoldersFollowTheirXdgVariables)
{
    struct Case {
        const char* variable;
        std::function<fs::path()> folder;
        fs::path fromVariable; // with the variable at /srv/base
        fs::path underHome;
    };
    const std::vector<Case> cases{
        {"XDG_DATA_HOME", dataFolder, "/srv/base/Navro", ".local/share/Navro"},
        {"XDG_CONFIG_HOME", configHome, "/srv/base", ".config"},
    };
    for (const auto& c : cases) {
        const ScopedEnvironment variable(c.variable, "/srv/base");
        EXPECT_EQ(c.folder(), c.fromVariable) << c.variable;
        // A relative value is not a valid base directory.
        variable.set("relative");
        EXPECT_EQ(c.folder(), fs::path(std::getenv("HOME")) / c.underHome) << c.variable;
    }
}

TEST(SafeStorageName, KeepsTheExtensionAndUsesWholeSeconds)
{
    const WallTime at{std::chrono::milliseconds(1'700'000'000'999)};
    EXPECT_EQ(SafeStorage::backupName("notes.json", "1.4.2", at),
              "notes.unreadable-1.4.2-1700000000.json");
    EXPECT_EQ(SafeStorage::backupName("clipboard.plist", "0.0.1", at),
              "clipboard.unreadable-0.0.1-1700000000.plist");
    EXPECT_EQ(SafeStorage::backupName("README", "0.0.1", at), "README.unreadable-0.0.1-1700000000");
}

TEST_F(FileAccessTest, AnUnreadableFileIsCopiedAsideAndLeftInPlace)
{
    CapturingLogSink log;
    const WallTime at{std::chrono::seconds(1'700'000'000)};
    SafeStorage::backUpUnreadable(folder_ / "notes.json", at);
    EXPECT_TRUE(fs::is_empty(folder_)) << "a missing file is no damage: nothing to copy or log";

    const fs::path file = put("notes.json", "{\"todos\": [");
    SafeStorage::backUpUnreadable(file, at);
    // The same second again: the copy fails quietly, the first backup stays, the line is logged.
    put("notes.json", "changed since");
    SafeStorage::backUpUnreadable(file, at + std::chrono::milliseconds(400));

    const std::string backup = SafeStorage::backupName("notes.json", applicationVersion(), at);
    EXPECT_EQ(readBytes(folder_ / backup), "{\"todos\": [");
    EXPECT_EQ(permissionsOf(folder_ / backup), 0600u);
    EXPECT_EQ(readBytes(file), "changed since");
    const std::string line = "Navro: could not read notes.json; kept a copy at " + backup;
    EXPECT_EQ(log.lines, (std::vector<std::string>{line, line}));
}

} // namespace
} // namespace navro
