#include "views/EqualizerBarsItem.h"

#include "media/AudioBars.h"
#include "media/EqualizerLevel.h"

#include <QPainter>
#include <chrono>

namespace navro {
namespace {

constexpr std::chrono::milliseconds frameInterval(33);

double wallClockSeconds()
{
    using namespace std::chrono;
    return duration<double>(system_clock::now().time_since_epoch()).count();
}

} // namespace

EqualizerBarsItem::EqualizerBarsItem(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    motion_.setInterval(frameInterval);
    connect(&motion_, &QTimer::timeout, this, &EqualizerBarsItem::nextFrame);
    pending_.setSingleShot(true);
    connect(&pending_, &QTimer::timeout, this, &EqualizerBarsItem::nextFrame);
    stale_.setSingleShot(true);
    // A little after the analyser counts its levels as stale.
    stale_.setInterval(
        std::chrono::milliseconds(int(BandAnalyzer::staleAfter * 1000) + frameInterval.count()));
    connect(&stale_, &QTimer::timeout, this, &EqualizerBarsItem::nextFrame);
    updateImplicitWidth();
}

QObject* EqualizerBarsItem::source() const
{
    return source_.data();
}

void EqualizerBarsItem::setSource(QObject* source)
{
    auto* bars = qobject_cast<AudioBars*>(source);
    if (bars == source_)
        return;
    if (source_)
        disconnect(source_, nullptr, this, nullptr);
    source_ = bars;
    if (source_) {
        connect(source_, &AudioBars::levelsChanged, this, [this] {
            stale_.start();
            frameWanted();
        });
        connect(source_, &AudioBars::listeningChanged, this, &EqualizerBarsItem::frameWanted);
    }
    emit sourceChanged();
    frameWanted();
}

void EqualizerBarsItem::setPlaying(bool playing)
{
    if (playing == playing_)
        return;
    playing_ = playing;
    emit isPlayingChanged();
    updateFrames();
    nextFrame();
}

void EqualizerBarsItem::setColor(const QColor& color)
{
    if (color == color_)
        return;
    color_ = color;
    emit colorChanged();
    update();
}

void EqualizerBarsItem::setCount(int count)
{
    count = std::max(0, count);
    if (count == count_)
        return;
    count_ = count;
    emit countChanged();
    updateImplicitWidth();
    nextFrame();
}

void EqualizerBarsItem::setBarWidth(int width)
{
    if (width == barWidth_)
        return;
    barWidth_ = width;
    emit barWidthChanged();
    updateImplicitWidth();
    nextFrame();
}

void EqualizerBarsItem::setSpacing(int spacing)
{
    if (spacing == spacing_)
        return;
    spacing_ = spacing;
    emit spacingChanged();
    updateImplicitWidth();
    update();
}

void EqualizerBarsItem::updateImplicitWidth()
{
    setImplicitWidth(count_ > 0 ? count_ * barWidth_ + (count_ - 1) * spacing_ : 0);
}

void EqualizerBarsItem::itemChange(ItemChange change, const ItemChangeData& value)
{
    QQuickPaintedItem::itemChange(change, value);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) {
        updateFrames();
        frameWanted();
    }
}

void EqualizerBarsItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.height() != oldGeometry.height())
        nextFrame();
}

// The clocks run only while playing and on screen: still bars need none.
void EqualizerBarsItem::updateFrames()
{
    const bool active = playing_ && isVisible() && window();
    if (active && !live_ && !motion_.isActive())
        motion_.start();
    else if (!active || live_)
        motion_.stop();
    if (!active) {
        pending_.stop();
        stale_.stop();
    }
}

void EqualizerBarsItem::frameWanted()
{
    if (!playing_ || !isVisible() || pending_.isActive())
        return;
    const auto since = lastFrame_.isValid() ? lastFrame_.elapsed() : frameInterval.count();
    if (since >= frameInterval.count())
        nextFrame();
    else
        pending_.start(int(frameInterval.count() - since));
}

void EqualizerBarsItem::nextFrame()
{
    lastFrame_.start();
    const std::vector<float> live =
        playing_ && source_ ? source_->liveLevels(count_) : std::vector<float>();
    if (live_ != !live.empty()) {
        live_ = !live.empty();
        updateFrames();
    }
    const double seconds = wallClockSeconds();
    std::vector<float> levels(static_cast<std::size_t>(count_));
    for (int i = 0; i < count_; ++i)
        levels[std::size_t(i)] = equalizerLevel(i, playing_, live, seconds);
    std::vector<int> heights = barPixelHeights(levels, height(), barWidth_);
    if (heights == heights_)
        return;
    heights_ = std::move(heights);
    update();
}

void EqualizerBarsItem::paint(QPainter* painter)
{
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(color_);
    const qreal radius = barWidth_ / 2.0;
    for (std::size_t i = 0; i < heights_.size(); ++i) {
        const qreal x = qreal(i) * (barWidth_ + spacing_);
        const qreal barHeight = heights_[i];
        painter->drawRoundedRect(QRectF(x, (height() - barHeight) / 2, barWidth_, barHeight),
                                 radius, radius);
    }
}

} // namespace navro
