#include "media/NowPlayingService.h"

#include "FakeNowPlayingWatcher.h"
#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "QtTestApplication.h"
#include "app/AppSettings.h"
#include "app/Log.h"
#include "nowplaying/NowPlayingLine.h"

#include <QBuffer>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

QImage solid(QColor colour)
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

QByteArray png(QColor colour)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    solid(colour).save(&buffer, "PNG");
    return bytes;
}

struct Fixture {
    Fixture() : settings(store, [] { return QStringList{"en-GB"}; })
    {
        testApplication();
        applications.applications[QStringLiteral("mpv")] = {QStringLiteral("mpv Media Player"),
                                                            QStringLiteral("مشغل mpv")};
        applications.icons[QStringLiteral("mpv")] = solid(Qt::magenta);
        applications.applications[QStringLiteral("firefox")] = {QStringLiteral("Firefox"), {}};
        service =
            std::make_unique<NowPlayingService>(clock, settings, watcher, applications, downloader);
        QObject::connect(service.get(), &NowPlayingService::infoChanged, [this] {
            titles << (service->info() ? QString::fromStdString(service->info()->title)
                                       : QStringLiteral("-"));
        });
        service->start();
    }

    void feed(const QByteArray& json) { watcher.print(json + '\n'); }

    ManualClock clock;
    FakeSettingsStore store;
    AppSettings settings;
    FakeNowPlayingWatcher watcher;
    FakePlayerApplications applications;
    FakeArtworkDownloader downloader;
    std::unique_ptr<NowPlayingService> service;
    QStringList titles; // one entry per infoChanged, "-" for no info
};

constexpr const char* playing =
    R"({"title":"First Song","artist":"Ann","album":"Album","duration":60,"elapsed":10,)"
    R"("rate":1,"timestamp":1700000000000,"bundle":"mpv","app":"mpv","player":"org.mpris.MediaPlayer2.mpv"})";

TEST(NowPlayingService, ALinePublishesEveryField)
{
    Fixture f;
    f.feed(playing);
    ASSERT_TRUE(f.service->info());
    const NowPlayingInfo& info = *f.service->info();
    EXPECT_EQ(info.title, "First Song");
    EXPECT_EQ(info.artist, "Ann");
    EXPECT_EQ(info.album, "Album");
    EXPECT_EQ(info.duration, 60);
    EXPECT_EQ(info.elapsed, 10);
    EXPECT_EQ(info.rate, 1);
    EXPECT_EQ(info.timestamp, WallTime(1700000000000ms));
    EXPECT_EQ(info.bundleID, "mpv");
    EXPECT_EQ(info.appName, "mpv Media Player") << "the desktop entry's name comes first";
    EXPECT_TRUE(f.service->isPlaying());
    EXPECT_FALSE(f.service->appIcon().isNull());
    EXPECT_TRUE(f.service->appIconUrl().startsWith("image://nowplaying/appIcon/"));
}

TEST(NowPlayingService, LinesAreTakenWholeAndInOrderAndWhatIsNoObjectOrTooLongIsDropped)
{
    Fixture f;
    CapturingLogSink log;
    const QByteArray whole = QByteArray(playing) + '\n';
    f.watcher.print(whole.left(25));
    EXPECT_FALSE(f.service->info());
    f.watcher.print(whole.mid(25, 40));
    EXPECT_FALSE(f.service->info());
    f.watcher.print(whole.mid(65) + R"({"title":"Two","rate":1})"
                                    "\n"
                                    R"({"title":"Three","rate":1})"
                                    "\n"
                                    R"({"title":"Fo)");
    EXPECT_EQ(f.titles, (QStringList{"First Song", "Two", "Three"}));
    f.watcher.print("ur\"}\n");
    EXPECT_EQ(f.titles, (QStringList{"First Song", "Two", "Three", "Four"}));

    for (const char* junk : {"", "not json", "[1,2]", "\"title\"", "42", "null",
                             "{\"title\":", "{\"title\":\"x\"} trailing"})
        f.feed(junk);
    const QByteArray megabyte(1024 * 1024, 'x');
    f.watcher.print("{\"title\":\"");
    for (int i = 0; i < 16; ++i) // the last one takes the line past 16 MiB
        f.watcher.print(megabyte);
    EXPECT_TRUE(log.contains("Navro Now Playing: dropped a line longer than 16 MiB"));
    // The rest of the dropped line goes too, even where it reads as a line of its own.
    f.watcher.print(R"({"title":"Rest of the long line"})"
                    "\n"
                    R"({"title":"Next"})"
                    "\n");
    EXPECT_EQ(f.titles, (QStringList{"First Song", "Two", "Three", "Four", "Next"}));
}

TEST(NowPlayingService, NoTitleOrAnEmptyOneClearsEverything)
{
    for (const char* clearing : {R"({})", R"({"title":""})", R"({"title":null,"rate":1})",
                                 R"({"title":7})", R"({"artist":"Ann","rate":1})"}) {
        Fixture f;
        f.feed(R"({"title":"Song","rate":1,"bundle":"mpv","artwork":")" +
               png(QColor(0xc0, 0x30, 0x20)).toBase64() + "\"}");
        ASSERT_FALSE(f.service->artwork().isNull());
        ASSERT_FALSE(f.service->appIcon().isNull());
        f.feed(clearing);
        EXPECT_FALSE(f.service->info()) << clearing;
        EXPECT_TRUE(f.service->artwork().isNull()) << clearing;
        EXPECT_TRUE(f.service->appIcon().isNull()) << clearing;
        EXPECT_EQ(f.service->artworkUrl(), "") << clearing;
        EXPECT_EQ(f.service->artworkTint(), NowPlayingService::brandLightColour()) << clearing;
    }
}

TEST(NowPlayingService, NumbersDefaultToZeroAndTextToEmpty)
{
    Fixture f;
    f.feed(R"({"title":"T","artist":null,"album":5,"duration":"60","elapsed":null,"rate":true,)"
           R"("timestamp":"now","bundle":""})");
    ASSERT_TRUE(f.service->info());
    const NowPlayingInfo& info = *f.service->info();
    EXPECT_EQ(info.artist, "");
    EXPECT_EQ(info.album, "");
    EXPECT_EQ(info.duration, 0);
    EXPECT_EQ(info.elapsed, 0);
    EXPECT_EQ(info.rate, 0);
    EXPECT_FALSE(info.timestamp);
    EXPECT_FALSE(info.bundleID);
    EXPECT_FALSE(info.appName) << "no entry and no app";
    f.feed(R"({"title":"T","timestamp":1e300,"duration":-1e400})");
    EXPECT_FALSE(f.service->info()->timestamp) << "a timestamp beyond any clock is none";
}

TEST(NowPlayingService, ProblemsAreLoggedWithTheirPrefixesAndAFailureAtEveryRestartOnce)
{
    Fixture f;
    CapturingLogSink log;
    const QByteArray failure = "could not connect to the session bus: No such file or directory\n";
    for (int restart = 0; restart < 5; ++restart) {
        f.watcher.printError(failure);
        f.watcher.exit();
        f.clock.advance(3s);
    }
    EXPECT_EQ(log.lines.size(), 1u);

    f.feed(R"({"error":"could not read the position","title":"Still Here","rate":1})");
    EXPECT_TRUE(log.contains("Navro Now Playing script error: could not read the position"));
    ASSERT_TRUE(f.service->info()) << "the rest of the line is still used";
    EXPECT_EQ(f.service->info()->title, "Still Here");
    f.watcher.printError(failure);
    EXPECT_EQ(log.lines.size(), 3u) << "after it worked again, the failure is news";

    f.watcher.printError("lost the session bus\nsecond line\n");
    EXPECT_TRUE(log.contains("Navro Now Playing: lost the session bus"));
    EXPECT_TRUE(log.contains("Navro Now Playing: second line"));
    const auto before = log.lines.size();
    f.watcher.printError(QByteArray("\xff\xfe not text", 11));
    EXPECT_EQ(log.lines.size(), before) << "standard error that is not UTF-8 is not logged";
}

TEST(NowPlayingService, ArtworkIsDecodedTintedAndResetOnANewTitle)
{
    Fixture f;
    f.feed(R"({"title":"One","artist":"Ann","rate":1,"artwork":")" +
           png(QColor(0xc0, 0x30, 0x20)).toBase64() + "\"}");
    ASSERT_FALSE(f.service->artwork().isNull());
    EXPECT_EQ(f.service->artworkTint().name(), "#d6786e");
    const QString firstUrl = f.service->artworkUrl();
    EXPECT_TRUE(firstUrl.startsWith("image://nowplaying/artwork/"));

    f.feed(R"({"title":"One","artist":"Ann","rate":0})");
    EXPECT_FALSE(f.service->artwork().isNull()) << "no artwork key means unchanged";

    f.feed(R"({"title":"One","rate":0,"artwork":"%%% not base64"})");
    EXPECT_FALSE(f.service->artwork().isNull()) << "undecodable artwork is ignored";
    f.feed(R"({"title":"One","rate":0,"artwork":")" + QByteArray("not an image").toBase64() +
           "\"}");
    EXPECT_FALSE(f.service->artwork().isNull()) << "bytes that are no image are ignored";

    f.feed(R"({"title":"Two","rate":1})");
    EXPECT_TRUE(f.service->artwork().isNull()) << "a new title drops the old cover";
    EXPECT_EQ(f.service->artworkTint(), NowPlayingService::brandLightColour());

    f.feed(R"({"title":"Two","rate":1,"artwork":")" + png(Qt::white).toBase64() + "\"}");
    EXPECT_NE(f.service->artworkUrl(), firstUrl) << "every new picture gets a new address";
}

TEST(NowPlayingService, PlayerNameAndIconComeFromItsEntryLookedUpOnlyWhenThePlayerChanges)
{
    Fixture f;
    f.feed(R"({"title":"A","bundle":"mpv","app":"mpv"})");
    f.feed(R"({"title":"B","bundle":"mpv","app":"mpv"})");
    f.feed(R"({"title":"B","bundle":"mpv","app":"mpv","rate":1})");
    EXPECT_EQ(f.applications.iconLookups, 1);
    EXPECT_EQ(f.service->appName(), "mpv Media Player");
    f.settings.setLanguage(AppLanguage::arabic);
    EXPECT_EQ(f.service->appName(), "مشغل mpv") << "switching the language renames at once";

    f.feed(R"({"title":"B","bundle":"firefox","app":"Mozilla Firefox"})");
    EXPECT_EQ(f.applications.iconLookups, 2);
    EXPECT_TRUE(f.service->appIcon().isNull()) << "firefox has no icon here";
    EXPECT_EQ(f.service->appName(), "Firefox") << "an entry without an Arabic name keeps its own";
    f.feed(R"({"title":"B","bundle":"firefox","app":"Mozilla Firefox","rate":1})");
    EXPECT_EQ(f.applications.iconLookups, 3) << "no icon yet: looked up again";

    f.feed(R"({"title":"T","bundle":"unknown.player","app":"Odd Player"})");
    EXPECT_EQ(f.service->appName(), "Odd Player");
    f.feed(R"({"title":"T","bundle":"org.chromium.Chromium","parent":"firefox","app":"Tab"})");
    EXPECT_EQ(f.service->info()->bundleID, "firefox") << "a web player reports its browser";
    EXPECT_EQ(f.service->appName(), "Firefox");
}

TEST(NowPlayingService, PlayPauseFlipsTheRateBeforeThePlayerAnswers)
{
    Fixture f;
    f.clock.setWallTime(WallTime(1700000004000ms));
    f.feed(playing); // elapsed 10 at 1700000000000, playing
    f.service->togglePlayPause();
    ASSERT_TRUE(f.service->info());
    EXPECT_EQ(f.service->info()->rate, 0);
    EXPECT_DOUBLE_EQ(f.service->info()->elapsed, 14) << "frozen where it was extrapolated to";
    EXPECT_EQ(f.service->info()->timestamp, f.clock.now());
    EXPECT_EQ(f.watcher.commands, QStringList{"send 2 org.mpris.MediaPlayer2.mpv"});

    f.clock.advance(3s);
    EXPECT_DOUBLE_EQ(f.service->elapsedNow(), 14) << "paused: the position stands still";
    f.service->togglePlayPause();
    EXPECT_EQ(f.service->info()->rate, 1);
    f.clock.advance(2s);
    EXPECT_DOUBLE_EQ(f.service->elapsedNow(), 16);
}

TEST(NowPlayingService, SeekNextPreviousAndOpenGoToTheReportedPlayer)
{
    Fixture f;
    f.feed(playing);
    f.service->seek(83.456);
    EXPECT_EQ(f.service->info()->elapsed, 83.456);
    EXPECT_EQ(f.service->info()->timestamp, f.clock.now());
    EXPECT_EQ(f.service->info()->rate, 1) << "seeking keeps playing";
    f.service->nextTrack();
    f.service->previousTrack();
    f.service->seek(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(f.watcher.commands, (QStringList{"seek 83.456 org.mpris.MediaPlayer2.mpv",
                                               "send 4 org.mpris.MediaPlayer2.mpv",
                                               "send 5 org.mpris.MediaPlayer2.mpv"}));

    f.service->openPlayerApp();
    EXPECT_TRUE(f.applications.launched.isEmpty()) << "a player that raises is not started";
    f.watcher.canRaise = false;
    f.service->openPlayerApp();
    EXPECT_EQ(f.applications.launched, QStringList{"mpv"});
}

TEST(NowPlayingService, AWatcherThatExitsIsStartedAgainAfterThreeSecondsUntilStopped)
{
    Fixture f;
    EXPECT_EQ(f.watcher.starts, 1);
    f.watcher.print("{\"title\":\"Half a li");
    f.watcher.exit();
    f.clock.advance(2999ms);
    EXPECT_EQ(f.watcher.starts, 1);
    EXPECT_FALSE(f.watcher.isRunning());
    f.clock.advance(1ms);
    EXPECT_EQ(f.watcher.starts, 2);
    f.watcher.print("ne\"}\n{\"title\":\"Fresh\"}\n");
    EXPECT_EQ(f.titles, QStringList{"Fresh"}) << "the dead watcher's half line is dropped";

    // One that dies at once every time, for a minute: every 3 seconds, no faster, no limit.
    std::vector<WallTime> startTimes;
    const WallTime begin = f.clock.now();
    for (int i = 0; i < 20; ++i) {
        f.watcher.exit();
        const int before = f.watcher.starts;
        f.clock.advance(3s);
        ASSERT_EQ(f.watcher.starts, before + 1) << "restart " << i;
        startTimes.push_back(f.clock.now());
    }
    EXPECT_EQ(startTimes.back() - begin, 60s);

    f.service->stop();
    f.clock.advance(10s);
    EXPECT_FALSE(f.watcher.isRunning());
    EXPECT_EQ(f.watcher.starts, 22);
    f.service->start();
    f.service->start();
    EXPECT_EQ(f.watcher.starts, 23) << "one watcher at a time";
    f.watcher.exit();
    f.service->stop(); // during the wait
    f.clock.advance(60s);
    EXPECT_EQ(f.watcher.starts, 23);
}

TEST(NowPlayingService, ALaunchFailureIsLoggedAndNotRetried)
{
    CapturingLogSink log;
    Fixture f;
    f.service->stop();
    f.watcher.failToStart = true;
    f.service->start();
    EXPECT_TRUE(log.contains(
        "Navro Now Playing: could not start navro-nowplaying: No such file or directory"));
    f.clock.advance(60s);
    EXPECT_EQ(f.watcher.starts, 2);
}

TEST(NowPlayingService, RemoteArtworkIsFetchedOncePerTrackAndOnlyAppliedToItsTrack)
{
    Fixture f;
    const QByteArray remote = R"(,"artUrl":"https://covers.example/one.jpg"})";
    f.feed(R"({"title":"One","artist":"Ann","rate":1)" + remote);
    f.feed(R"({"title":"One","artist":"Ann","rate":0)" + remote);
    ASSERT_EQ(f.downloader.requests.size(), 1u) << "a fetch in flight is not repeated";
    EXPECT_EQ(f.downloader.requests[0].url, QUrl("https://covers.example/one.jpg"));
    f.downloader.answer(0, png(Qt::blue));
    ASSERT_FALSE(f.service->artwork().isNull());
    EXPECT_EQ(f.service->artwork().pixelColor(0, 0), QColor(Qt::blue));

    // The track moved on before its cover arrived: cached, not shown on the other track.
    f.feed(R"({"title":"Two","artist":"Ann","rate":1)" + remote);
    ASSERT_EQ(f.downloader.requests.size(), 2u);
    f.feed(R"({"title":"Three","artist":"Ann","rate":1)" + remote);
    ASSERT_EQ(f.downloader.requests.size(), 3u);
    f.downloader.answer(1, png(Qt::green));
    EXPECT_TRUE(f.service->artwork().isNull());
    f.feed(R"({"title":"Two","artist":"Ann","rate":1)" + remote);
    EXPECT_EQ(f.downloader.requests.size(), 3u) << "back to Two: from the cache";
    EXPECT_EQ(f.service->artwork().pixelColor(0, 0), QColor(Qt::green));

    f.feed(R"({"title":"No Cover","artist":"Ann","rate":1})");
    EXPECT_EQ(f.downloader.requests.size(), 3u) << "a line without artUrl fetches nothing";
}

TEST(NowPlayingService, AFailedDownloadIsTriedAgainByALaterLine)
{
    Fixture f;
    const QByteArray lineWithUrl =
        R"({"title":"One","artist":"Ann","rate":1,"artUrl":"https://covers.example/1"})";
    f.feed(lineWithUrl);
    f.downloader.fail(0);
    EXPECT_TRUE(f.service->artwork().isNull());
    f.feed(lineWithUrl);
    ASSERT_EQ(f.downloader.requests.size(), 2u);
    f.downloader.answer(1, QByteArray("<html>not an image</html>"));
    f.feed(lineWithUrl);
    ASSERT_EQ(f.downloader.requests.size(), 3u) << "an answer that is no image counts as failed";
    f.downloader.answer(2, png(Qt::red));
    EXPECT_FALSE(f.service->artwork().isNull());
}

TEST(NowPlayingService, TheRemoteArtworkCacheKeepsTheLatest32Covers)
{
    Fixture f;
    const auto play = [&](int track) {
        f.feed(QStringLiteral(R"({"title":"T%1","artist":"A","rate":1,"artUrl":"http://c/%1"})")
                   .arg(track)
                   .toUtf8());
    };
    for (int track = 0; track < 33; ++track) {
        play(track);
        f.downloader.answer(f.downloader.requests.size() - 1, png(QColor(track, 0, 0)));
    }
    ASSERT_EQ(f.downloader.requests.size(), 33u);
    play(32);
    play(1);
    EXPECT_EQ(f.downloader.requests.size(), 33u) << "the 32 latest are still cached";
    play(0);
    EXPECT_EQ(f.downloader.requests.size(), 34u) << "the oldest was let go";
}

TEST(NowPlayingService, LinesOfTheHelperAreUnderstoodAsTheyAreMeant)
{
    Fixture f;
    PlayerReport report;
    report.title = "Tit\"le\n with \\ escapes – عربي";
    report.artist = "Ann, Bob";
    report.album = "";
    report.duration = 61.25;
    report.elapsed = 0.000001;
    report.rate = 1;
    report.timestamp = 1700000000123;
    report.artworkBytes = png(QColor(0xc0, 0x30, 0x20)).toStdString();
    report.bundle = "mpv";
    report.app = "mpv";
    report.player = "org.mpris.MediaPlayer2.mpv.instance42";
    LinePrinter printer;
    f.watcher.print(QByteArray::fromStdString(*printer.next(report)));

    ASSERT_TRUE(f.service->info());
    const NowPlayingInfo& info = *f.service->info();
    EXPECT_EQ(info.title, *report.title);
    EXPECT_EQ(info.artist, "Ann, Bob");
    EXPECT_EQ(info.duration, 61.25);
    EXPECT_EQ(info.elapsed, 0.000001);
    EXPECT_EQ(info.timestamp, WallTime(1700000000123ms));
    EXPECT_EQ(f.service->artworkTint().name(), "#d6786e");
    f.service->nextTrack();
    EXPECT_EQ(f.watcher.commands, QStringList{"send 4 org.mpris.MediaPlayer2.mpv.instance42"});

    f.watcher.print(QByteArray::fromStdString(*printer.next(PlayerReport{})));
    EXPECT_FALSE(f.service->info());
}

} // namespace
} // namespace navro
