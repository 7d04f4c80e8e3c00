#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace navro {

// What the shelf and the captures need of the desktop's handling of files: opening one with its
// default application, showing it in the file manager, and asking the user for files. The
// platform implements it; tests use a fake.
class DesktopFiles {
public:
    virtual ~DesktopFiles() = default;
    // Opens a file or folder as a double click in the file manager would.
    virtual void open(const QString& path) = 0;
    // Shows the file manager with `path` selected; where no file manager answers, opens the
    // folder that holds it.
    virtual void showInFolder(const QString& path) = 0;
    // Asks the user for files to add; `chosen` is called with their paths, later, and only when
    // the user chose some.
    virtual void pickFiles(const QString& title, std::function<void(QStringList)> chosen) = 0;
};

// The desktop Navro runs on. Defined by the platform library.
std::unique_ptr<DesktopFiles> makeDesktopFiles();

} // namespace navro
