#include "data/ClipboardImageProvider.h"

#include "app/FileAccess.h"
#include "data/ClipboardStore.h"

namespace navro {

ClipboardImageProvider::ClipboardImageProvider(std::filesystem::path imagesFolder)
    : QQuickImageProvider(QQuickImageProvider::Image), imagesFolder_(std::move(imagesFolder))
{
}

QImage ClipboardImageProvider::requestImage(const QString& id, QSize* size,
                                            const QSize& requestedSize)
{
    QImage image;
    // Only files of the images folder itself.
    if (!id.isEmpty() && !id.contains(u'/') && id != QLatin1String("..")) {
        const FileRead read =
            readRegularFile(imagesFolder_ / id.toStdString(), ClipboardStore::maxImageFileBytes);
        if (read.ok())
            image.loadFromData(reinterpret_cast<const uchar*>(read.bytes.data()),
                               int(read.bytes.size()));
    }
    if (!image.isNull() && requestedSize.isValid())
        image = image.scaled(requestedSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (size)
        *size = image.size();
    return image;
}

} // namespace navro
