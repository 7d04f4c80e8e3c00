#include "app/IconImageProvider.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace navro {
namespace {

constexpr int defaultSize = 24;

QImage render(const QString& file, const QColor& color, const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QFile source(QStringLiteral(":/views/icons/%1.svg").arg(file));
    if (!source.open(QIODevice::ReadOnly))
        return image;
    QByteArray svg = source.readAll();
    svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(svg);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(color.alphaF());
    renderer.render(&painter);
    return image;
}

} // namespace

IconImageProvider::IconImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage IconImageProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    const qsizetype slash = id.lastIndexOf(u'/');
    const QString file = slash < 0 ? id : id.left(slash);
    const QColor color = slash < 0 ? QColor(Qt::white) : QColor(u'#' + id.mid(slash + 1));
    const QSize wanted(requestedSize.width() > 0 ? requestedSize.width() : defaultSize,
                       requestedSize.height() > 0 ? requestedSize.height() : defaultSize);
    QImage image = render(file, color.isValid() ? color : QColor(Qt::white), wanted);
    if (size)
        *size = image.size();
    return image;
}

} // namespace navro
