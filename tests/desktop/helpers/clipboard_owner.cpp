// A clipboard owner for the desktop tests, where xclip (one target at a time) is not enough:
//   clipboard_owner TYPE=VALUE ...   owns the CLIPBOARD selection offering every TYPE at once
//                                    with its VALUE ("@FILE": the file's bytes); prints "owned"
//                                    and exits 0 once another program takes the clipboard
//   clipboard_owner storm COUNT PREFIX [PATIENCE_MS]
//                                    copies the texts "PREFIX 0" to "PREFIX COUNT-1", each as
//                                    soon as the previous one has been read (or after PATIENCE_MS,
//                                    1000 by default, with nobody reading); prints "read N of
//                                    COUNT" at the end
//   clipboard_owner serve [PATIENCE_MS]
//                                    for each line on standard input, "text TEXT" (a backslash
//                                    and n for a line break) or "image FILE" (a PNG), owns the
//                                    clipboard with that content and answers "read" once someone
//                                    has read it, or "unread" after PATIENCE_MS (1000 by
//                                    default); ends with its input
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <functional>
#include <unistd.h>

namespace {

// Content that says when someone has read its text or picture.
class WatchedText final : public QMimeData {
public:
    std::function<void()> onRead;

protected:
    QVariant retrieveData(const QString& type, QMetaType wanted) const override
    {
        if ((type.startsWith(QLatin1String("text/plain")) || type == QLatin1String("image/png")) &&
            onRead)
            QTimer::singleShot(0, onRead);
        return QMimeData::retrieveData(type, wanted);
    }
};

int own(QGuiApplication& application, const QStringList& offers)
{
    auto* content = new QMimeData;
    for (const QString& offer : offers) {
        const qsizetype equals = offer.indexOf(u'=');
        if (equals <= 0) {
            std::fprintf(stderr, "clipboard_owner: expected TYPE=VALUE, got %s\n",
                         qPrintable(offer));
            return 2;
        }
        QByteArray value = offer.mid(equals + 1).toUtf8();
        if (value.startsWith('@')) {
            QFile file(QString::fromUtf8(value.mid(1)));
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "clipboard_owner: cannot read %s\n", value.constData() + 1);
                return 2;
            }
            value = file.readAll();
        }
        content->setData(offer.left(equals), value);
    }
    QClipboard* clipboard = QGuiApplication::clipboard();
    QObject::connect(clipboard, &QClipboard::changed, &application, [&](QClipboard::Mode mode) {
        if (mode == QClipboard::Clipboard && !clipboard->ownsClipboard())
            application.quit();
    });
    clipboard->setMimeData(content);
    std::puts("owned");
    std::fflush(stdout);
    return application.exec();
}

int storm(QGuiApplication& application, int count, const QString& prefix, int patience)
{
    QClipboard* clipboard = QGuiApplication::clipboard();
    int index = 0;
    int read = 0;
    QTimer giveUp;
    giveUp.setSingleShot(true);
    giveUp.setInterval(patience);
    std::function<void()> next = [&] {
        if (index == count) {
            application.quit();
            return;
        }
        auto* content = new WatchedText;
        content->setText(prefix + QStringLiteral(" %1").arg(index));
        const int shown = index;
        content->onRead = [&, shown] {
            // Read once or many times, it moves on once.
            if (shown != index)
                return;
            ++read;
            ++index;
            next();
        };
        clipboard->setMimeData(content);
        giveUp.start();
    };
    QObject::connect(&giveUp, &QTimer::timeout, &application, [&] {
        ++index;
        next();
    });
    QTimer::singleShot(0, next);
    application.exec();
    std::printf("read %d of %d\n", read, count);
    return 0;
}

int serve(QGuiApplication& application, int patience)
{
    QClipboard* clipboard = QGuiApplication::clipboard();
    QTimer giveUp;
    giveUp.setSingleShot(true);
    giveUp.setInterval(patience);
    // Which content an answer is owed for; 0 while none is.
    int waiting = 0;
    int serial = 0;
    const auto answer = [&](const char* word) {
        waiting = 0;
        giveUp.stop();
        std::puts(word);
        std::fflush(stdout);
    };
    QObject::connect(&giveUp, &QTimer::timeout, &application, [&] { answer("unread"); });
    QByteArray pending;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        char chunk[4096];
        const ssize_t got = ::read(STDIN_FILENO, chunk, sizeof chunk);
        if (got <= 0) {
            application.quit();
            return;
        }
        pending.append(chunk, got);
        qsizetype end;
        while ((end = pending.indexOf('\n')) >= 0) {
            const QByteArray line = pending.left(end);
            pending.remove(0, end + 1);
            auto* content = new WatchedText;
            if (line.startsWith("image ")) {
                QFile file(QString::fromUtf8(line.mid(6)));
                if (!file.open(QIODevice::ReadOnly)) {
                    std::fprintf(stderr, "clipboard_owner: cannot read %s\n", line.constData() + 6);
                    delete content;
                    application.exit(2);
                    return;
                }
                content->setData(QStringLiteral("image/png"), file.readAll());
            } else {
                // One line of input per copy: a line break of the text comes escaped.
                QByteArray text = line.startsWith("text ") ? line.mid(5) : line;
                content->setText(QString::fromUtf8(text.replace("\\n", "\n")));
            }
            const int shown = ++serial;
            waiting = shown;
            content->onRead = [&, shown] {
                if (waiting == shown)
                    answer("read");
            };
            clipboard->setMimeData(content);
            giveUp.start();
        }
    });
    return application.exec();
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = application.arguments().mid(1);
    if (arguments.size() >= 3 && arguments[0] == QLatin1String("storm"))
        return storm(application, arguments[1].toInt(), arguments[2],
                     arguments.size() > 3 ? arguments[3].toInt() : 1000);
    if (!arguments.isEmpty() && arguments[0] == QLatin1String("serve"))
        return serve(application, arguments.size() > 1 ? arguments[1].toInt() : 1000);
    if (!arguments.isEmpty())
        return own(application, arguments);
    std::fprintf(stderr, "usage: clipboard_owner TYPE=VALUE... | storm COUNT PREFIX "
                         "[PATIENCE_MS] | serve [PATIENCE_MS]\n");
    return 2;
}
