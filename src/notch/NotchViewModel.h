#pragma once

#include "app/Clock.h"
#include "app/SettingRange.h"
#include "notch/ClosedActivity.h"
#include "notch/NotchGeometry.h"
#include "notch/NotchTab.h"

#include <QObject>
#include <QPoint>
#include <QRect>
#include <QVariantList>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <optional>

namespace navro {

class ActivityCenter;
class AppSettings;

enum class NotchStatus { closed, open };

// Where the pointer is and where it counts as over the notch, in global screen coordinates.
// The window code answers from the real pointer; tests answer from a fake.
class NotchPointerQuery {
public:
    virtual ~NotchPointerQuery() = default;
    // None when the pointer's position cannot be read.
    virtual std::optional<QPoint> pointerPosition() const = 0;
    virtual QRect hotZone() const = 0;
};

// The observable state of the notch panel: open or closed, the selected tab, pointer and drop
// feedback, the mirrored closed activity and the geometry it is drawn for.
//
// Rectangles are in global screen coordinates; the open notch hangs from the top edge of the
// screen, centred.
class NotchViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY statusChanged)
    Q_PROPERTY(QString status READ statusRaw NOTIFY statusChanged)
    Q_PROPERTY(
        QString selectedTab READ selectedTabRaw WRITE setSelectedTabRaw NOTIFY selectedTabChanged)
    Q_PROPERTY(bool isHovering READ isHovering WRITE setHovering NOTIFY isHoveringChanged)
    Q_PROPERTY(
        bool isDropTargeted READ isDropTargeted WRITE setDropTargeted NOTIFY isDropTargetedChanged)
    Q_PROPERTY(QVariantMap activity READ activityMap NOTIFY activityChanged)
    Q_PROPERTY(QVariantMap themeWave READ themeWave WRITE setThemeWave NOTIFY themeWaveChanged)
    Q_PROPERTY(int closedWidth READ closedWidth NOTIFY closedSizeChanged)
    Q_PROPERTY(int closedHeight READ closedHeight NOTIFY closedSizeChanged)
    Q_PROPERTY(QRect closedRect READ closedRect NOTIFY closedSizeChanged)
    Q_PROPERTY(QRect openRect READ openRect NOTIFY geometryChanged)
    Q_PROPERTY(QVariantList visibleTabs READ visibleTabList CONSTANT)
    // The selected tab as {id, titleEnglish, titleArabic, symbol}; it may be one the tab bar
    // does not show.
    Q_PROPERTY(QVariantMap selectedTabInfo READ selectedTabInfo NOTIFY selectedTabChanged)
    // Whether the open notch's views should exist: from the first hover or opening until the notch
    // has rested closed for openViewRest. Building them again takes a few milliseconds; what they
    // hold is several mebibytes.
    Q_PROPERTY(bool openViewWanted READ openViewWanted NOTIFY openViewWantedChanged)

public:
    // How far the region that counts as "over the notch" reaches beyond the drawn notch, left,
    // right and below.
    static constexpr int hotZoneMargin = 20;
    static constexpr Duration closeDelay = std::chrono::milliseconds(250);
    static constexpr Duration openViewRest = std::chrono::minutes(2);

    NotchViewModel(Clock& clock, const AppSettings& settings, QObject* parent = nullptr);
    ~NotchViewModel() override;

    NotchStatus status() const { return status_; }
    bool isOpen() const { return status_ == NotchStatus::open; }
    QString statusRaw() const;

    NotchTab selectedTab() const { return selectedTab_; }
    void setSelectedTab(NotchTab tab);
    QString selectedTabRaw() const;
    void setSelectedTabRaw(const QString& raw);
    // Moves the selection along the tab bar in reading order (positive: towards its end); the
    // views turn arrow keys into steps, mirrored where the bar runs right to left.
    Q_INVOKABLE void selectNeighbourTab(int steps)
    {
        setSelectedTab(tabBarNeighbour(selectedTab_, steps));
    }

    bool isHovering() const { return isHovering_; }
    void setHovering(bool hovering);
    bool isDropTargeted() const { return isDropTargeted_; }
    void setDropTargeted(bool targeted);
    bool openViewWanted() const { return openViewWanted_; }

    const std::optional<ClosedActivity>& activity() const { return activity_; }
    void setActivity(std::optional<ClosedActivity> activity);
    QVariantMap activityMap() const;
    // Keeps activity equal to the center's current value from now on.
    void mirror(const ActivityCenter& center);

    // The theme switch animation's state while it runs, owned by the views; empty when none.
    QVariantMap themeWave() const { return themeWave_; }
    void setThemeWave(const QVariantMap& wave);

    const NotchGeometry& geometry() const { return geometry_; }
    void setGeometry(const NotchGeometry& geometry);

    bool openedByHover() const { return openedByHover_; }

    int closedWidth() const;
    int closedHeight() const { return geometry_.closedSize.height; }
    QRect closedRect() const;
    QRect openRect() const;
    // The drawn notch of the current status grown by hotZoneMargin left, right and below: the
    // region a pointer query can answer with.
    QRect hotZoneRect() const;

    QVariantList visibleTabList() const;
    QVariantMap selectedTabInfo() const;

    Q_INVOKABLE void open(bool byHover, bool focus);
    Q_INVOKABLE void close();
    Q_INVOKABLE void openSettings();

    // Pointer-driven opening and closing. A new schedule replaces the pending one of its kind.
    // The open waits hoverDelay and happens only if the pointer is then still in the hot zone.
    void setPointerQuery(const NotchPointerQuery* query) { pointer_ = query; }
    void scheduleOpen();
    void scheduleClose();
    void cancelScheduled();
    bool isOpenScheduled() const;
    bool isCloseScheduled() const;

    // Installed by the window controller: the status changed; focus asks for keyboard focus.
    std::function<void(NotchStatus, bool focus)> onStatusChange;
    // Installed by the application delegate.
    std::function<void()> onOpenSettings;

signals:
    void statusChanged();
    void selectedTabChanged();
    void isHoveringChanged();
    void isDropTargetedChanged();
    void activityChanged();
    void themeWaveChanged();
    void geometryChanged();
    void closedSizeChanged();
    void openViewWantedChanged();

private:
    bool pointerIsInHotZone() const;
    void wantOpenView();
    void planOpenViewRelease();

    const AppSettings& settings_;
    NotchStatus status_ = NotchStatus::closed;
    // A virtual notch until the window controller measures the screen.
    NotchGeometry geometry_{{}, 0, 0, 0, 0, false, {190, 24}};
    NotchTab selectedTab_ = NotchTab::home;
    bool isHovering_ = false;
    std::optional<ClosedActivity> activity_;
    bool isDropTargeted_ = false;
    QVariantMap themeWave_;
    bool openedByHover_ = false;
    const NotchPointerQuery* pointer_ = nullptr;
    BoundedSetting hoverDelay_{hoverDelayRange};
    std::unique_ptr<TaskSlot> openTask_;
    std::unique_ptr<TaskSlot> closeTask_;
    bool openViewWanted_ = false;
    std::unique_ptr<TaskSlot> openViewRelease_;
    QMetaObject::Connection mirrorConnection_;
};

} // namespace navro
