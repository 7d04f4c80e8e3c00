#pragma once

#include "services/UpdateFeed.h"

#include <string>
#include <string_view>
#include <vector>

namespace navro {

// What changed in one version, as the what's-new window lists it.
struct ReleaseNotes {
    VersionNumber version;
    std::vector<std::string> english; // one line per change
    std::vector<std::string> arabic;
};

// The notes file shipped with Navro: {"0.1.0": {"en": ["…"], "ar": ["…"]}, …}. Entries whose
// version or lists are malformed are left out. Newest version first.
std::vector<ReleaseNotes> parseReleaseNotes(std::string_view bytes);

// What the what's-new window shows at start-up, given the version that ran last ("" when none
// ever ran: a fresh install shows nothing) and the one running now. After an update, the notes of
// every version after the last seen one up to the running one, newest first; after a downgrade,
// or when the last-seen value is no version, the running version's own notes. Nothing when the
// version did not change.
std::vector<ReleaseNotes> notesToShow(const std::vector<ReleaseNotes>& notes,
                                      std::string_view lastSeen, std::string_view running);

} // namespace navro
