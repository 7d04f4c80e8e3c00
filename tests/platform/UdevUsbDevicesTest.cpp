// The USB source against libudev's real monitor. udev's announcements are sent by the test itself,
// as udev sends them, inside a network namespace of the test's own: nothing else on the machine
// hears of the made-up devices.
#include "platform/linux/UdevUsbDevices.h"

#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "QtTestApplication.h"
#include "TemporaryFolder.h"
#include "app/AppSettings.h"
#include "app/Log.h"
#include "system/DeviceMonitor.h"

#include <cerrno>
#include <cstring>
#include <endian.h>
#include <fstream>
#include <gtest/gtest.h>
#include <linux/netlink.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

namespace navro {
namespace {

// The hash udev puts in its messages' headers for the kernel's filter to match (MurmurHash2,
// seed 0).
std::uint32_t udevHash(std::string_view text)
{
    constexpr std::uint32_t m = 0x5bd1e995;
    std::uint32_t h = std::uint32_t(text.size());
    std::size_t at = 0;
    for (; at + 4 <= text.size(); at += 4) {
        std::uint32_t k = 0;
        std::memcpy(&k, text.data() + at, 4);
        k = le32toh(k);
        k *= m;
        k ^= k >> 24;
        k *= m;
        h = h * m ^ k;
    }
    switch (text.size() - at) {
    case 3:
        h ^= std::uint32_t(static_cast<unsigned char>(text[at + 2])) << 16;
        [[fallthrough]];
    case 2:
        h ^= std::uint32_t(static_cast<unsigned char>(text[at + 1])) << 8;
        [[fallthrough]];
    case 1:
        h ^= static_cast<unsigned char>(text[at]);
        h *= m;
    }
    h ^= h >> 13;
    h *= m;
    h ^= h >> 15;
    return h;
}

// Sends messages to udev's listeners the way udev does after handling a device.
class UdevAnnouncer {
public:
    UdevAnnouncer() : fd_(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_KOBJECT_UEVENT))
    {
        sockaddr_nl own{};
        own.nl_family = AF_NETLINK;
        if (fd_ >= 0 && ::bind(fd_, reinterpret_cast<sockaddr*>(&own), sizeof own) != 0) {
            ::close(fd_);
            fd_ = -1;
        }
    }
    ~UdevAnnouncer()
    {
        if (fd_ >= 0)
            ::close(fd_);
    }
    bool ready() const { return fd_ >= 0; }

    bool announce(const std::string& action, const std::string& name,
                  const std::vector<std::string>& properties = {})
    {
        std::string list;
        for (const std::string& property : std::vector<std::string>{
                 "ACTION=" + action, "DEVPATH=/devices/navro-test/usb9/" + name, "SUBSYSTEM=usb",
                 "DEVTYPE=usb_device", "SEQNUM=" + std::to_string(++sequence_)})
            list += property + '\0';
        for (const std::string& property : properties)
            list += property + '\0';
        struct Header {
            char prefix[8] = "libudev";
            std::uint32_t magic = htobe32(0xfeedcafe);
            std::uint32_t headerSize = sizeof(Header);
            std::uint32_t propertiesOffset = sizeof(Header);
            std::uint32_t propertiesLength = 0;
            std::uint32_t subsystemHash = htobe32(udevHash("usb"));
            std::uint32_t deviceTypeHash = htobe32(udevHash("usb_device"));
            std::uint32_t tagBloomHigh = 0;
            std::uint32_t tagBloomLow = 0;
        } header;
        header.propertiesLength = std::uint32_t(list.size());
        iovec parts[2] = {{&header, sizeof header}, {list.data(), list.size()}};
        sockaddr_nl group{};
        group.nl_family = AF_NETLINK;
        group.nl_groups = 2; // udev's listeners
        msghdr message{};
        message.msg_name = &group;
        message.msg_namelen = sizeof group;
        message.msg_iov = parts;
        message.msg_iovlen = 2;
        // Refused by the kernel's own end, as every message to a group is; the group has it.
        return ::sendmsg(fd_, &message, 0) >= 0 || errno == ECONNREFUSED;
    }

private:
    int fd_;
    int sequence_ = 0;
};

bool devIsDevtmpfs()
{
    std::ifstream mounts("/proc/self/mounts");
    std::string device, point, type;
    std::string rest;
    while (mounts >> device >> point >> type && std::getline(mounts, rest))
        if (point == "/dev")
            return type == "devtmpfs";
    return false;
}

TEST(UdevUsbDevicesTest, WithoutUdevTheSectionIsAbsentAndThatIsSaidOnce)
{
    TemporaryFolder folder; // no control socket: no udev
    CapturingLogSink log;
    UdevUsbDevices source(folder.path().string());
    int reports = 0;
    std::optional<std::vector<UsbDevice>> last = std::vector<UsbDevice>{};
    source.start([&](const auto& devices) {
        ++reports;
        last = devices;
    });
    EXPECT_EQ(reports, 0) << "the start waits for the event loop";
    ASSERT_TRUE(waitFor([&] { return reports > 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(reports, 1);
    EXPECT_FALSE(last);
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("udev is not running")) << log.lines[0];
    EXPECT_TRUE(log.contains("USB devices are not shown")) << log.lines[0];
}

struct UdevAnnouncementsTest : ::testing::Test {
    void SetUp() override
    {
        if (::unshare(CLONE_NEWNET) != 0)
            GTEST_SKIP() << "needs a network namespace of its own to announce devices in ("
                         << std::strerror(errno) << ")";
        // libudev listens to udev only where udev runs or /dev is the kernel's own.
        if (::access("/run/udev/control", F_OK) != 0 && !devIsDevtmpfs())
            GTEST_SKIP() << "libudev does not listen here: no udev and no devtmpfs on /dev";
        // Made in the namespace: what it sends stays there.
        announcer.emplace();
        ASSERT_TRUE(announcer->ready()) << std::strerror(errno);
        writeBytes(folder / "control", "");
        testApplication();
        monitor.start();
        // The machine's own devices, listed at start.
        ASSERT_TRUE(waitFor([&] { return usbReports > 0; }));
        before = monitor.usb().size();
    }
    QStringList names() const
    {
        QStringList result;
        for (const auto& device : monitor.usb())
            result << device.toMap()[QStringLiteral("name")].toString();
        return result;
    }

    TemporaryFolder folder;
    std::optional<UdevAnnouncer> announcer;
    ManualClock clock;
    FakeSettingsStore store;
    AppSettings settings{store, [] { return QStringList(); }};
    UdevUsbDevices source{folder.path().string()};
    std::vector<DeviceNotice> notices;
    DeviceMonitor monitor{clock,
                          settings,
                          {nullptr, nullptr, nullptr, &source},
                          [this](const DeviceNotice& notice) { notices.push_back(notice); }};
    int usbReports = 0;
    QMetaObject::Connection counting =
        QObject::connect(&monitor, &DeviceMonitor::usbChanged, [this] { ++usbReports; });
    qsizetype before = 0;
};

TEST_F(UdevAnnouncementsTest, AHubWithFiveDevicesIsOneNoticeAndTheHubIsNotListed)
{
    const std::vector<std::string> devices = {"9-1.1", "9-1.2", "9-1.3", "9-1.4", "9-1.5"};
    const std::vector<std::string> receiver = {"TYPE=0/0/0", "PRODUCT=46d/c52b/1201",
                                               "ID_VENDOR_FROM_DATABASE=Logitech, Inc.",
                                               "ID_MODEL_FROM_DATABASE=Unifying Receiver"};
    ASSERT_TRUE(announcer->announce("add", "9-1",
                                    {"TYPE=9/0/1", "PRODUCT=5e3/610/9321",
                                     "ID_VENDOR_FROM_DATABASE=Genesys Logic, Inc.",
                                     "ID_MODEL_FROM_DATABASE=Hub"}));
    ASSERT_TRUE(announcer->announce("add", devices[0], receiver));
    for (std::size_t i = 1; i < devices.size(); ++i)
        ASSERT_TRUE(announcer->announce(
            "add", devices[i], {"TYPE=0/0/0", "PRODUCT=abcd/" + std::to_string(i) + "/1"}));
    // udev's later word on a device it announced already changes nothing.
    ASSERT_TRUE(announcer->announce("bind", devices[0], receiver));
    ASSERT_TRUE(waitFor([&] { return monitor.usb().size() == before + 5; }))
        << monitor.usb().size();
    EXPECT_TRUE(names().contains(QStringLiteral("Logitech Unifying Receiver")))
        << names().join(", ").toStdString();
    EXPECT_FALSE(names().contains(QStringLiteral("Genesys Logic Hub")));

    clock.advance(DeviceEventBurst::longest);
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].title, "5 USB devices connected");
    // Devices nothing names are told by their numbers.
    EXPECT_NE(notices[0].detail.find("Logitech Unifying Receiver"), std::string::npos)
        << notices[0].detail;
    EXPECT_NE(notices[0].detail.find("abcd:0001"), std::string::npos) << notices[0].detail;

    for (const std::string& name : devices)
        ASSERT_TRUE(announcer->announce("remove", name, {"TYPE=0/0/0"}));
    ASSERT_TRUE(announcer->announce("remove", "9-1", {"TYPE=9/0/1"}));
    ASSERT_TRUE(waitFor([&] { return monitor.usb().size() == before; }));
    clock.advance(DeviceEventBurst::longest);
    ASSERT_EQ(notices.size(), 2u);
    EXPECT_EQ(notices[1].title, "5 USB devices disconnected");
}

} // namespace
} // namespace navro
