#include "platform/linux/BusObjects.h"

#include "app/Log.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

namespace navro {
namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString objectManagerInterface = QStringLiteral("org.freedesktop.DBus.ObjectManager");

// a{sa{sv}}: an object's interfaces with their properties.
BusObjects::Interfaces readInterfaces(const QDBusArgument& argument)
{
    BusObjects::Interfaces interfaces;
    argument >> interfaces;
    return interfaces;
}

bool isMissingService(const QDBusMessage& error)
{
    const QString name = error.errorName();
    return name == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown") ||
           name == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner") ||
           name == QLatin1String("org.freedesktop.DBus.Error.Disconnected");
}

} // namespace

BusObjects::BusObjects(QDBusConnection bus, QString service, QString describe, QObject* parent)
    : QObject(parent), bus_(std::move(bus)), service_(std::move(service)),
      describe_(std::move(describe))
{
}

BusObjects::~BusObjects() = default;

void BusObjects::followObjectManager(const QString& root)
{
    root_ = root;
    read();
}

void BusObjects::followListedObjects(std::function<void()> list)
{
    list_ = std::move(list);
    read();
}

void BusObjects::read()
{
    if (!bus_.isConnected()) {
        if (!saidMissing_)
            logLine("no bus to reach " + describe_.toStdString() + " on; nothing of it is shown");
        saidMissing_ = true;
        setGone();
        return;
    }
    if (!watcher_) {
        // A service that starts or restarts later is read again; one that goes is forgotten.
        watcher_ = new QDBusServiceWatcher(service_, bus_,
                                           QDBusServiceWatcher::WatchForRegistration |
                                               QDBusServiceWatcher::WatchForUnregistration,
                                           this);
        connect(watcher_, &QDBusServiceWatcher::serviceRegistered, this, [this] { read(); });
        connect(watcher_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setGone(); });
        bus_.connect(service_, QString(), propertiesInterface, QStringLiteral("PropertiesChanged"),
                     this, SLOT(onPropertiesChanged(QDBusMessage)));
        if (!root_.isEmpty()) {
            bus_.connect(service_, root_, objectManagerInterface, QStringLiteral("InterfacesAdded"),
                         this, SLOT(onInterfacesAdded(QDBusMessage)));
            bus_.connect(service_, root_, objectManagerInterface,
                         QStringLiteral("InterfacesRemoved"), this,
                         SLOT(onInterfacesRemoved(QDBusMessage)));
        }
    }
    objects_.clear();
    if (!root_.isEmpty())
        readManagedObjects();
    else if (list_)
        list_();
}

void BusObjects::readManagedObjects()
{
    ++pending_;
    auto call = bus_.asyncCall(QDBusMessage::createMethodCall(
        service_, root_, objectManagerInterface, QStringLiteral("GetManagedObjects")));
    auto* watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const QDBusMessage reply = w->reply();
        if (reply.type() == QDBusMessage::ErrorMessage) {
            noteFailure(QStringLiteral("reading its objects"), reply);
        } else if (!reply.arguments().isEmpty()) {
            const auto argument = reply.arguments().constFirst().value<QDBusArgument>();
            argument.beginMap();
            while (!argument.atEnd()) {
                QDBusObjectPath path;
                argument.beginMapEntry();
                argument >> path;
                objects_[path.path()] = readInterfaces(argument);
                argument.endMapEntry();
            }
            argument.endMap();
            available_ = true;
            dirty_ = true;
        }
        finishPending();
    });
}

void BusObjects::add(const QString& path, const QString& interface)
{
    ++pending_;
    QDBusMessage message = QDBusMessage::createMethodCall(service_, path, propertiesInterface,
                                                          QStringLiteral("GetAll"));
    message << interface;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, path, interface](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                QDBusPendingReply<QVariantMap> reply = *w;
                if (reply.isError()) {
                    noteFailure(QStringLiteral("reading ") + path, reply.reply());
                } else {
                    objects_[path][interface] = reply.value();
                    available_ = true;
                    dirty_ = true;
                }
                finishPending();
            });
}

void BusObjects::remove(const QString& path)
{
    if (objects_.remove(path) > 0) {
        dirty_ = true;
        finishPending();
    }
}

void BusObjects::finishPending()
{
    if (pending_ > 0)
        --pending_;
    if (pending_ == 0 && dirty_) {
        dirty_ = false;
        emit changed();
    }
}

void BusObjects::noteFailure(const QString& what, const QDBusMessage& error)
{
    if (isMissingService(error)) {
        if (!saidMissing_)
            logLine("no " + describe_.toStdString() + " on the bus (" +
                    excerptForLog(error.errorName().toStdString()) + "); nothing of it is shown");
        saidMissing_ = true;
        setGone();
        return;
    }
    logLine(
        describe_.toStdString() + ": " + excerptForLog(what.toStdString()) + " failed: " +
        excerptForLog(error.errorName().toStdString() + " " + error.errorMessage().toStdString()));
}

void BusObjects::setGone()
{
    available_ = false;
    objects_.clear();
    emit unavailable();
}

void BusObjects::onPropertiesChanged(const QDBusMessage& message)
{
    const QString path = message.path();
    const auto arguments = message.arguments();
    if (arguments.size() < 2 || !objects_.contains(path))
        return;
    const QString interface = arguments.at(0).toString();
    auto object = objects_.find(path);
    if (!object->contains(interface))
        return;
    QVariantMap& properties = (*object)[interface];
    const QVariantMap changes = qdbus_cast<QVariantMap>(arguments.at(1));
    for (auto it = changes.begin(); it != changes.end(); ++it)
        properties[it.key()] = it.value();
    if (arguments.size() >= 3) {
        for (const QString& name : qdbus_cast<QStringList>(arguments.at(2)))
            properties.remove(name);
    }
    dirty_ = true;
    if (pending_ == 0)
        finishPending();
}

void BusObjects::onInterfacesAdded(const QDBusMessage& message)
{
    const auto arguments = message.arguments();
    if (arguments.size() < 2)
        return;
    const QString path = qdbus_cast<QDBusObjectPath>(arguments.at(0)).path();
    const Interfaces added = readInterfaces(arguments.at(1).value<QDBusArgument>());
    for (auto it = added.begin(); it != added.end(); ++it)
        objects_[path][it.key()] = it.value();
    available_ = true;
    dirty_ = true;
    if (pending_ == 0)
        finishPending();
}

void BusObjects::onInterfacesRemoved(const QDBusMessage& message)
{
    const auto arguments = message.arguments();
    if (arguments.size() < 2)
        return;
    const QString path = qdbus_cast<QDBusObjectPath>(arguments.at(0)).path();
    auto object = objects_.find(path);
    if (object == objects_.end())
        return;
    for (const QString& interface : qdbus_cast<QStringList>(arguments.at(1)))
        object->remove(interface);
    if (object->isEmpty())
        objects_.erase(object);
    dirty_ = true;
    if (pending_ == 0)
        finishPending();
}

} // namespace navro
