#pragma once

#include "system/TransferSources.h"

#include <QFileSystemWatcher>
#include <QString>

namespace navro {

// A folder watched through the kernel's file notifications (inotify on Linux) by Qt.
class QtWatchedFolder final : public WatchedFolder {
public:
    explicit QtWatchedFolder(QString path);
    bool start(std::function<void()> changed) override;
    std::vector<std::string> names() const override;
    std::optional<std::uint64_t> size(const std::string& name) const override;
    void watchFiles(const std::vector<std::string>& names) override;
    std::string path() const override { return path_.toStdString(); }

private:
    QString path_;
    QFileSystemWatcher watcher_;
};

} // namespace navro
