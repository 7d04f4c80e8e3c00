#include "media/NowPlayingImageProvider.h"

namespace navro {

NowPlayingImageProvider::NowPlayingImageProvider(std::shared_ptr<const NowPlayingImages> images)
    : QQuickImageProvider(QQuickImageProvider::Image), images_(std::move(images))
{
}

QImage NowPlayingImageProvider::requestImage(const QString& id, QSize* size,
                                             const QSize& requestedSize)
{
    const QString kind = id.section(QLatin1Char('/'), 0, 0);
    QImage image;
    if (kind == QLatin1String("artwork"))
        image = images_->get(NowPlayingImages::Kind::artwork);
    else if (kind == QLatin1String("appIcon"))
        image = images_->get(NowPlayingImages::Kind::appIcon);
    if (!image.isNull() && requestedSize.isValid() && !requestedSize.isEmpty())
        image = image.scaled(requestedSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (size)
        *size = image.size();
    return image;
}

} // namespace navro
