#pragma once

#include "data/Pasteboard.h"

#include <QObject>

class QClipboard;
class QMimeData;

namespace navro {

// The desktop's CLIPBOARD selection through Qt. On X11 every change of the selection's owner
// that the X server reports (XFixes selection events, which Qt listens to) counts as one change.
// A server without XFixes cannot tell of changes; the owner is then compared whenever the counter
// is read, which misses a program that copies twice from the same window.
class X11Pasteboard final : public QObject, public Pasteboard {
    Q_OBJECT

public:
    X11Pasteboard();

    std::uint64_t changeCount() override;
    bool watch(std::function<void()> changed) override;

    QStringList types() override;
    QByteArray data(const QString& type) override;
    QStringList filePaths() override;
    std::optional<QString> string() override;
    std::optional<QImage> image() override;

    void clear() override;
    void writeString(const QString& text) override;
    void writeImage(const QImage& image) override;
    void writeFiles(const QStringList& paths) override;

private:
    const QMimeData* content() const;
    void write(QMimeData* content);

    QClipboard* clipboard_;
    bool announcesChanges_ = true;
    std::uint64_t changeCount_ = 0;
    unsigned long lastOwner_ = 0;
    std::function<void()> changed_;
};

} // namespace navro
