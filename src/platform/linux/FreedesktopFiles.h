#pragma once

#include "data/DesktopFiles.h"

#include <QDBusConnection>
#include <QObject>
#include <functional>

namespace navro {

// Files on a freedesktop desktop: the default application through the desktop's URL handler,
// "Show in folder" through the file manager's org.freedesktop.FileManager1, the file picker
// through Qt's file dialog.
class FreedesktopFiles final : public QObject, public DesktopFiles {
    Q_OBJECT

public:
    // `openUrl` opens a URL with its default application (tests pass their own).
    FreedesktopFiles(QDBusConnection bus, std::function<void(const QUrl&)> openUrl);

    void open(const QString& path) override;
    void showInFolder(const QString& path) override;
    void pickFiles(const QString& title, std::function<void(QStringList)> chosen) override;

private:
    QDBusConnection bus_;
    std::function<void(const QUrl&)> openUrl_;
    bool loggedNoFileManager_ = false;
};

} // namespace navro
