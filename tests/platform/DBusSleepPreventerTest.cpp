#include "platform/linux/DBusSleepPreventer.h"

#include "PrivateBus.h"
#include "QtTestApplication.h"
#include "app/Log.h"

#include <QDBusVirtualObject>
#include <QMutex>
#include <QSet>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>

namespace navro {
namespace {

// A desktop's screen saver or power manager: grants holds with increasing cookies and takes them
// back. It answers on a thread of its own, as a separate program would, so that a caller that
// blocks is still answered.
class FakeInhibitor final : public QDBusVirtualObject {
    Q_OBJECT
public:
    explicit FakeInhibitor(QString interface) : interface_(std::move(interface)) {}

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (message.interface() != interface_)
            return false;
        QMutexLocker lock(&mutex_);
        QStringList arguments;
        for (const QVariant& argument : message.arguments())
            arguments << argument.toString();
        calls_ << message.member() + "(" + arguments.join(", ") + ")";
        if (message.member() == "Inhibit") {
            if (answerLaterMs_ >= 0) {
                QTimer::singleShot(answerLaterMs_, this,
                                   [this, message, connection] { grant(message, connection); });
                return true;
            }
            lock.unlock();
            grant(message, connection);
        } else if (message.member() == "UnInhibit") {
            active_.remove(message.arguments().value(0).toUInt());
            connection.send(message.createReply());
        }
        return true;
    }

    void answerLater(int milliseconds)
    {
        QMutexLocker lock(&mutex_);
        answerLaterMs_ = milliseconds;
    }
    QStringList calls() const
    {
        QMutexLocker lock(&mutex_);
        return calls_;
    }
    int activeHolds() const
    {
        QMutexLocker lock(&mutex_);
        return int(active_.size());
    }

private:
    void grant(const QDBusMessage& message, const QDBusConnection& connection)
    {
        QMutexLocker lock(&mutex_);
        const uint cookie = ++lastCookie_;
        active_.insert(cookie);
        connection.send(message.createReply(cookie));
    }

    const QString interface_;
    mutable QMutex mutex_;
    QStringList calls_;
    QSet<uint> active_;
    uint lastCookie_ = 40;
    int answerLaterMs_ = -1;
};

// The desktop services present on the private bus for one test.
class Desktop {
public:
    Desktop(bool screenSaver, bool powerManager) : connection_(PrivateBus::connect())
    {
        thread_.start();
        const auto& inhibitors = DBusSleepPreventer::inhibitors();
        if (screenSaver)
            this->screenSaver = offer(inhibitors[0]);
        if (powerManager)
            this->powerManager = offer(inhibitors[1]);
    }
    ~Desktop()
    {
        for (const auto& [inhibitor, fake] : offered_) {
            connection_.unregisterService(inhibitor.service);
            connection_.unregisterObject(inhibitor.path);
        }
        thread_.quit();
        thread_.wait();
    }

    FakeInhibitor* screenSaver = nullptr;
    FakeInhibitor* powerManager = nullptr;

private:
    FakeInhibitor* offer(const DBusSleepPreventer::Inhibitor& inhibitor)
    {
        auto* fake = new FakeInhibitor(inhibitor.interface);
        offered_.emplace_back(inhibitor, fake);
        fake->moveToThread(&thread_);
        EXPECT_TRUE(connection_.registerVirtualObject(inhibitor.path, fake));
        EXPECT_TRUE(connection_.registerService(inhibitor.service));
        return fake;
    }

    QDBusConnection connection_;
    QThread thread_;
    std::vector<std::pair<DBusSleepPreventer::Inhibitor, std::unique_ptr<FakeInhibitor>>> offered_;
};

const QString inhibit = "Inhibit(Navro, Navro timer)";

class DBusSleepPreventerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(PrivateBus::instance().address().isEmpty()) << "dbus-daemon did not start";
    }
};

TEST_F(DBusSleepPreventerTest, HoldsOnceThroughTheFirstServiceThereAndGivesItBack)
{
    for (const bool withScreenSaver : {true, false}) {
        SCOPED_TRACE(withScreenSaver ? "with a screen saver" : "with a power manager only");
        Desktop desktop(withScreenSaver, true);
        FakeInhibitor* used = withScreenSaver ? desktop.screenSaver : desktop.powerManager;
        DBusSleepPreventer preventer(PrivateBus::connect());
        preventer.keepAwake();
        preventer.keepAwake();
        ASSERT_TRUE(waitFor([&] { return preventer.isHolding(); }));
        preventer.keepAwake();
        EXPECT_EQ(used->calls(), QStringList{inhibit});
        EXPECT_EQ(used->activeHolds(), 1);

        preventer.allowSleep();
        preventer.allowSleep();
        ASSERT_TRUE(waitFor([&] { return used->activeHolds() == 0; }));
        EXPECT_EQ(used->calls(), (QStringList{inhibit, "UnInhibit(41)"}));
        if (withScreenSaver) {
            EXPECT_TRUE(desktop.powerManager->calls().isEmpty());
        }
    }
}

TEST_F(DBusSleepPreventerTest, WithNeitherServiceOneLogLineAndTheCallerCarriesOn)
{
    Desktop desktop(false, false);
    CapturingLogSink log;
    DBusSleepPreventer preventer(PrivateBus::connect());
    for (int session = 0; session < 3; ++session) {
        preventer.keepAwake();
        ASSERT_TRUE(waitFor([&] { return !preventer.isAsking(); }));
        EXPECT_FALSE(preventer.isHolding());
        preventer.allowSleep();
    }
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("could not keep the display awake")) << log.lines[0];
}

TEST_F(DBusSleepPreventerTest, AHoldGrantedAfterTheCallerLetGoIsGivenBackAtOnce)
{
    Desktop desktop(true, false);
    desktop.screenSaver->answerLater(50);
    DBusSleepPreventer preventer(PrivateBus::connect());
    preventer.keepAwake();
    preventer.allowSleep();
    ASSERT_TRUE(waitFor([&] { return desktop.screenSaver->calls().size() == 2; }));
    EXPECT_EQ(desktop.screenSaver->calls(), (QStringList{inhibit, "UnInhibit(41)"}));
    EXPECT_EQ(desktop.screenSaver->activeHolds(), 0);
    EXPECT_FALSE(preventer.isHolding());
}

TEST_F(DBusSleepPreventerTest, DestructionGivesTheHoldBackBeforeItReturns)
{
    for (bool granted : {true, false}) {
        Desktop desktop(true, false);
        auto preventer = std::make_unique<DBusSleepPreventer>(PrivateBus::connect());
        if (!granted)
            desktop.screenSaver->answerLater(100);
        preventer->keepAwake();
        if (granted)
            ASSERT_TRUE(waitFor([&] { return preventer->isHolding(); }));
        else
            ASSERT_TRUE(waitFor([&] { return !desktop.screenSaver->calls().isEmpty(); }));
        preventer.reset();
        // Checked without turning the event loop: the process could be gone the next moment.
        EXPECT_EQ(desktop.screenSaver->calls(), (QStringList{inhibit, "UnInhibit(41)"}))
            << "granted before: " << granted;
        EXPECT_EQ(desktop.screenSaver->activeHolds(), 0);
    }
}

} // namespace
} // namespace navro

#include "DBusSleepPreventerTest.moc"
