#include "platform/linux/ObexTransfers.h"

#include "platform/linux/BusObjects.h"

#include <QFileInfo>

namespace navro {
namespace {

const QString transferInterface = QStringLiteral("org.bluez.obex.Transfer1");

WirelessTransfer::Status statusOf(const QString& status)
{
    if (status == QLatin1String("active"))
        return WirelessTransfer::Status::active;
    if (status == QLatin1String("suspended"))
        return WirelessTransfer::Status::suspended;
    if (status == QLatin1String("complete"))
        return WirelessTransfer::Status::complete;
    if (status == QLatin1String("error"))
        return WirelessTransfer::Status::error;
    return WirelessTransfer::Status::queued;
}

} // namespace

ObexTransfers::ObexTransfers()
    : objects_(std::make_unique<BusObjects>(QDBusConnection::sessionBus(),
                                            QStringLiteral("org.bluez.obex"),
                                            QStringLiteral("Bluetooth file transfer (obexd)")))
{
}

ObexTransfers::~ObexTransfers() = default;

void ObexTransfers::start(Changed changed)
{
    changed_ = std::move(changed);
    QObject::connect(objects_.get(), &BusObjects::changed, objects_.get(), [this] { report(); });
    QObject::connect(objects_.get(), &BusObjects::unavailable, objects_.get(),
                     [this] { changed_(std::nullopt); });
    objects_->followObjectManager(QStringLiteral("/"));
}

void ObexTransfers::report()
{
    std::vector<WirelessTransfer> transfers;
    const auto& objects = objects_->objects();
    for (auto object = objects.begin(); object != objects.end(); ++object) {
        const auto transfer = object->find(transferInterface);
        if (transfer == object->end())
            continue;
        const QString fileName = transfer->value(QStringLiteral("Filename")).toString();
        QString name = transfer->value(QStringLiteral("Name")).toString();
        if (name.isEmpty())
            name = QFileInfo(fileName).fileName();
        WirelessTransfer entry{object.key().toStdString(),
                               name.toStdString(),
                               fileName.toStdString(),
                               transfer->value(QStringLiteral("Transferred")).toULongLong(),
                               std::nullopt,
                               statusOf(transfer->value(QStringLiteral("Status")).toString())};
        if (const auto size = transfer->value(QStringLiteral("Size")).toULongLong(); size > 0)
            entry.total = size;
        transfers.push_back(std::move(entry));
    }
    changed_(transfers);
}

} // namespace navro
