#pragma once

#include <QQuickImageProvider>
#include <filesystem>

namespace navro {

// The thumbnails of image entries for the views: "image://clipboard/<image file name>". Read on
// the views' loader threads, so it holds nothing but the folder.
class ClipboardImageProvider final : public QQuickImageProvider {
public:
    explicit ClipboardImageProvider(std::filesystem::path imagesFolder);

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    const std::filesystem::path imagesFolder_;
};

} // namespace navro
