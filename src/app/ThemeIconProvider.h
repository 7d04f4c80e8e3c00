#pragma once

#include <QQuickImageProvider>

namespace navro {

// Icons of the desktop's icon theme by name, for files on the shelf and among the captures:
// "image://themeicon/<name>/<fallback name>". The first of the two that the theme has is drawn,
// else a generic document.
class ThemeIconProvider final : public QQuickImageProvider {
public:
    ThemeIconProvider();

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace navro
