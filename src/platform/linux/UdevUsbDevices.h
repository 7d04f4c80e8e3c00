#pragma once

#include "system/DeviceSources.h"

#include <QObject>
#include <map>
#include <string>

class QSocketNotifier;
struct udev;
struct udev_device;
struct udev_hwdb;
struct udev_monitor;

namespace navro {

// USB devices from udev: the ones plugged in at start, then each arrival and removal as udev
// announces it once it has looked the device up in its hardware database. Without a running
// udev (a container, a system without it) nothing would ever be announced, so the section is
// absent rather than a list that never changes.
class UdevUsbDevices final : public QObject, public UsbSource {
public:
    // `udevRuntimeFolder` is where a running udev keeps its control socket.
    explicit UdevUsbDevices(std::string udevRuntimeFolder = "/run/udev");
    ~UdevUsbDevices() override;
    void start(Changed changed) override;

private:
    void begin();
    void giveUp(const std::string& why);
    void listAll();
    void readEvents();
    // Adds or replaces the entry of `device`, or drops it when it is not one to list (a hub);
    // true when the list changed.
    bool note(udev_device* device);
    void report();

    std::string runtimeFolder_;
    Changed changed_;
    udev* udev_ = nullptr;
    udev_monitor* monitor_ = nullptr;
    udev_hwdb* hwdb_ = nullptr;
    QSocketNotifier* notifier_ = nullptr;
    std::map<std::string, UsbDevice> devices_; // by sysfs path
};

} // namespace navro
