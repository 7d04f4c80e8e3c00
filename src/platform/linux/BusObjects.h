#pragma once

#include <QDBusConnection>
#include <QMap>
#include <QObject>
#include <QVariantMap>
#include <functional>

class QDBusMessage;
class QDBusPendingCallWatcher;
class QDBusServiceWatcher;

namespace navro {

// The objects of one service on a bus with their properties, kept current by the service's
// own signals (PropertiesChanged, and InterfacesAdded/Removed where it has an object manager):
// nothing is asked twice, nothing is polled. Every call is asynchronous. When the service is
// missing it says so once in the log and reports it gone; when it appears later it is read
// again.
class BusObjects final : public QObject {
    Q_OBJECT

public:
    using Interfaces = QMap<QString, QVariantMap>; // interface → its properties
    using Objects = QMap<QString, Interfaces>;     // object path → its interfaces

    // `describe` names the service in the log ("UPower", "UDisks2").
    BusObjects(QDBusConnection bus, QString service, QString describe, QObject* parent = nullptr);
    ~BusObjects() override;

    // Reads the objects below the object manager at `root` and follows its changes.
    void followObjectManager(const QString& root);
    // Or the objects a caller lists itself (UPower): `list` is called whenever the service is
    // (re)found and answers by add() for each object.
    void followListedObjects(std::function<void()> list);
    void add(const QString& path, const QString& interface);
    void remove(const QString& path);

    bool isAvailable() const { return available_; }
    const Objects& objects() const { return objects_; }
    QDBusConnection& bus() { return bus_; }
    const QString& service() const { return service_; }
    // Logs a failed call once per kind of failure, and reports the service gone when it is.
    void noteFailure(const QString& what, const QDBusMessage& error);

signals:
    // After the first complete reading and after every change; not while readings are pending.
    void changed();
    // The service is not there (or went away).
    void unavailable();

private slots:
    void onPropertiesChanged(const QDBusMessage& message);
    void onInterfacesAdded(const QDBusMessage& message);
    void onInterfacesRemoved(const QDBusMessage& message);

private:
    void read();
    void readManagedObjects();
    void setGone();
    void finishPending();

    QDBusConnection bus_;
    QString service_;
    QString describe_;
    QString root_;
    std::function<void()> list_;
    QDBusServiceWatcher* watcher_ = nullptr;
    Objects objects_;
    int pending_ = 0;
    bool available_ = false;
    bool saidMissing_ = false;
    bool dirty_ = false;
};

} // namespace navro
