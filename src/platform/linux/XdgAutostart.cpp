#include "platform/linux/XdgAutostart.h"

#include "app/FileAccess.h"

#include <QCoreApplication>
#include <algorithm>
#include <filesystem>

namespace navro {
namespace {

const QString entryName = QStringLiteral("navro.desktop");
// A desktop entry is a few hundred bytes; the cap only keeps an odd file from being read whole.
constexpr std::size_t maxEntryBytes = 64 * 1024;

QString defaultConfigHome()
{
    return QString::fromStdString(configHome().string());
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
    // Read on every look at the switch: only a regular file is read, and never in a way that
    // could block (a FIFO there would otherwise hang the settings window).
    const FileRead read = readRegularFile(entryPath().toStdString(), maxEntryBytes);
    if (!read.ok())
        return false;
    // An entry the user switched off in a session's settings stays on disk as Hidden=true.
    bool inMainGroup = false;
    for (const QString& raw : QString::fromStdString(read.bytes).split(QLatin1Char('\n'))) {
        const QString line = raw.trimmed();
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
    const std::filesystem::path path = entryPath().toStdString();
    std::error_code error;
    if (!enabled) {
        const auto status = std::filesystem::symlink_status(path, error);
        if (!std::filesystem::exists(status))
            return std::nullopt;
        // Only what could be an entry goes; anything else in its place is not Navro's.
        if (!std::filesystem::is_regular_file(status) && !std::filesystem::is_symlink(status))
            return QStringLiteral("could not remove %1: it is not a file, so it is left as it is")
                .arg(entryPath());
        if (!std::filesystem::remove(path, error))
            return QStringLiteral("could not remove %1: %2")
                .arg(entryPath(), QString::fromStdString(error.message()));
        return std::nullopt;
    }

    // The autostart folder is shared with every other program, so it keeps its usual mode.
    std::filesystem::create_directories(path.parent_path(), error);
    if (error)
        return QStringLiteral("could not create the folder %1: %2")
            .arg(QString::fromStdString(path.parent_path().string()),
                 QString::fromStdString(error.message()));
    const QString entry = QStringLiteral("[Desktop Entry]\n"
                                         "Type=Application\n"
                                         "Name=Navro\n"
                                         "Comment=Live panel at the top of the screen\n"
                                         "Exec=%1\n"
                                         "Terminal=false\n"
                                         "X-GNOME-Autostart-enabled=true\n")
                              .arg(execArgument(executablePath_));
    if (const auto failure = writeFileAtomically(path, entry.toStdString()))
        return QStringLiteral("could not write %1: %2")
            .arg(entryPath(), QString::fromStdString(*failure));
    return std::nullopt;
}

std::unique_ptr<LoginItem> makeSystemLoginItem()
{
    return std::make_unique<XdgAutostart>(QCoreApplication::applicationFilePath());
}

} // namespace navro
