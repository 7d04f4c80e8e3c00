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
        if (!acceptsTimers)
            return QString("no timer of that length");
        return std::nullopt;
    }
    void stopTimer() override { calls << "stopTimer"; }

    QStringList calls;
    RemoteState state;
    RemoteTimer timer;
    bool acceptsTimers = true;
};

PrivateBus& bus()
{
    return PrivateBus::instance();
}

QDBusConnection connect()
{
    return PrivateBus::connect();
}

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

QVariantMap readProperty(QDBusConnection& connection, const QString& name)
{
    auto get = QDBusMessage::createMethodCall(remoteServiceName, remoteObjectPath,
                                              "org.freedesktop.DBus.Properties", "Get");
    get << QString(remoteInterfaceName) << name;
    const QDBusMessage reply = callAndWait(connection, get);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        ADD_FAILURE() << reply.errorMessage().toStdString();
        return {};
    }
    const QVariant inner = reply.arguments().at(0).value<QDBusVariant>().variant();
    return qdbus_cast<QVariantMap>(inner);
}

QVariantMap readState(QDBusConnection& connection)
{
    return readProperty(connection, "State");
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
        readState(client);
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
        ASSERT_FALSE(bus().address().isEmpty()) << "dbus-daemon did not start";
    }
    void publish()
    {
        publisher = publishRemoteControl(bus().address(), target);
        ASSERT_NE(publisher, nullptr);
    }

    RecordingTarget target;
    std::unique_ptr<RemoteControlPublisher> publisher;
    QDBusConnection client = connect();
};

TEST_F(DBusRemoteControlTest, MethodsReachTheTargetFromAnotherConnection)
{
    publish();

    for (const QDBusMessage& message :
         {method("Open", {true}), method("Open", {false}), method("Close"), method("Toggle"),
          method("ShowOnboarding"), method("OpenSettings", {QString("about")})}) {
        const QDBusMessage reply = callAndWait(client, message);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    }
    EXPECT_EQ(target.calls, (QStringList{"open(1)", "open(0)", "close", "toggle", "showOnboarding",
                                         "openSettings(about)"}));

    const QDBusMessage wrong = callAndWait(client, method("Open", {QString("yes")}));
    EXPECT_EQ(wrong.type(), QDBusMessage::ErrorMessage) << "Open takes a boolean";
    EXPECT_EQ(target.calls.size(), 6);

    // A name the target refuses is an error with its message, never a silent success.
    const QDBusMessage refused = callAndWait(client, method("OpenSettings", {QString("nowhere")}));
    EXPECT_EQ(refused.type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(refused.errorName(), "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_EQ(refused.errorMessage(), "no page \"nowhere\"; the pages are a, b");
    const QDBusMessage accepted = callAndWait(client, method("OpenSettings", {QString("general")}));
    EXPECT_EQ(accepted.type(), QDBusMessage::ReplyMessage);
}

TEST_F(DBusRemoteControlTest, OpenTabRefusesATabTheTargetDoesNotKnowWithInvalidArgs)
{
    publish();

    for (const QString& known : {QString("clipboard"), QString("prayer")}) {
        const QDBusMessage reply = callAndWait(client, method("OpenTab", {known}));
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    }
    for (const QString& unknown : {QString("Clipboard"), QString(""), QString("nowhere")}) {
        const QDBusMessage reply = callAndWait(client, method("OpenTab", {unknown}));
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage) << unknown.toStdString();
        EXPECT_EQ(reply.errorName(), "org.freedesktop.DBus.Error.InvalidArgs");
        EXPECT_TRUE(reply.errorMessage().contains('"' + unknown + '"'))
            << reply.errorMessage().toStdString();
    }
    EXPECT_EQ(target.calls, (QStringList{"openTab(clipboard)", "openTab(prayer)",
                                         "openTab(Clipboard)", "openTab()", "openTab(nowhere)"}));

    const QDBusMessage wrong = callAndWait(client, method("OpenTab", {42}));
    EXPECT_EQ(wrong.type(), QDBusMessage::ErrorMessage) << "OpenTab takes a string";
    EXPECT_EQ(target.calls.size(), 5);
}

TEST_F(DBusRemoteControlTest, StatePropertyMirrorsTheTargetAndIsReadOnly)
{
    target.state = {"open", "prayer", "toast", false, true, "arabic", "Charger connected", "80%"};
    publish();

    EXPECT_EQ(readState(client), (QVariantMap{{"status", "open"},
                                              {"selectedTab", "prayer"},
                                              {"activityKind", "toast"},
                                              {"notchEnabled", false},
                                              {"panelVisible", true},
                                              {"language", "arabic"},
                                              {"activityTitle", "Charger connected"},
                                              {"activityDetail", "80%"}}));

    auto set = QDBusMessage::createMethodCall(remoteServiceName, remoteObjectPath,
                                              "org.freedesktop.DBus.Properties", "Set");
    set << QString(remoteInterfaceName) << QString("State")
        << QVariant::fromValue(QDBusVariant(QVariantMap{{"status", "closed"}}));
    EXPECT_EQ(callAndWait(client, set).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(readState(client).value("status").toString(), "open");
}

TEST_F(DBusRemoteControlTest, PropertiesChangedOnlyForRealChanges)
{
    publish();
    SignalRecorder recorder;
    ASSERT_TRUE(recorder.listen(client));

    publisher->stateChanged(); // nothing differs: no signal
    target.state.status = "open";
    publisher->stateChanged();
    publisher->stateChanged(); // again nothing new
    target.state.language = "arabic";
    publisher->stateChanged();

    ASSERT_TRUE(waitFor([&] { return recorder.states.size() >= 2; }));
    // Signals arrive in order, so a stray one would show up before the second real one.
    readState(client);
    QCoreApplication::processEvents();
    ASSERT_EQ(recorder.states.size(), 2);
    EXPECT_EQ(recorder.interfaces, (QStringList{remoteInterfaceName, remoteInterfaceName}));
    EXPECT_EQ(recorder.states[0].value("status").toString(), "open");
    EXPECT_EQ(recorder.states[0].value("language").toString(), "english");
    EXPECT_EQ(recorder.states[1].value("language").toString(), "arabic");
}

TEST_F(DBusRemoteControlTest, TimerIsReadableStartableAndStoppable)
{
    target.timer = {"paused", 90, 360, true};
    publish();

    EXPECT_EQ(
        readProperty(client, "Timer"),
        (QVariantMap{{"state", "paused"}, {"remaining", 90.0}, {"total", 360.0}, {"focus", true}}));

    const QDBusMessage started = callAndWait(client, method("StartTimer", {25.5, true}));
    EXPECT_EQ(started.type(), QDBusMessage::ReplyMessage) << started.errorMessage().toStdString();
    EXPECT_EQ(callAndWait(client, method("StopTimer")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(target.calls, (QStringList{"startTimer(25.5, 1)", "stopTimer"}));

    // A length the target refuses is an error to the caller, not a silent success.
    target.acceptsTimers = false;
    const QDBusMessage refused = callAndWait(client, method("StartTimer", {0.0, false}));
    EXPECT_EQ(refused.type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(refused.errorName(), "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_EQ(refused.errorMessage(), "no timer of that length");
    EXPECT_EQ(callAndWait(client, method("StartTimer", {QString("5"), false})).type(),
              QDBusMessage::ErrorMessage)
        << "minutes are a number";
    EXPECT_EQ(target.calls.size(), 3) << "the mistyped call never reaches the target";
}

TEST_F(DBusRemoteControlTest, TimerChangesAreAnnouncedEachTime)
{
    publish();
    SignalRecorder recorder;
    ASSERT_TRUE(recorder.listen(client));

    target.timer = {"running", 300, 300, false};
    publisher->timerChanged();
    target.timer = {"paused", 200, 300, false};
    publisher->timerChanged();
    publisher->stateChanged(); // the notch's state did not change: nothing about the timer either

    ASSERT_TRUE(waitFor([&] { return recorder.timers.size() >= 2; }));
    readState(client);
    QCoreApplication::processEvents();
    ASSERT_EQ(recorder.timers.size(), 2);
    EXPECT_TRUE(recorder.states.isEmpty());
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
    DBusRemoteControl rival(bus().address(), second);
    EXPECT_EQ(rival.outcome(), DBusRemoteControl::Outcome::nameTaken)
        << rival.failure().toStdString();
    EXPECT_TRUE(callAndWait(client, method("Toggle")).type() == QDBusMessage::ReplyMessage);
    EXPECT_EQ(target.calls.last(), "toggle");
    EXPECT_TRUE(second.calls.isEmpty());
    EXPECT_TRUE(log.lines.empty()) << "the rival only reports; its owner decides what to say";

    publisher.reset();
    EXPECT_TRUE(waitFor([&] {
        return !client.interface()->isServiceRegistered(remoteServiceName).value();
    })) << "the name is released with the publisher";
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
    CapturingLogSink log;
    QDBusConnection nowhere =
        QDBusConnection::connectToBus("unix:path=" + folder.filePath("no-bus-here"), "nowhere");
    EXPECT_TRUE(handOverToRunningInstance(nowhere, 0ms).has_value());
    publisher = publishRemoteControl("unix:path=" + folder.filePath("no-bus-here"), target);
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

    // A real bus takes the silent one's place.
    silent.reset();
    QFile::remove(path);
    QProcess daemon;
    auto startDaemon = [&] {
        daemon.start("dbus-daemon",
                     {"--session", "--nofork", "--nopidfile", "--address=unix:path=" + path});
        return daemon.waitForStarted();
    };
    ASSERT_TRUE(startDaemon());
    ASSERT_TRUE(
        waitFor([&] { return control.outcome() == DBusRemoteControl::Outcome::published; }));
    {
        QDBusConnection onNewBus = connect("unix:path=" + path);
        EXPECT_TRUE(onNewBus.interface()->isServiceRegistered(remoteServiceName).value());
    }

    // The bus stops and starts again.
    daemon.terminate();
    ASSERT_TRUE(daemon.waitForFinished(5000));
    ASSERT_TRUE(waitFor([&] { return control.outcome() == DBusRemoteControl::Outcome::failed; }));
    EXPECT_TRUE(log.contains("lost the session bus"));
    ASSERT_TRUE(startDaemon());
    ASSERT_TRUE(
        waitFor([&] { return control.outcome() == DBusRemoteControl::Outcome::published; }));
    QDBusConnection onNewBus = connect("unix:path=" + path);
    EXPECT_TRUE(onNewBus.interface()->isServiceRegistered(remoteServiceName).value());
    EXPECT_EQ(callAndWait(onNewBus, method("Toggle")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(target.calls, QStringList{"toggle"});
    EXPECT_TRUE(log.contains("remote control published again"));

    daemon.terminate();
    daemon.waitForFinished(5000);
}

} // namespace
} // namespace navro

#include "DBusRemoteControlTest.moc"
