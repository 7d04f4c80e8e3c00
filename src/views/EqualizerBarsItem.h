#pragma once

#include <QColor>
#include <QElapsedTimer>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QTimer>
#include <qqmlintegration.h>
#include <vector>

namespace navro {

class AudioBars;

// The level bars, drawn in C++. While playing and on screen, a frame comes when the live levels
// moved visibly (at most every 1/30 s), or every 1/30 s for the bars' own motion while there are
// no live levels; it repaints only when a bar's height in pixels changed. A steady sound and the
// still bars of a pause cost neither wake-ups nor drawing.
class EqualizerBarsItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    // The audio bars service (its live levels); none draws the bars' own motion.
    Q_PROPERTY(QObject* source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying WRITE setPlaying NOTIFY isPlayingChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(int count READ count WRITE setCount NOTIFY countChanged)
    Q_PROPERTY(int barWidth READ barWidth WRITE setBarWidth NOTIFY barWidthChanged)
    Q_PROPERTY(int spacing READ spacing WRITE setSpacing NOTIFY spacingChanged)

public:
    explicit EqualizerBarsItem(QQuickItem* parent = nullptr);

    QObject* source() const;
    void setSource(QObject* source);
    bool isPlaying() const { return playing_; }
    void setPlaying(bool playing);
    QColor color() const { return color_; }
    void setColor(const QColor& color);
    int count() const { return count_; }
    void setCount(int count);
    int barWidth() const { return barWidth_; }
    void setBarWidth(int width);
    int spacing() const { return spacing_; }
    void setSpacing(int spacing);

    void paint(QPainter* painter) override;

signals:
    void sourceChanged();
    void isPlayingChanged();
    void colorChanged();
    void countChanged();
    void barWidthChanged();
    void spacingChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    void frameWanted();
    void nextFrame();
    void updateFrames();
    void updateImplicitWidth();

    QPointer<AudioBars> source_;
    bool playing_ = false;
    QColor color_ = Qt::white;
    int count_ = 4;
    int barWidth_ = 3;
    int spacing_ = 2;
    QTimer motion_;  // the bars' own motion, while there are no live levels
    QTimer pending_; // a frame asked for sooner than 1/30 s after the last
    QTimer stale_;   // live levels that stop coming fall to rest
    QElapsedTimer lastFrame_;
    bool live_ = false;
    std::vector<int> heights_; // what was last drawn, in pixels
};

} // namespace navro
