#include "app/StatusItemClick.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace navro {
namespace {

class RecordingHost final : public StatusItemHost {
public:
    bool hasCompletedOnboarding() const override { return onboarded; }
    void closeNotch() override { calls.push_back("closeNotch"); }
    bool isMenuPanelShown() const override { return menuShown; }
    void closeMenuPanel() override
    {
        menuShown = false;
        calls.push_back("closeMenu");
    }
    void showMenuPanel(const QRect& anchor) override
    {
        menuShown = true;
        shownAt = anchor;
        calls.push_back("showMenu");
    }
    void showOnboarding() override { calls.push_back("onboarding"); }

    bool onboarded = true;
    bool menuShown = false;
    QRect shownAt;
    std::vector<std::string> calls;
};

using Calls = std::vector<std::string>;

// Before onboarding is done a click shows onboarding, never the menu; afterwards clicks toggle the
// menu at the item, closing the notch first.
TEST(StatusItemClickTest, AClickShowsOnboardingUntilItIsDoneThenTogglesTheMenuAtTheItem)
{
    RecordingHost host;
    const QRect item(1890, 0, 24, 24);
    host.onboarded = false;
    statusItemClicked(host, item);
    statusItemClicked(host, item);
    EXPECT_EQ(host.calls, (Calls{"onboarding", "onboarding"}));
    EXPECT_FALSE(host.menuShown);

    host.onboarded = true;
    host.calls.clear();
    statusItemClicked(host, item);
    EXPECT_EQ(host.calls, (Calls{"closeNotch", "showMenu"}));
    EXPECT_EQ(host.shownAt, item);
    statusItemClicked(host, item);
    EXPECT_EQ(host.calls, (Calls{"closeNotch", "showMenu", "closeNotch", "closeMenu"}));
}

} // namespace
} // namespace navro
