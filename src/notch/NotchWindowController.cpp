#include "notch/NotchWindowController.h"

#include "app/AppSettings.h"
#include "notch/NotchPanel.h"
#include "notch/NotchPanelLayout.h"
#include "notch/NotchScreens.h"
#include "notch/PanelWindowSystem.h"

#include <QCursor>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QScreen>

namespace navro {
namespace {

// Fine enough that a pointer flicked out of the hot zone starts the close well inside its
// 0.25 s delay; cheap because it runs only while the pointer is next to the open notch.
constexpr auto trackingInterval = std::chrono::milliseconds(40);

} // namespace

NotchWindowController::NotchWindowController(NotchViewModel& viewModel, AppSettings& settings,
                                             QQmlEngine& engine, PanelWindowSystem& windowSystem,
                                             const QUrl& rootView)
    : viewModel_(viewModel), settings_(settings), windowSystem_(windowSystem),
      panel_(std::make_unique<NotchPanel>(&engine, windowSystem))
{
    viewModel_.setPointerQuery(this);
    viewModel_.onStatusChange = [this](NotchStatus status, bool focus) {
        rules_.statusChanged(status == NotchStatus::open, focus);
    };

    tracking_.setInterval(trackingInterval);
    connect(&tracking_, &QTimer::timeout, this, [this] { rules_.trackPointer(); });
    rebuild_.setSingleShot(true);
    rebuild_.setInterval(0);
    connect(&rebuild_, &QTimer::timeout, this, &NotchWindowController::rebuildGeometry);

    connect(panel_.get(), &NotchPanel::pointerEntered, this, [this] {
        viewModel_.setHovering(true);
        rules_.pointerEntered();
    });
    connect(panel_.get(), &NotchPanel::pointerLeft, this, [this] {
        viewModel_.setHovering(false);
        rules_.pointerLeft();
    });
    connect(panel_.get(), &NotchPanel::pressed, this, [this] {
        const auto& activity = viewModel_.activity();
        if (!viewModel_.isOpen() && activity &&
            activity->kind() == ClosedActivity::Kind::recording && onRecordingPressed) {
            onRecordingPressed();
            return;
        }
        rules_.pressed(panel_->isActive());
    });
    connect(panel_.get(), &NotchPanel::escapePressed, this, [this] { rules_.escapePressed(); });
    connect(panel_.get(), &QWindow::activeChanged, this, [this] {
        const bool active = panel_->isActive();
        if (wasActive_ && !active)
            rules_.windowDeactivated();
        wasActive_ = active;
    });
    connect(panel_.get(), &QWindow::visibleChanged, this, [this] {
        if (panel_->isVisible() != wasVisible_) {
            wasVisible_ = panel_->isVisible();
            emit visibilityChanged();
        }
    });

    connect(&viewModel_, &NotchViewModel::statusChanged, this,
            &NotchWindowController::updateInputRect);
    connect(&viewModel_, &NotchViewModel::closedSizeChanged, this,
            &NotchWindowController::updateInputRect);
    connect(&viewModel_, &NotchViewModel::geometryChanged, this,
            &NotchWindowController::updateInputRect);
    connect(&settings_, &AppSettings::notchEnabledChanged, this,
            &NotchWindowController::updateVisibility);

    auto* app = qGuiApp;
    connect(app, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        watchScreen(screen);
        rebuild_.start();
    });
    connect(app, &QGuiApplication::screenRemoved, this, [this] { rebuild_.start(); });
    connect(app, &QGuiApplication::primaryScreenChanged, this, [this] { rebuild_.start(); });
    for (QScreen* screen : QGuiApplication::screens())
        watchScreen(screen);

    // Placed before the views exist, so that they start where the notch is instead of moving
    // (and animating) there from the window's corner.
    placePanel();
    panel_->setSource(rootView);
    rebuildGeometry();
}

NotchWindowController::~NotchWindowController()
{
    // The panel reports its own hiding while it is destroyed; nobody is listening by then.
    panel_->disconnect(this);
    viewModel_.onStatusChange = nullptr;
    viewModel_.setPointerQuery(nullptr);
    windowSystem_.watchPresses({});
}

bool NotchWindowController::isVisible() const
{
    return panel_ && panel_->isVisible();
}

std::optional<QPoint> NotchWindowController::pointerPosition() const
{
    if (QGuiApplication::screens().isEmpty())
        return std::nullopt;
    return QCursor::pos();
}

bool NotchWindowController::hoverOpens() const
{
    return settings_.openMode() == OpenMode::hover;
}

bool NotchWindowController::pointerInOpenHotZone() const
{
    const auto position = pointerPosition();
    return position && viewModel_.isOpen() && viewModel_.hotZoneRect().contains(*position);
}

void NotchWindowController::afterNextFrame(std::function<void()> next)
{
    if (!panel_->isVisible()) {
        QTimer::singleShot(0, this, std::move(next));
        return;
    }
    // Queued: the frame's own work is done by the time `next` runs. Two frames can be queued
    // before the first of them is handled; only the first counts.
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = connect(
        panel_.get(), &QQuickWindow::frameSwapped, this,
        [connection, next = std::move(next)] {
            if (!*connection)
                return;
            const auto run = next;
            disconnect(*connection);
            *connection = {};
            run();
        },
        Qt::QueuedConnection);
}

void NotchWindowController::takeFocus()
{
    if (viewModel_.isOpen())
        activateWindow();
}

void NotchWindowController::activateWindow()
{
    if (!panel_->isActive())
        windowSystem_.rememberFocus(*panel_);
    windowSystem_.takeFocus(*panel_);
}

void NotchWindowController::releaseFocus()
{
    if (panel_->isActive())
        windowSystem_.returnFocus(*panel_);
}

void NotchWindowController::setTracking(bool on)
{
    if (on && !tracking_.isActive())
        tracking_.start();
    else if (!on)
        tracking_.stop();
}

void NotchWindowController::setWatchingPresses(bool on)
{
    if (!on) {
        windowSystem_.watchPresses({});
        return;
    }
    windowSystem_.watchPresses([this] {
        const auto position = pointerPosition();
        if (position && !viewModel_.openRect().contains(*position))
            rules_.pressedElsewhere();
    });
}

void NotchWindowController::watchScreen(QScreen* screen)
{
    connect(screen, &QScreen::geometryChanged, this, [this] { rebuild_.start(); });
    connect(screen, &QScreen::availableGeometryChanged, this, [this] { rebuild_.start(); });
}

void NotchWindowController::placePanel()
{
    const auto geometry = currentNotchGeometry();
    hasScreen_ = geometry.has_value();
    if (geometry) {
        viewModel_.setGeometry(*geometry);
        panel_->place(screenFor(*geometry), notchPanelFrame(*geometry));
    }
}

void NotchWindowController::rebuildGeometry()
{
    placePanel();
    updateInputRect();
    updateVisibility();
}

void NotchWindowController::updateInputRect()
{
    const QRect frame = notchPanelFrame(viewModel_.geometry());
    const QRect drawn = viewModel_.isOpen() ? viewModel_.openRect() : viewModel_.closedRect();
    panel_->setInputRect(notchInputRect(frame, drawn));
}

void NotchWindowController::updateVisibility()
{
    const bool shown = hasScreen_ && settings_.notchEnabled();
    if (!shown) {
        viewModel_.close();
        setTracking(false);
        panel_->hide();
        return;
    }
    if (!panel_->isVisible()) {
        updateInputRect();
        panel_->show();
        // Mapped last, an override-redirect window is on top; raising again covers panels that
        // were mapped while it was hidden.
        panel_->raise();
    }
}

} // namespace navro
