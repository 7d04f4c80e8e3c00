#include "data/NotesStore.h"

#include "FakeDesktopNotifier.h"
#include "FakeSettingsStore.h"
#include "FakeSystemTimeEvents.h"
#include "ManualClock.h"
#include "TemporaryFolder.h"
#include "app/AppSettings.h"
#include "app/Log.h"
#include "app/SafeStorage.h"
#include "app/Version.h"
#include "data/NotesFile.h"

#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace navro {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono;
using namespace std::chrono_literals;
using Event = SystemTimeEvents::Event;

WallTime utc(int y, unsigned m, unsigned d, int h, int min = 0, int s = 0)
{
    return WallTime(sys_days(year(y) / month(m) / day(d)) + hours(h) + minutes(min) +
                    std::chrono::seconds(s));
}

QDateTime qtTime(WallTime time)
{
    return QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count());
}

// Riyadh is on +03 all year: 09:00 UTC is noon there.
const WallTime mayNoon = utc(2026, 5, 10, 9);

class NotesStoreTest : public ::testing::Test {
protected:
    NotesStore& start()
    {
        store_ = std::make_unique<NotesStore>(clock, settings, events, notifier, file_);
        return *store_;
    }
    void restart()
    {
        store_.reset();
        start();
    }
    NotesStore& store() { return *store_; }

    void putFile(const std::string& bytes) { writeBytes(file_, bytes); }
    std::string fileBytes() const { return readBytes(file_); }
    // A new inode is a new write: every save replaces the file by renaming a fresh one over it.
    ino_t fileIdentity() const
    {
        struct stat info {};
        return ::stat(file_.c_str(), &info) == 0 ? info.st_ino : 0;
    }
    NotesDocument onDisk() const
    {
        auto decoded = decodeNotes(fileBytes(), clock.now(), newTodoID);
        EXPECT_TRUE(decoded.document) << decoded.error;
        return decoded.document.value_or(NotesDocument{});
    }
    std::vector<std::string> texts(const std::vector<Todo>& todos) const
    {
        std::vector<std::string> list;
        for (const Todo& todo : todos)
            list.push_back(todo.text);
        return list;
    }
    const std::vector<TodoListModel::Row>& rows()
    {
        return static_cast<TodoListModel*>(store().sortedModel())->rows();
    }
    std::string idOf(const char* text) const
    {
        for (const Todo& todo : store_->todos())
            if (todo.text == text)
                return todo.id;
        ADD_FAILURE() << "no to-do " << text;
        return {};
    }
    QString qid(const char* text) const { return QString::fromStdString(idOf(text)); }
    std::string keyOf(const char* text) const { return NotesStore::reminderKey(idOf(text)); }

    FakeSettingsStore settingsStore;
    AppSettings settings{settingsStore, [] { return QStringList{"en-US"}; }};
    ManualClock clock{mayNoon};
    FakeSystemTimeEvents events{"Asia/Riyadh"};
    FakeDesktopNotifier notifier;
    TemporaryFolder root_;
    const fs::path file_ = root_ / "Navro" / "notes.json";
    std::unique_ptr<NotesStore> store_;
};

TEST_F(NotesStoreTest, BlankTextAndUnknownIdsChangeNothingAndWriteNothing)
{
    start();
    int changes = 0;
    QObject::connect(&store(), &NotesStore::todosChanged, [&] { ++changes; });
    for (const char* blank : {"", "   ", "\n\n", " \t\r\n ", "\u00a0\u2003"})
        EXPECT_EQ(store().add(QString::fromUtf8(blank)), std::nullopt) << blank;
    EXPECT_TRUE(store().todos().empty());
    EXPECT_EQ(changes, 0);
    EXPECT_FALSE(fs::exists(file_));

    store().add("a", Priority::low, mayNoon + 1h);
    const auto before = store().todos();
    const ino_t written = fileIdentity();
    const QString unknown = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";
    store().toggle(unknown);
    store().update(unknown, "b");
    store().update(unknown, "");
    store().setPriority(Priority::high, unknown);
    store().setDue(std::nullopt, unknown);
    store().remove(unknown);
    EXPECT_EQ(store().todos(), before);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(fileIdentity(), written);
    EXPECT_TRUE(notifier.withdrawn.empty());
}

TEST_F(NotesStoreTest, AddsAndUpdatesTrimmedToTheFrontAndWritesAtOnce)
{
    start();
    const auto first = store().add("  Buy milk\n");
    clock.advance(5s);
    const auto second = store().add("Call mom", Priority::high, mayNoon + 1h);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(texts(store().todos()), (std::vector<std::string>{"Call mom", "Buy milk"}));
    const Todo& added = store().todos().front();
    EXPECT_EQ(QString::fromStdString(added.id), *second);
    EXPECT_EQ(added.created, mayNoon + 5s);
    EXPECT_EQ(added.priority, Priority::high);
    EXPECT_EQ(added.due, mayNoon + 1h);
    EXPECT_FALSE(added.done);
    store().update(*first, " Buy oat milk \n");
    EXPECT_EQ(store().find(*first)->text, "Buy oat milk");
    // On disk without waiting, exactly as held.
    EXPECT_EQ(onDisk().todos, store().todos());
}

TEST_F(NotesStoreTest, CompletedGoToTheEndReopenedToTheFrontAndClearedKeepingTheRestInOrder)
{
    start();
    for (const char* text : {"a", "b", "c", "d"})
        store().add(text);
    const ino_t unchanged = fileIdentity();
    store().clearDone();
    EXPECT_EQ(fileIdentity(), unchanged) << "nothing done, nothing to write";
    store().toggle(qid("c"));
    EXPECT_EQ(texts(store().todos()), (std::vector<std::string>{"d", "b", "a", "c"}));
    store().toggle(qid("b"));
    store().toggle(qid("a"));
    EXPECT_EQ(texts(store().todos()), (std::vector<std::string>{"d", "c", "b", "a"}));
    EXPECT_EQ(store().doneCount(), 3);
    store().toggle(qid("c"));
    EXPECT_EQ(texts(store().todos()), (std::vector<std::string>{"c", "d", "b", "a"}));
    EXPECT_FALSE(store().todos()[0].done);
    EXPECT_EQ(onDisk().todos, store().todos());
    store().clearDone();
    EXPECT_EQ(texts(store().todos()), (std::vector<std::string>{"c", "d"}));
    EXPECT_EQ(onDisk().todos, store().todos());
    EXPECT_EQ(store().doneCount(), 0);
}

TEST_F(NotesStoreTest, SortedPutsOverdueFirstAndTheListFollowsTheClockOnlyWhileWatched)
{
    start();
    EXPECT_EQ(clock.pendingCount(), 0u);
    store().add("high, next hour", Priority::high, mayNoon + 1h);
    store().add("low, a minute ago", Priority::low, mayNoon - 1min);
    store().add("none, next week", Priority::none, mayNoon + 24h * 7);
    store().add("none, no deadline");
    EXPECT_EQ(clock.pendingCount(), 1u) << "only the next reminder waits";
    EXPECT_TRUE(rows().empty()) << "a list nobody looks at is not built";
    EXPECT_EQ(texts(store().sorted()),
              (std::vector<std::string>{"low, a minute ago", "high, next hour", "none, next week",
                                        "none, no deadline"}));
    // The view's list is in the same order, with the overdue one marked.
    store().watchList();
    EXPECT_EQ(clock.pendingCount(), 2u);
    ASSERT_EQ(rows().size(), 4u);
    EXPECT_EQ(rows()[0].text, "low, a minute ago");
    EXPECT_TRUE(rows()[0].overdue);
    EXPECT_EQ(rows()[0].dueLabel, "Overdue · Today 11:59\u202fAM");
    EXPECT_FALSE(rows()[1].overdue);

    // Moved into the past it joins the overdue ones, behind the one of higher priority, and past
    // deadlines get no reminder.
    store().setDue(mayNoon - 2h, qid("none, next week"));
    EXPECT_EQ(texts(store().sorted()),
              (std::vector<std::string>{"low, a minute ago", "none, next week", "high, next hour",
                                        "none, no deadline"}));
    clock.advance(30min);
    EXPECT_TRUE(notifier.shown.empty());
    // Its deadline gone by, the high one leads the overdue ones.
    clock.advance(30min + 1s);
    EXPECT_EQ(rows().at(0).text, "high, next hour");
    EXPECT_TRUE(rows().at(0).overdue);
    store().stopWatchingList();
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST_F(NotesStoreTest, AReminderArrivesAtTheStartOfTheDeadlinesMinuteAndCanMarkItDone)
{
    start();
    store().add("Pay rent", Priority::none, mayNoon + 10min + 30s);
    store().add("Other");
    clock.advance(10min - 1ms);
    EXPECT_TRUE(notifier.shown.empty());
    clock.advance(1ms);
    ASSERT_EQ(notifier.shown.size(), 1u);
    const DesktopNotification& shown = notifier.shown.front();
    EXPECT_EQ(shown.key, "navro.todo." + idOf("Pay rent"));
    EXPECT_EQ(shown.title, "To-do due now");
    EXPECT_EQ(shown.body, "Pay rent");
    ASSERT_EQ(shown.actions.size(), 1u);
    EXPECT_EQ(shown.actions[0].label, "Mark as done");

    ASSERT_TRUE(notifier.press(shown.key, "done"));
    EXPECT_EQ(texts(store().todos()), (std::vector<std::string>{"Other", "Pay rent"}));
    EXPECT_TRUE(store().todos().back().done);
    EXPECT_EQ(onDisk().todos, store().todos());
    // Done, its notice is taken away; a button pressed on a stale copy does nothing.
    EXPECT_TRUE(notifier.onScreen.empty());
    EXPECT_FALSE(notifier.press(shown.key, "done"));
    EXPECT_FALSE(notifier.press(keyOf("Other"), "done"));
    EXPECT_TRUE(store().todos().back().done);
    clock.advance(2h);
    EXPECT_EQ(notifier.shown.size(), 1u);
    // Nothing left to wait for: the process sleeps.
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST_F(NotesStoreTest, LabelsAndRemindersFollowTheZoneAndLanguageOfTheirMoment)
{
    start();
    store().add("Call", Priority::none, utc(2026, 5, 10, 18));
    store().watchList();
    EXPECT_EQ(rows().at(0).dueLabel, "Today 9:00\u202fPM");
    events.zone = "Europe/London";
    events.send(Event::timeZoneChanged);
    EXPECT_EQ(rows().at(0).dueLabel, "Today 7:00\u202fPM");
    settings.setLanguageRaw("arabic");
    EXPECT_EQ(rows().at(0).dueLabel, "اليوم ٧:٠٠ م");
    EXPECT_EQ(rows().at(0).priorityTitle, "بلا أولوية");
    clock.advance(9h);
    ASSERT_EQ(notifier.shown.size(), 1u);
    EXPECT_EQ(notifier.shown[0].title, "حان موعد المهمة");
    EXPECT_EQ(notifier.shown[0].actions.at(0).label, "تم");
}

TEST_F(NotesStoreTest, EndingAToDoOrItsDeadlineCancelsItsReminderOrTakesItOffTheScreen)
{
    using End = std::function<void(NotesStore&, const QString&)>;
    const struct {
        const char* what;
        End end;
        bool keepsTheToDo;
    } cases[] = {
        {"removed", [](NotesStore& s, const QString& id) { s.remove(id); }, false},
        {"updated to blanks", [](NotesStore& s, const QString& id) { s.update(id, " \n "); },
         false},
        {"completed", [](NotesStore& s, const QString& id) { s.toggle(id); }, true},
        {"undated", [](NotesStore& s, const QString& id) { s.setDue(std::nullopt, id); }, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        store_.reset();
        fs::remove(file_);
        notifier.shown.clear();
        notifier.withdrawn.clear();
        start();
        store().add("Pending", Priority::none, clock.now() + 5min);
        store().add("Shown", Priority::none, clock.now() + 1min);
        clock.advance(1min);
        ASSERT_EQ(notifier.onScreen.size(), 1u);
        const std::string shownKey = keyOf("Shown");
        c.end(store(), qid("Pending"));
        c.end(store(), qid("Shown"));
        EXPECT_EQ(notifier.withdrawn, std::vector<std::string>{shownKey});
        EXPECT_TRUE(notifier.onScreen.empty());
        EXPECT_EQ(onDisk().todos.size(), c.keepsTheToDo ? 2u : 0u);
        EXPECT_EQ(onDisk().todos, store().todos());
        clock.advance(1h);
        EXPECT_EQ(notifier.shown.size(), 1u);
    }
}

TEST_F(NotesStoreTest, RemindersSurviveARestart)
{
    start();
    store().add("Future", Priority::none, mayNoon + 5min);
    store().add("Past", Priority::none, mayNoon + 1min);
    restart();
    EXPECT_EQ(onDisk().todos, store().todos());
    clock.advance(2min);
    ASSERT_EQ(notifier.shown.size(), 1u);
    EXPECT_EQ(notifier.shown[0].body, "Past");
    // Started again after a deadline went by: no reminder for what is already past.
    restart();
    clock.advance(10min);
    ASSERT_EQ(notifier.shown.size(), 2u);
    EXPECT_EQ(notifier.shown[1].body, "Future");
}

TEST_F(NotesStoreTest, AClockSetOrASleepPastADeadlineRemindsOnce)
{
    for (Event event : {Event::clockChanged, Event::resumed}) {
        notifier.shown.clear();
        start();
        store().add("Missed", Priority::none, clock.now() + 1h);
        // No timer ran meanwhile: the wall clock simply reads later.
        clock.setWallTime(clock.now() + 2h);
        events.send(event);
        ASSERT_EQ(notifier.shown.size(), 1u);
        EXPECT_EQ(notifier.shown[0].body, "Missed");
        events.send(Event::clockChanged);
        events.send(Event::resumed);
        clock.advance(1h);
        EXPECT_EQ(notifier.shown.size(), 1u);
        store().remove(qid("Missed"));
    }
}

TEST_F(NotesStoreTest, TenKeystrokesInHalfASecondMakeOneWrite)
{
    start();
    QString typed;
    for (int key = 0; key < 10; ++key) {
        if (key > 0)
            clock.advance(50ms);
        typed += QChar('a' + key);
        store().setNote(typed);
    }
    clock.advance(599ms);
    EXPECT_FALSE(fs::exists(file_)) << "written before 0.6 s had passed since the last keystroke";
    clock.advance(1ms);
    ASSERT_TRUE(fs::exists(file_));
    EXPECT_EQ(onDisk().note, "abcdefghij");
    const ino_t written = fileIdentity();
    clock.advance(10s);
    EXPECT_EQ(fileIdentity(), written) << "written more than once";
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST_F(NotesStoreTest, APendingNoteIsWrittenWhenFlushedOrWithAToDoChange)
{
    start();
    store().setNote("first");
    store().flushPendingSave();
    EXPECT_EQ(onDisk().note, "first");
    store().setNote("second");
    store().add("a");
    EXPECT_EQ(onDisk().note, "second");
    const ino_t written = fileIdentity();
    clock.advance(1s);
    EXPECT_EQ(fileIdentity(), written) << "the note's own write should have been dropped";
    store().flushPendingSave();
    EXPECT_EQ(fileIdentity(), written) << "nothing was pending";
}

TEST_F(NotesStoreTest, LoadingNeverRewritesTheFileAndMissingPrioritiesAreNone)
{
    const std::string bytes =
        R"({"todos":[{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","text":"Old one","done":false,)"
        R"("created":767463000}],"note":"kept"})";
    putFile(bytes);
    const ino_t identity = fileIdentity();
    start();
    ASSERT_EQ(store().todos().size(), 1u);
    EXPECT_EQ(store().todos()[0].priority, Priority::none);
    EXPECT_EQ(store().note(), "kept");
    clock.advance(10s);
    EXPECT_EQ(fileBytes(), bytes);
    EXPECT_EQ(fileIdentity(), identity);
}

TEST_F(NotesStoreTest, AnUnreadableFileIsKeptAsideAndTheStoreStartsEmpty)
{
    const std::vector<std::pair<const char*, std::string>> cases = {
        {"not JSON", "{\"todos\":[{\"text\":\"cut off"},
        {"a wrong-typed key", R"({"todos":[{"text":"fine"},{"text":5}],"note":"lost?"})"},
    };
    for (const auto& [what, bytes] : cases) {
        fs::remove_all(file_.parent_path());
        putFile(bytes);
        CapturingLogSink log;
        start();
        EXPECT_TRUE(store().todos().empty()) << what;
        EXPECT_TRUE(store().note().isEmpty()) << what;
        const std::string backup =
            SafeStorage::backupName("notes.json", applicationVersion(), clock.now());
        EXPECT_TRUE(log.contains("could not read notes.json; kept a copy at " + backup)) << what;
        EXPECT_EQ(readBytes(file_.parent_path() / backup), bytes) << what;
        EXPECT_EQ(fileBytes(), bytes) << what << ": the file itself waits for the next save";
        store().add("new");
        EXPECT_EQ(texts(onDisk().todos), std::vector<std::string>{"new"});
        store_.reset();
    }
}

TEST_F(NotesStoreTest, AFailedWriteIsShownLoggedOnceAndRetriedWithTheNextChange)
{
    // A folder where the file should be: nothing can be written there.
    fs::create_directories(file_);
    CapturingLogSink log;
    start();
    store().add("first");
    EXPECT_FALSE(store().saveError().isEmpty());
    store().setNote("typed");
    clock.advance(1s);
    store().add("second");
    auto failures = std::count_if(log.lines.begin(), log.lines.end(), [](const std::string& line) {
        return line.find("could not save notes.json") != std::string::npos;
    });
    EXPECT_EQ(failures, 1);

    fs::remove(file_);
    store().add("third");
    EXPECT_TRUE(store().saveError().isEmpty());
    EXPECT_TRUE(log.contains("saved notes.json again"));
    EXPECT_EQ(texts(onDisk().todos), (std::vector<std::string>{"third", "second", "first"}));
    EXPECT_EQ(onDisk().note, "typed");
}

TEST_F(NotesStoreTest, APriorityChangeLeavesTheReminderAloneAndANewDeadlineMovesIt)
{
    start();
    store().add("Call", Priority::none, mayNoon + 1h);
    store().setPriority(Priority::medium, qid("Call"));
    EXPECT_EQ(onDisk().todos.at(0).priority, Priority::medium);
    clock.advance(1h);
    EXPECT_EQ(notifier.shown.size(), 1u);
    store().setDue(mayNoon + 3h, qid("Call"));
    EXPECT_EQ(onDisk().todos.at(0).due, mayNoon + 3h);
    clock.advance(2h - 1ms);
    EXPECT_EQ(notifier.shown.size(), 1u);
    clock.advance(1ms);
    EXPECT_EQ(notifier.shown.size(), 2u);
}

TEST_F(NotesStoreTest, PresetsOfferedByTheLocalHour)
{
    // Which presets an hour offers is the rules' business; here the hour is Riyadh's.
    const struct {
        WallTime at;
        qsizetype count;
        const char* secondTitle;
        WallTime secondDue;
    } cases[] = {
        {utc(2026, 5, 10, 17, 59), 5, "Tonight (9 PM)", utc(2026, 5, 10, 18)},
        {utc(2026, 5, 10, 18), 4, "Tomorrow morning (9 AM)", utc(2026, 5, 11, 6)},
        {utc(2026, 5, 10, 13, 59), 5, "This evening (6 PM)", utc(2026, 5, 10, 15)},
    };
    start();
    for (const auto& c : cases) {
        clock.setWallTime(c.at);
        const QVariantList presets = store().duePresets();
        EXPECT_EQ(presets.size(), c.count);
        EXPECT_EQ(presets.at(0).toMap().value("title").toString(), "In 1 hour");
        EXPECT_EQ(presets.at(1).toMap().value("title").toString(), c.secondTitle);
        EXPECT_EQ(presets.at(1).toMap().value("due").toDateTime(), qtTime(c.secondDue));
    }
}

// What the views call, in their types: ints for priorities, dates that may be invalid for none.
TEST_F(NotesStoreTest, TheViewsCallsTranslateTheirTypes)
{
    start();
    const QString id = store().addTodo(" Call ", 7, QDateTime());
    ASSERT_FALSE(id.isEmpty());
    EXPECT_EQ(store().addTodo("  ", 1, QDateTime()), "");
    const Todo* todo = store().find(id);
    ASSERT_NE(todo, nullptr);
    EXPECT_EQ(todo->priority, Priority::none);
    EXPECT_EQ(todo->due, std::nullopt);

    store().setPriorityOf(id, 2);
    store().setPriorityOf(id, -1);
    store().setDueOf(id, qtTime(mayNoon + 90min));
    EXPECT_EQ(store().find(id)->priority, Priority::medium);
    EXPECT_EQ(store().find(id)->due, mayNoon + 90min);
    store().setDueOf(id, QDateTime());
    EXPECT_EQ(store().find(id)->due, std::nullopt);

    // The picker starts on the next whole hour and turns its fields back into the same moment.
    const QVariantMap fields = store().wallClock(QDateTime());
    EXPECT_EQ(fields.value("hour").toInt(), 13);
    EXPECT_EQ(fields.value("minute").toInt(), 0);
    EXPECT_EQ(store().momentAt(fields.value("year").toInt(), fields.value("month").toInt(),
                               fields.value("day").toInt(), 13, 0),
              qtTime(mayNoon + 1h));
    EXPECT_FALSE(store().momentAt(2026, 5, 10, 2000000000, 0).isValid());

    EXPECT_EQ(store().priorityTitle(3, false), "High");
    EXPECT_EQ(store().priorityTitle(3, true), "عالية");
    EXPECT_EQ(store().deadlineLabel(qtTime(mayNoon + 1h), false), "Today 1:00\u202fPM");
    EXPECT_EQ(store().deadlineLabel(qtTime(mayNoon - 1h), true), "متأخرة · اليوم ١١:٠٠ ص");
    EXPECT_EQ(store().deadlineLabel(QDateTime(), false), "");
}

} // namespace
} // namespace navro
