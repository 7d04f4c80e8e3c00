#include "app/ThemeIconProvider.h"

#include <QDir>
#include <QIcon>

namespace navro {

ThemeIconProvider::ThemeIconProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap)
{
    // Without a desktop's platform theme Qt knows only hicolor, which has next to no file-type
    // icons; Adwaita, where installed, is the theme most desktops fall back to.
    if (QIcon::fallbackThemeName().isEmpty() || QIcon::fallbackThemeName() == u"hicolor")
        QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
}

QPixmap ThemeIconProvider::requestPixmap(const QString& id, QSize* size, const QSize& requestedSize)
{
    const QStringList names = id.split(u'/');
    QIcon icon;
    for (const QString& name : names) {
        icon = QIcon::fromTheme(name);
        if (!icon.isNull())
            break;
    }
    if (icon.isNull())
        icon = QIcon::fromTheme(QStringLiteral("text-x-generic"));
    const QSize wanted = requestedSize.isValid() ? requestedSize : QSize(48, 48);
    const QPixmap pixmap = icon.pixmap(wanted);
    if (size)
        *size = pixmap.size();
    return pixmap;
}

} // namespace navro
