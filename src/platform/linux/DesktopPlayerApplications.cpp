#include "platform/linux/DesktopPlayerApplications.h"

#include <QIcon>
#include <QProcess>

namespace navro {

std::optional<PlayerApplications::Application> DesktopPlayerApplications::find(const QString& id)
{
    const auto entry = entries_.byId(id);
    if (!entry)
        return std::nullopt;
    return Application{entry->name, entry->arabicName};
}

QImage DesktopPlayerApplications::icon(const QString& id)
{
    const auto entry = entries_.byId(id);
    if (!entry || entry->icon.isEmpty())
        return {};
    const QIcon icon = entry->icon.startsWith(QLatin1Char('/')) ? QIcon(entry->icon)
                                                                : QIcon::fromTheme(entry->icon);
    if (icon.isNull())
        return {};
    return icon.pixmap(iconSide, iconSide).toImage();
}

bool DesktopPlayerApplications::launch(const QString& id)
{
    const auto entry = entries_.byId(id);
    if (!entry || entry->path.isEmpty())
        return false;
    return QProcess::startDetached(QStringLiteral("gio"), {QStringLiteral("launch"), entry->path});
}

} // namespace navro
