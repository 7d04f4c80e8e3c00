#include "system/DeviceMonitor.h"

#include "FakeDeviceSources.h"
#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "app/AppSettings.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

Battery internal(double percentage, Battery::State state)
{
    return {"/bat0", "Battery", Battery::Kind::internal, percentage, state, 3600, 0};
}

struct DeviceMonitorTest : ::testing::Test {
    ManualClock clock;
    FakeSettingsStore store;
    AppSettings settings{store, [] { return QStringList(); }};
    FakePowerSource power;
    FakeBluetoothSource bluetooth;
    FakeDriveSource drives;
    FakeUsbSource usb;
    std::vector<DeviceNotice> notices;
    DeviceMonitor monitor{clock,
                          settings,
                          {&power, &bluetooth, &drives, &usb},
                          [this](const DeviceNotice& notice) { notices.push_back(notice); }};

    void SetUp() override { monitor.start(); }
    // Past the burst's wait: what was collected is said.
    void settle() { clock.advance(DeviceEventBurst::longest); }
};

TEST_F(DeviceMonitorTest, EverySourceStartsAndAMissingOneIsAnEmptySection)
{
    EXPECT_TRUE(power.started() && bluetooth.started() && drives.started() && usb.started());
    power.report(std::nullopt);
    EXPECT_TRUE(monitor.batteries().isEmpty());
    EXPECT_FALSE(monitor.internalBattery());
}

TEST_F(DeviceMonitorTest, ChargerAndLowBatteryNoticesFollowTheSupply)
{
    power.report(PowerSupply{false, {internal(25, Battery::State::discharging)}});
    EXPECT_TRUE(notices.empty());
    power.report(PowerSupply{false, {internal(20, Battery::State::discharging)}});
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].title, "Battery low");
    power.report(PowerSupply{true, {internal(20, Battery::State::charging)}});
    ASSERT_EQ(notices.size(), 2u);
    EXPECT_EQ(notices[1].title, "Charger connected");

    const auto list = monitor.batteries();
    ASSERT_EQ(list.size(), 1);
    EXPECT_EQ(list[0].toMap()["state"].toString(), "charging");
    EXPECT_TRUE(monitor.onCharger());
}

TEST_F(DeviceMonitorTest, NoticesOnlyWithDevicesInNotchAndInTheLanguageOfTheMoment)
{
    power.report(PowerSupply{false, {internal(50, Battery::State::discharging)}});
    settings.setDevicesInNotch(false);
    power.report(PowerSupply{true, {internal(50, Battery::State::charging)}});
    EXPECT_TRUE(notices.empty());
    settings.setDevicesInNotch(true);
    settings.setLanguageRaw("arabic");
    power.report(PowerSupply{false, {internal(50, Battery::State::discharging)}});
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].title, "تم فصل الشاحن");
}

TEST_F(DeviceMonitorTest, AHubOfUsbDevicesIsOneNotice)
{
    const UsbDevice keyboard{"/usb1/1-1", "Keyboard", "046d:c31c"};
    usb.report(std::vector<UsbDevice>{keyboard});
    settle();
    EXPECT_TRUE(notices.empty()); // what was there at start
    std::vector<UsbDevice> devices{keyboard};
    for (int i = 0; i < 5; ++i) {
        devices.push_back({"/usb1/1-2." + std::to_string(i), "Device " + std::to_string(i),
                           "abcd:000" + std::to_string(i)});
        usb.report(devices);
        clock.advance(std::chrono::milliseconds(50));
    }
    settle();
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].title, "5 USB devices connected");
    EXPECT_EQ(monitor.usb().size(), 6);

    usb.report(std::vector<UsbDevice>{keyboard});
    settle();
    ASSERT_EQ(notices.size(), 2u);
    EXPECT_EQ(notices[1].title, "5 USB devices disconnected");

    // One that nothing names is told by its numbers, and listed with them.
    usb.report(std::vector<UsbDevice>{keyboard, {"/usb1/1-3", "", "1234:5678"}});
    settle();
    ASSERT_EQ(notices.size(), 3u);
    EXPECT_EQ(notices[2].title, "USB device connected");
    EXPECT_EQ(notices[2].detail, "1234:5678");
    EXPECT_EQ(monitor.usb()[1].toMap()["ids"].toString(), "1234:5678");
}

TEST_F(DeviceMonitorTest, DriveMountedEjectedAndBusy)
{
    drives.report(std::vector<Drive>{{"/drive/stick", "Stick", 8000, std::nullopt, false}});
    drives.report(std::vector<Drive>{{"/drive/stick", "Stick", 8000, 6000, true}});
    settle();
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].title, "Drive mounted");
    EXPECT_EQ(notices[0].detail, "Stick");

    monitor.eject("/drive/stick");
    monitor.eject("/drive/stick"); // a second click while it runs asks nothing more
    ASSERT_EQ(drives.ejects.size(), 1u);
    EXPECT_EQ(monitor.drives()[0].toMap()["status"].toString(), "ejecting");
    drives.ejects["/drive/stick"](EjectOutcome::busy);
    EXPECT_EQ(monitor.drives()[0].toMap()["status"].toString(), "busy");
    EXPECT_EQ(monitor.drives()[0].toMap()["free"].toDouble(), 6000.0);

    // Unknown drives are not asked about.
    monitor.eject("/drive/none");
    EXPECT_EQ(drives.ejects.size(), 1u);

    drives.ejects.clear();
    monitor.eject("/drive/stick");
    drives.ejects["/drive/stick"](EjectOutcome::ejected);
    drives.report(std::vector<Drive>{});
    settle();
    ASSERT_EQ(notices.size(), 2u);
    EXPECT_EQ(notices[1].title, "Drive ejected");
    EXPECT_TRUE(monitor.drives().isEmpty());
}

TEST_F(DeviceMonitorTest, BluetoothConnectWaitsForTheAnswerAndNoticesTheChange)
{
    BluetoothDevice headset{"/org/bluez/hci0/dev_1", "Headset", "audio-headset", false,
                            std::nullopt};
    bluetooth.report(std::vector<BluetoothDevice>{headset});
    monitor.connectDevice(QString::fromStdString(headset.id));
    monitor.connectDevice(QString::fromStdString(headset.id));
    ASSERT_EQ(bluetooth.requests.size(), 1u);
    EXPECT_EQ(bluetooth.requests[0], std::make_pair(headset.id, true));
    EXPECT_TRUE(monitor.bluetooth()[0].toMap()["pending"].toBool());
    bluetooth.answer(true);
    EXPECT_FALSE(monitor.bluetooth()[0].toMap()["pending"].toBool());

    headset.connected = true;
    headset.battery = 80;
    bluetooth.report(std::vector<BluetoothDevice>{headset});
    settle();
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].title, "Bluetooth device connected");
    EXPECT_EQ(monitor.bluetooth()[0].toMap()["battery"].toInt(), 80);

    // A battery reading alone is no notice.
    headset.battery = 70;
    bluetooth.report(std::vector<BluetoothDevice>{headset});
    settle();
    EXPECT_EQ(notices.size(), 1u);
}

TEST_F(DeviceMonitorTest, DisplaysAddedAfterStartAreSaidAndSignalOnlyOnChange)
{
    int changed = 0;
    QObject::connect(&monitor, &DeviceMonitor::displaysChanged, [&] { ++changed; });
    monitor.setDisplays({{"eDP-1", 1920, 1080}});
    monitor.setDisplays({{"eDP-1", 1920, 1080}});
    EXPECT_EQ(changed, 1);
    monitor.setDisplays({{"eDP-1", 1920, 1080}, {"HDMI-1", 2560, 1440}});
    settle();
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].title, "Display connected");
    EXPECT_EQ(notices[0].detail, "HDMI-1");
    EXPECT_EQ(monitor.displays()[1].toMap()["width"].toInt(), 2560);
}

} // namespace
} // namespace navro
