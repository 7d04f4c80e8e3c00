#include "platform/linux/X11Pasteboard.h"

#include "platform/linux/X11Windows.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QSysInfo>
#include <QUrl>
#include <X11/Xlib.h>
#include <algorithm>

namespace navro {
namespace {

const QString uriList = QStringLiteral("text/uri-list");
// How GNOME's file manager (and others following it) offer copied files.
const QString gnomeCopiedFiles = QStringLiteral("x-special/gnome-copied-files");

bool hasXFixes(Display* display)
{
    int opcode = 0;
    int event = 0;
    int error = 0;
    return XQueryExtension(display, "XFIXES", &opcode, &event, &error);
}

// A file URL of this machine: no host, or one naming this machine.
bool isOnThisMachine(const QUrl& url)
{
    if (!url.isLocalFile())
        return false;
    const QString host = url.host();
    return host.isEmpty() || host == QLatin1String("localhost") ||
           host == QSysInfo::machineHostName();
}

} // namespace

X11Pasteboard::X11Pasteboard() : clipboard_(QGuiApplication::clipboard())
{
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        Display* display = qtDisplay();
        announcesChanges_ = display && hasXFixes(display);
    }
    if (announcesChanges_)
        connect(clipboard_, &QClipboard::changed, this, [this](QClipboard::Mode mode) {
            if (mode != QClipboard::Clipboard)
                return;
            ++changeCount_;
            // Told on the next turn of the event loop rather than from inside Qt's handling of X
            // events: a program that copies again as soon as it is read would otherwise keep that
            // handling going without end, and nothing else (the bus, the notch) would get a turn.
            QMetaObject::invokeMethod(
                this,
                [this] {
                    if (changed_)
                        changed_();
                },
                Qt::QueuedConnection);
        });
}

std::uint64_t X11Pasteboard::changeCount()
{
    if (!announcesChanges_) {
        Display* display = qtDisplay();
        const Window owner =
            display ? XGetSelectionOwner(display, XInternAtom(display, "CLIPBOARD", False)) : 0;
        if (owner != lastOwner_) {
            lastOwner_ = owner;
            // This process's own writes were counted as they were made.
            if (!clipboard_->ownsClipboard())
                ++changeCount_;
        }
    }
    return changeCount_;
}

bool X11Pasteboard::watch(std::function<void()> changed)
{
    changed_ = std::move(changed);
    return announcesChanges_;
}

const QMimeData* X11Pasteboard::content() const
{
    return clipboard_->mimeData(QClipboard::Clipboard);
}

QStringList X11Pasteboard::types()
{
    const QMimeData* mime = content();
    return mime ? mime->formats() : QStringList();
}

QByteArray X11Pasteboard::data(const QString& type)
{
    const QMimeData* mime = content();
    return mime ? mime->data(type) : QByteArray();
}

QStringList X11Pasteboard::filePaths()
{
    const QMimeData* mime = content();
    if (!mime || !mime->hasFormat(uriList))
        return {};
    QStringList paths;
    for (const QUrl& url : mime->urls())
        if (isOnThisMachine(url) && !url.path().isEmpty())
            paths << url.path(QUrl::FullyDecoded);
    return paths;
}

std::optional<QString> X11Pasteboard::string()
{
    const QMimeData* mime = content();
    if (!mime)
        return std::nullopt;
    // hasText() would also answer for a list of URLs alone.
    const QStringList formats = mime->formats();
    const bool offersText = std::any_of(formats.begin(), formats.end(), [](const QString& type) {
        return type.startsWith(QLatin1String("text/plain"));
    });
    if (!offersText)
        return std::nullopt;
    return mime->text();
}

std::optional<QImage> X11Pasteboard::image()
{
    const QMimeData* mime = content();
    if (!mime)
        return std::nullopt;
    QStringList formats = mime->formats();
    // PNG first: lossless, and what most programs offer.
    std::stable_partition(formats.begin(), formats.end(),
                          [](const QString& type) { return type == QLatin1String("image/png"); });
    for (const QString& type : formats) {
        if (!type.startsWith(QLatin1String("image/")))
            continue;
        const QImage image = QImage::fromData(mime->data(type));
        if (!image.isNull())
            return image;
    }
    return std::nullopt;
}

void X11Pasteboard::write(QMimeData* content)
{
    clipboard_->setMimeData(content, QClipboard::Clipboard);
    // With change events, Qt reports this process's own write as one change at once.
    if (!announcesChanges_)
        ++changeCount_;
}

void X11Pasteboard::clear()
{
    // Owning the clipboard with nothing on offer is one change, whatever was there; a plain
    // clear() of an empty clipboard would be none.
    write(new QMimeData);
}

void X11Pasteboard::writeString(const QString& text)
{
    auto* mime = new QMimeData;
    mime->setText(text);
    write(mime);
}

void X11Pasteboard::writeImage(const QImage& image)
{
    auto* mime = new QMimeData;
    mime->setImageData(image);
    write(mime);
}

void X11Pasteboard::writeFiles(const QStringList& paths)
{
    QList<QUrl> urls;
    QByteArray copied("copy");
    for (const QString& path : paths) {
        urls << QUrl::fromLocalFile(path);
        copied += '\n' + urls.back().toEncoded();
    }
    auto* mime = new QMimeData;
    mime->setUrls(urls);
    mime->setData(gnomeCopiedFiles, copied);
    // Editors and terminals paste the paths.
    mime->setText(paths.join(u'\n'));
    write(mime);
}

std::unique_ptr<Pasteboard> makeSystemPasteboard()
{
    return std::make_unique<X11Pasteboard>();
}

} // namespace navro
