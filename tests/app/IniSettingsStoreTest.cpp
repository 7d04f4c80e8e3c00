#include "app/IniSettingsStore.h"

#include "ManualClock.h"
#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"
#include "app/AppSettings.h"
#include "app/Log.h"
#include "app/SafeStorage.h"
#include "app/Version.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace navro {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;
using namespace std::chrono_literals;

class IniSettingsStoreTest : public ::testing::Test {
protected:
    fs::path folder() const { return root_ / "Navro"; }
    fs::path file() const { return folder() / "Navro.conf"; }

    void writeFile(const std::string& text) { writeBytes(file(), text); }
    int entries() const
    {
        int count = 0;
        for ([[maybe_unused]] const auto& entry : fs::directory_iterator(folder()))
            ++count;
        return count;
    }
    // Lets the pending write fall due.
    void settle(Duration by = IniSettingsStore::saveDelay) { clock_.advance(by); }

    ManualClock clock_;
    TemporaryFolder temporary;
    const fs::path root_ = temporary.path();
};

TEST_F(IniSettingsStoreTest, TellsAMissingKeyFromTextThatIsNotOfTheType)
{
    writeFile("[General]\n"
              "yes=yes\n"
              "one=1\n"
              "plus=+5\n"
              "half=1.5\n"
              "word=fast\n"
              "infinite=inf\n"
              "list=a, b\n");
    IniSettingsStore store(clock_, file());

    EXPECT_EQ(store.readBool("absent").state(), StoreRead<bool>::State::missing);
    EXPECT_EQ(store.readBool("yes").state(), StoreRead<bool>::State::wrongType);
    EXPECT_EQ(store.readBool("yes").stored(), "yes");
    EXPECT_EQ(store.readBool("one").state(), StoreRead<bool>::State::wrongType);
    EXPECT_EQ(store.readInt("half").state(), StoreRead<int>::State::wrongType);
    EXPECT_EQ(store.readInt("word").state(), StoreRead<int>::State::wrongType);
    EXPECT_EQ(store.readDouble("word").state(), StoreRead<double>::State::wrongType);
    EXPECT_EQ(store.readDouble("infinite").state(), StoreRead<double>::State::wrongType);
    EXPECT_EQ(store.readString("list").state(), StoreRead<QString>::State::wrongType);
    EXPECT_EQ(store.readString("list").stored(), "a, b");
    EXPECT_EQ(store.readInt("one").value(), 1);
    EXPECT_EQ(store.readInt("plus").value(), 5);
    EXPECT_EQ(store.readDouble("half").value(), 1.5);
    EXPECT_EQ(store.readDouble("one").value(), 1.0);
    EXPECT_EQ(store.readString("one").value(), "1");
}

TEST_F(IniSettingsStoreTest, ReadsTheTextAnotherProcessWrote)
{
    writeFile("[General]\n"
              "notchEnabled=false\n"
              "clipboardLimit=50\n"
              "hoverDelay=0.3\n"
              "openMode=click\n"
              "theme=neon\n"
              "adhanAlert=TRUE\n"
              "lastTimerMinutes=nan\n"
              "focusShortcutOn=\"Work, deep\"\n");
    CapturingLogSink log;
    IniSettingsStore store(clock_, file());
    AppSettings settings(store, [] { return QStringList(); });

    EXPECT_FALSE(settings.notchEnabled());
    EXPECT_EQ(settings.clipboardLimit(), 50);
    EXPECT_EQ(settings.hoverDelay(), 0.3);
    EXPECT_EQ(settings.openMode(), OpenMode::click);
    EXPECT_EQ(settings.theme(), AppTheme::system);
    EXPECT_TRUE(settings.adhanAlert()) << "only exactly true or false is a Bool";
    EXPECT_EQ(settings.lastTimerMinutes(), 25.0);
    EXPECT_EQ(settings.focusShortcutOn(), "Work, deep");
    // Each value that is not used says what it was.
    EXPECT_TRUE(log.contains("setting \"adhanAlert\" holds \"TRUE\""));
    EXPECT_TRUE(log.contains("setting \"lastTimerMinutes\" holds \"nan\""));
    EXPECT_TRUE(log.contains("\"neon\""));
}

TEST_F(IniSettingsStoreTest, EveryWrittenValueReadsBackExactlyFromTheFile)
{
    const double awkward = 0.1 + 0.2;
    {
        IniSettingsStore store(clock_, file());
        store.writeDouble("hoverDelay", 0.15);
        store.writeDouble("awkward", awkward);
        store.writeDouble("tiny", 1e-300);
        store.writeDouble("huge", 1e308);
        store.writeInt("limit", -7);
        store.writeBool("off", false);
        store.writeString("comma", QStringLiteral("Work, deep"));
        store.writeString("at", QStringLiteral("@Variant(x)"));
        store.writeString("arabic", QStringLiteral("وضع التركيز"));
        store.writeString("empty", QString());
        EXPECT_TRUE(store.saveNow());
    }
    IniSettingsStore store(clock_, file());

    EXPECT_EQ(store.readDouble("hoverDelay").value(), 0.15);
    EXPECT_EQ(store.readDouble("awkward").value(), awkward);
    EXPECT_EQ(store.readDouble("tiny").value(), 1e-300);
    EXPECT_EQ(store.readDouble("huge").value(), 1e308);
    EXPECT_EQ(store.readInt("limit").value(), -7);
    EXPECT_TRUE(store.readBool("off").hasValue());
    EXPECT_FALSE(store.readBool("off").value());
    EXPECT_EQ(store.readString("comma").value(), "Work, deep");
    EXPECT_EQ(store.readString("at").value(), "@Variant(x)");
    EXPECT_EQ(store.readString("arabic").value(), "وضع التركيز");
    EXPECT_TRUE(store.readString("empty").hasValue());
    EXPECT_EQ(store.readString("empty").value(), "");
}

TEST_F(IniSettingsStoreTest, ChangesAreWrittenPrivatelyOnceTheyStopComing)
{
    // A folder made by someone else with the usual mask becomes Navro's own.
    fs::create_directories(folder());
    fs::permissions(folder(), fs::perms(0755));
    IniSettingsStore store(clock_, file());

    store.writeDouble("hoverDelay", 0.2);
    settle(IniSettingsStore::saveDelay / 2);
    store.writeDouble("hoverDelay", 0.3);
    settle(IniSettingsStore::saveDelay / 2);
    EXPECT_FALSE(fs::exists(file())) << "a change that follows another waits for it";
    settle();
    EXPECT_EQ(readBytes(file()), "[General]\nhoverDelay=0.3\n");
    EXPECT_EQ(permissionsOf(file()), 0600u);
    EXPECT_EQ(permissionsOf(folder()), 0700u);
    EXPECT_FALSE(store.hasUnsavedChanges());
    EXPECT_EQ(clock_.pendingCount(), 0u) << "nothing is left to wake for";
}

TEST_F(IniSettingsStoreTest, AFileOfAnEarlierVersionIsMadePrivateWhenItIsRead)
{
    writeFile("[General]\ntheme=dark\n");
    fs::permissions(file(), fs::perms(0644));
    fs::permissions(folder(), fs::perms(0755));
    CapturingLogSink log;
    IniSettingsStore store(clock_, file());
    EXPECT_EQ(permissionsOf(file()), 0600u);
    EXPECT_EQ(permissionsOf(folder()), 0700u);
    EXPECT_EQ(readBytes(file()), "[General]\ntheme=dark\n") << "and left as it was otherwise";
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(IniSettingsStoreTest, AnEditMadeMeanwhileSurvivesNavrosNextWrite)
{
    writeFile("[General]\ntheme=dark\nlanguage=english\n");
    IniSettingsStore store(clock_, file());
    // The user edits the file by hand while Navro runs, then changes another setting in Navro.
    writeFile("[General]\ntheme=light\nlanguage=english\n[Window]\nx=5\n");
    store.writeString("language", QStringLiteral("arabic"));
    settle();

    EXPECT_EQ(readBytes(file()), "[General]\nlanguage=arabic\ntheme=light\n\n[Window]\nx=5\n");
}

TEST_F(IniSettingsStoreTest, SpecialFilesAreNeitherOpenedNorReplaced)
{
    struct Case {
        std::string kind;
        std::function<void(const fs::path&)> make;
    };
    const std::vector<Case> cases{
        {"a FIFO", [](const fs::path& p) { ASSERT_EQ(::mkfifo(p.c_str(), 0600), 0); }},
        {"a folder", [](const fs::path& p) { fs::create_directory(p); }},
        {"a device", [](const fs::path& p) { fs::create_symlink("/dev/zero", p); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        fs::remove_all(folder());
        fs::create_directories(folder());
        c.make(file());
        CapturingLogSink log;
        // Opening a FIFO for reading would block right here.
        IniSettingsStore store(clock_, file());
        EXPECT_EQ(store.readBool("notchEnabled").state(), StoreRead<bool>::State::missing);
        ASSERT_EQ(log.lines.size(), 1u);
        EXPECT_THAT(log.lines[0], HasSubstr(file().string()));
        EXPECT_THAT(log.lines[0], HasSubstr(c.kind));

        store.writeBool("notchEnabled", false);
        EXPECT_FALSE(store.saveNow());
        EXPECT_THAT(store.saveProblem().toStdString(), HasSubstr(c.kind));
        EXPECT_FALSE(fs::is_regular_file(fs::symlink_status(file()))) << "left as it was";
        EXPECT_FALSE(store.readBool("notchEnabled").value()) << "the change is kept in memory";
    }
}

TEST_F(IniSettingsStoreTest, ADamagedFileSaysWhatWasKeptAndIsCopiedBeforeItIsRewritten)
{
    const std::string original = "[General]\n"
                                 "theme=dark\n"
                                 "hoverDelay 0.5\n"
                                 "language=\"arabic\n"
                                 "notchEnabled=false\n";
    writeFile(original);
    CapturingLogSink log;
    IniSettingsStore store(clock_, file());

    EXPECT_EQ(store.readString("theme").value(), "dark");
    EXPECT_FALSE(store.readBool("notchEnabled").value());
    EXPECT_EQ(store.readString("language").state(), StoreRead<QString>::State::missing);
    ASSERT_EQ(log.lines.size(), 1u);
    const std::string& line = log.lines[0];
    EXPECT_THAT(line, HasSubstr("kept notchEnabled, theme"));
    EXPECT_THAT(line, HasSubstr("line 3 \"hoverDelay 0.5\""));
    EXPECT_THAT(line, HasSubstr("line 4 \"language=\"arabic\""));
    EXPECT_THAT(line, Not(HasSubstr("using the defaults")));
    EXPECT_EQ(entries(), 1) << "nothing is copied at start";

    const WallTime firstWrite = clock_.now() + IniSettingsStore::saveDelay;
    store.writeDouble("hoverDelay", 0.4);
    settle();
    const fs::path copy =
        folder() / SafeStorage::backupName("Navro.conf", applicationVersion(), firstWrite);
    EXPECT_EQ(readBytes(copy), original);
    EXPECT_EQ(readBytes(file()), "[General]\nhoverDelay=0.4\nnotchEnabled=false\ntheme=dark\n");

    // Whole again, the file is not copied a second time.
    clock_.advance(10s);
    store.writeString("theme", QStringLiteral("light"));
    settle();
    EXPECT_EQ(entries(), 2);
}

TEST_F(IniSettingsStoreTest, AFailedWriteIsLoggedOnceShownAndRetriedUntilItWorks)
{
    CapturingLogSink log;
    IniSettingsStore store(clock_, file());
    int problemChanges = 0;
    QObject::connect(&store, &IniSettingsStore::saveProblemChanged, [&] { ++problemChanges; });
    // Something else takes the file's place after Navro has started.
    fs::create_directories(file());

    store.writeBool("notchEnabled", false);
    settle();
    EXPECT_TRUE(store.hasUnsavedChanges());
    EXPECT_THAT(store.saveProblem().toStdString(), HasSubstr("a folder"));
    EXPECT_THAT(store.saveProblem().toStdString(), HasSubstr(file().string()));
    EXPECT_EQ(problemChanges, 1);
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_THAT(log.lines[0], HasSubstr("settings cannot be saved to " + file().string()));

    // Retried with growing pauses, quietly.
    clock_.advance(IniSettingsStore::firstRetryDelay);
    clock_.advance(IniSettingsStore::firstRetryDelay * 2);
    EXPECT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(clock_.pendingCount(), 1u);
    store.writeBool("musicInNotch", false);
    settle();
    EXPECT_EQ(log.lines.size(), 1u) << "a new change is tried at once, and logged no further";

    fs::remove(file());
    clock_.advance(IniSettingsStore::longestRetryDelay);
    EXPECT_FALSE(store.hasUnsavedChanges());
    EXPECT_EQ(readBytes(file()), "[General]\nmusicInNotch=false\nnotchEnabled=false\n");
    EXPECT_TRUE(store.saveProblem().isEmpty());
    EXPECT_EQ(problemChanges, 2);
    EXPECT_TRUE(log.contains("settings saved to " + file().string() + " again"));
    EXPECT_EQ(clock_.pendingCount(), 0u);
}

TEST_F(IniSettingsStoreTest, AFileWhereTheFolderShouldBeStopsEveryWrite)
{
    writeBytes(folder(), "not a folder");
    IniSettingsStore store(clock_, file());
    store.writeInt("clipboardLimit", 50);
    EXPECT_FALSE(store.saveNow());
    EXPECT_FALSE(store.saveProblem().isEmpty());
    EXPECT_EQ(readBytes(folder()), "not a folder");
    EXPECT_EQ(store.readInt("clipboardLimit").value(), 50);
}

TEST_F(IniSettingsStoreTest, AFullDiskIsAFailureLikeAnyOther)
{
    // A file-size limit makes the write fail as a full disk does (EFBIG); the program ignores the
    // signal that would otherwise end it, as Navro does.
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    rlimit saved{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &saved), 0);
    IniSettingsStore store(clock_, file());
    store.writeString("focusShortcutOn", QString(200, QLatin1Char('x')));
    rlimit tight = saved;
    tight.rlim_cur = 64;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    const bool writtenWhileFull = store.saveNow();
    ::setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previous);

    EXPECT_FALSE(writtenWhileFull);
    EXPECT_THAT(store.saveProblem().toStdString(), HasSubstr("File too large"));
    EXPECT_FALSE(fs::exists(file())) << "no half-written file";
    EXPECT_TRUE(store.saveNow()) << "with room again, the change is written";
    EXPECT_THAT(readBytes(file()), HasSubstr(std::string(200, 'x')));
}

TEST(IniSettingsStorePath, FollowsXdgConfigHome)
{
    const ScopedEnvironment configHome("XDG_CONFIG_HOME", "/srv/config");
    EXPECT_EQ(IniSettingsStore::defaultPath(), fs::path("/srv/config/Navro/Navro.conf"));
}

} // namespace
} // namespace navro
