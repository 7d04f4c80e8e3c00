#pragma once

#include <QObject>
#include <QString>

namespace navro {

// What the settings window tells the user about something that does not work, each with its way
// out (the "notices" object in QML). The application delegate keeps it up to date.
class AppNotices final : public QObject {
    Q_OBJECT
    // Why changed settings are not reaching the disk; empty while they are.
    Q_PROPERTY(
        QString settingsSaveProblem READ settingsSaveProblem NOTIFY settingsSaveProblemChanged)
    // Another program holds Ctrl+Alt+L, so the hot key does nothing.
    Q_PROPERTY(bool hotKeyTaken READ hotKeyTaken NOTIFY hotKeyTakenChanged)

public:
    using QObject::QObject;

    QString settingsSaveProblem() const { return settingsSaveProblem_; }
    void setSettingsSaveProblem(const QString& problem)
    {
        if (problem == settingsSaveProblem_)
            return;
        settingsSaveProblem_ = problem;
        emit settingsSaveProblemChanged();
    }

    bool hotKeyTaken() const { return hotKeyTaken_; }
    void setHotKeyTaken(bool taken)
    {
        if (taken == hotKeyTaken_)
            return;
        hotKeyTaken_ = taken;
        emit hotKeyTakenChanged();
    }

signals:
    void settingsSaveProblemChanged();
    void hotKeyTakenChanged();

private:
    QString settingsSaveProblem_;
    bool hotKeyTaken_ = false;
};

} // namespace navro
