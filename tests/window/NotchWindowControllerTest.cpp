#include "notch/NotchWindowController.h"

#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "QtTestApplication.h"
#include "TemporaryFolder.h"
#include "app/AppSettings.h"
#include "notch/ActivityCenter.h"
#include "notch/NotchPanel.h"
#include "notch/PanelWindowSystem.h"

#include <QCursor>
#include <QEnterEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQmlEngine>
#include <QScreen>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

class RecordingWindowSystem final : public PanelWindowSystem {
public:
    bool canShapeInput() const override { return true; }
    void setInputRegion(QWindow& window, const QRegion& region) override
    {
        EXPECT_NE(window.handle(), nullptr) << "shaped before the native window exists";
        regions.push_back(region);
    }
    void rememberFocus(QWindow&) override { ++remembered; }
    void takeFocus(QWindow& panel) override
    {
        ++taken;
        panel.requestActivate();
    }
    void returnFocus(QWindow&) override { ++returned; }
    bool watchPresses(std::function<void()> pressed) override
    {
        this->pressed = std::move(pressed);
        return true;
    }

    std::vector<QRegion> regions;
    int remembered = 0;
    int taken = 0;
    int returned = 0;
    std::function<void()> pressed;
};

class NotchWindowControllerTest : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        // The offscreen platform has no OpenGL; Qt Quick's software renderer draws there.
        qputenv("QT_QUICK_BACKEND", "software");
        testApplication();
    }

    NotchWindowControllerTest()
    {
        const QString root = directory.filePath(QStringLiteral("Root.qml"));
        writeBytes(root.toStdString(), "import QtQuick\nItem {}\n");
        controller = std::make_unique<NotchWindowController>(model, settings, engine, windowSystem,
                                                             QUrl::fromLocalFile(root));
    }

    QRect local(const QRect& global) const
    {
        return global.translated(-controller->panel()->position());
    }
    QRegion lastRegion() const
    {
        return windowSystem.regions.empty() ? QRegion() : windowSystem.regions.back();
    }
    void send(QEvent::Type type, int key)
    {
        QKeyEvent event(type, key, Qt::NoModifier);
        QCoreApplication::sendEvent(controller->panel(), &event);
    }
    void press(const QPoint& at)
    {
        QMouseEvent event(QEvent::MouseButtonPress, at, controller->panel()->mapToGlobal(at),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(controller->panel(), &event);
    }

    QTemporaryDir directory;
    ManualClock clock;
    FakeSettingsStore store;
    AppSettings settings{store, [] { return QStringList(); }};
    NotchViewModel model{clock, settings};
    QQmlEngine engine;
    RecordingWindowSystem windowSystem;
    std::unique_ptr<NotchWindowController> controller;
};

TEST_F(NotchWindowControllerTest, ShowsTheFixedPanelAtTheTopCentreOfThePrimaryScreen)
{
    ASSERT_TRUE(controller->isVisible());
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    const QRect frame = controller->panel()->geometry();
    EXPECT_EQ(frame.size(), QSize(728, 280));
    EXPECT_EQ(frame.top(), screen.top());
    EXPECT_LE(std::abs((frame.left() - screen.left()) - (screen.right() - frame.right())), 1);
    EXPECT_EQ(model.geometry().screenWidth, screen.width());
}

TEST_F(NotchWindowControllerTest, WhatWaitsForTheNextFrameRunsOnceAfterIt)
{
    int runs = 0;
    controller->afterNextFrame([&] { ++runs; });
    // Two frames can be swapped before the event loop hears of the first.
    emit controller->panel()->frameSwapped();
    emit controller->panel()->frameSwapped();
    EXPECT_EQ(runs, 0) << "ran inside the frame";
    QCoreApplication::processEvents();
    EXPECT_EQ(runs, 1);
    emit controller->panel()->frameSwapped();
    QCoreApplication::processEvents();
    EXPECT_EQ(runs, 1);

    // Without a notch on screen no frame comes: it runs at the next turn.
    settings.setNotchEnabled(false);
    controller->afterNextFrame([&] { ++runs; });
    EXPECT_EQ(runs, 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(runs, 2);
}

// Input is shaped to the notch drawn, and the pointer query answers with the same hot zone.
TEST_F(NotchWindowControllerTest, TakesPointerInputOnlyOverTheDrawnNotch)
{
    EXPECT_EQ(lastRegion(), QRegion(local(model.closedRect())));
    EXPECT_EQ(controller->hotZone(), model.hotZoneRect());
    model.open(false, false);
    EXPECT_EQ(lastRegion(), QRegion(QRect(20, 0, 688, 260)));
    EXPECT_EQ(controller->hotZone(), model.openRect().adjusted(-20, 0, 20, 20));
    model.close();
    EXPECT_EQ(lastRegion(), QRegion(local(model.closedRect())));

    model.setActivity(ClosedActivity::music());
    EXPECT_EQ(lastRegion(), QRegion(local(model.closedRect())));
    EXPECT_GT(lastRegion().boundingRect().width(), 190);
}

TEST_F(NotchWindowControllerTest, TurningTheNotchOffHidesAndClosesItAndOnShowsItAgain)
{
    int visibilityChanges = 0;
    QObject counting;
    QObject::connect(controller.get(), &NotchWindowController::visibilityChanged, &counting,
                     [&] { ++visibilityChanges; });
    model.open(false, false);
    settings.setNotchEnabled(false);
    EXPECT_FALSE(controller->isVisible());
    EXPECT_FALSE(model.isOpen());
    settings.setNotchEnabled(true);
    EXPECT_TRUE(controller->isVisible());
    EXPECT_EQ(visibilityChanges, 2);
}

// A click on the closed notch opens it with focus, unless it shows a recording: that it stops.
TEST_F(NotchWindowControllerTest, AClickOnTheClosedNotchOpensItWithFocusOrStopsTheRecording)
{
    std::vector<bool> focus;
    auto installed = model.onStatusChange;
    model.onStatusChange = [&](NotchStatus status, bool withFocus) {
        focus.push_back(withFocus);
        installed(status, withFocus);
    };
    int stops = 0;
    controller->onRecordingPressed = [&] { ++stops; };
    model.setActivity(ClosedActivity::recording());
    press(local(model.closedRect()).center());
    EXPECT_EQ(stops, 1);
    EXPECT_FALSE(model.isOpen());

    model.setActivity(ClosedActivity::ofToast(ActivityCenter::makeToast("bell", "Hi", "")));
    press(local(model.closedRect()).center());
    EXPECT_TRUE(model.isOpen());
    EXPECT_FALSE(model.openedByHover());
    EXPECT_EQ(focus, std::vector<bool>{true});
    EXPECT_EQ(stops, 1);
}

TEST_F(NotchWindowControllerTest, EscapeClosesTheOpenNotch)
{
    model.open(false, true);
    send(QEvent::KeyPress, Qt::Key_A);
    EXPECT_TRUE(model.isOpen());
    send(QEvent::KeyPress, Qt::Key_Escape);
    EXPECT_FALSE(model.isOpen());
}

TEST_F(NotchWindowControllerTest, ThePointerOnTheNotchOpensItAfterTheHoverDelayInHoverModeOnly)
{
    QCursor::setPos(model.closedRect().center());
    const QPointF at = local(model.closedRect()).center();
    QEnterEvent enter(at, at, model.closedRect().center());
    QCoreApplication::sendEvent(controller->panel(), &enter);
    EXPECT_TRUE(model.isHovering());
    EXPECT_TRUE(model.isOpenScheduled());
    clock.advance(150ms);
    EXPECT_TRUE(model.isOpen());
    EXPECT_TRUE(model.openedByHover());

    model.close();
    settings.setOpenMode(OpenMode::click);
    QEnterEvent again(at, at, model.closedRect().center());
    QCoreApplication::sendEvent(controller->panel(), &again);
    EXPECT_FALSE(model.isOpenScheduled());
}

TEST_F(NotchWindowControllerTest, ThePointerLeavingTheOpenPanelFarAwaySchedulesTheClose)
{
    QCursor::setPos(model.closedRect().center());
    model.open(true, false);
    QCursor::setPos(model.openRect().bottomLeft() + QPoint(0, 200));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(controller->panel(), &leave);
    EXPECT_FALSE(model.isHovering());
    EXPECT_TRUE(model.isCloseScheduled());
    clock.advance(250ms);
    EXPECT_FALSE(model.isOpen());
}

// Qt does not hear of every focus change made behind its back (focus handed to the pointer root,
// say), so the panel may still count as active when the notch opens again: it takes focus anyway.
TEST_F(NotchWindowControllerTest, FocusGoesBackToItsOwnerAndIsTakenAgainOnEveryFocusedOpen)
{
    model.open(false, true);
    QCoreApplication::processEvents();
    ASSERT_TRUE(controller->panel()->isActive());
    EXPECT_EQ(windowSystem.remembered, 1);
    EXPECT_EQ(windowSystem.taken, 1);
    model.close();
    EXPECT_EQ(windowSystem.returned, 1);

    ASSERT_TRUE(controller->panel()->isActive());
    model.open(false, true);
    EXPECT_EQ(windowSystem.taken, 2);
    EXPECT_EQ(windowSystem.remembered, 1) << "the panel itself is no window to go back to";
}

TEST_F(NotchWindowControllerTest, ANotchOpenedWithoutFocusDoesNotAskForIt)
{
    // (The offscreen platform activates every window it shows, so only the request is checked.)
    model.open(true, false);
    QCoreApplication::processEvents();
    EXPECT_EQ(windowSystem.remembered, 0);
    EXPECT_EQ(windowSystem.taken, 0);
}

TEST_F(NotchWindowControllerTest, APressOutsideTheOpenNotchClosesItOneOnItDoesNot)
{
    EXPECT_FALSE(windowSystem.pressed);
    model.open(true, false);
    ASSERT_TRUE(windowSystem.pressed);

    QCursor::setPos(model.openRect().center());
    windowSystem.pressed();
    EXPECT_TRUE(model.isOpen());

    QCursor::setPos(model.openRect().bottomRight() + QPoint(5, 5));
    windowSystem.pressed();
    EXPECT_FALSE(model.isOpen());
    EXPECT_FALSE(windowSystem.pressed) << "the watch ends with the open notch";
}

} // namespace
} // namespace navro
