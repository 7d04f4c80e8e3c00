#include "system/UsbDeviceFacts.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

UsbDeviceFacts device(std::map<std::string, std::string, std::less<>> attributes,
                      std::map<std::string, std::string, std::less<>> properties = {})
{
    return {"/sys/devices/pci0000:00/0000:00:14.0/usb1/1-2", "1-2", std::move(properties),
            std::move(attributes)};
}

std::string nameOf(const UsbDeviceFacts& facts)
{
    const auto listed = usbDeviceFrom(facts);
    return listed ? listed->name : "(not listed)";
}

TEST(UsbDeviceFactsTest, NamesFromTheDatabaseThenFromTheDevice)
{
    const auto receiver = device({{"idVendor", "046d"}, {"idProduct", "c52b"}},
                                 {{"ID_VENDOR_FROM_DATABASE", "Logitech, Inc."},
                                  {"ID_MODEL_FROM_DATABASE", "Unifying Receiver"}});
    const auto listed = usbDeviceFrom(receiver);
    ASSERT_TRUE(listed);
    EXPECT_EQ(listed->name, "Logitech Unifying Receiver");
    EXPECT_EQ(listed->ids, "046d:c52b");
    EXPECT_EQ(listed->id, receiver.path);

    // The database before what the device says of itself; each part separately.
    EXPECT_EQ(nameOf(device({{"manufacturer", "SanDisk"}, {"product", "Cruzer Blade"}})),
              "SanDisk Cruzer Blade");
    EXPECT_EQ(nameOf(device({{"manufacturer", "Generic"}, {"product", "USB Audio"}},
                            {{"ID_VENDOR_FROM_DATABASE", "C-Media Electronics, Inc."}})),
              "C-Media Electronics USB Audio");
    EXPECT_EQ(nameOf(device({{"manufacturer", "Realtek"}},
                            {{"ID_VENDOR_FROM_DATABASE", "Realtek Semiconductor Corp."},
                             {"ID_MODEL_FROM_DATABASE", "RTL8153 Gigabit Ethernet Adapter"}})),
              "Realtek Semiconductor RTL8153 Gigabit Ethernet Adapter");
    EXPECT_EQ(nameOf(device({}, {{"ID_VENDOR_FROM_DATABASE", "Chicony Electronics Co., Ltd"}})),
              "Chicony Electronics");
    // A model that names its maker already is not prefixed twice.
    EXPECT_EQ(nameOf(device({{"manufacturer", "Kingston"}, {"product", "kingston DataTraveler"}})),
              "kingston DataTraveler");
    // A name that is all company suffix stays as it is.
    EXPECT_EQ(nameOf(device({}, {{"ID_VENDOR_FROM_DATABASE", "Inc."}})), "Inc.");

    // Nothing names it: the numbers remain, for the view to show.
    const auto unknown = usbDeviceFrom(device({{"idVendor", "abcd"}, {"idProduct", "1234"}}));
    ASSERT_TRUE(unknown);
    EXPECT_EQ(unknown->name, "");
    EXPECT_EQ(unknown->ids, "abcd:1234");
}

TEST(UsbDeviceFactsTest, HubsAndRootHubsAreNotListed)
{
    auto rootHub = device({{"idVendor", "1d6b"}, {"idProduct", "0003"}, {"bDeviceClass", "09"}},
                          {{"ID_MODEL_FROM_DATABASE", "3.0 root hub"}});
    rootHub.sysName = "usb2";
    EXPECT_FALSE(usbDeviceFrom(rootHub));
    // Known as a root hub by its numbers alone, when its name is not at hand.
    EXPECT_FALSE(usbDeviceFrom(device({{"idVendor", "1d6b"}, {"idProduct", "0002"}})));
    EXPECT_FALSE(usbDeviceFrom(
        device({{"idVendor", "05e3"}, {"idProduct", "0610"}, {"bDeviceClass", "09"}})));
    // The kernel's TYPE says so where the attributes cannot be read (a removal).
    EXPECT_FALSE(usbDeviceFrom(device({}, {{"TYPE", "9/0/1"}})));
    // Other classes, and Linux's own gadgets, are devices.
    EXPECT_TRUE(usbDeviceFrom(device({{"bDeviceClass", "00"}}, {{"TYPE", "9/0/1"}})));
    EXPECT_TRUE(usbDeviceFrom(device({}, {{"TYPE", "239/2/1"}})));
    EXPECT_TRUE(usbDeviceFrom(device({{"idVendor", "1d6b"}, {"idProduct", "0104"}})));
}

TEST(UsbDeviceFactsTest, NumbersFromAttributesPropertiesOrTheKernelsProduct)
{
    EXPECT_EQ(usbIdsOf(device({{"idVendor", "046d"}, {"idProduct", "C52B"}})),
              (UsbIds{0x046d, 0xc52b}));
    EXPECT_EQ(usbIdsOf(device({}, {{"ID_VENDOR_ID", "0781"}, {"ID_MODEL_ID", "5567"}})),
              (UsbIds{0x0781, 0x5567}));
    EXPECT_EQ(usbIdsOf(device({}, {{"PRODUCT", "46d/c52b/1201"}})), (UsbIds{0x046d, 0xc52b}));
    // Malformed ones fall through to the next source, and to none.
    EXPECT_EQ(usbIdsOf(device({{"idVendor", "zz"}, {"idProduct", "1"}}, {{"PRODUCT", "1/2/3"}})),
              (UsbIds{1, 2}));
    for (const char* product : {"", "46d", "46d/", "/c52b/1", "12345/1/1", "46d/c52b0/1", "-1/2/3"})
        EXPECT_FALSE(usbIdsOf(device({}, {{"PRODUCT", product}}))) << product;

    EXPECT_EQ(hardwareDatabaseKey({0x046d, 0xc52b}), "usb:v046DpC52B");
    EXPECT_EQ(hardwareDatabaseKey({0, 1}), "usb:v0000p0001");
}

TEST(UsbDeviceFactsTest, OutsideTextBecomesOneCleanLine)
{
    const std::vector<std::pair<std::string, std::string>> table = {
        {"  USB   Receiver \n", "USB Receiver"},
        {"Key\tboard\x01\x7f!", "Key board !"},
        {"", ""},
        {"\n\t ", ""},
        // A right-to-left override would turn the rest of the row around.
        {"Evil\xe2\x80\xae"
         "cod.exe",
         "Evilcod.exe"},
        {"\xe2\x81\xa6x\xe2\x81\xa9", "x"},
        // Invalid UTF-8: a stray continuation byte, an overlong slash, a surrogate, a cut sequence.
        {"a\x80z", "a\xef\xbf\xbdz"},
        {"\xc0\xaf", "\xef\xbf\xbd\xef\xbf\xbd"},
        {"\xed\xa0\x80", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd"},
        {"ok\xe2\x82", "ok\xef\xbf\xbd\xef\xbf\xbd"},
        // C1 controls and the line separator are controls too.
        {"a\xc2\x85"
         "b\xe2\x80\xa8"
         "c",
         "a b c"},
        {"فأرة لاسلكية", "فأرة لاسلكية"},
    };
    for (const auto& [text, expected] : table)
        EXPECT_EQ(cleanDeviceText(text, 64), expected) << text;

    // Cut on a character, never inside one, and said to be cut.
    EXPECT_EQ(cleanDeviceText("abcdef", 3), "abc…");
    EXPECT_EQ(cleanDeviceText("abc", 3), "abc");
    EXPECT_EQ(cleanDeviceText("ab  cd", 3), "ab…");
    EXPECT_EQ(cleanDeviceText("فأرة", 2), "فأ…");
    EXPECT_EQ(nameOf(device({{"product", std::string(300, 'x')}})), std::string(64, 'x') + "…");
}

} // namespace
} // namespace navro
