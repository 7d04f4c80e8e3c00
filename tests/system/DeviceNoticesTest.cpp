#include "system/DeviceNotices.h"

#include "ManualClock.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using enum PowerEvent;

PowerReading battery(double percentage, bool onCharger)
{
    return {true, percentage, onCharger};
}

// Each row: the readings in order, and the events the last one calls for.
struct PowerCase {
    const char* name;
    std::vector<PowerReading> readings;
    std::vector<std::vector<PowerEvent>> expected; // per reading
};

TEST(PowerNoticeRuleTest, Table)
{
    const std::vector<PowerCase> cases = {
        {"start-up state is no news", {battery(15, false)}, {{}}},
        {"charger plugged and removed",
         {battery(50, false), battery(50, true), battery(51, false)},
         {{}, {chargerConnected}, {chargerRemoved}}},
        {"falling through 20 and 10, once each",
         {battery(25, false), battery(20, false), battery(19, false), battery(10, false),
          battery(9, false), battery(5, false)},
         {{}, {batteryAt20}, {}, {batteryAt10}, {}, {}}},
        {"a jump past both marks says only the lower",
         {battery(30, false), battery(8, false), battery(7, false)},
         {{}, {batteryAt10}, {}}},
        {"charging arms the warnings again for the next discharge",
         {battery(30, false), battery(19, false), battery(19, true), battery(25, true),
          battery(18, false)},
         {{}, {batteryAt20}, {chargerConnected}, {}, {chargerRemoved, batteryAt20}}},
        {"rising above 20 without a charger does not arm it again",
         {battery(30, false), battery(20, false), battery(22, false), battery(20, false)},
         {{}, {batteryAt20}, {}, {}}},
        {"started low, the next mark still warns",
         {battery(15, false), battery(10, false)},
         {{}, {batteryAt10}}},
        {"no warnings while on the charger", {battery(30, true), battery(10, true)}, {{}, {}}},
        {"a machine without a battery says nothing",
         {{false, 0, true}, {false, 0, false}},
         {{}, {}}},
        {"a battery appearing is a baseline",
         {{false, 0, true}, battery(5, false), battery(4, false)},
         {{}, {}, {}}},
    };
    for (const auto& row : cases) {
        PowerNoticeRule rule;
        for (std::size_t i = 0; i < row.readings.size(); ++i)
            EXPECT_EQ(rule.observe(row.readings[i]), row.expected[i])
                << row.name << ", reading " << i;
    }
}

TEST(DeviceNoticesTest, PowerTextsInBothLanguages)
{
    const auto english = describePowerEvent(batteryAt20, 19.6, false);
    EXPECT_EQ(english.title, "Battery low");
    EXPECT_EQ(english.detail, "20% left");
    EXPECT_EQ(describePowerEvent(batteryAt10, 9.8, true).detail, "متبقٍ ١٠٪، صِل الشاحن");
    EXPECT_EQ(describePowerEvent(chargerConnected, 100, false).symbol, "battery.100percent.bolt");
    EXPECT_NE(describePowerEvent(batteryAt10, 9, false).tint,
              describePowerEvent(batteryAt20, 19, false).tint);
}

DeviceEvent usb(std::string name, DeviceChange change = DeviceChange::connected)
{
    return {DeviceKind::usb, change, std::move(name)};
}

TEST(DeviceNoticesTest, OneEventNamesItsDevice)
{
    const auto notice =
        describeDeviceEvents({{DeviceKind::drive, DeviceChange::disconnected, "Stick"}}, false);
    EXPECT_EQ(notice.title, "Drive ejected");
    EXPECT_EQ(notice.detail, "Stick");
    EXPECT_EQ(notice.symbol, "externaldrive");
    EXPECT_EQ(describeDeviceEvents({{DeviceKind::bluetooth, DeviceChange::connected, "Buds"}}, true)
                  .title,
              "تم توصيل جهاز بلوتوث");
}

TEST(DeviceNoticesTest, ABurstIsCounted)
{
    const std::vector<DeviceEvent> hub = {usb("Keyboard"), usb("Mouse"), usb("Camera"),
                                          usb("Card Reader"), usb("Hub Audio Device")};
    const auto english = describeDeviceEvents(hub, false);
    EXPECT_EQ(english.title, "5 USB devices connected");
    EXPECT_EQ(english.detail, "Keyboard, Mouse, Camera, Card Reader and 1 more");
    const auto arabic = describeDeviceEvents(hub, true);
    EXPECT_EQ(arabic.title, "أجهزة USB موصولة: ٥");
    EXPECT_NE(arabic.detail.find("و١ غيرها"), std::string::npos) << arabic.detail;

    const auto mixed = describeDeviceEvents(
        {usb("Keyboard"), {DeviceKind::display, DeviceChange::connected, "HDMI-1"}}, false);
    EXPECT_EQ(mixed.title, "2 device changes");
    EXPECT_EQ(mixed.detail, "Keyboard, HDMI-1");
}

TEST(DeviceNoticesTest, ArabicDigits)
{
    EXPECT_EQ(withArabicDigits("Disk 2 of 10"), "Disk ٢ of ١٠");
    EXPECT_EQ(withArabicDigits(""), "");
}

struct BurstFixture : ::testing::Test {
    ManualClock clock;
    std::vector<std::vector<DeviceEvent>> bursts;
    DeviceEventBurst burst{
        clock, [this](std::vector<DeviceEvent> events) { bursts.push_back(std::move(events)); }};
};

TEST_F(BurstFixture, AHubOfFiveIsOneBurst)
{
    for (const char* name : {"a", "b", "c", "d", "e"}) {
        burst.add(usb(name));
        clock.advance(std::chrono::milliseconds(100));
    }
    EXPECT_TRUE(bursts.empty());
    clock.advance(DeviceEventBurst::quiet);
    ASSERT_EQ(bursts.size(), 1u);
    EXPECT_EQ(bursts[0].size(), 5u);
}

TEST_F(BurstFixture, EventsApartAreSaidApart)
{
    burst.add(usb("a"));
    clock.advance(std::chrono::seconds(2));
    burst.add(usb("b"));
    clock.advance(std::chrono::seconds(2));
    ASSERT_EQ(bursts.size(), 2u);
    EXPECT_EQ(bursts[1], std::vector<DeviceEvent>{usb("b")});
}

TEST_F(BurstFixture, AStreamIsSaidAtTheLongestWait)
{
    for (int i = 0; i < 20; ++i) {
        burst.add(usb("device " + std::to_string(i)));
        clock.advance(std::chrono::milliseconds(400));
    }
    // 8 s of changes never quiet for 600 ms: said after 3 s, and again after the next 3 s.
    ASSERT_GE(bursts.size(), 2u);
    EXPECT_EQ(bursts[0].size(), 8u);
}

TEST_F(BurstFixture, ComingAndGoingInOneBurstCancelsOut)
{
    burst.add(usb("flaky"));
    burst.add(usb("flaky", DeviceChange::disconnected));
    clock.advance(std::chrono::seconds(5));
    EXPECT_TRUE(bursts.empty());

    burst.add(usb("flaky"));
    burst.add(usb("other"));
    burst.add(usb("flaky", DeviceChange::disconnected));
    clock.advance(std::chrono::seconds(5));
    ASSERT_EQ(bursts.size(), 1u);
    EXPECT_EQ(bursts[0], std::vector<DeviceEvent>{usb("other")});
}

} // namespace
} // namespace navro
