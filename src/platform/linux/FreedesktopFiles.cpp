#include "platform/linux/FreedesktopFiles.h"

#include "app/Log.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QUrl>

namespace navro {

FreedesktopFiles::FreedesktopFiles(QDBusConnection bus, std::function<void(const QUrl&)> openUrl)
    : bus_(std::move(bus)), openUrl_(std::move(openUrl))
{
}

void FreedesktopFiles::open(const QString& path)
{
    openUrl_(QUrl::fromLocalFile(path));
}

void FreedesktopFiles::showInFolder(const QString& path)
{
    const QUrl folder = QUrl::fromLocalFile(QFileInfo(path).absolutePath());
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)} << QString();
    // Asked without waiting: a file manager that starts on demand may take a while to answer.
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, 10000), this);
    QPointer<FreedesktopFiles> self(this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [self, folder](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<> reply = *finished;
                if (!self || !reply.isError())
                    return;
                if (!self->loggedNoFileManager_) {
                    self->loggedNoFileManager_ = true;
                    logLine("no file manager answered ShowItems (" +
                            excerptForLog(reply.error().message().toStdString()) +
                            "); opening the folder instead");
                }
                self->openUrl_(folder);
            });
}

void FreedesktopFiles::pickFiles(const QString& title, std::function<void(QStringList)> chosen)
{
    auto* dialog = new QFileDialog(nullptr, title, QDir::homePath());
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::filesSelected, dialog,
            [chosen = std::move(chosen)](const QStringList& files) {
                if (!files.isEmpty())
                    chosen(files);
            });
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

std::unique_ptr<DesktopFiles> makeDesktopFiles()
{
    return std::make_unique<FreedesktopFiles>(QDBusConnection::sessionBus(), [](const QUrl& url) {
        if (!QDesktopServices::openUrl(url))
            logLine("could not open " + excerptForLog(url.toDisplayString().toStdString()));
    });
}

} // namespace navro
