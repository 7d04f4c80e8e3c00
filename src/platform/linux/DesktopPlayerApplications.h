#pragma once

#include "media/NowPlayingWatcher.h"
#include "platform/linux/DesktopEntries.h"

namespace navro {

// Players by their desktop entry: the name (and its Arabic form), the icon from the icon theme,
// and a launch through gio, which reads the entry as launchers do.
class DesktopPlayerApplications final : public PlayerApplications {
public:
    explicit DesktopPlayerApplications(DesktopEntries& entries) : entries_(entries) {}

    std::optional<Application> find(const QString& id) override;
    QImage icon(const QString& id) override;
    bool launch(const QString& id) override;

    static constexpr int iconSide = 64;

private:
    DesktopEntries& entries_;
};

} // namespace navro
