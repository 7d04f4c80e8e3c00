#include "calendar/JoinLink.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

struct LinkCase {
    const char* name;
    std::string url, location, description, conference;
    std::optional<std::string> expected;
};

class JoinLinkTable : public ::testing::TestWithParam<LinkCase> {};

TEST_P(JoinLinkTable, FindsTheFirstVideoCallAddress)
{
    const LinkCase& c = GetParam();
    EXPECT_EQ(findJoinLink({c.url, c.location, c.description, c.conference}), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Descriptions, JoinLinkTable,
    ::testing::Values(
        LinkCase{"ZoomInAnInvitation", "", "",
                 "Hi team,\n\nJoin Zoom Meeting\nhttps://us06web.zoom.us/j/87654321012?pwd=QWx1"
                 "\n\nMeeting ID: 876 5432 1012\nPasscode: 123456",
                 "", "https://us06web.zoom.us/j/87654321012?pwd=QWx1"},
        LinkCase{"GoogleMeetInConferenceProperty", "", "", "",
                 "https://meet.google.com/abc-defg-hij\n", "https://meet.google.com/abc-defg-hij"},
        LinkCase{
            "TeamsInHtmlDescription", "", "Microsoft Teams Meeting",
            "<a href=\"https://teams.microsoft.com/l/meetup-join/19%3ameeting_NjE2%40thread.v2/"
            "0?context=%7b%22Tid%22%7d\">Click here to join the meeting</a>",
            "",
            "https://teams.microsoft.com/l/meetup-join/19%3ameeting_NjE2%40thread.v2/"
            "0?context=%7b%22Tid%22%7d"},
        LinkCase{"WebexSubdomain", "", "https://acme.webex.com/acme/j.php?MTID=m1234", "", "",
                 "https://acme.webex.com/acme/j.php?MTID=m1234"},
        LinkCase{"WebexMeetingRoom", "", "", "Webex: https://acme.my.webex.com/meet/jane.doe.", "",
                 "https://acme.my.webex.com/meet/jane.doe"},
        LinkCase{"JitsiInParentheses", "", "",
                 "Call (https://meet.jit.si/NavroWeekly), bring notes", "",
                 "https://meet.jit.si/NavroWeekly"},
        LinkCase{"WherebyInLocation", "", "whereby: https://whereby.com/design-review", "", "",
                 "https://whereby.com/design-review"},
        LinkCase{"GoToMeeting", "", "",
                 "Please join from your computer:\nhttps://meet.goto.com/123456789", "",
                 "https://meet.goto.com/123456789"},
        LinkCase{"GoToMeetingJoinPath", "", "", "https://global.gotomeeting.com/join/123456789", "",
                 "https://global.gotomeeting.com/join/123456789"},
        LinkCase{"UrlPropertyComesFirst", "https://meet.google.com/aaa-bbbb-ccc",
                 "https://zoom.us/j/111", "", "", "https://meet.google.com/aaa-bbbb-ccc"},
        LinkCase{"OtherAddressesArePassedOver", "https://example.com/event",
                 "https://maps.google.com/?q=office",
                 "Docs: https://docs.google.com/d/1 then https://zoom.us/my/jane.", "",
                 "https://zoom.us/my/jane"},
        LinkCase{"ProviderHomePagesAreNoMeetings", "", "",
                 "Sign in at https://zoom.us/signin or https://teams.microsoft.com/ or "
                 "https://meet.google.com/ or https://whereby.com",
                 "", std::nullopt},
        LinkCase{"LookalikeHostsAreNoMeetings", "", "",
                 "https://zoom.us.evil.example/j/1 https://notzoom.us/j/2 "
                 "https://meet.google.com.example.org/x",
                 "", std::nullopt},
        LinkCase{"SchemeIsCaseInsensitiveAndGluedTextIsCut", "", "", "Link:HTTPS://ZOOM.US/j/999",
                 "", "HTTPS://ZOOM.US/j/999"},
        LinkCase{"NoAddressAtAll", "", "Room 4", "Bring snacks ://", "", std::nullopt}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace navro
