#include "calendar/JoinLink.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace navro {
namespace {

struct Provider {
    std::string_view domain; // the host itself or any host under it
    // Where meetings live on that host; empty means any path beyond "/".
    std::array<std::string_view, 4> paths;
    // Anywhere in the path rather than at its start (Webex puts the site's name first).
    bool afterSite = false;
};

// The provider's own home pages and sign-in pages share the host with the meetings, so a host
// alone does not make a join link.
constexpr std::array providers{
    Provider{"zoom.us", {"/j/", "/my/", "/w/", "/wc/"}},
    Provider{"zoomgov.com", {"/j/", "/my/", "/w/", "/wc/"}},
    Provider{"meet.google.com", {}},
    Provider{"teams.microsoft.com", {"/l/meetup-join/", "/meet/", "/v2/", "/dl/launcher/"}},
    Provider{"teams.live.com", {"/meet/"}},
    Provider{"webex.com", {"/meet/", "/join/", "/wbxmjs/", "/j.php"}, true},
    Provider{"meet.jit.si", {}},
    Provider{"8x8.vc", {}},
    Provider{"whereby.com", {}},
    Provider{"meet.goto.com", {}},
    Provider{"global.gotomeeting.com", {"/join/"}},
    Provider{"app.gotomeeting.com", {}},
    Provider{"gotomeet.me", {}},
};

char lower(char c)
{
    return char(std::tolower(static_cast<unsigned char>(c)));
}

bool startsWithNoCase(std::string_view text, std::string_view prefix)
{
    return text.size() >= prefix.size() &&
           std::equal(prefix.begin(), prefix.end(), text.begin(),
                      [](char a, char b) { return lower(a) == lower(b); });
}

bool endsAddress(char c)
{
    return std::isspace(static_cast<unsigned char>(c)) || c == '<' || c == '>' || c == '"' ||
           c == '\'' || c == '\\' || c == '`' || c == '{' || c == '}' || c == '|' ||
           static_cast<unsigned char>(c) < 0x20;
}

bool isJoinLink(std::string_view address)
{
    const std::size_t hostStart = address.find("://") + 3;
    std::size_t hostEnd = address.find_first_of("/?#", hostStart);
    if (hostEnd == std::string_view::npos)
        hostEnd = address.size();
    std::string host(address.substr(hostStart, hostEnd - hostStart));
    if (const auto at = host.rfind('@'); at != std::string::npos)
        host.erase(0, at + 1);
    if (const auto colon = host.find(':'); colon != std::string::npos)
        host.erase(colon);
    std::transform(host.begin(), host.end(), host.begin(), lower);
    const std::string_view path = address.substr(hostEnd);

    for (const Provider& provider : providers) {
        const bool hostMatches =
            host == provider.domain ||
            (host.size() > provider.domain.size() && host.ends_with(provider.domain) &&
             host[host.size() - provider.domain.size() - 1] == '.');
        if (!hostMatches)
            continue;
        if (provider.paths.front().empty())
            return path.size() > 1 && path[0] == '/' && path[1] != '?' && path[1] != '#';
        const std::string_view route = path.substr(0, path.find_first_of("?#"));
        return std::any_of(provider.paths.begin(), provider.paths.end(), [&](auto part) {
            return !part.empty() && (provider.afterSite ? route.find(part) != route.npos
                                                        : startsWithNoCase(route, part));
        });
    }
    return false;
}

// The next http(s) address in `text` from `from`, with trailing punctuation of the sentence
// around it left out. Sets `from` past it.
std::optional<std::string_view> nextAddress(std::string_view text, std::size_t& from)
{
    while (from < text.size()) {
        const std::size_t found = text.find("://", from);
        if (found == std::string_view::npos) {
            from = text.size();
            return std::nullopt;
        }
        std::size_t end = found + 3;
        while (end < text.size() && !endsAddress(text[end]))
            ++end;
        from = end;
        // Text glued to the front ("Join:https://…", "Linkhttps://…") is not part of it.
        std::size_t start;
        if (found >= 5 && startsWithNoCase(text.substr(found - 5), "https"))
            start = found - 5;
        else if (found >= 4 && startsWithNoCase(text.substr(found - 4), "http"))
            start = found - 4;
        else
            continue;
        std::string_view address = text.substr(start, end - start);
        while (!address.empty() &&
               std::string_view(".,;:!?)]").find(address.back()) != std::string_view::npos)
            address.remove_suffix(1);
        if (address.size() > found + 3 - start)
            return address;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> findJoinLink(std::initializer_list<std::string_view> texts)
{
    for (std::string_view text : texts) {
        std::size_t from = 0;
        while (auto address = nextAddress(text, from))
            if (isJoinLink(*address))
                return std::string(*address);
    }
    return std::nullopt;
}

} // namespace navro
