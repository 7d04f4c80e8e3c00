#include "system/QtWatchedFolder.h"

#include <QDir>
#include <QFileInfo>

namespace navro {

QtWatchedFolder::QtWatchedFolder(QString path) : path_(std::move(path)) {}

bool QtWatchedFolder::start(std::function<void()> changed)
{
    if (!QFileInfo(path_).isDir() || !watcher_.addPath(path_))
        return false;
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &watcher_,
                     [changed](const QString&) { changed(); });
    QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, &watcher_,
                     [changed](const QString&) { changed(); });
    return true;
}

std::vector<std::string> QtWatchedFolder::names() const
{
    std::vector<std::string> names;
    const QStringList entries =
        QDir(path_).entryList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    names.reserve(std::size_t(entries.size()));
    for (const QString& entry : entries)
        names.push_back(entry.toStdString());
    return names;
}

std::optional<std::uint64_t> QtWatchedFolder::size(const std::string& name) const
{
    const QFileInfo info(QDir(path_).filePath(QString::fromStdString(name)));
    if (!info.isFile() || info.isSymLink())
        return std::nullopt;
    return std::uint64_t(info.size());
}

void QtWatchedFolder::watchFiles(const std::vector<std::string>& names)
{
    QStringList wanted;
    for (const auto& name : names)
        wanted << QDir(path_).filePath(QString::fromStdString(name));
    const QStringList watched = watcher_.files();
    for (const QString& file : watched)
        if (!wanted.contains(file))
            watcher_.removePath(file);
    for (const QString& file : wanted)
        if (!watched.contains(file))
            watcher_.addPath(file);
}

} // namespace navro
