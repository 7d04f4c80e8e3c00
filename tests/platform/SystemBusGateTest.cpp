#include "platform/linux/SystemBusGate.h"

#include "ListeningSocket.h"
#include "PrivateBus.h"
#include "QtTestApplication.h"
#include "TemporaryFolder.h"
#include "app/Log.h"

#include <QDBusConnectionInterface>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

TEST(SystemBusGateTest, ASilentBusIsToldOnceAndHandedOutUnconnected)
{
    testApplication();
    TemporaryFolder folder;
    ListeningSocket silent((folder / "bus").string());
    ASSERT_TRUE(silent.ok());
    CapturingLogSink log;
    SystemBusGate gate("unix:path=" + (folder / "bus").string(), 200ms);

    std::vector<bool> handed;
    QObject staying;
    auto leaving = std::make_unique<QObject>();
    gate.whenReady(&staying, [&](QDBusConnection bus) { handed.push_back(bus.isConnected()); });
    gate.whenReady(leaving.get(), [&](QDBusConnection) { handed.push_back(true); });
    EXPECT_TRUE(handed.empty()) << "nobody waits for the probe";
    leaving.reset();

    ASSERT_TRUE(waitFor([&] { return gate.isKnown(); }, 5000));
    EXPECT_EQ(handed, std::vector<bool>{false}) << "one handed the bus, not the one gone";
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("did not answer within 200 ms; Navro runs without it"))
        << log.lines[0];

    // Later callers are answered at once, and the silence is not told again.
    gate.whenReady(&staying, [&](QDBusConnection bus) { handed.push_back(bus.isConnected()); });
    EXPECT_EQ(handed.size(), 2u);
    EXPECT_FALSE(handed[1]);
    EXPECT_EQ(log.lines.size(), 1u);
}

TEST(SystemBusGateTest, ABusThatAnswersIsHandedOutConnected)
{
    const std::string address = PrivateBus::instance().address().toStdString();
    CapturingLogSink log;
    SystemBusGate gate(address, 2s);
    QObject context;
    std::optional<QDBusConnection> handed;
    gate.whenReady(&context, [&](QDBusConnection bus) { handed = bus; });
    ASSERT_TRUE(waitFor([&] { return handed.has_value(); }, 5000));
    ASSERT_TRUE(handed->isConnected());
    EXPECT_TRUE(handed->interface()->isServiceRegistered(QStringLiteral("org.freedesktop.DBus")));
    EXPECT_TRUE(log.lines.empty());
}

TEST(SystemBusGateTest, NoBusAtAllIsKnownAtOnceAndSaysNothing)
{
    testApplication();
    CapturingLogSink log;
    SystemBusGate gate("unix:path=/nonexistent/navro/system_bus_socket", 2s);
    EXPECT_TRUE(gate.isKnown());
    QObject context;
    bool connected = true;
    gate.whenReady(&context, [&](QDBusConnection bus) { connected = bus.isConnected(); });
    EXPECT_FALSE(connected);
    EXPECT_TRUE(log.lines.empty());
}

} // namespace
} // namespace navro
