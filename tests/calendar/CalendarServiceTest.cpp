#include "calendar/CalendarService.h"

#include "CalendarTestSupport.h"
#include "FakeSettingsStore.h"
#include "FakeSystemTimeEvents.h"
#include "ManualClock.h"
#include "QtTestApplication.h"
#include "TemporaryFolder.h"
#include "app/AppSettings.h"
#include "app/Log.h"
#include "notch/ActivityCenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace calendar_test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using Status = CalendarFetch::Status;

// Links answer when the test says so.
class FakeCalendarFetcher final : public CalendarFetcher {
public:
    struct Request {
        QString address, etag, lastModified;
        Done done;
    };

    void fetch(const QString& address, const QString& etag, const QString& lastModified, QObject*,
               Done done) override
    {
        requests.push_back({address, etag, lastModified, std::move(done)});
    }

    void answer(CalendarFetch result)
    {
        ASSERT_FALSE(requests.empty());
        Request request = std::move(requests.front());
        requests.erase(requests.begin());
        request.done(std::move(result));
    }

    std::vector<Request> requests;
};

CalendarFetch fetched(std::string body, QString etag = {})
{
    CalendarFetch answer;
    answer.status = Status::fetched;
    answer.body = std::move(body);
    answer.etag = std::move(etag);
    return answer;
}

CalendarFetch failed(std::string reason)
{
    CalendarFetch answer;
    answer.error = std::move(reason);
    return answer;
}

class CalendarServiceTest : public ::testing::Test {
protected:
    CalendarServiceTest() { testApplication(); }

    std::unique_ptr<CalendarService> makeService()
    {
        // The background reading runs in place, so each change is read before the call returns.
        return std::make_unique<CalendarService>(
            settings, clock, timeEvents, fetcher,
            [](auto work, auto then) {
                work();
                then();
            },
            CalendarService::Folders{folder / "cache", folder / "data"});
    }

    TemporaryFolder temporary;
    const std::filesystem::path folder = temporary.path();
    ManualClock clock{utc(2024, 3, 10, 8, 0)};
    FakeSettingsStore store;
    AppSettings settings{store, [] { return QStringList(); }};
    FakeSystemTimeEvents timeEvents{"UTC"};
    FakeCalendarFetcher fetcher;
    CapturingLogSink log;
};

TEST_F(CalendarServiceTest, EvolutionsCalendarFeedsTheNextMeetingToTheClosedNotch)
{
    writeBytes(
        folder / "data/evolution/calendar/system/calendar.ics",
        document(
            event("h", "Holiday", "DTSTART;VALUE=DATE:20240310\r\n") +
            event("e", "Early call", "DTSTART:20240310T070000Z\r\nDTEND:20240310T073000Z\r\n") +
            event("s", "Standup",
                  "DTSTART:20240310T082000Z\r\nDTEND:20240310T083500Z\r\n"
                  "DESCRIPTION:Join https://meet.google.com/abc-defg-hij\r\n") +
            event("r", "Review", "DTSTART:20240310T090000Z\r\nDTEND:20240310T100000Z\r\n") +
            event("t", "Tomorrow", "DTSTART:20240311T230000Z\r\nDTEND:20240311T233000Z\r\n") +
            event("l", "Later", "DTSTART:20240312T000000Z\r\nDTEND:20240312T010000Z\r\n")));
    auto service = makeService();
    ActivityCenter center(clock, settings);
    QObject::connect(service.get(), &CalendarService::nextMeetingChanged, &center,
                     [&] { center.setNextMeeting(service->nextMeeting()); });
    service->start();

    // The all-day event and the call that has ended are no next meeting; the day after tomorrow
    // is out of the list.
    EXPECT_THAT(titles(service->upcoming()),
                ElementsAre("Holiday", "Standup", "Review", "Tomorrow"));
    ASSERT_TRUE(service->nextMeeting());
    EXPECT_EQ(service->nextMeeting()->title, "Standup");
    EXPECT_EQ(service->nextMeeting()->calendarName, "Personal");
    EXPECT_EQ(service->nextMeeting()->joinLink, "https://meet.google.com/abc-defg-hij");
    clock.runDue();
    EXPECT_EQ(center.current(), std::nullopt) << "20 minutes ahead is too early to show";

    clock.advanceTo(utc(2024, 3, 10, 8, 9) + 59s);
    EXPECT_EQ(center.current(), std::nullopt);
    clock.advanceTo(utc(2024, 3, 10, 8, 10));
    ASSERT_TRUE(center.current());
    ASSERT_TRUE(center.current()->meeting());
    EXPECT_EQ(center.current()->meeting()->title, "Standup");

    clock.advanceTo(utc(2024, 3, 10, 8, 24) + 45s);
    EXPECT_TRUE(center.current()) << "still within five minutes of its start";
    clock.advanceTo(utc(2024, 3, 10, 8, 25));
    EXPECT_EQ(center.current(), std::nullopt);
    EXPECT_EQ(service->nextMeeting()->title, "Standup") << "it has not ended yet";

    clock.advanceTo(utc(2024, 3, 10, 8, 35) + 1s);
    EXPECT_EQ(service->nextMeeting()->title, "Review");
    EXPECT_THAT(titles(service->upcoming()), ElementsAre("Holiday", "Review", "Tomorrow"));

    // At midnight tomorrow's events are today's and the day after comes into the list.
    clock.advanceTo(utc(2024, 3, 11, 0, 0));
    EXPECT_THAT(titles(service->upcoming()), ElementsAre("Tomorrow", "Later"));
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(CalendarServiceTest, LinksRefreshConditionallyKeepTheirLastGoodCopyAndLogFailuresOnce)
{
    const std::string work =
        document("X-WR-CALNAME:Work\r\n" +
                 event("p", "Planning", "DTSTART:20240310T120000Z\r\nDTEND:20240310T130000Z\r\n"));
    auto service = makeService();
    service->start();
    EXPECT_FALSE(service->addLink("ftp://example.com/work.ics"));
    EXPECT_FALSE(service->addLink("not a link"));
    ASSERT_TRUE(service->addLink("webcal://example.com/work.ics"));
    EXPECT_FALSE(service->addLink("https://example.com/work.ics")) << "already there";
    EXPECT_TRUE(settings.calendarSources().contains("https://example.com/work.ics"));

    ASSERT_EQ(fetcher.requests.size(), 1u);
    EXPECT_EQ(fetcher.requests[0].address, "https://example.com/work.ics");
    EXPECT_EQ(fetcher.requests[0].etag, "");
    fetcher.answer(fetched(work, "\"v1\""));
    EXPECT_THAT(titles(service->upcoming()), ElementsAre("Planning"));
    EXPECT_EQ(service->upcoming()[0].calendarName, "Work");

    const QString id = service->sourceList()[0].toMap()["id"].toString();
    const auto cached = folder / "cache" / (id.toStdString() + ".ics");
    EXPECT_EQ(permissionsOf(cached), 0600u);

    clock.advance(CalendarService::refreshInterval);
    ASSERT_EQ(fetcher.requests.size(), 1u);
    EXPECT_EQ(fetcher.requests[0].etag, "\"v1\"");
    CalendarFetch unchanged;
    unchanged.status = Status::notModified;
    fetcher.answer(unchanged);
    EXPECT_THAT(titles(service->upcoming()), ElementsAre("Planning"));

    for (int round = 0; round < 2; ++round) {
        clock.advance(CalendarService::refreshInterval);
        fetcher.answer(failed("HTTP 404"));
    }
    EXPECT_THAT(log.lines, ElementsAre("Navro: could not read calendar Work: HTTP 404"));
    EXPECT_THAT(titles(service->upcoming()), ElementsAre("Planning"))
        << "the last good events stay";
    EXPECT_EQ(service->sourceList()[0].toMap()["error"].toString(), "HTTP 404");

    // A broken answer is not kept, neither in memory nor on disk.
    clock.advance(CalendarService::refreshInterval);
    fetcher.answer(fetched("<html>Sign in</html>"));
    EXPECT_THAT(titles(service->upcoming()), ElementsAre("Planning"));

    // After a restart without network the copy on disk shows the meetings at once.
    service.reset();
    fetcher.requests.clear();
    auto restarted = makeService();
    restarted->start();
    EXPECT_THAT(titles(restarted->upcoming()), ElementsAre("Planning"));
    ASSERT_EQ(fetcher.requests.size(), 1u);

    restarted->remove(id);
    EXPECT_TRUE(restarted->upcoming().empty());
    EXPECT_FALSE(std::filesystem::exists(cached));
    EXPECT_EQ(settings.calendarSources(), "[]");
}

TEST_F(CalendarServiceTest, FilesAreReadAgainWhenTheyChangeAndCanBeTurnedOff)
{
    const auto path = folder / "team.ics";
    writeBytes(path, document(event("a", "Lunch", "DTSTART:20240310T110000Z\r\n")));
    writeBytes(folder / "broken.ics", "PK\x03\x04 not a calendar");
    auto service = makeService();
    service->start();
    ASSERT_TRUE(service->addFile(QString::fromStdString("file://" + path.string())));
    EXPECT_FALSE(service->addFile(QString::fromStdString(path.string()))) << "already there";
    EXPECT_FALSE(service->addFile(QString::fromStdString(folder.string()))) << "a folder";
    EXPECT_THAT(titles(service->upcoming()), ElementsAre("Lunch"));
    EXPECT_TRUE(service->addFile(QString::fromStdString((folder / "broken.ics").string())));
    EXPECT_THAT(log.lines,
                ElementsAre("Navro: could not read calendar broken: not an iCalendar document"));

    writeBytes(path, document(event("a", "Lunch", "DTSTART:20240310T110000Z\r\n") +
                              event("b", "Coffee", "DTSTART:20240310T150000Z\r\n")));
    EXPECT_TRUE(waitFor([&] {
        clock.advance(300ms);
        return service->upcoming().size() == 2;
    }));

    const QString id = service->sourceList()[0].toMap()["id"].toString();
    service->setEnabled(id, false);
    EXPECT_TRUE(service->upcoming().empty());
    service->setEnabled(id, true);
    EXPECT_THAT(titles(service->upcoming()), ElementsAre("Lunch", "Coffee"));
}

} // namespace
} // namespace navro
