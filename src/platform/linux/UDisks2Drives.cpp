#include "platform/linux/UDisks2Drives.h"

#include "app/Log.h"
#include "platform/linux/BusObjects.h"
#include "platform/linux/SystemBusGate.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <sys/statvfs.h>

namespace navro {
namespace {

const QString service = QStringLiteral("org.freedesktop.UDisks2");
const QString root = QStringLiteral("/org/freedesktop/UDisks2");
const QString driveInterface = QStringLiteral("org.freedesktop.UDisks2.Drive");
const QString blockInterface = QStringLiteral("org.freedesktop.UDisks2.Block");
const QString fileSystemInterface = QStringLiteral("org.freedesktop.UDisks2.Filesystem");

QString objectPath(const QVariant& value)
{
    if (value.canConvert<QDBusObjectPath>())
        return value.value<QDBusObjectPath>().path();
    if (value.canConvert<QDBusArgument>()) {
        QDBusObjectPath path;
        value.value<QDBusArgument>() >> path;
        return path.path();
    }
    return value.toString();
}

// MountPoints is a list of byte strings ending in a zero.
QStringList mountPoints(const QVariant& value)
{
    QByteArrayList raw;
    if (value.canConvert<QDBusArgument>())
        value.value<QDBusArgument>() >> raw;
    else
        raw = value.value<QByteArrayList>();
    QStringList points;
    for (QByteArray point : raw) {
        while (point.endsWith('\0'))
            point.chop(1);
        if (!point.isEmpty())
            points << QFile::decodeName(point);
    }
    return points;
}

std::optional<std::uint64_t> freeBytes(const QString& mountPoint)
{
    struct statvfs info {};
    if (statvfs(QFile::encodeName(mountPoint).constData(), &info) != 0)
        return std::nullopt;
    return std::uint64_t(info.f_bavail) * info.f_frsize;
}

bool isRemovable(const QVariantMap& drive)
{
    const QString bus = drive.value(QStringLiteral("ConnectionBus")).toString();
    return drive.value(QStringLiteral("Removable")).toBool() ||
           drive.value(QStringLiteral("MediaRemovable")).toBool() ||
           drive.value(QStringLiteral("Ejectable")).toBool() || bus == QLatin1String("usb") ||
           bus == QLatin1String("sdio") || bus == QLatin1String("ieee1394");
}

QDBusMessage callWithNoOptions(const QString& path, const QString& interface, const QString& method)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message << QVariantMap();
    return message;
}

} // namespace

UDisks2Drives::UDisks2Drives(SystemBusGate& systemBus) : systemBus_(systemBus) {}

UDisks2Drives::~UDisks2Drives() = default;

void UDisks2Drives::start(Changed changed)
{
    changed_ = std::move(changed);
    systemBus_.whenReady(this, [this](QDBusConnection bus) {
        objects_ = std::make_unique<BusObjects>(bus, service, QStringLiteral("UDisks2"));
        QObject::connect(objects_.get(), &BusObjects::changed, objects_.get(),
                         [this] { report(); });
        QObject::connect(objects_.get(), &BusObjects::unavailable, objects_.get(),
                         [this] { changed_(std::nullopt); });
        objects_->followObjectManager(root);
    });
}

void UDisks2Drives::report()
{
    std::vector<Drive> drives;
    const auto& objects = objects_->objects();
    for (auto object = objects.begin(); object != objects.end(); ++object) {
        const auto properties = object->find(driveInterface);
        if (properties == object->end() || !isRemovable(*properties))
            continue;
        Drive drive;
        drive.id = object.key().toStdString();
        drive.size = properties->value(QStringLiteral("Size")).toULongLong();
        QString label;
        // The drive's file systems: the first label names it, the first mount point gives room.
        for (auto block = objects.begin(); block != objects.end(); ++block) {
            const auto blockProperties = block->find(blockInterface);
            if (blockProperties == block->end() ||
                objectPath(blockProperties->value(QStringLiteral("Drive"))) != object.key())
                continue;
            if (label.isEmpty())
                label = blockProperties->value(QStringLiteral("IdLabel")).toString().trimmed();
            const auto fileSystem = block->find(fileSystemInterface);
            if (fileSystem == block->end())
                continue;
            const QStringList points =
                mountPoints(fileSystem->value(QStringLiteral("MountPoints")));
            if (!points.isEmpty() && !drive.mounted) {
                drive.mounted = true;
                drive.freeBytes = freeBytes(points.first());
            }
        }
        if (label.isEmpty()) {
            label =
                (properties->value(QStringLiteral("Vendor")).toString().trimmed() +
                 QLatin1Char(' ') + properties->value(QStringLiteral("Model")).toString().trimmed())
                    .trimmed();
        }
        drive.name = label.toStdString();
        drives.push_back(std::move(drive));
    }
    changed_(drives);
}

QStringList UDisks2Drives::mountedFileSystems(const QString& drive) const
{
    QStringList result;
    const auto& objects = objects_->objects();
    for (auto block = objects.begin(); block != objects.end(); ++block) {
        const auto blockProperties = block->find(blockInterface);
        const auto fileSystem = block->find(fileSystemInterface);
        if (blockProperties != block->end() && fileSystem != block->end() &&
            objectPath(blockProperties->value(QStringLiteral("Drive"))) == drive &&
            !mountPoints(fileSystem->value(QStringLiteral("MountPoints"))).isEmpty())
            result << block.key();
    }
    return result;
}

void UDisks2Drives::eject(const std::string& id, std::function<void(EjectOutcome)> done)
{
    if (!objects_) {
        done(EjectOutcome::failed);
        return;
    }
    const QString drive = QString::fromStdString(id);
    unmountNext(mountedFileSystems(drive), drive, std::move(done));
}

void UDisks2Drives::unmountNext(QStringList fileSystems, QString drive,
                                std::function<void(EjectOutcome)> done)
{
    if (fileSystems.isEmpty()) {
        powerOff(drive, std::move(done));
        return;
    }
    const QString fileSystem = fileSystems.takeFirst();
    auto* watcher = new QDBusPendingCallWatcher(
        objects_->bus().asyncCall(
            callWithNoOptions(fileSystem, fileSystemInterface, QStringLiteral("Unmount"))),
        objects_.get());
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, objects_.get(),
        [this, fileSystems, drive, done, fileSystem](QDBusPendingCallWatcher* w) {
            w->deleteLater();
            const QDBusMessage reply = w->reply();
            if (reply.type() == QDBusMessage::ErrorMessage) {
                const bool busy =
                    reply.errorName() == QLatin1String("org.freedesktop.UDisks2.Error.DeviceBusy");
                logLine("UDisks2: unmounting " + excerptForLog(fileSystem.toStdString()) +
                        (busy ? " refused: it is in use" : " failed: ") +
                        (busy ? std::string()
                              : excerptForLog(reply.errorName().toStdString() + " " +
                                              reply.errorMessage().toStdString())));
                done(busy ? EjectOutcome::busy : EjectOutcome::failed);
                return;
            }
            unmountNext(fileSystems, drive, done);
        });
}

void UDisks2Drives::powerOff(const QString& drive, std::function<void(EjectOutcome)> done)
{
    const QVariantMap properties = objects_->objects().value(drive).value(driveInterface);
    // Powering off is what makes a stick safe to pull; a drive that cannot (a card reader) ejects
    // its medium instead, and one that can neither is done once unmounted.
    QString method;
    if (properties.value(QStringLiteral("CanPowerOff")).toBool())
        method = QStringLiteral("PowerOff");
    else if (properties.value(QStringLiteral("Ejectable")).toBool())
        method = QStringLiteral("Eject");
    if (method.isEmpty()) {
        done(EjectOutcome::ejected);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(
        objects_->bus().asyncCall(callWithNoOptions(drive, driveInterface, method)),
        objects_.get());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, objects_.get(),
                     [done, drive, method](QDBusPendingCallWatcher* w) {
                         w->deleteLater();
                         const QDBusMessage reply = w->reply();
                         if (reply.type() == QDBusMessage::ErrorMessage) {
                             // Unmounted already, so the data is safe; say what failed and go on.
                             logLine("UDisks2: " + method.toStdString() + " of " +
                                     excerptForLog(drive.toStdString()) +
                                     " failed: " + excerptForLog(reply.errorName().toStdString()));
                             const bool busy =
                                 reply.errorName() ==
                                 QLatin1String("org.freedesktop.UDisks2.Error.DeviceBusy");
                             done(busy ? EjectOutcome::busy : EjectOutcome::failed);
                             return;
                         }
                         done(EjectOutcome::ejected);
                     });
}

} // namespace navro
