#pragma once

#include "app/LaunchAtLogin.h"

#include <QString>

namespace navro {

// The login item as a freedesktop autostart entry: "<config home>/autostart/navro.desktop",
// which session managers start at login. Disabling removes the file.
class XdgAutostart final : public LoginItem {
public:
    // `configHome` empty means $XDG_CONFIG_HOME, or ~/.config when that is unset or relative.
    XdgAutostart(QString executablePath, QString configHome = {});

    bool isEnabled() const override;
    std::optional<QString> setEnabled(bool enabled) override;

    QString entryPath() const;

    // The program path as one argument of a desktop entry's Exec key.
    static QString execArgument(const QString& path);

private:
    QString executablePath_;
    QString configHome_;
};

} // namespace navro
