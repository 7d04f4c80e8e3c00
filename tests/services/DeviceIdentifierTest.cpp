#include "services/DeviceIdentifier.h"

#include "TemporaryFolder.h"
#include "app/FileAccess.h"
#include "app/Log.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-id128.h>

namespace navro {
namespace {

namespace fs = std::filesystem;

Id128 idFromHex(std::string_view hex)
{
    return parseMachineId(hex).value();
}

TEST(DeviceIdentifier, MachineIdFilesAreReadOnlyWhenTheyHoldAnId)
{
    const struct {
        std::string_view text;
        bool valid;
    } cases[] = {
        {"0123456789abcdef0123456789abcdef\n", true},
        {"0123456789abcdef0123456789abcdef", true},
        {"0123456789ABCDEF0123456789ABCDEF\n", false}, // systemd writes lower case only
        {"0123456789abcdef0123456789abcde\n", false},
        {"0123456789abcdef0123456789abcdef0\n", false},
        {"0123456789abcdef0123456789abcdeg\n", false},
        {"00000000000000000000000000000000\n", false}, // "uninitialized"
        {"0123456789abcdef0123456789abcdef\n\n", false},
        {"", false},
        {"uninitialized\n", false},
    };
    for (const auto& example : cases)
        EXPECT_EQ(parseMachineId(example.text).has_value(), example.valid) << example.text;
}

TEST(DeviceIdentifier, IsTheKeyedHashOfTheMachineIdOverTheApplicationId)
{
    // Computed independently: HMAC-SHA256(key = machine id, message = application id), first
    // 16 bytes, version 4 and the RFC 4122 variant set.
    const Id128 machine = idFromHex("0123456789abcdef0123456789abcdef");
    EXPECT_EQ(uuidText(applicationSpecificId(machine, navroApplicationId)),
              "D97B06D4-199B-457A-89BC-CB39A951EC93");
}

TEST(DeviceIdentifier, AgreesWithSystemdOnThisMachine)
{
    const FileRead read = readRegularFile("/etc/machine-id", 64);
    const auto machine = read.ok() ? parseMachineId(read.bytes) : std::nullopt;
    if (!machine)
        GTEST_SKIP() << "this machine has no /etc/machine-id";
    sd_id128_t application;
    std::copy(navroApplicationId.begin(), navroApplicationId.end(), application.bytes);
    sd_id128_t expected;
    ASSERT_EQ(sd_id128_get_machine_app_specific(application, &expected), 0);
    Id128 systemd;
    std::copy(std::begin(expected.bytes), std::end(expected.bytes), systemd.begin());
    EXPECT_EQ(applicationSpecificId(*machine, navroApplicationId), systemd);
}

TEST(DeviceIdentifier, StableForOneApplicationAndUnrelatedForAnother)
{
    TemporaryFolder folder;
    const fs::path file = folder / "machine-id";
    ASSERT_FALSE(writeFileAtomically(file, "3d1219c7c4c5404aaa1f6d2a48adfda4\n", 0644));
    const std::array<fs::path, 2> files{file, folder / "none"};

    const auto first = deviceIdentifier(files);
    const auto second = deviceIdentifier(files);
    ASSERT_TRUE(first);
    EXPECT_EQ(first, second);

    Id128 otherApplication = navroApplicationId;
    otherApplication[15] ^= 1;
    const auto other = deviceIdentifier(files, otherApplication);
    ASSERT_TRUE(other);
    EXPECT_NE(*first, *other);

    // Upper-case canonical UUID of version 4 and the RFC 4122 variant, never the machine id.
    EXPECT_THAT(*first,
                ::testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                                        "[0-9A-F]{12}"));
    std::string plain = *first;
    std::erase(plain, '-');
    EXPECT_NE(plain, "3D1219C7C4C5404AAA1F6D2A48ADFDA4");
}

TEST(DeviceIdentifier, FallsBackToTheBusMachineIdAndSaysWhyThereIsNone)
{
    TemporaryFolder folder;
    const fs::path damaged = folder / "etc-machine-id";
    const fs::path bus = folder / "dbus-machine-id";
    ASSERT_FALSE(writeFileAtomically(damaged, "\n", 0644));
    ASSERT_FALSE(writeFileAtomically(bus, "0123456789abcdef0123456789abcdef\n", 0644));
    EXPECT_EQ(deviceIdentifier({damaged, bus}), "D97B06D4-199B-457A-89BC-CB39A951EC93");

    CapturingLogSink log;
    EXPECT_EQ(deviceIdentifier({damaged, folder / "missing"}), std::nullopt);
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("no device identifier")) << log.lines[0];
    EXPECT_TRUE(log.contains("holds no machine id")) << log.lines[0];
    // A folder where the file should be is no file, and is not read.
    EXPECT_EQ(deviceIdentifier({folder.path(), folder.path()}), std::nullopt);
}

} // namespace
} // namespace navro
