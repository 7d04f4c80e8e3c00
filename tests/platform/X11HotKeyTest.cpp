#include "platform/linux/X11HotKey.h"

#include "QtTestApplication.h"
#include "app/Log.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <QProcess>
#include <cstdint>
#include <gtest/gtest.h>
#include <xcb/xcb.h>

// After gtest, whose names Xlib's macros (None, Bool) would otherwise rewrite.
#include <X11/Xlib.h>
#include <X11/keysym.h>

// Runs inside a virtual desktop (tests/desktop/run-in-desktop.sh): it needs a real X server and
// sends real key presses through XTEST.

namespace navro {
namespace {

QStringList qtMessages;

void recordQtMessage(QtMsgType, const QMessageLogContext&, const QString& message)
{
    qtMessages << message;
}

bool press(const QString& keys)
{
    return QProcess::execute("xdotool", {"key", keys}) == 0;
}

// Another program holding Control+Alt+L, as a rival application would.
class RivalGrab {
public:
    RivalGrab()
    {
        process_.start(qEnvironmentVariable("NAVRO_X11_HELPER"), {"grab-key"});
        process_.waitForStarted(5000);
        QDeadlineTimer deadline(10000);
        while (!output_.contains('\n') && !deadline.hasExpired() &&
               process_.state() == QProcess::Running) {
            process_.waitForReadyRead(100);
            output_ += process_.readAllStandardOutput();
        }
    }
    ~RivalGrab()
    {
        process_.kill();
        process_.waitForFinished(5000);
    }
    bool holdsTheKey() const { return output_.startsWith("grabbed"); }
    QByteArray output() const { return output_; }

private:
    QProcess process_;
    QByteArray output_;
};

const Qt::KeyboardModifiers controlAlt = Qt::ControlModifier | Qt::AltModifier;

TEST(X11HotKeyTest, ControlAltLRunsTheActionWithOrWithoutLocksAndNothingElseDoes)
{
    int calls = 0;
    auto hotKey = makeHotKey(Qt::Key_L, controlAlt, [&] { ++calls; }).hotKey;
    ASSERT_NE(hotKey, nullptr);

    ASSERT_TRUE(press("ctrl+alt+l"));
    ASSERT_TRUE(waitFor([&] { return calls == 1; }));

    // Presses are handled in order, so a wrong trigger would show as an extra call by the time
    // the next real one has arrived.
    ASSERT_TRUE(press("ctrl+l"));
    ASSERT_TRUE(press("alt+l"));
    ASSERT_TRUE(press("ctrl+alt+shift+l"));
    ASSERT_TRUE(press("ctrl+alt+k"));
    ASSERT_TRUE(press("ctrl+alt+l"));
    ASSERT_TRUE(waitFor([&] { return calls >= 2; }));
    EXPECT_EQ(calls, 2);

    ASSERT_TRUE(press("Num_Lock"));
    ASSERT_TRUE(press("ctrl+alt+l"));
    EXPECT_TRUE(waitFor([&] { return calls == 3; })) << "with Num Lock on";
    ASSERT_TRUE(press("Num_Lock"));
    ASSERT_TRUE(press("Caps_Lock"));
    ASSERT_TRUE(press("ctrl+alt+l"));
    EXPECT_TRUE(waitFor([&] { return calls == 4; })) << "with Caps Lock on";
    ASSERT_TRUE(press("Caps_Lock"));
}

// One key event for Control+Alt+L on the root window, as Qt's X connection delivers it.
// XTEST cannot make the server repeat a key, so a held key's repeats are written by hand.
bool deliverL(bool pressed)
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_key_press_event_t event = {};
    event.response_type = pressed ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    event.detail = std::uint8_t(XKeysymToKeycode(x11->display(), XK_l));
    event.root = event.event = std::uint32_t(DefaultRootWindow(x11->display()));
    event.state = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    qintptr result = 0;
    return QAbstractEventDispatcher::instance()->filterNativeEvent(
        QByteArrayLiteral("xcb_generic_event_t"), &event, &result);
}

TEST(X11HotKeyTest, HoldingTheShortcutActsOnceUntilTheKeyComesUp)
{
    int calls = 0;
    auto hotKey = makeHotKey(Qt::Key_L, controlAlt, [&] { ++calls; }).hotKey;
    ASSERT_NE(hotKey, nullptr);

    // A held key repeats as presses with no release between them.
    EXPECT_TRUE(deliverL(true));
    deliverL(true);
    deliverL(true);
    EXPECT_FALSE(deliverL(false)) << "releases are left to whoever else wants them";
    EXPECT_TRUE(deliverL(true));
    deliverL(false);
    // Every action was queued above, so they all run in the same turn.
    ASSERT_TRUE(waitFor([&] { return calls >= 2; }));
    EXPECT_EQ(calls, 2) << "a held shortcut acted on its repeats";
}

TEST(X11HotKeyTest, DestructionReleasesTheKeyAndQueuedActionsDieWithIt)
{
    int calls = 0;
    auto hotKey = makeHotKey(Qt::Key_L, controlAlt, [&] { ++calls; }).hotKey;
    ASSERT_NE(hotKey, nullptr);
    {
        RivalGrab rival;
        EXPECT_FALSE(rival.holdsTheKey()) << "the key is ours while the hot key lives";
    }
    hotKey.reset();
    RivalGrab rival;
    EXPECT_TRUE(rival.holdsTheKey()) << rival.output().toStdString();
    EXPECT_EQ(calls, 0);
}

TEST(X11HotKeyTest, KeyHeldByAnotherProgramMeansNoHotKeyAndSaysSo)
{
    CapturingLogSink log;
    qtMessages.clear();
    {
        RivalGrab rival;
        ASSERT_TRUE(rival.holdsTheKey());
        int calls = 0;
        HotKeyGrab grab = makeHotKey(Qt::Key_L, controlAlt, [&] { ++calls; });
        EXPECT_EQ(grab.hotKey, nullptr);
        EXPECT_TRUE(grab.takenByAnother);
        ASSERT_TRUE(press("ctrl+alt+l"));
        // Let any error or stray event reach us through a full round trip of another grab.
        HotKeyGrab other = makeHotKey(Qt::Key_K, controlAlt, [] {});
        ASSERT_NE(other.hotKey, nullptr);
        EXPECT_FALSE(other.takenByAnother);
        QCoreApplication::processEvents();
        EXPECT_EQ(calls, 0);
    }
    EXPECT_TRUE(log.lines.empty()) << "the owner of the hot key says what it is missing";
    EXPECT_TRUE(qtMessages.isEmpty()) << qtMessages.join('\n').toStdString();

    // Once the rival is gone the key can be had again (as soon as the server has seen it go).
    int calls = 0;
    std::unique_ptr<HotKey> hotKey;
    ASSERT_TRUE(waitFor([&] {
        if (!hotKey) {
            hotKey = makeHotKey(Qt::Key_L, controlAlt, [&] { ++calls; }).hotKey;
        }
        return hotKey != nullptr;
    }));
    ASSERT_TRUE(press("ctrl+alt+l"));
    EXPECT_TRUE(waitFor([&] { return calls == 1; }));
}

TEST(X11HotKeyTest, KeysWithoutAnX11MeaningAreRefusedForGood)
{
    HotKeyGrab grabs[] = {makeHotKey(Qt::Key_F13, controlAlt, [] {}),
                          makeHotKey(Qt::Key_L, Qt::NoModifier, [] {})};
    for (const HotKeyGrab& grab : grabs) {
        EXPECT_EQ(grab.hotKey, nullptr) << "a bare letter would swallow ordinary typing";
        EXPECT_FALSE(grab.takenByAnother) << "no other program has anything to do with it";
    }
}

} // namespace
} // namespace navro

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication app(argc, argv);
    qInstallMessageHandler(navro::recordQtMessage);
    return RUN_ALL_TESTS();
}
