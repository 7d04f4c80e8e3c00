#pragma once

#include <QColor>
#include <QImage>
#include <QQuickImageProvider>

namespace navro {

// Paints the bundled line icons in any colour: "image://icon/<file>/<rrggbb or aarrggbb>". The
// icon set draws with the SVG "currentColor", which is replaced by the requested colour before
// rendering, so one file serves every theme.
class IconImageProvider final : public QQuickImageProvider {
public:
    IconImageProvider();

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace navro
