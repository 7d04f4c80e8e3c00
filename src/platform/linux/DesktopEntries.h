#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace navro {

// What a freedesktop desktop entry says about an application: how to call it and draw it.
struct DesktopEntry {
    QString id;          // "org.gnome.Nautilus" for org.gnome.Nautilus.desktop
    QString name;        // Name
    QString arabicName;  // Name[ar] (or a regional Arabic), empty when the entry has none
    QString icon;        // Icon: a theme name, or an absolute path
    QString windowClass; // StartupWMClass
    QString program;     // the first word of Exec, without its folder
    QString path;        // the file it was read from, empty when it came from elsewhere

    QString displayName(bool arabic) const
    {
        return arabic && !arabicName.isEmpty() ? arabicName : name;
    }
};

// Reads one desktop entry's [Desktop Entry] group. Nothing when the text is not an application
// entry with a name, or is hidden.
std::optional<DesktopEntry> parseDesktopEntry(const QString& id, const QByteArray& text);

// The installed applications' desktop entries, found in the "applications" folders of
// $XDG_DATA_HOME and $XDG_DATA_DIRS (the first folder that has an id wins, as for launchers).
// Read on first use, and again only when a lookup misses and one of the folders has changed since
// (an application installed meanwhile): a miss costs a few stat calls, not a new scan.
class DesktopEntries {
public:
    // `folders` empty means the XDG application folders of the environment.
    explicit DesktopEntries(QStringList folders = {});

    // By desktop id, with or without ".desktop" ("mpv", "org.gnome.Nautilus.desktop").
    std::optional<DesktopEntry> byId(const QString& id);
    // By an X11 window's WM_CLASS (instance and class names), as the window manager matches
    // windows to launchers: StartupWMClass first, then the id, then the program's name.
    std::optional<DesktopEntry> byWindowClass(const QString& instance, const QString& className);

    static QStringList applicationFolders();

private:
    void load();
    void reloadIfChanged();
    QList<qint64> folderTimes() const;

    QStringList folders_;
    bool loaded_ = false;
    QList<qint64> loadedTimes_;
    QHash<QString, DesktopEntry> byId_;
};

} // namespace navro
