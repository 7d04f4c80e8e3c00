#include "media/ArtworkImage.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

namespace navro {

QImage decodeArtwork(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    if (!buffer.open(QIODevice::ReadOnly))
        return {};
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (size.isValid() && (size.width() > artworkSide || size.height() > artworkSide))
        reader.setScaledSize(size.scaled(artworkSide, artworkSide, Qt::KeepAspectRatio));
    QImage image = reader.read();
    if (image.isNull())
        return {};
    // Formats that cannot scale while decoding are scaled afterwards.
    if (image.width() > artworkSide || image.height() > artworkSide)
        image =
            image.scaled(artworkSide, artworkSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

std::optional<QColor> artworkTint(const QImage& image)
{
    if (image.isNull() || image.width() <= 0 || image.height() <= 0)
        return std::nullopt;
    QImage srgb = image;
    if (srgb.colorSpace().isValid() && srgb.colorSpace() != QColorSpace::SRgb)
        srgb.convertToColorSpace(QColorSpace::SRgb);
    const int stepX = srgb.width() >= 12 ? srgb.width() / 12 : 1;
    const int stepY = srgb.height() >= 12 ? srgb.height() / 12 : 1;
    double red = 0, green = 0, blue = 0;
    int count = 0;
    for (int y = 0; y < srgb.height(); y += stepY) {
        for (int x = 0; x < srgb.width(); x += stepX) {
            const QColor pixel = srgb.pixelColor(x, y);
            red += pixel.redF();
            green += pixel.greenF();
            blue += pixel.blueF();
            ++count;
        }
    }
    if (count == 0)
        return std::nullopt;
    constexpr double towardWhite = 0.35;
    const auto lighten = [](double mean) { return mean + (1.0 - mean) * towardWhite; };
    return QColor::fromRgbF(float(lighten(red / count)), float(lighten(green / count)),
                            float(lighten(blue / count)), 1.0f);
}

} // namespace navro
