#include "platform/linux/FileInstanceLock.h"

#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace navro {
namespace {

namespace fs = std::filesystem;
using Outcome = InstanceLockAttempt::Outcome;

class FileInstanceLockTest : public ::testing::Test {
protected:
    fs::path file() const { return folder_ / "navro.lock"; }

    TemporaryFolder temporary;
    const fs::path folder_ = temporary.path();
};

TEST_F(FileInstanceLockTest, OneHolderAtATimeAndTheOthersLearnWhichProcess)
{
    InstanceLockAttempt first = lockInstanceFile(file());
    ASSERT_EQ(first.outcome, Outcome::held) << first.detail;
    EXPECT_EQ(permissionsOf(file()), 0600u);

    // A second attempt, even from the same process, is turned away at once.
    const InstanceLockAttempt second = lockInstanceFile(file());
    EXPECT_EQ(second.outcome, Outcome::heldByAnother);
    EXPECT_EQ(second.lock, nullptr);
    EXPECT_EQ(second.detail, "process " + std::to_string(::getpid()));

    first.lock.reset();
    EXPECT_EQ(lockInstanceFile(file()).outcome, Outcome::held) << "released with its holder";
}

TEST_F(FileInstanceLockTest, ALockDiesWithItsProcessHoweverItEnds)
{
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const InstanceLockAttempt held = lockInstanceFile(file());
        const char byte = held.outcome == Outcome::held ? 'y' : 'n';
        [[maybe_unused]] const auto written = ::write(ready[1], &byte, 1);
        ::pause(); // until killed: no destructor, no cleanup of any kind
        ::_exit(0);
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    ASSERT_EQ(byte, 'y');
    const InstanceLockAttempt whileAlive = lockInstanceFile(file());
    EXPECT_EQ(whileAlive.outcome, Outcome::heldByAnother);
    EXPECT_EQ(whileAlive.detail, "process " + std::to_string(child));

    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_EQ(lockInstanceFile(file()).outcome, Outcome::held) << "no stale lock after a kill";
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST_F(FileInstanceLockTest, SomethingElseInPlaceOfTheFileMakesTheLockUnavailable)
{
    struct Case {
        const char* what;
        std::function<void(const fs::path&)> make;
    };
    const std::vector<Case> cases{
        {"FIFO", [](const fs::path& p) { ASSERT_EQ(::mkfifo(p.c_str(), 0600), 0); }},
        {"folder", [](const fs::path& p) { fs::create_directory(p); }},
        {"link", [this](const fs::path& p) { fs::create_symlink(folder_ / "elsewhere", p); }},
    };
    for (const auto& c : cases) {
        fs::remove_all(file());
        c.make(file());
        const InstanceLockAttempt attempt = lockInstanceFile(file());
        EXPECT_EQ(attempt.outcome, Outcome::unavailable) << c.what;
        EXPECT_EQ(attempt.lock, nullptr) << c.what;
        EXPECT_NE(attempt.detail.find(file().string()), std::string::npos) << attempt.detail;
    }
    EXPECT_FALSE(fs::exists(folder_ / "elsewhere")) << "a link is not followed";
}

TEST_F(FileInstanceLockTest, TheLockLivesInTheRuntimeFolder)
{
    const ScopedEnvironment runtime("XDG_RUNTIME_DIR", folder_.c_str());
    EXPECT_EQ(instanceLockPath(), file());
    // Without a usable runtime folder, a folder of the user's own under /tmp.
    runtime.set((folder_ / "missing").c_str());
    EXPECT_EQ(instanceLockPath(),
              fs::path("/tmp/navro-" + std::to_string(::getuid())) / "navro.lock");
}

} // namespace
} // namespace navro
