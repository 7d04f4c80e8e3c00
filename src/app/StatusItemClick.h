#pragma once

#include <QRect>

namespace navro {

// What a click on the tray item does. Left and right buttons behave the same.
class StatusItemHost {
public:
    virtual ~StatusItemHost() = default;
    virtual bool hasCompletedOnboarding() const = 0;
    virtual void closeNotch() = 0;
    virtual bool isMenuPanelShown() const = 0;
    virtual void closeMenuPanel() = 0;
    virtual void showMenuPanel(const QRect& anchor) = 0;
    virtual void showOnboarding() = 0;
};

// Before onboarding is complete a click always brings onboarding back, never the menu panel;
// afterwards it closes the notch and toggles the menu panel at the item.
void statusItemClicked(StatusItemHost& host, const QRect& anchor);

} // namespace navro
