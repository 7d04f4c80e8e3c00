#include "services/WhatsNew.h"

#include "app/AppSettings.h"

#include <QStringList>

namespace navro {
namespace {

QStringList toStringList(const std::vector<std::string>& lines)
{
    QStringList list;
    for (const std::string& line : lines)
        list << QString::fromStdString(line);
    return list;
}

} // namespace

WhatsNew::WhatsNew(AppSettings& settings, std::vector<ReleaseNotes> notes, std::string_view running,
                   QObject* parent)
    : QObject(parent), settings_(settings), notes_(std::move(notes)), running_(running)
{
}

bool WhatsNew::checkAtStart()
{
    const QString running = QString::fromStdString(running_);
    const QString lastSeen = settings_.lastSeenVersion();
    if (lastSeen == running)
        return false;
    entries_.clear();
    for (const ReleaseNotes& entry : notesToShow(notes_, lastSeen.toStdString(), running_)) {
        entries_.append(QVariantMap{
            {QStringLiteral("version"), QString::fromStdString(entry.version.text())},
            {QStringLiteral("english"), toStringList(entry.english)},
            {QStringLiteral("arabic"), toStringList(entry.arabic)},
        });
    }
    settings_.setLastSeenVersion(running);
    return !entries_.isEmpty();
}

} // namespace navro
