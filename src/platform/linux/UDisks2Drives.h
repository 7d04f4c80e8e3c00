#pragma once

#include "system/DeviceSources.h"

#include <QString>
#include <memory>

namespace navro {

class BusObjects;

// Removable drives from UDisks2 on the system bus: their size, whether a file system of theirs
// is mounted and how much room it has, and ejecting them.
class UDisks2Drives final : public DriveSource {
public:
    UDisks2Drives();
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

    std::unique_ptr<BusObjects> objects_;
    Changed changed_;
};

} // namespace navro
