#include "platform/linux/UdevUsbDevices.h"

#include "app/Log.h"
#include "system/UsbDeviceFacts.h"

#include <QSocketNotifier>
#include <QTimer>
#include <cerrno>
#include <cstring>
#include <libudev.h>
#include <unistd.h>

namespace navro {
namespace {

constexpr const char* subsystem = "usb";
constexpr const char* deviceType = "usb_device";

// The properties and attributes the USB section reads; the rest of what udev knows is not
// copied.
constexpr const char* properties[] = {"PRODUCT",
                                      "TYPE",
                                      "ID_VENDOR_ID",
                                      "ID_MODEL_ID",
                                      "ID_VENDOR_FROM_DATABASE",
                                      "ID_MODEL_FROM_DATABASE"};
constexpr const char* attributes[] = {"idVendor", "idProduct", "bDeviceClass", "manufacturer",
                                      "product"};

std::string text(const char* value)
{
    return value ? std::string(value) : std::string();
}

} // namespace

UdevUsbDevices::UdevUsbDevices(std::string udevRuntimeFolder)
    : runtimeFolder_(std::move(udevRuntimeFolder))
{
}

UdevUsbDevices::~UdevUsbDevices()
{
    delete notifier_;
    if (hwdb_)
        udev_hwdb_unref(hwdb_);
    if (monitor_)
        udev_monitor_unref(monitor_);
    if (udev_)
        udev_unref(udev_);
}

void UdevUsbDevices::start(Changed changed)
{
    changed_ = std::move(changed);
    // Reading sysfs waits until the first frame is drawn.
    QTimer::singleShot(0, this, [this] { begin(); });
}

void UdevUsbDevices::begin()
{
    const std::string control = runtimeFolder_ + "/control";
    if (::access(control.c_str(), F_OK) != 0) {
        giveUp("udev is not running (no " + excerptForLog(control) + ")");
        return;
    }
    udev_ = udev_new();
    if (!udev_) {
        giveUp(std::string("udev cannot be reached: ") + std::strerror(errno));
        return;
    }
    // Listening starts before the first listing, so that nothing plugged in between is missed;
    // what both report is simply noted twice.
    monitor_ = udev_monitor_new_from_netlink(udev_, "udev");
    if (!monitor_ ||
        udev_monitor_filter_add_match_subsystem_devtype(monitor_, subsystem, deviceType) < 0 ||
        udev_monitor_enable_receiving(monitor_) < 0) {
        giveUp(std::string("udev's announcements cannot be followed: ") + std::strerror(errno));
        return;
    }
    notifier_ = new QSocketNotifier(udev_monitor_get_fd(monitor_), QSocketNotifier::Read);
    connect(notifier_, &QSocketNotifier::activated, this, [this] { readEvents(); });
    // Names of devices udev did not name itself (it names them as it announces them).
    hwdb_ = udev_hwdb_new(udev_);
    listAll();
    report();
}

void UdevUsbDevices::listAll()
{
    devices_.clear();
    udev_enumerate* listing = udev_enumerate_new(udev_);
    if (listing) {
        udev_enumerate_add_match_subsystem(listing, subsystem);
        udev_enumerate_add_match_property(listing, "DEVTYPE", deviceType);
        udev_enumerate_scan_devices(listing);
        udev_list_entry* entry = nullptr;
        udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(listing))
        {
            udev_device* device =
                udev_device_new_from_syspath(udev_, udev_list_entry_get_name(entry));
            if (!device)
                continue; // gone since it was listed
            note(device);
            udev_device_unref(device);
        }
        udev_enumerate_unref(listing);
    }
}

void UdevUsbDevices::giveUp(const std::string& why)
{
    logLine(why + "; USB devices are not shown");
    changed_(std::nullopt);
}

void UdevUsbDevices::readEvents()
{
    bool changed = false;
    // The socket does not block: this ends when everything announced so far has been read.
    while (udev_device* device = udev_monitor_receive_device(monitor_)) {
        const std::string action = text(udev_device_get_action(device));
        if (action == "remove")
            changed = devices_.erase(text(udev_device_get_syspath(device))) > 0 || changed;
        else
            changed = note(device) || changed;
        udev_device_unref(device);
    }
    // More announcements came than the socket could hold: some are lost, so the list is read
    // again.
    if (errno == ENOBUFS) {
        listAll();
        changed = true;
    }
    if (changed)
        report();
}

bool UdevUsbDevices::note(udev_device* device)
{
    UsbDeviceFacts facts;
    facts.path = text(udev_device_get_syspath(device));
    facts.sysName = text(udev_device_get_sysname(device));
    for (const char* name : properties)
        if (const char* value = udev_device_get_property_value(device, name))
            facts.properties[name] = value;
    for (const char* name : attributes)
        if (const char* value = udev_device_get_sysattr_value(device, name))
            facts.attributes[name] = value;
    if (hwdb_ && !facts.properties.contains("ID_VENDOR_FROM_DATABASE")) {
        if (const auto ids = usbIdsOf(facts)) {
            udev_list_entry* entry = nullptr;
            udev_list_entry_foreach(entry, udev_hwdb_get_properties_list_entry(
                                               hwdb_, hardwareDatabaseKey(*ids).c_str(), 0))
            {
                const std::string name = text(udev_list_entry_get_name(entry));
                if (name == "ID_VENDOR_FROM_DATABASE" || name == "ID_MODEL_FROM_DATABASE")
                    facts.properties[name] = text(udev_list_entry_get_value(entry));
            }
        }
    }

    const auto listed = usbDeviceFrom(facts);
    const auto known = devices_.find(facts.path);
    if (!listed) {
        if (known == devices_.end())
            return false;
        devices_.erase(known);
        return true;
    }
    if (known != devices_.end() && known->second == *listed)
        return false;
    devices_[facts.path] = *listed;
    return true;
}

void UdevUsbDevices::report()
{
    std::vector<UsbDevice> list;
    list.reserve(devices_.size());
    for (const auto& [path, device] : devices_)
        list.push_back(device);
    changed_(list);
}

} // namespace navro
