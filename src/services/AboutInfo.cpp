#include "services/AboutInfo.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QVariantMap>

namespace navro {
namespace {

QString resourceText(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

AboutInfo::AboutInfo(std::optional<std::string> deviceIdentifier, QString programFolder,
                     QObject* parent)
    : QObject(parent), deviceIdentifier_(QString::fromStdString(deviceIdentifier.value_or(""))),
      installedByPackage_(programFolder == QLatin1String("/usr/bin"))
{
}

QVariantList AboutInfo::licences() const
{
    // Read when the Licences view opens, not at start-up: the GPL alone is 35 KB.
    return {
        QVariantMap{{QStringLiteral("name"), QStringLiteral("Navro")},
                    {QStringLiteral("licence"), QStringLiteral("GPL-3.0-or-later")},
                    {QStringLiteral("text"), resourceText(QStringLiteral(":/services/LICENSE"))}},
        QVariantMap{
            {QStringLiteral("name"), QStringLiteral("Lucide icons")},
            {QStringLiteral("licence"), QStringLiteral("ISC, MIT")},
            {QStringLiteral("text"), resourceText(QStringLiteral(":/views/icons/LICENSE"))}},
    };
}

void AboutInfo::copyText(const QString& text) const
{
    QGuiApplication::clipboard()->setText(text);
}

} // namespace navro
