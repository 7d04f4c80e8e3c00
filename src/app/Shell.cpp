#include "app/Shell.h"

#include <QDir>
#include <QPointer>
#include <QProcess>
#include <QStringDecoder>
#include <QTimer>
#include <memory>

namespace navro {
namespace {

// Answers "nothing" on a later turn of the event loop, and only while the caller exists.
void failLater(QObject* context, Shell::BytesCallback callback)
{
    QTimer::singleShot(0, context, [callback = std::move(callback)] { callback(std::nullopt); });
}

} // namespace

void Shell::run(const QString& path, const QStringList& arguments, QObject* context,
                BytesCallback callback)
{
    if (!context || !callback) {
        return;
    }
    if (path.isEmpty() || !QDir::isAbsolutePath(path)) {
        failLater(context, std::move(callback));
        return;
    }

    // The process is not a child of the context: a caller that goes away must not kill a program
    // that may be doing real work for the user; it only loses the answer.
    auto* process = new QProcess;
    process->setProgram(path);
    process->setArguments(arguments);
    process->setStandardErrorFile(QProcess::nullDevice());
    process->setInputChannelMode(QProcess::ForwardedInputChannel);

    struct Pending {
        QPointer<QObject> context;
        BytesCallback callback;
        bool answered = false;
    };
    auto pending = std::make_shared<Pending>(Pending{context, std::move(callback)});
    auto answer = [pending, process](bool succeeded) {
        if (pending->answered) {
            return;
        }
        pending->answered = true;
        process->deleteLater();
        if (!pending->context) {
            return;
        }
        if (succeeded) {
            pending->callback(process->readAllStandardOutput());
        } else {
            pending->callback(std::nullopt);
        }
    };

    QObject::connect(process, &QProcess::finished, process,
                     [answer](int exitCode, QProcess::ExitStatus status) {
                         answer(status == QProcess::NormalExit && exitCode == 0);
                     });
    // finished() is not emitted for a program that never started; every other error is followed
    // by finished(), which gives the answer.
    QObject::connect(process, &QProcess::errorOccurred, process,
                     [answer](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart) {
                             answer(false);
                         }
                     });
    process->start(QIODevice::ReadOnly);
}

void Shell::text(const QString& path, const QStringList& arguments, QObject* context,
                 TextCallback callback)
{
    if (!callback) {
        return;
    }
    run(path, arguments, context,
        [callback = std::move(callback)](std::optional<QByteArray> bytes) {
            callback(bytes ? decodeUtf8(*bytes) : std::nullopt);
        });
}

std::optional<QString> Shell::decodeUtf8(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = decoder.decode(bytes);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    return decoded;
}

} // namespace navro
