#include "platform/linux/BusProbe.h"

#include "ListeningSocket.h"

#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace navro {
namespace {

using namespace std::chrono_literals;
using Answer = BusProbe::Answer;

TEST(BusProbe, TellsABusThatAnswersFromOneThatSaysNothingAndFromNone)
{
    QTemporaryDir folder;
    const std::string base = folder.path().toStdString();

    QProcess daemon;
    daemon.start("dbus-daemon", {"--session", "--nofork", "--nopidfile",
                                 QString::fromStdString("--address=unix:path=" + base + "/bus"),
                                 "--print-address=1"});
    ASSERT_TRUE(daemon.waitForReadyRead(10000)) << "dbus-daemon did not start";
    const std::string busAddress = daemon.readAllStandardOutput().trimmed().toStdString();
    EXPECT_EQ(probeBus(busAddress, 2s).answer, Answer::answers);

    ListeningSocket silent(base + "/silent");
    ASSERT_TRUE(silent.ok());
    const auto started = std::chrono::steady_clock::now();
    const BusProbe quiet = probeBus("unix:path=" + base + "/silent", 200ms);
    EXPECT_EQ(quiet.answer, Answer::silent);
    EXPECT_LT(std::chrono::steady_clock::now() - started, 2s) << "the wait is bounded";
    EXPECT_NE(quiet.detail.find("200 ms"), std::string::npos) << quiet.detail;

    // One that takes the connection in and hangs up at once fails fast in the bus library too.
    ListeningSocket closing(base + "/closing");
    ASSERT_TRUE(closing.ok());
    std::thread hangUp([&] { ::close(::accept(closing.fd(), nullptr, nullptr)); });
    EXPECT_EQ(probeBus("unix:path=" + base + "/closing", 2s).answer, Answer::absent);
    hangUp.join();

    EXPECT_EQ(probeBus("unix:path=" + base + "/nothing-here", 2s).answer, Answer::absent);
    EXPECT_EQ(probeBus("unix:abstract=/navro/test/nothing", 2s).answer, Answer::absent);
    EXPECT_EQ(probeBus("tcp:host=127.0.0.1,port=1", 2s).answer, Answer::unknown);
    EXPECT_EQ(probeBus("", 2s).answer, Answer::unknown);

    daemon.terminate();
    daemon.waitForFinished(5000);
}

TEST(BusProbe, FindsTheSocketFileOfAnAddress)
{
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases{
        {"unix:path=/run/user/1000/bus", "/run/user/1000/bus"},
        {"unix:path=/tmp/a%20b,guid=0123", "/tmp/a b"},
        {"unix:guid=0123,path=/tmp/bus", "/tmp/bus"},
        {"unix:path=/first;unix:path=/second", "/first"},
        {"unix:abstract=/tmp/dbus-x,guid=0123", std::nullopt},
        {"tcp:host=localhost,port=1234", std::nullopt},
        {"unix:path=/bad%2", std::nullopt},
        {"disabled:", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [address, path] : cases)
        EXPECT_EQ(busSocketPath(address), path) << address;
}

TEST(BusProbe, AnAddressWithoutServerIdentitiesReachesABusThatStartedAgain)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"unix:path=/run/user/1000/bus,guid=0123", "unix:path=/run/user/1000/bus"},
        {"unix:guid=0123,path=/tmp/bus", "unix:path=/tmp/bus"},
        {"unix:path=/a,guid=1;tcp:host=h,guid=2,port=5", "unix:path=/a;tcp:host=h,port=5"},
        {"unix:abstract=/tmp/x", "unix:abstract=/tmp/x"},
        {"", ""},
    };
    for (const auto& [address, expected] : cases)
        EXPECT_EQ(withoutServerIdentity(address), expected) << address;
}

} // namespace
} // namespace navro
