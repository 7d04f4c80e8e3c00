#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace navro {

// The system clipboard as the clipboard store sees it: a change counter, the types on offer and
// what can be read from it and written to it. The platform implements it; tests use a fake.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    // Advances by one with every change of the clipboard's content, this process's own writes
    // included: each clear or write below is exactly one change.
    virtual std::uint64_t changeCount() = 0;
    // From now on calls `changed` once for every change, after the counter has advanced (maybe on
    // a later turn of the event loop, when further changes have come); an empty function stops
    // it. False when the platform cannot tell of changes: the counter must then be read from time
    // to time.
    virtual bool watch(std::function<void()> changed) = 0;

    // The MIME types the content is offered as.
    virtual QStringList types() = 0;
    virtual QByteArray data(const QString& type) = 0;
    // The local files on offer, as paths, in their order (none when only other URLs are).
    virtual QStringList filePaths() = 0;
    virtual std::optional<QString> string() = 0;
    // An image in any image type on offer that can be decoded.
    virtual std::optional<QImage> image() = 0;

    virtual void clear() = 0;
    virtual void writeString(const QString& text) = 0;
    virtual void writeImage(const QImage& image) = 0;
    // As file managers offer copied files, so that they paste them.
    virtual void writeFiles(const QStringList& paths) = 0;
};

// The clipboard of the desktop Navro runs on. Defined by the platform library.
std::unique_ptr<Pasteboard> makeSystemPasteboard();

} // namespace navro
