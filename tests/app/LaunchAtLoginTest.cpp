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

// The state shown is always what the system reports; a change it refuses, or one with no login
// item at all, is one log line and changes nothing.
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

    record.enabled = true;
    record.failure = QStringLiteral("permission denied");
    launch.set(false);
    EXPECT_TRUE(launch.isEnabled());
    LaunchAtLogin missing(nullptr);
    missing.set(true);
    EXPECT_FALSE(missing.isEnabled());
    ASSERT_EQ(log.lines.size(), 2u);
    EXPECT_EQ(log.lines[0], "Navro: launch at login change failed: permission denied");
    EXPECT_EQ(log.lines[1].rfind("Navro: launch at login change failed: ", 0), 0u);
}

} // namespace
} // namespace navro
