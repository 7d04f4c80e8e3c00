#include "app/StatusItemClick.h"

namespace navro {

void statusItemClicked(StatusItemHost& host, const QRect& anchor)
{
    if (!host.hasCompletedOnboarding()) {
        host.showOnboarding();
        return;
    }
    host.closeNotch();
    if (host.isMenuPanelShown())
        host.closeMenuPanel();
    else
        host.showMenuPanel(anchor);
}

} // namespace navro
