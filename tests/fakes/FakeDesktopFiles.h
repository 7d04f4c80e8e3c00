#pragma once

#include "data/DesktopFiles.h"

#include <QStringList>
#include <functional>

namespace navro {

// Records what was asked of the desktop; the test answers a file picker itself.
class FakeDesktopFiles final : public DesktopFiles {
public:
    void open(const QString& path) override { opened.append(path); }
    void showInFolder(const QString& path) override { shown.append(path); }
    void pickFiles(const QString& title, std::function<void(QStringList)> chosen) override
    {
        pickerTitle = title;
        answerPicker = std::move(chosen);
    }

    QStringList opened;
    QStringList shown;
    QString pickerTitle;
    std::function<void(QStringList)> answerPicker;
};

} // namespace navro
