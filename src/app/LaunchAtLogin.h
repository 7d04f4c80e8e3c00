#pragma once

#include <QString>
#include <memory>
#include <optional>

namespace navro {

// The system's record of "start Navro when the user logs in".
class LoginItem {
public:
    virtual ~LoginItem() = default;
    virtual bool isEnabled() const = 0;
    // Returns a human-readable reason on failure, std::nullopt on success.
    virtual std::optional<QString> setEnabled(bool enabled) = 0;
};

// Registers or unregisters Navro as a login item. A failure is never raised to the caller: it is
// written as one log line ("Navro: launch at login change failed: <reason>") and the login item
// is left as it was.
class LaunchAtLogin {
public:
    explicit LaunchAtLogin(std::unique_ptr<LoginItem> item);

    void set(bool enabled);
    bool isEnabled() const;

private:
    std::unique_ptr<LoginItem> item_;
};

// The platform's login item for the running executable (an XDG autostart entry on Linux).
// Defined by the platform library.
std::unique_ptr<LoginItem> makeSystemLoginItem();

} // namespace navro
