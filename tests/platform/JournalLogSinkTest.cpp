#include "platform/linux/JournalLogSink.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace navro {
namespace {

// A journal of the test's own: a datagram socket in a fresh folder, and a pipe as standard error.
class JournalLogSinkTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/navro-journal-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        folder_ = pattern;
        socketPath_ = (folder_ / "socket").string();
        journal_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::snprintf(address.sun_path, sizeof(address.sun_path), "%s", socketPath_.c_str());
        ASSERT_EQ(::bind(journal_, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
        ASSERT_EQ(::pipe2(errorPipe_.data(), O_NONBLOCK | O_CLOEXEC), 0);
    }

    void TearDown() override
    {
        ::close(journal_);
        ::close(errorPipe_[0]);
        ::close(errorPipe_[1]);
        std::filesystem::remove_all(folder_);
    }

    std::string nextDatagram()
    {
        std::array<char, 8192> buffer{};
        const ssize_t size = ::recv(journal_, buffer.data(), buffer.size(), 0);
        return size < 0 ? std::string() : std::string(buffer.data(), size_t(size));
    }

    std::string errorOutput()
    {
        std::array<char, 8192> buffer{};
        const ssize_t size = ::read(errorPipe_[0], buffer.data(), buffer.size());
        return size < 0 ? std::string() : std::string(buffer.data(), size_t(size));
    }

    // The "device:inode" systemd would put in JOURNAL_STREAM for the pipe.
    std::string streamOfErrorPipe() const
    {
        struct stat status {};
        ::fstat(errorPipe_[1], &status);
        return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
    }

    std::filesystem::path folder_;
    std::string socketPath_;
    int journal_ = -1;
    std::array<int, 2> errorPipe_{-1, -1};
};

TEST_F(JournalLogSinkTest, EachLineReachesTheJournalWithItsPriorityAndStandardError)
{
    JournalLogSink sink(socketPath_, errorPipe_[1], nullptr);
    sink.write(LogPriority::warning, "Navro: update check failed");
    sink.write(LogPriority::notice, "Navro: saved notes.json again");
    EXPECT_EQ(nextDatagram(),
              "PRIORITY=4\nSYSLOG_IDENTIFIER=navro\nMESSAGE=Navro: update check failed\n");
    EXPECT_EQ(nextDatagram(),
              "PRIORITY=5\nSYSLOG_IDENTIFIER=navro\nMESSAGE=Navro: saved notes.json again\n");
    EXPECT_EQ(errorOutput(), "Navro: update check failed\nNavro: saved notes.json again\n");
}

TEST_F(JournalLogSinkTest, StandardErrorThatIsTheJournalGetsNoSecondCopy)
{
    const std::string stream = streamOfErrorPipe();
    JournalLogSink sink(socketPath_, errorPipe_[1], stream.c_str());
    sink.write(LogPriority::error, "Navro: needs an X11 display");
    EXPECT_EQ(nextDatagram(),
              "PRIORITY=3\nSYSLOG_IDENTIFIER=navro\nMESSAGE=Navro: needs an X11 display\n");
    EXPECT_EQ(errorOutput(), "");
}

TEST_F(JournalLogSinkTest, WithoutAJournalTheLinesStillReachStandardError)
{
    // Another stream than the pipe's, a malformed one, and even the pipe's own (systemd said
    // standard error is the journal): with no socket to reach, nothing may be lost.
    for (const std::string& stream :
         {std::string("1:2"), std::string("not a stream"), streamOfErrorPipe()}) {
        JournalLogSink sink((folder_ / "missing").string(), errorPipe_[1], stream.c_str());
        sink.write(LogPriority::notice, "Navro: no sound server");
        EXPECT_EQ(errorOutput(), "Navro: no sound server\n") << stream;
    }
}

TEST(JournalEntry, AValueWithALineBreakIsSentWithItsLength)
{
    const std::string entry = journalEntry(LogPriority::info, "two\nlines");
    const std::string expectedTail =
        std::string("MESSAGE\n") + std::string("\x09\0\0\0\0\0\0\0", 8) + "two\nlines\n";
    EXPECT_EQ(entry, "PRIORITY=6\nSYSLOG_IDENTIFIER=navro\n" + expectedTail);
}

TEST(JournalEntry, LogLinesCarryTheirPriorityToTheSink)
{
    CapturingLogSink sink;
    logLine("a notice by default");
    logLine(LogPriority::warning, LogChannel::nowPlaying, "a warning");
    ASSERT_EQ(sink.priorities.size(), 2u);
    EXPECT_EQ(sink.priorities[0], LogPriority::notice);
    EXPECT_EQ(sink.priorities[1], LogPriority::warning);
    EXPECT_EQ(sink.lines[1], "Navro Now Playing: a warning");
}

} // namespace
} // namespace navro
