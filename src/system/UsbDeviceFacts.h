#pragma once

#include "system/DeviceSources.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace navro {

// What udev tells of one USB device: its properties (the kernel's PRODUCT and TYPE, the names
// udev's hardware database added) and attributes read from sysfs. All of it is outside text: a
// device writes its own manufacturer and product strings, whatever they hold.
struct UsbDeviceFacts {
    std::string path;    // the device's sysfs path: who it is while it stays plugged in
    std::string sysName; // "1-2.4"; "usb1" for the root hub of a controller
    std::map<std::string, std::string, std::less<>> properties;
    std::map<std::string, std::string, std::less<>> attributes;
};

struct UsbIds {
    std::uint16_t vendor = 0;
    std::uint16_t product = 0;
    bool operator==(const UsbIds&) const = default;
};

// The vendor and product numbers: the idVendor and idProduct attributes, else udev's
// ID_VENDOR_ID and ID_MODEL_ID, else the kernel's PRODUCT ("46d/c52b/1201").
std::optional<UsbIds> usbIdsOf(const UsbDeviceFacts& facts);

// The key under which the hardware database lists these numbers ("usb:v046DpC52B").
std::string hardwareDatabaseKey(UsbIds ids);

// The device as the USB section lists it, or none for what nobody plugs in: a controller's root
// hub, and hubs, whose devices are listed themselves. The name is the hardware database's vendor
// and model, else what the device calls itself, made fit for one line (cleanDeviceText).
std::optional<UsbDevice> usbDeviceFrom(const UsbDeviceFacts& facts);

// Outside text as one line of a list: invalid UTF-8 replaced, control characters turned into
// spaces, characters that would turn the direction of the surrounding text dropped, spaces
// collapsed and trimmed, and cut after `maxCharacters` characters with an ellipsis.
std::string cleanDeviceText(std::string_view text, std::size_t maxCharacters);

} // namespace navro
