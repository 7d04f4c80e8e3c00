#include "app/LaunchAtLogin.h"

#include "app/Log.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

class RecordingLoginItem final : public LoginItem {
public:
    bool isEnabled() const override { return enabled; }
    std::optional<QString> setEnabled(bool value) override
    {
        requests.push_back(value);
        if (failure) {
            return failure;
        }
        enabled = value;
        return std::nullopt;
    }

    bool enabled = false;
    std::optional<QString> failure;
    std::vector<bool> requests;
};

TEST(LaunchAtLoginTest, ForwardsChangesAndReadsTheSystemBack)
{
    CapturingLogSink log;
    auto item = std::make_unique<RecordingLoginItem>();
    RecordingLoginItem& record = *item;
    LaunchAtLogin launch(std::move(item));

    EXPECT_FALSE(launch.isEnabled());
    launch.set(true);
    EXPECT_TRUE(launch.isEnabled());
    launch.set(false);
    EXPECT_FALSE(launch.isEnabled());
    EXPECT_EQ(record.requests, (std::vector<bool>{true, false}));
    EXPECT_TRUE(log.lines.empty());
}

TEST(LaunchAtLoginTest, FailureIsOneLogLineAndLeavesTheItemAsItWas)
{
    CapturingLogSink log;
    auto item = std::make_unique<RecordingLoginItem>();
    RecordingLoginItem& record = *item;
    record.enabled = true;
    record.failure = QStringLiteral("permission denied");
    LaunchAtLogin launch(std::move(item));

    launch.set(false);
    EXPECT_TRUE(launch.isEnabled());
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(log.lines[0], "Navro: launch at login change failed: permission denied");
}

TEST(LaunchAtLoginTest, MissingLoginItemIsLoggedNotFatal)
{
    CapturingLogSink log;
    LaunchAtLogin launch(nullptr);
    launch.set(true);
    EXPECT_FALSE(launch.isEnabled());
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(log.lines[0].rfind("Navro: launch at login change failed: ", 0), 0u);
}

} // namespace
} // namespace navro
