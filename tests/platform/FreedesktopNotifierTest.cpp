#include "platform/linux/FreedesktopNotifier.h"

#include "PrivateBus.h"
#include "QtTestApplication.h"
#include "app/Log.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <gtest/gtest.h>
#include <map>

namespace navro {
namespace {

const QString daemonName = "org.freedesktop.Notifications";
const QString daemonPath = "/org/freedesktop/Notifications";

// A notification daemon of the test's own on the private bus: it records what it is asked and
// sends the signals a user's clicks would make a real one send.
class FakeDaemon : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Notify {
        QString app;
        uint replaces;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
    };

    explicit FakeDaemon(QStringList capabilities)
        : capabilities_(std::move(capabilities)), connection_(PrivateBus::instance().connect())
    {
        connection_.registerObject(daemonPath, this, QDBusConnection::ExportAllSlots);
        connection_.interface()->registerService(daemonName);
    }
    ~FakeDaemon() override
    {
        connection_.interface()->unregisterService(daemonName);
        connection_.unregisterObject(daemonPath);
    }

    void emitSignal(const QString& name, const QVariantList& arguments)
    {
        auto message = QDBusMessage::createSignal(daemonPath, daemonName, name);
        message.setArguments(arguments);
        connection_.send(message);
    }

    std::vector<Notify> notified;
    std::vector<uint> closed;

public slots:
    QStringList GetCapabilities() { return capabilities_; }
    uint Notify(const QString& app, uint replaces, const QString&, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap& hints, int)
    {
        notified.push_back({app, replaces, summary, body, actions, hints});
        return replaces != 0 ? replaces : ++lastID_;
    }
    void CloseNotification(uint id) { closed.push_back(id); }

private:
    QStringList capabilities_;
    QDBusConnection connection_;
    uint lastID_ = 100;
};

DesktopNotification reminder(const std::string& key, const std::string& body = "Tom & <Jerry>")
{
    return {key, "To-do due now", body, {{"done", "Mark as done"}}};
}

class FreedesktopNotifierTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_FALSE(PrivateBus::instance().address().isEmpty()); }
};

TEST_F(FreedesktopNotifierTest, ShowsAndReplacesByKeyWithButtonsWhereTheDaemonHasThem)
{
    FakeDaemon daemon({"actions", "body", "body-markup"});
    FreedesktopNotifier notifier(PrivateBus::instance().connect());
    notifier.show(reminder("navro.todo.A"), nullptr);
    ASSERT_TRUE(waitFor([&] { return daemon.notified.size() == 1; }));
    const auto& first = daemon.notified[0];
    EXPECT_EQ(first.app, "Navro");
    EXPECT_EQ(first.replaces, 0u);
    EXPECT_EQ(first.summary, "To-do due now");
    EXPECT_EQ(first.body, "Tom &amp; &lt;Jerry&gt;");
    EXPECT_EQ(first.actions, (QStringList{"done", "Mark as done"}));
    EXPECT_EQ(first.hints.value("desktop-entry").toString(), "navro");

    // The second of A may have to wait for the daemon to give A its number; B never waits.
    notifier.show(reminder("navro.todo.A", "second"), nullptr);
    notifier.show(reminder("navro.todo.B", "other"), nullptr);
    ASSERT_TRUE(waitFor([&] { return daemon.notified.size() == 3; }));
    std::map<QString, uint> replaced;
    for (const auto& notify : daemon.notified)
        replaced[notify.body] = notify.replaces;
    EXPECT_EQ(replaced["second"], 101u);
    EXPECT_EQ(replaced["other"], 0u);
}

TEST_F(FreedesktopNotifierTest, PlainDaemonsGetPlainTextAndNoButtons)
{
    FakeDaemon daemon({"body"});
    FreedesktopNotifier notifier(PrivateBus::instance().connect());
    notifier.show(reminder("k"), nullptr);
    ASSERT_TRUE(waitFor([&] { return daemon.notified.size() == 1; }));
    EXPECT_EQ(daemon.notified[0].body, "Tom & <Jerry>");
    EXPECT_TRUE(daemon.notified[0].actions.isEmpty());
}

// Messages from one connection to another arrive in the order they were sent, so a marker sent
// after something proves that it has arrived: waits end on what happened, never on a time.

TEST_F(FreedesktopNotifierTest, WithdrawingClosesItEvenBeforeTheDaemonAnswered)
{
    FakeDaemon daemon({"actions"});
    FreedesktopNotifier notifier(PrivateBus::instance().connect());
    // Withdrawn while the daemon's capabilities are still being asked for: never sent.
    notifier.show(reminder("unsent", "unsent"), nullptr);
    notifier.withdraw("unsent");
    notifier.show(reminder("first", "first"), nullptr);
    ASSERT_TRUE(waitFor([&] { return daemon.notified.size() == 1; }));
    EXPECT_EQ(daemon.notified[0].body, "first");

    // Withdrawn while its Notify is on the way: closed once the daemon says its number.
    notifier.show(reminder("early"), nullptr);
    notifier.withdraw("early");
    ASSERT_TRUE(waitFor([&] { return daemon.closed.size() == 1; }));
    EXPECT_EQ(daemon.closed[0], 102u);

    notifier.withdraw("first");
    notifier.withdraw("never shown");
    ASSERT_TRUE(waitFor([&] { return daemon.closed.size() == 2; }));
    EXPECT_EQ(daemon.closed[1], 101u);
    // Shown again after that, it is a new notification, not a replacement.
    notifier.show(reminder("first", "marker"), nullptr);
    ASSERT_TRUE(waitFor(
        [&] { return !daemon.notified.empty() && daemon.notified.back().body == "marker"; }));
    EXPECT_EQ(daemon.notified.size(), 3u);
    EXPECT_EQ(daemon.notified[2].replaces, 0u);
    EXPECT_EQ(daemon.closed.size(), 2u);
}

TEST_F(FreedesktopNotifierTest, ButtonsReachTheirNotificationsHandlerUntilItCloses)
{
    FakeDaemon daemon({"actions"});
    FreedesktopNotifier notifier(PrivateBus::instance().connect());
    std::vector<std::string> pressed;
    auto recordAs = [&](std::string key) {
        return [&pressed, key](std::string_view action) {
            pressed.push_back(key + " " + std::string(action));
        };
    };
    notifier.show(reminder("a"), recordAs("a"));
    notifier.show(reminder("b"), recordAs("b"));
    ASSERT_TRUE(waitFor([&] { return daemon.notified.size() == 2; }));
    // Sent after its replies, so the notifier knows both numbers by then.
    daemon.emitSignal("ActionInvoked", {102u, "done"});
    daemon.emitSignal("ActionInvoked", {999u, "done"});
    daemon.emitSignal("ActionInvoked", {101u, "later"});
    ASSERT_TRUE(waitFor([&] { return pressed.size() == 2; }));
    EXPECT_EQ(pressed, (std::vector<std::string>{"b done", "a later"}));

    // Closed by the daemon: its number means nothing any more.
    daemon.emitSignal("NotificationClosed", {101u, 2u});
    daemon.emitSignal("ActionInvoked", {101u, "done"});
    daemon.emitSignal("ActionInvoked", {102u, "marker"});
    ASSERT_TRUE(waitFor([&] { return pressed.size() == 3; }));
    EXPECT_EQ(pressed.back(), "b marker");
    notifier.show(reminder("a"), nullptr);
    ASSERT_TRUE(waitFor([&] { return daemon.notified.size() == 3; }));
    EXPECT_EQ(daemon.notified[2].replaces, 0u);
}

TEST_F(FreedesktopNotifierTest, WithoutADaemonItSaysSoOnceAndCarriesOn)
{
    CapturingLogSink log;
    FreedesktopNotifier notifier(PrivateBus::instance().connect());
    notifier.show(reminder("a"), nullptr);
    ASSERT_TRUE(waitFor([&] { return !log.lines.empty(); }));
    EXPECT_TRUE(log.contains("no desktop notifications")) << log.lines[0];
    notifier.show(reminder("b"), nullptr);
    notifier.withdraw("a");

    // A daemon that turns up later is used; the failure before it was not reported again.
    FakeDaemon daemon({"actions"});
    notifier.show(reminder("c"), nullptr);
    ASSERT_TRUE(waitFor([&] { return !daemon.notified.empty(); }));
    EXPECT_EQ(log.lines.size(), 1u);
}

} // namespace
} // namespace navro

#include "FreedesktopNotifierTest.moc"
