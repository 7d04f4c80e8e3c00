#include "platform/linux/DesktopEntries.h"

#include "app/FileAccess.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <filesystem>

namespace navro {
namespace {

// Desktop entries are a few kilobytes; anything much larger is not one.
constexpr std::size_t maxEntryBytes = 256 * 1024;

QString withoutSuffix(QString id)
{
    if (id.endsWith(QLatin1String(".desktop")))
        id.chop(8);
    return id;
}

// The value of a key, with the escapes the format defines (\s \n \t \r \\).
QString unescaped(const QString& value)
{
    QString out;
    out.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value[i];
        if (c != QLatin1Char('\\') || i + 1 == value.size()) {
            out += c;
            continue;
        }
        const QChar next = value[++i];
        switch (next.unicode()) {
        case 's':
            out += QLatin1Char(' ');
            break;
        case 'n':
            out += QLatin1Char('\n');
            break;
        case 't':
            out += QLatin1Char('\t');
            break;
        case 'r':
            out += QLatin1Char('\r');
            break;
        default:
            out += next;
        }
    }
    return out;
}

QString programOf(const QString& exec)
{
    QString first = exec.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
    first.remove(QLatin1Char('"'));
    return first.section(QLatin1Char('/'), -1);
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(const QString& id, const QByteArray& text)
{
    DesktopEntry entry;
    entry.id = withoutSuffix(id);
    bool inMainGroup = false;
    QString type;
    QString regionalArabic;
    bool hidden = false;
    for (const QByteArray& rawLine : text.split('\n')) {
        const QString line = QString::fromUtf8(rawLine).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1Char('['))) {
            inMainGroup = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        if (!inMainGroup)
            continue;
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals <= 0)
            continue;
        const QString key = line.left(equals).trimmed();
        const QString value = unescaped(line.mid(equals + 1).trimmed());
        if (key == QLatin1String("Type"))
            type = value;
        else if (key == QLatin1String("Name"))
            entry.name = value;
        else if (key == QLatin1String("Name[ar]"))
            entry.arabicName = value;
        else if (key.startsWith(QLatin1String("Name[ar_")))
            regionalArabic = value;
        else if (key == QLatin1String("Icon"))
            entry.icon = value;
        else if (key == QLatin1String("StartupWMClass"))
            entry.windowClass = value;
        else if (key == QLatin1String("Exec"))
            entry.program = programOf(value);
        else if (key == QLatin1String("Hidden"))
            hidden = value == QLatin1String("true");
    }
    if (entry.arabicName.isEmpty())
        entry.arabicName = regionalArabic;
    if (hidden || type != QLatin1String("Application") || entry.name.isEmpty())
        return std::nullopt;
    return entry;
}

DesktopEntries::DesktopEntries(QStringList folders) : folders_(std::move(folders))
{
    if (folders_.isEmpty())
        folders_ = applicationFolders();
}

QStringList DesktopEntries::applicationFolders()
{
    QString dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    if (!dataHome.startsWith(QLatin1Char('/')))
        dataHome = QDir::homePath() + QLatin1String("/.local/share");
    QStringList dataDirs =
        qEnvironmentVariable("XDG_DATA_DIRS").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    if (dataDirs.isEmpty())
        dataDirs = {QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share")};
    QStringList folders{dataHome + QLatin1String("/applications")};
    for (const QString& dir : dataDirs)
        if (dir.startsWith(QLatin1Char('/')))
            folders << dir + QLatin1String("/applications");
    return folders;
}

QList<qint64> DesktopEntries::folderTimes() const
{
    // In nanoseconds: an entry written in the same millisecond as the last scan still counts.
    QList<qint64> times;
    for (const QString& folder : folders_) {
        std::error_code error;
        const auto time = std::filesystem::last_write_time(folder.toStdString(), error);
        times << (error ? 0 : qint64(time.time_since_epoch().count()));
    }
    return times;
}

void DesktopEntries::reloadIfChanged()
{
    if (!loaded_ || folderTimes() != loadedTimes_)
        load();
}

void DesktopEntries::load()
{
    loaded_ = true;
    loadedTimes_ = folderTimes();
    byId_.clear();
    for (const QString& folder : folders_) {
        QDirIterator files(folder, {QStringLiteral("*.desktop")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            // A file in a subfolder has the subfolder in its id: kde/okular.desktop is
            // kde-okular.
            const QString id = withoutSuffix(
                QDir(folder).relativeFilePath(path).replace(QLatin1Char('/'), QLatin1Char('-')));
            if (byId_.contains(id))
                continue;
            const FileRead read = readRegularFile(path.toStdString(), maxEntryBytes);
            if (!read.ok())
                continue;
            if (auto entry = parseDesktopEntry(
                    id, QByteArray::fromRawData(read.bytes.data(), qsizetype(read.bytes.size())))) {
                entry->path = path;
                byId_.insert(id, *std::move(entry));
            }
        }
    }
}

std::optional<DesktopEntry> DesktopEntries::byId(const QString& id)
{
    const QString key = withoutSuffix(id);
    if (key.isEmpty())
        return std::nullopt;
    if (!loaded_)
        load();
    auto found = byId_.constFind(key);
    if (found == byId_.constEnd()) {
        reloadIfChanged();
        found = byId_.constFind(key);
        if (found == byId_.constEnd())
            return std::nullopt;
    }
    return *found;
}

std::optional<DesktopEntry> DesktopEntries::byWindowClass(const QString& instance,
                                                          const QString& className)
{
    if (instance.isEmpty() && className.isEmpty())
        return std::nullopt;
    reloadIfChanged();
    const auto matches = [&](const QString& value) {
        return !value.isEmpty() && (value.compare(className, Qt::CaseInsensitive) == 0 ||
                                    value.compare(instance, Qt::CaseInsensitive) == 0);
    };
    for (const DesktopEntry& entry : std::as_const(byId_))
        if (matches(entry.windowClass))
            return entry;
    for (const DesktopEntry& entry : std::as_const(byId_))
        if (matches(entry.id) || matches(entry.id.section(QLatin1Char('.'), -1)))
            return entry;
    for (const DesktopEntry& entry : std::as_const(byId_))
        if (matches(entry.program))
            return entry;
    return std::nullopt;
}

} // namespace navro
