#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace navro {

// The first address of a video call (Zoom, Google Meet, Microsoft Teams, Webex, Jitsi, Whereby,
// GoTo) found in the given texts, searched in order and each from its start. Other addresses (a
// company's home page, a map) are passed over.
std::optional<std::string> findJoinLink(std::initializer_list<std::string_view> texts);

} // namespace navro
