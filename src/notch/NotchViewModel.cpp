#include "notch/NotchViewModel.h"

#include "app/AppSettings.h"
#include "app/Log.h"
#include "app/QtText.h"
#include "notch/ActivityCenter.h"
#include "notch/ActivityVariant.h"

#include <algorithm>
#include <cmath>

namespace navro {
namespace {

// How far the closed notch grows on each side to make room for an activity's leading and
// trailing content: texts need more than a symbol or the music bars.
int activitySideWidth(ClosedActivity::Kind kind)
{
    switch (kind) {
    case ClosedActivity::Kind::toast:
        return 110;
    case ClosedActivity::Kind::meeting:
        return 100;
    case ClosedActivity::Kind::prayerSoon:
    case ClosedActivity::Kind::prayerNow:
        return 70;
    case ClosedActivity::Kind::timer:
        return 60;
    case ClosedActivity::Kind::recording:
    case ClosedActivity::Kind::transfer:
    case ClosedActivity::Kind::music:
        return 40;
    }
    return 0;
}

// A drag with files over the closed notch widens it, so that the target is easy to hit.
constexpr int dropSideWidth = 50;

QVariantMap tabInfo(NotchTab tab)
{
    return {{QStringLiteral("id"), toQString(rawValue(tab))},
            {QStringLiteral("titleEnglish"), toQString(title(tab).english)},
            {QStringLiteral("titleArabic"), toQString(title(tab).arabic)},
            {QStringLiteral("symbol"), toQString(symbol(tab))}};
}

} // namespace

NotchViewModel::NotchViewModel(Clock& clock, const AppSettings& settings, QObject* parent)
    : QObject(parent), settings_(settings), openTask_(clock.makeSlot()),
      closeTask_(clock.makeSlot()), openViewRelease_(clock.makeSlot())
{
}

NotchViewModel::~NotchViewModel() = default;

QString NotchViewModel::statusRaw() const
{
    return isOpen() ? QStringLiteral("open") : QStringLiteral("closed");
}

void NotchViewModel::setSelectedTab(NotchTab tab)
{
    if (selectedTab_ == tab)
        return;
    selectedTab_ = tab;
    emit selectedTabChanged();
}

QString NotchViewModel::selectedTabRaw() const
{
    return toQString(rawValue(selectedTab_));
}

void NotchViewModel::setSelectedTabRaw(const QString& raw)
{
    if (auto tab = notchTabFromRaw(raw.toStdString()))
        setSelectedTab(*tab);
    else
        logLine("no notch tab is named \"" + raw.toStdString() + "\"; keeping the current tab");
}

void NotchViewModel::setHovering(bool hovering)
{
    if (isHovering_ == hovering)
        return;
    isHovering_ = hovering;
    emit isHoveringChanged();
    // The pointer resting on the notch starts building the open view while the hover delay runs.
    if (hovering)
        wantOpenView();
    else
        planOpenViewRelease();
}

void NotchViewModel::setDropTargeted(bool targeted)
{
    if (isDropTargeted_ == targeted)
        return;
    const QRect closedBefore = closedRect();
    isDropTargeted_ = targeted;
    emit isDropTargetedChanged();
    if (closedRect() != closedBefore)
        emit closedSizeChanged();
}

void NotchViewModel::setActivity(std::optional<ClosedActivity> activity)
{
    if (activity_ == activity)
        return;
    const QRect closedBefore = closedRect();
    activity_ = std::move(activity);
    emit activityChanged();
    if (closedRect() != closedBefore)
        emit closedSizeChanged();
}

QVariantMap NotchViewModel::activityMap() const
{
    return toVariantMap(activity_);
}

void NotchViewModel::mirror(const ActivityCenter& center)
{
    disconnect(mirrorConnection_);
    mirrorConnection_ = connect(&center, &ActivityCenter::currentChanged, this,
                                [this, &center] { setActivity(center.current()); });
    setActivity(center.current());
}

void NotchViewModel::setThemeWave(const QVariantMap& wave)
{
    if (themeWave_ == wave)
        return;
    themeWave_ = wave;
    emit themeWaveChanged();
}

void NotchViewModel::setGeometry(const NotchGeometry& geometry)
{
    if (geometry_ == geometry)
        return;
    const QRect closedBefore = closedRect();
    geometry_ = geometry;
    emit geometryChanged();
    if (closedRect() != closedBefore)
        emit closedSizeChanged();
}

int NotchViewModel::closedWidth() const
{
    int side = activity_ ? activitySideWidth(activity_->kind()) : 0;
    if (isDropTargeted_)
        side = std::max(side, dropSideWidth);
    return geometry_.closedSize.width + 2 * side;
}

QRect NotchViewModel::closedRect() const
{
    const int width = closedWidth();
    return {geometry_.screenX + (geometry_.screenWidth - width) / 2, geometry_.screenY, width,
            closedHeight()};
}

QRect NotchViewModel::openRect() const
{
    const NotchSize size = geometry_.openSize;
    return {geometry_.screenX + (geometry_.screenWidth - size.width) / 2, geometry_.screenY,
            size.width, size.height};
}

QRect NotchViewModel::hotZoneRect() const
{
    const QRect drawn = isOpen() ? openRect() : closedRect();
    return drawn.adjusted(-hotZoneMargin, 0, hotZoneMargin, hotZoneMargin);
}

QVariantList NotchViewModel::visibleTabList() const
{
    QVariantList list;
    for (NotchTab tab : visibleTabs())
        list.append(tabInfo(tab));
    return list;
}

QVariantMap NotchViewModel::selectedTabInfo() const
{
    return tabInfo(selectedTab_);
}

void NotchViewModel::open(bool byHover, bool focus)
{
    if (isOpen())
        return;
    wantOpenView();
    openedByHover_ = byHover;
    // The flag cleared here is isHovering, not isDropTargeted. isHovering is the closed notch's
    // "pointer resting on it" feedback; once open it has served its purpose, and the window
    // switches how it receives pointer events at this moment, so the leave event that would
    // clear it may never come and the notch would close again still looking hovered. The
    // controller sets it again when the pointer next enters the notch. isDropTargeted must survive:
    // a file dragged onto the notch opens it so that the shelf can take the drop, and the highlight
    // has to stay while that drag is still in flight.
    setHovering(false);
    if (activity_) {
        switch (activity_->kind()) {
        case ClosedActivity::Kind::meeting:
            setSelectedTab(NotchTab::calendar);
            break;
        case ClosedActivity::Kind::recording:
            setSelectedTab(NotchTab::capture);
            break;
        case ClosedActivity::Kind::timer:
            setSelectedTab(NotchTab::timer);
            break;
        default:
            break;
        }
    }
    cancelScheduled();
    status_ = NotchStatus::open;
    emit statusChanged();
    if (onStatusChange)
        onStatusChange(NotchStatus::open, focus);
}

void NotchViewModel::close()
{
    if (!isOpen())
        return;
    cancelScheduled();
    status_ = NotchStatus::closed;
    emit statusChanged();
    if (onStatusChange)
        onStatusChange(NotchStatus::closed, false);
    planOpenViewRelease();
}

void NotchViewModel::wantOpenView()
{
    openViewRelease_->cancel();
    if (openViewWanted_)
        return;
    openViewWanted_ = true;
    emit openViewWantedChanged();
}

void NotchViewModel::planOpenViewRelease()
{
    if (!openViewWanted_ || isOpen() || isHovering_)
        return;
    openViewRelease_->schedule(openViewRest, [this] {
        openViewWanted_ = false;
        emit openViewWantedChanged();
    });
}

void NotchViewModel::openSettings()
{
    if (onOpenSettings)
        onOpenSettings();
    else
        logLine("the settings were asked for before anything could show them");
}

void NotchViewModel::scheduleOpen()
{
    const double delay = hoverDelay_.use(settings_.hoverDelay());
    openTask_->schedule(seconds(delay), [this] {
        if (pointerIsInHotZone())
            open(true, false);
    });
}

void NotchViewModel::scheduleClose()
{
    closeTask_->schedule(closeDelay, [this] { close(); });
}

void NotchViewModel::cancelScheduled()
{
    openTask_->cancel();
    closeTask_->cancel();
}

bool NotchViewModel::isOpenScheduled() const
{
    return openTask_->isPending();
}

bool NotchViewModel::isCloseScheduled() const
{
    return closeTask_->isPending();
}

bool NotchViewModel::pointerIsInHotZone() const
{
    if (!pointer_) {
        logLine("a hover open fell due with no pointer to check; staying closed");
        return false;
    }
    const auto position = pointer_->pointerPosition();
    return position && pointer_->hotZone().contains(*position);
}

} // namespace navro
