#pragma once

#include "system/DeviceSources.h"

#include <QObject>
#include <QString>
#include <memory>

namespace navro {

class BusObjects;
class SystemBusGate;

// Removable drives from UDisks2 on the system bus: their size, whether a file system of theirs
// is mounted and how much room it has, and ejecting them.
class UDisks2Drives final : public QObject, public DriveSource {
public:
    explicit UDisks2Drives(SystemBusGate& systemBus);
    ~UDisks2Drives() override;
    void start(Changed changed) override;
    void eject(const std::string& id, std::function<void(EjectOutcome)> done) override;

private:
    void report();
    // The file systems of the drive that are mounted.
    QStringList mountedFileSystems(const QString& drive) const;
    void unmountNext(QStringList fileSystems, QString drive,
                     std::function<void(EjectOutcome)> done);
    void powerOff(const QString& drive, std::function<void(EjectOutcome)> done);

    SystemBusGate& systemBus_;
    std::unique_ptr<BusObjects> objects_; // once the system bus is known
    Changed changed_;
};

} // namespace navro
