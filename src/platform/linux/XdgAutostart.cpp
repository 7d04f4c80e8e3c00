#include "platform/linux/XdgAutostart.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTextStream>
#include <algorithm>

namespace navro {
namespace {

const QString entryName = QStringLiteral("navro.desktop");

QString defaultConfigHome()
{
    const QString fromEnvironment = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!fromEnvironment.isEmpty() && QDir::isAbsolutePath(fromEnvironment)) {
        return fromEnvironment;
    }
    return QDir::homePath() + QStringLiteral("/.config");
}

} // namespace

XdgAutostart::XdgAutostart(QString executablePath, QString configHome)
    : executablePath_(std::move(executablePath)),
      configHome_(configHome.isEmpty() ? defaultConfigHome() : std::move(configHome))
{
}

QString XdgAutostart::entryPath() const
{
    return configHome_ + QStringLiteral("/autostart/") + entryName;
}

QString XdgAutostart::execArgument(const QString& path)
{
    // Desktop entries quote an argument that holds a reserved character, backslash-escape four
    // characters inside the quotes, double a literal percent sign, and then escape every
    // backslash once more because the whole value is itself an escaped string.
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    QString argument = path;
    argument.replace(QLatin1Char('%'), QStringLiteral("%%"));
    const bool needsQuotes = std::any_of(argument.cbegin(), argument.cend(),
                                         [](QChar c) { return reserved.contains(c); });
    if (needsQuotes) {
        QString quoted;
        for (QChar c : argument) {
            if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') ||
                c == QLatin1Char('\\')) {
                quoted += QLatin1Char('\\');
            }
            quoted += c;
        }
        argument = QLatin1Char('"') + quoted + QLatin1Char('"');
    }
    argument.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    return argument;
}

bool XdgAutostart::isEnabled() const
{
    QFile file(entryPath());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return false;
    }
    // An entry the user switched off in a session's settings stays on disk as Hidden=true.
    QTextStream in(&file);
    bool inMainGroup = false;
    while (!in.atEnd()) {
        const QString line = in.readLine().trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inMainGroup = line == QStringLiteral("[Desktop Entry]");
        } else if (inMainGroup && (line == QStringLiteral("Hidden=true") ||
                                   line == QStringLiteral("X-GNOME-Autostart-enabled=false"))) {
            return false;
        }
    }
    return true;
}

std::optional<QString> XdgAutostart::setEnabled(bool enabled)
{
    const QString path = entryPath();
    if (!enabled) {
        QFileInfo info(path);
        if (!info.exists() && !info.isSymLink()) {
            return std::nullopt;
        }
        QFile file(path);
        if (!file.remove()) {
            return QStringLiteral("could not remove %1: %2").arg(path, file.errorString());
        }
        return std::nullopt;
    }

    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder)) {
        return QStringLiteral("could not create the folder %1").arg(folder);
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return QStringLiteral("could not write %1: %2").arg(path, file.errorString());
    }
    const QString entry = QStringLiteral("[Desktop Entry]\n"
                                         "Type=Application\n"
                                         "Name=Navro\n"
                                         "Comment=Live panel at the top of the screen\n"
                                         "Exec=%1\n"
                                         "Terminal=false\n"
                                         "X-GNOME-Autostart-enabled=true\n")
                              .arg(execArgument(executablePath_));
    file.write(entry.toUtf8());
    if (!file.commit()) {
        return QStringLiteral("could not write %1: %2").arg(path, file.errorString());
    }
    return std::nullopt;
}

std::unique_ptr<LoginItem> makeSystemLoginItem()
{
    return std::make_unique<XdgAutostart>(QCoreApplication::applicationFilePath());
}

} // namespace navro
