#include "platform/linux/DBusRemoteControl.h"

#include "ListeningSocket.h"
#include "PrivateBus.h"
#include "QtTestApplication.h"
#include "app/Log.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

class RecordingTarget final : public RemoteControl {
public:
    void open(bool focus) override { calls << QString("open(%1)").arg(focus); }
    void close() override { calls << "close"; }
    void toggle() override { calls << "toggle"; }
    void showOnboarding() override { calls << "showOnboarding"; }
    RemoteRefusal openSettings(const QString& page) override
    {
        calls << "openSettings(" + page + ")";
        if (page == "nowhere")
            return QString("no page \"nowhere\"; the pages are a, b");
        return std::nullopt;
    }
    RemoteRefusal openTab(const QString& tab) override
    {
        calls << "openTab(" + tab + ")";
        if (tab == "clipboard" || tab == "prayer")
            return std::nullopt;
        return "no tab \"" + tab + "\"; the tabs are clipboard, prayer";
    }
    RemoteState remoteState() const override { return state; }
    RemoteTimer remoteTimer() const override { return timer; }
    RemoteRefusal startTimer(double minutes, bool focus) override
    {
        calls << QString("startTimer(%1, %2)").arg(minutes).arg(focus);
        if (minutes <= 0)
            return QString("no timer of that length");
        return std::nullopt;
    }
    void stopTimer() override { calls << "stopTimer"; }

    QStringList calls;
    RemoteState state;
    RemoteTimer timer;
};

// A connection to a bus of a test's own.
QDBusConnection connect(const QString& address)
{
    static int connections = 0;
    return QDBusConnection::connectToBus(address, QString("own-bus-%1").arg(++connections));
}

// A call answered by this very process must not block the loop that answers it.
QDBusMessage callAndWait(QDBusConnection& connection, const QDBusMessage& message)
{
    QDBusPendingCall pending = connection.asyncCall(message, 5000);
    waitFor([&] { return pending.isFinished(); });
    return pending.reply();
}

QDBusMessage method(const QString& name, const QVariantList& arguments = {})
{
    auto message = QDBusMessage::createMethodCall(remoteServiceName, remoteObjectPath,
                                                  remoteInterfaceName, name);
    message.setArguments(arguments);
    return message;
}

QDBusMessage properties(const QString& name, const QVariantList& arguments)
{
    auto message = QDBusMessage::createMethodCall(remoteServiceName, remoteObjectPath,
                                                  "org.freedesktop.DBus.Properties", name);
    message.setArguments(QVariantList{QString(remoteInterfaceName)} + arguments);
    return message;
}

QVariantMap readProperty(QDBusConnection& connection, const QString& name)
{
    const QDBusMessage reply = callAndWait(connection, properties("Get", {name}));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        ADD_FAILURE() << reply.errorMessage().toStdString();
        return {};
    }
    const QVariant inner = reply.arguments().at(0).value<QDBusVariant>().variant();
    return qdbus_cast<QVariantMap>(inner);
}

bool ownsTheName(QDBusConnection connection)
{
    return connection.interface()->isServiceRegistered(remoteServiceName).value();
}

// Collects PropertiesChanged signals of the remote object.
class SignalRecorder : public QObject {
    Q_OBJECT
public:
    QList<QVariantMap> states;
    QList<QVariantMap> timers;
    QStringList interfaces;

    bool listen(QDBusConnection& client)
    {
        const bool connected = client.connect(
            remoteServiceName, remoteObjectPath, "org.freedesktop.DBus.Properties",
            "PropertiesChanged", this, SLOT(changed(QString, QVariantMap, QStringList)));
        // The match rule is in place once a round trip through the bus has completed.
        readProperty(client, "State");
        return connected;
    }

public slots:
    void changed(const QString& interface, const QVariantMap& changed, const QStringList&)
    {
        interfaces << interface;
        if (changed.contains("State"))
            states << qdbus_cast<QVariantMap>(changed.value("State"));
        if (changed.contains("Timer"))
            timers << qdbus_cast<QVariantMap>(changed.value("Timer"));
    }
};

class DBusRemoteControlTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(PrivateBus::instance().address().isEmpty()) << "dbus-daemon did not start";
    }
    void publish()
    {
        publisher = publishRemoteControl(PrivateBus::instance().address(), target);
        ASSERT_NE(publisher, nullptr);
    }

    RecordingTarget target;
    std::unique_ptr<RemoteControlPublisher> publisher;
    QDBusConnection client = PrivateBus::connect();
};

TEST_F(DBusRemoteControlTest, MethodsReachTheTargetAndItsRefusalsReachTheCaller)
{
    publish();
    const auto expectReaches = [&](const QDBusMessage& message, const QString& call) {
        target.calls.clear();
        const QDBusMessage reply = callAndWait(client, message);
        EXPECT_EQ(target.calls, QStringList{call});
        return reply;
    };
    for (const auto& [message, call] : std::vector<std::pair<QDBusMessage, QString>>{
             {method("Open", {true}), "open(1)"},
             {method("Open", {false}), "open(0)"},
             {method("Close"), "close"},
             {method("Toggle"), "toggle"},
             {method("ShowOnboarding"), "showOnboarding"},
             {method("OpenSettings", {QString("about")}), "openSettings(about)"},
             {method("OpenTab", {QString("clipboard")}), "openTab(clipboard)"},
             {method("OpenTab", {QString("prayer")}), "openTab(prayer)"},
             {method("StartTimer", {25.5, true}), "startTimer(25.5, 1)"},
             {method("StopTimer"), "stopTimer"},
         }) {
        const QDBusMessage reply = expectReaches(message, call);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage)
            << call.toStdString() << ": " << reply.errorMessage().toStdString();
    }

    // Never a silent success: the caller hears the target's own reason.
    const QString unknownTab = "no tab \"%1\"; the tabs are clipboard, prayer";
    for (const auto& [message, call, refusal] :
         std::vector<std::tuple<QDBusMessage, QString, QString>>{
             {method("OpenSettings", {QString("nowhere")}), "openSettings(nowhere)",
              "no page \"nowhere\"; the pages are a, b"},
             {method("OpenTab", {QString("Clipboard")}), "openTab(Clipboard)",
              unknownTab.arg("Clipboard")},
             {method("OpenTab", {QString("")}), "openTab()", unknownTab.arg("")},
             {method("OpenTab", {QString("nowhere")}), "openTab(nowhere)",
              unknownTab.arg("nowhere")},
             {method("StartTimer", {0.0, false}), "startTimer(0, 0)", "no timer of that length"},
         }) {
        SCOPED_TRACE(call.toStdString());
        const QDBusMessage reply = expectReaches(message, call);
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage);
        EXPECT_EQ(reply.errorName(), "org.freedesktop.DBus.Error.InvalidArgs");
        EXPECT_EQ(reply.errorMessage(), refusal);
    }

    target.calls.clear();
    for (const QDBusMessage& mistyped : {method("Open", {QString("yes")}), method("OpenTab", {42}),
                                         method("StartTimer", {QString("5"), false})})
        EXPECT_EQ(callAndWait(client, mistyped).type(), QDBusMessage::ErrorMessage)
            << mistyped.member().toStdString();
    EXPECT_TRUE(target.calls.isEmpty()) << "a mistyped call never reaches the target";
}

TEST_F(DBusRemoteControlTest, PropertiesMirrorTheTargetAndAreReadOnly)
{
    target.state = {"open", "prayer", "toast", false, true, "arabic", "Charger connected", "80%"};
    target.timer = {"paused", 90, 360, true};
    publish();

    EXPECT_EQ(readProperty(client, "State"), (QVariantMap{{"status", "open"},
                                                          {"selectedTab", "prayer"},
                                                          {"activityKind", "toast"},
                                                          {"notchEnabled", false},
                                                          {"panelVisible", true},
                                                          {"language", "arabic"},
                                                          {"activityTitle", "Charger connected"},
                                                          {"activityDetail", "80%"}}));
    EXPECT_EQ(
        readProperty(client, "Timer"),
        (QVariantMap{{"state", "paused"}, {"remaining", 90.0}, {"total", 360.0}, {"focus", true}}));

    const QVariant closed = QVariant::fromValue(QDBusVariant(QVariantMap{{"status", "closed"}}));
    EXPECT_EQ(callAndWait(client, properties("Set", {QString("State"), closed})).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(readProperty(client, "State").value("status").toString(), "open");
}

TEST_F(DBusRemoteControlTest, StateIsAnnouncedOnRealChangesAndTheTimerOnEachChange)
{
    publish();
    SignalRecorder recorder;
    ASSERT_TRUE(recorder.listen(client));

    publisher->stateChanged(); // nothing differs: no signal
    target.state.status = "open";
    publisher->stateChanged();
    publisher->stateChanged(); // again nothing new
    target.timer = {"running", 300, 300, false};
    publisher->timerChanged();
    target.state.language = "arabic";
    publisher->stateChanged();
    target.timer = {"paused", 200, 300, false};
    publisher->timerChanged();

    ASSERT_TRUE(
        waitFor([&] { return recorder.states.size() >= 2 && recorder.timers.size() >= 2; }));
    // Signals arrive in order, so a stray one would show up before the last real one.
    readProperty(client, "State");
    QCoreApplication::processEvents();
    ASSERT_EQ(recorder.states.size(), 2);
    ASSERT_EQ(recorder.timers.size(), 2);
    EXPECT_EQ(recorder.interfaces, QStringList(4, remoteInterfaceName));
    EXPECT_EQ(recorder.states[0].value("status").toString(), "open");
    EXPECT_EQ(recorder.states[0].value("language").toString(), "english");
    EXPECT_EQ(recorder.states[1].value("language").toString(), "arabic");
    EXPECT_EQ(recorder.timers[0].value("state").toString(), "running");
    EXPECT_EQ(recorder.timers[1].value("state").toString(), "paused");
    EXPECT_EQ(recorder.timers[1].value("remaining").toDouble(), 200.0);
}

TEST_F(DBusRemoteControlTest, SecondLaunchHandsOverToTheFirstAndCannotTakeTheName)
{
    EXPECT_TRUE(handOverToRunningInstance(client, 0ms).has_value()) << "nobody runs yet";

    publish();
    EXPECT_EQ(handOverToRunningInstance(client, 0ms), std::nullopt);
    EXPECT_EQ(target.calls, QStringList{"open(1)"});

    CapturingLogSink log;
    RecordingTarget second;
    DBusRemoteControl rival(PrivateBus::instance().address(), second);
    EXPECT_EQ(rival.outcome(), DBusRemoteControl::Outcome::nameTaken)
        << rival.failure().toStdString();
    EXPECT_EQ(callAndWait(client, method("Toggle")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(target.calls.last(), "toggle");
    EXPECT_TRUE(second.calls.isEmpty());
    EXPECT_TRUE(log.lines.empty()) << "the rival only reports; its owner decides what to say";

    publisher.reset();
    EXPECT_TRUE(waitFor([&] { return !ownsTheName(client); }))
        << "the name is released with the publisher";
    EXPECT_TRUE(handOverToRunningInstance(client, 0ms).has_value());
}

TEST_F(DBusRemoteControlTest, AHandOverWaitsForANavroThatIsStillStarting)
{
    // The first Navro takes its name a moment after the second launch began to look.
    QTimer::singleShot(300ms, [&] { publish(); });
    EXPECT_EQ(handOverToRunningInstance(client, 10s), std::nullopt);
    EXPECT_EQ(target.calls, QStringList{"open(1)"});
}

TEST_F(DBusRemoteControlTest, WithoutABusNavroRunsOnAfterOneLogLine)
{
    QTemporaryDir folder;
    const QString nowhere = "unix:path=" + folder.filePath("no-bus-here");
    CapturingLogSink log;
    EXPECT_TRUE(handOverToRunningInstance(connect(nowhere), 0ms).has_value());
    publisher = publishRemoteControl(nowhere, target);
    ASSERT_NE(publisher, nullptr) << "it waits for a bus to come";
    publisher->stateChanged(); // harmless while unpublished
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(log.lines[0].rfind("Navro: remote control unavailable: ", 0), 0u) << log.lines[0];
}

// After the bus goes away and comes back (a restart of the session's bus, or a bus that hung at
// start and was replaced), the name is Navro's again without anyone asking.
TEST_F(DBusRemoteControlTest, TheNameIsTakenBackWhenTheBusComesBack)
{
    QTemporaryDir folder;
    const QString path = folder.filePath("bus");
    auto silent = std::make_unique<ListeningSocket>(path.toStdString());
    ASSERT_TRUE(silent->ok());
    CapturingLogSink log;
    // The address the session gave names the bus of that moment (its guid); every bus that
    // starts there later has another.
    DBusRemoteControl control("unix:path=" + path + ",guid=0123456789abcdef0123456789abcdef",
                              target, "the bus at start said nothing");
    EXPECT_EQ(control.outcome(), DBusRemoteControl::Outcome::failed);
    EXPECT_EQ(control.failure(), "the bus at start said nothing");

    QProcess daemon;
    const auto busComesUp = [&] {
        daemon.start("dbus-daemon",
                     {"--session", "--nofork", "--nopidfile", "--address=unix:path=" + path});
        return daemon.waitForStarted() &&
               waitFor([&] { return control.outcome() == DBusRemoteControl::Outcome::published; });
    };
    // A real bus takes the silent one's place.
    silent.reset();
    QFile::remove(path);
    ASSERT_TRUE(busComesUp());
    EXPECT_TRUE(ownsTheName(connect("unix:path=" + path)));

    // The bus stops and starts again.
    daemon.terminate();
    ASSERT_TRUE(daemon.waitForFinished(5000));
    ASSERT_TRUE(waitFor([&] { return control.outcome() == DBusRemoteControl::Outcome::failed; }));
    EXPECT_TRUE(log.contains("lost the session bus"));
    ASSERT_TRUE(busComesUp());
    QDBusConnection onNewBus = connect("unix:path=" + path);
    EXPECT_TRUE(ownsTheName(onNewBus));
    EXPECT_EQ(callAndWait(onNewBus, method("Toggle")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(target.calls, QStringList{"toggle"});
    EXPECT_TRUE(log.contains("remote control published again"));

    daemon.terminate();
    daemon.waitForFinished(5000);
}

} // namespace
} // namespace navro

#include "DBusRemoteControlTest.moc"
