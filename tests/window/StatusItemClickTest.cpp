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

TEST(StatusItemClickTest, BeforeOnboardingIsDoneAClickShowsOnboardingNeverTheMenu)
{
    RecordingHost host;
    host.onboarded = false;
    statusItemClicked(host, QRect(1890, 0, 24, 24));
    statusItemClicked(host, QRect(1890, 0, 24, 24));
    EXPECT_EQ(host.calls, (Calls{"onboarding", "onboarding"}));
    EXPECT_FALSE(host.menuShown);
}

TEST(StatusItemClickTest, AfterOnboardingClicksToggleTheMenuAtTheItemClosingTheNotchFirst)
{
    RecordingHost host;
    const QRect item(1890, 0, 24, 24);
    statusItemClicked(host, item);
    EXPECT_EQ(host.calls, (Calls{"closeNotch", "showMenu"}));
    EXPECT_EQ(host.shownAt, item);
    statusItemClicked(host, item);
    EXPECT_EQ(host.calls, (Calls{"closeNotch", "showMenu", "closeNotch", "closeMenu"}));
}

} // namespace
} // namespace navro
