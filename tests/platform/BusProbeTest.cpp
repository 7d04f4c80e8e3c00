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

// The socket file of an address, and the address without server identities, which reaches a bus
// that started again there.
TEST(BusProbe, AddressesNameTheirSocketFileAndLoseTheirServersIdentity)
{
    struct Case {
        std::string address;
        std::optional<std::string> socketPath;
        std::string withoutIdentity;
    };
    for (const Case& c : {
             Case{"unix:path=/run/user/1000/bus", "/run/user/1000/bus",
                  "unix:path=/run/user/1000/bus"},
             Case{"unix:path=/run/user/1000/bus,guid=0123", "/run/user/1000/bus",
                  "unix:path=/run/user/1000/bus"},
             Case{"unix:path=/tmp/a%20b,guid=0123", "/tmp/a b", "unix:path=/tmp/a%20b"},
             Case{"unix:guid=0123,path=/tmp/bus", "/tmp/bus", "unix:path=/tmp/bus"},
             Case{"unix:path=/first;unix:path=/second", "/first",
                  "unix:path=/first;unix:path=/second"},
             Case{"unix:path=/a,guid=1;tcp:host=h,guid=2,port=5", "/a",
                  "unix:path=/a;tcp:host=h,port=5"},
             Case{"unix:abstract=/tmp/dbus-x,guid=0123", std::nullopt, "unix:abstract=/tmp/dbus-x"},
             Case{"tcp:host=localhost,port=1234", std::nullopt, "tcp:host=localhost,port=1234"},
             Case{"unix:path=/bad%2", std::nullopt, "unix:path=/bad%2"},
             Case{"disabled:", std::nullopt, "disabled:"},
             Case{"", std::nullopt, ""},
         }) {
        EXPECT_EQ(busSocketPath(c.address), c.socketPath) << c.address;
        EXPECT_EQ(withoutServerIdentity(c.address), c.withoutIdentity) << c.address;
    }
}

} // namespace
} // namespace navro
