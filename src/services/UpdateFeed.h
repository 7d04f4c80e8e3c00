#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// A version as Navro numbers its releases: one to four numbers separated by dots ("0.2",
// "1.10.3"). Missing numbers count as 0, so "1.2" and "1.2.0" are the same version.
class VersionNumber {
public:
    static std::optional<VersionNumber> parse(std::string_view text);

    std::string text() const;
    // Negative, zero or positive as this version is older than, the same as or newer than other.
    int compare(const VersionNumber& other) const;
    bool operator==(const VersionNumber& other) const { return compare(other) == 0; }
    bool operator<(const VersionNumber& other) const { return compare(other) < 0; }

private:
    std::vector<unsigned> parts_;
};

// What the update feed offers: the newest release with its notes in both languages and the page
// where it is downloaded.
struct UpdateOffer {
    VersionNumber version;
    std::string date; // "YYYY-MM-DD", or empty when the feed gives none
    std::string notesEnglish;
    std::string notesArabic;
    std::string link; // http or https

    bool operator==(const UpdateOffer&) const = default;
};

struct UpdateFeedReading {
    std::optional<UpdateOffer> offer;
    std::string error; // why there is no offer, fit for a log line
};

// The feed is one JSON object:
//   {"version": "0.2.0", "date": "2026-12-01",
//    "notes": {"en": "…", "ar": "…"}, "link": "https://…"}
// "version" and "link" are required; a missing "date" or note is empty. Anything else — another
// type, a version that is no version, a link that is not http(s), a feed larger than
// maxUpdateFeedBytes — is no offer.
UpdateFeedReading parseUpdateFeed(std::string_view bytes);

inline constexpr std::size_t maxUpdateFeedBytes = 64 * 1024;

} // namespace navro
