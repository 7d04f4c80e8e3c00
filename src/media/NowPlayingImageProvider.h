#pragma once

#include "media/NowPlayingImages.h"

#include <QQuickImageProvider>
#include <memory>

namespace navro {

// "image://nowplaying/artwork/<n>" and "image://nowplaying/appIcon/<n>": the now-playing
// service's current pictures (the number only makes every new picture a new address).
class NowPlayingImageProvider final : public QQuickImageProvider {
public:
    explicit NowPlayingImageProvider(std::shared_ptr<const NowPlayingImages> images);

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    std::shared_ptr<const NowPlayingImages> images_;
};

} // namespace navro
