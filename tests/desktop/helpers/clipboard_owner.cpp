// A clipboard owner for the desktop tests, where xclip (one target at a time) is not enough:
//   clipboard_owner TYPE=VALUE ...   owns the CLIPBOARD selection offering every TYPE at once
//                                    with its VALUE ("@FILE": the file's bytes); prints "owned"
//                                    and exits 0 once another program takes the clipboard
//   clipboard_owner storm COUNT PREFIX [PATIENCE_MS]
//                                    copies the texts "PREFIX 0" to "PREFIX COUNT-1", each as
//                                    soon as the previous one has been read (or after PATIENCE_MS,
//                                    1000 by default, with nobody reading); prints "read N of
//                                    COUNT" at the end
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QTimer>
#include <cstdio>
#include <functional>

namespace {

// Content that says when someone has read its text.
class WatchedText final : public QMimeData {
public:
    std::function<void()> onRead;

protected:
    QVariant retrieveData(const QString& type, QMetaType wanted) const override
    {
        if (type.startsWith(QLatin1String("text/plain")) && onRead)
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

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = application.arguments().mid(1);
    if (arguments.size() >= 3 && arguments[0] == QLatin1String("storm"))
        return storm(application, arguments[1].toInt(), arguments[2],
                     arguments.size() > 3 ? arguments[3].toInt() : 1000);
    if (!arguments.isEmpty())
        return own(application, arguments);
    std::fprintf(stderr,
                 "usage: clipboard_owner TYPE=VALUE... | storm COUNT PREFIX [PATIENCE_MS]\n");
    return 2;
}
