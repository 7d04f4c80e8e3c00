#pragma once

#include "notch/NotchPointerRules.h"
#include "notch/NotchViewModel.h"

#include <QList>
#include <QMetaObject>
#include <QObject>
#include <QTimer>
#include <QUrl>
#include <memory>

class QQmlEngine;
class QScreen;

namespace navro {

class AppSettings;
class NotchPanel;
class PanelWindowSystem;

// Owns the notch window, keeps it on the preferred screen, shows it while the notch is enabled,
// and turns what the pointer, clicks and the keyboard do on it into view-model calls.
//
// The pointer is never polled while it is away from the notch: the window only hears of it when
// it crosses the drawn notch, and a short tracking poll runs only while the pointer is between
// the open notch and the edge of its hot zone.
class NotchWindowController final : public QObject,
                                    public NotchPointerQuery,
                                    private NotchPointerRules::Host {
    Q_OBJECT

public:
    NotchWindowController(NotchViewModel& viewModel, AppSettings& settings, QQmlEngine& engine,
                          PanelWindowSystem& windowSystem, const QUrl& rootView);
    ~NotchWindowController() override;

    // The panel exists and is on screen.
    bool isVisible() const;
    // Gives the open notch keyboard focus, as when it was opened with focus.
    void takeFocus();
    // Calls `next` once, when the notch's next frame is on screen (at start, the closed notch's
    // first), or at the next turn of the event loop when there is no notch to show.
    void afterNextFrame(std::function<void()> next);
    NotchPanel* panel() const { return panel_.get(); }

    std::optional<QPoint> pointerPosition() const override;

    // A press on the closed notch while it shows a recording: the recording should stop (rather
    // than the notch open).
    std::function<void()> onRecordingPressed;
    QRect hotZone() const override { return viewModel_.hotZoneRect(); }

signals:
    void visibilityChanged();

private:
    // NotchPointerRules::Host
    bool isOpen() const override { return viewModel_.isOpen(); }
    bool openedByHover() const override { return viewModel_.openedByHover(); }
    bool hoverOpens() const override;
    bool pointerInOpenHotZone() const override;
    void scheduleOpen() override { viewModel_.scheduleOpen(); }
    void scheduleClose() override { viewModel_.scheduleClose(); }
    void cancelScheduled() override { viewModel_.cancelScheduled(); }
    void open(bool byHover, bool focus) override { viewModel_.open(byHover, focus); }
    void close() override { viewModel_.close(); }
    void activateWindow() override;
    void releaseFocus() override;
    void setTracking(bool on) override;
    void setWatchingPresses(bool on) override;

    void watchScreen(QScreen* screen);
    void placePanel();
    void rebuildGeometry();
    void updateInputRect();
    void updateVisibility();

    NotchViewModel& viewModel_;
    AppSettings& settings_;
    PanelWindowSystem& windowSystem_;
    std::unique_ptr<NotchPanel> panel_;
    NotchPointerRules rules_{*this};
    QTimer tracking_;
    // Screen changes come in bursts (a mode change reports geometry, then work area); one
    // rebuild on the next turn covers the burst.
    QTimer rebuild_;
    bool hasScreen_ = false;
    bool wasActive_ = false;
    bool wasVisible_ = false;
};

} // namespace navro
