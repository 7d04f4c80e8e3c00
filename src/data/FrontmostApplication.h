#pragma once

#include <QString>
#include <memory>
#include <optional>

namespace navro {

// Names the application the user works in.
class FrontmostApplication {
public:
    virtual ~FrontmostApplication() = default;
    // The display name of the application whose window is active, in Arabic when asked and known;
    // nothing when it cannot be told.
    virtual std::optional<QString> displayName(bool arabic) = 0;
};

// Defined by the platform library.
std::unique_ptr<FrontmostApplication> makeFrontmostApplication();

} // namespace navro
