#include "data/NotesStore.h"

#include "app/AppSettings.h"
#include "app/FileAccess.h"
#include "app/Log.h"
#include "app/QtText.h"
#include "app/SafeStorage.h"
#include "data/NotesFile.h"

#include <QPointer>
#include <QVariantMap>
#include <algorithm>

namespace navro {
namespace {

// Far above a lifetime of to-dos and a long note; a file this large is not ours.
constexpr std::size_t maxNotesFileBytes = 64 * 1024 * 1024;
constexpr std::string_view markDoneAction = "done";

QDateTime toDateTime(WallTime time)
{
    return QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count());
}

std::optional<WallTime> toWallTime(const QDateTime& moment)
{
    if (!moment.isValid())
        return std::nullopt;
    return WallTime(std::chrono::milliseconds(moment.toMSecsSinceEpoch()));
}

std::optional<Priority> priorityFrom(int raw)
{
    if (raw < 0 || raw > 3)
        return std::nullopt;
    return static_cast<Priority>(raw);
}

} // namespace

NotesStore::NotesStore(Clock& clock, const AppSettings& settings, SystemTimeEvents& timeEvents,
                       DesktopNotifier& notifier, std::filesystem::path file, QObject* parent)
    : QObject(parent), clock_(clock), settings_(settings), timeEvents_(timeEvents),
      file_(std::move(file)), saveTask_(clock.makeSlot()), reminders_(clock, notifier),
      listRefresh_(clock.makeSlot())
{
    load();
    rescheduleReminders();
    timeEventsHandler_ =
        timeEvents_.addHandler([this](SystemTimeEvents::Event event) { onTimeEvent(event); });
    // Titles and labels follow the interface language, the reminders still to come too.
    connect(&settings_, &AppSettings::isArabicChanged, this, [this] {
        refreshList();
        rescheduleReminders();
    });
}

NotesStore::~NotesStore()
{
    timeEvents_.removeHandler(timeEventsHandler_);
}

std::filesystem::path NotesStore::defaultFile()
{
    return dataFolder() / "notes.json";
}

std::string NotesStore::reminderKey(const std::string& todoID)
{
    return "navro.todo." + todoID;
}

void NotesStore::load()
{
    const std::string name = file_.filename().string();
    const FileRead read = readRegularFile(file_, maxNotesFileBytes);
    switch (read.status) {
    case FileRead::Status::missing:
        return;
    case FileRead::Status::notRegular:
        // Nothing to copy, and nothing will be written over it either.
        logLine("could not read " + name + ": " + read.reason);
        return;
    case FileRead::Status::tooLarge:
    case FileRead::Status::failed:
        logLine("could not read " + name + ": " + read.reason);
        SafeStorage::backUpUnreadable(file_, clock_.now());
        return;
    case FileRead::Status::ok:
        break;
    }
    auto decoded = decodeNotes(read.bytes, clock_.now(), newTodoID);
    if (!decoded.document) {
        logLine(name + " is damaged: " + decoded.error);
        SafeStorage::backUpUnreadable(file_, clock_.now());
        return;
    }
    todos_ = std::move(decoded.document->todos);
    // Straight into the member: loading is no edit, so it schedules no write.
    note_ = toQString(decoded.document->note);
}

void NotesStore::save()
{
    saveTask_->cancel();
    std::optional<FileError> error = makePrivateFolder(file_.parent_path());
    if (!error)
        error = writeFileAtomically(file_, encodeNotes({todos_, note_.toStdString()}));
    const std::string name = file_.filename().string();
    if (error) {
        // Once per spell of failures: every later change tries again, and says nothing new.
        if (saveError_.isEmpty())
            logLine("could not save " + name + ": " + *error +
                    "; trying again with the next change");
        const QString reason = toQString(*error);
        if (reason != saveError_) {
            saveError_ = reason;
            emit saveErrorChanged();
        }
        return;
    }
    if (!saveError_.isEmpty()) {
        logLine("saved " + name + " again");
        saveError_.clear();
        emit saveErrorChanged();
    }
}

void NotesStore::saveSoon()
{
    saveTask_->schedule(noteSaveDelay, [this] { save(); });
}

void NotesStore::flushPendingSave()
{
    if (saveTask_->isPending())
        save();
}

void NotesStore::todosEdited()
{
    emit todosChanged();
    refreshList();
}

const Todo* NotesStore::find(const QString& id) const
{
    const std::string key = id.toStdString();
    const auto found = std::find_if(todos_.begin(), todos_.end(),
                                    [&](const Todo& todo) { return todo.id == key; });
    return found == todos_.end() ? nullptr : &*found;
}

Todo* NotesStore::findMutable(const QString& id)
{
    return const_cast<Todo*>(find(id));
}

std::vector<std::size_t> NotesStore::displayPositions(WallTime now) const
{
    std::vector<TodoSortKey> keys;
    keys.reserve(todos_.size());
    for (const Todo& todo : todos_)
        keys.push_back({todo.done, todo.priority, todo.due});
    return displayOrder(keys, now);
}

std::vector<Todo> NotesStore::sorted() const
{
    std::vector<Todo> list;
    list.reserve(todos_.size());
    for (std::size_t position : displayPositions(clock_.now()))
        list.push_back(todos_[position]);
    return list;
}

std::optional<QString> NotesStore::add(const QString& text, Priority priority,
                                       std::optional<WallTime> due)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    Todo todo{newTodoID(), trimmed.toStdString(), false, clock_.now(), priority, due};
    todos_.insert(todos_.begin(), todo);
    save();
    scheduleReminder(todo);
    todosEdited();
    return toQString(todo.id);
}

void NotesStore::toggle(const QString& id)
{
    Todo* found = findMutable(id);
    if (!found)
        return;
    Todo todo = *found;
    todo.done = !todo.done;
    todos_.erase(todos_.begin() + (found - todos_.data()));
    // Completed ones go to the end in the order they were completed; reopened ones to the front.
    if (todo.done)
        todos_.push_back(todo);
    else
        todos_.insert(todos_.begin(), todo);
    save();
    if (todo.done)
        cancelReminder(todo);
    else
        scheduleReminder(todo);
    todosEdited();
}

void NotesStore::update(const QString& id, const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        remove(id);
        return;
    }
    Todo* todo = findMutable(id);
    if (!todo || todo->text == trimmed.toStdString())
        return;
    todo->text = trimmed.toStdString();
    save();
    // The reminder to come carries the new text.
    scheduleReminder(*todo);
    todosEdited();
}

void NotesStore::setPriority(Priority priority, const QString& id)
{
    Todo* todo = findMutable(id);
    if (!todo || todo->priority == priority)
        return;
    todo->priority = priority;
    save();
    todosEdited();
}

void NotesStore::setDue(std::optional<WallTime> due, const QString& id)
{
    Todo* todo = findMutable(id);
    if (!todo)
        return;
    todo->due = due;
    save();
    // A notice shown for the old deadline is out of date either way.
    cancelReminder(*todo);
    scheduleReminder(*todo);
    todosEdited();
}

void NotesStore::remove(const QString& id)
{
    const Todo* todo = find(id);
    if (!todo)
        return;
    cancelReminder(*todo);
    todos_.erase(todos_.begin() + (todo - todos_.data()));
    save();
    todosEdited();
}

void NotesStore::clearDone()
{
    const auto firstDone = std::stable_partition(todos_.begin(), todos_.end(),
                                                 [](const Todo& todo) { return !todo.done; });
    if (firstDone == todos_.end())
        return;
    for (auto todo = firstDone; todo != todos_.end(); ++todo)
        cancelReminder(*todo);
    todos_.erase(firstDone, todos_.end());
    save();
    todosEdited();
}

int NotesStore::doneCount() const
{
    return int(
        std::count_if(todos_.begin(), todos_.end(), [](const Todo& todo) { return todo.done; }));
}

void NotesStore::setNote(const QString& note)
{
    if (note == note_)
        return;
    note_ = note;
    emit noteChanged();
    saveSoon();
}

void NotesStore::scheduleReminder(const Todo& todo)
{
    const std::string key = reminderKey(todo.id);
    if (todo.done || !todo.due || *todo.due <= clock_.now()) {
        reminders_.cancelPending(key);
        return;
    }
    const bool arabic = settings_.isArabic();
    DesktopNotification notification;
    notification.key = key;
    notification.title = arabic ? "حان موعد المهمة" : "To-do due now";
    notification.body = todo.text;
    notification.actions.push_back({std::string(markDoneAction), arabic ? "تم" : "Mark as done"});
    QPointer<NotesStore> self(this);
    const QString id = toQString(todo.id);
    // At the start of the deadline's minute, as a clock shows it.
    const WallTime at = std::chrono::floor<std::chrono::minutes>(*todo.due);
    reminders_.schedule(std::move(notification), at, [self, id](std::string_view action) {
        if (!self || action != markDoneAction)
            return;
        if (const Todo* todo = self->find(id); todo && !todo->done)
            self->toggle(id);
    });
}

void NotesStore::cancelReminder(const Todo& todo)
{
    reminders_.cancel(reminderKey(todo.id));
}

void NotesStore::rescheduleReminders()
{
    for (const Todo& todo : todos_)
        scheduleReminder(todo);
}

void NotesStore::onTimeEvent(SystemTimeEvents::Event event)
{
    if (event == SystemTimeEvents::Event::timeZoneChanged)
        calendar_.reset();
    // What fell due while the machine slept or the clock jumped is shown now, once.
    reminders_.wake();
    rescheduleReminders();
    refreshList();
}

const DueCalendar& NotesStore::calendar() const
{
    if (!calendar_)
        calendar_ = std::make_unique<DueCalendar>(timeEvents_.systemTimeZoneID());
    return *calendar_;
}

void NotesStore::refreshList()
{
    if (listWatchers_ == 0) {
        listRefresh_->cancel();
        return;
    }
    const WallTime now = clock_.now();
    const bool arabic = settings_.isArabic();
    std::vector<TodoListModel::Row> rows;
    rows.reserve(todos_.size());
    std::optional<WallTime> nextChange;
    bool anyDeadline = false;
    for (std::size_t position : displayPositions(now)) {
        const Todo& todo = todos_[position];
        TodoListModel::Row row;
        row.id = toQString(todo.id);
        row.text = toQString(todo.text);
        row.done = todo.done;
        row.priority = static_cast<int>(todo.priority);
        row.priorityTitle = toQString(title(todo.priority).in(arabic));
        if (todo.due) {
            anyDeadline = true;
            row.overdue = !todo.done && *todo.due < now;
            row.due = toDateTime(*todo.due);
            row.dueLabel = toQString(calendar().deadlineLabel(*todo.due, now, row.overdue, arabic));
            if (!todo.done && *todo.due >= now && (!nextChange || *todo.due < *nextChange))
                nextChange = *todo.due;
        }
        rows.push_back(std::move(row));
    }
    model_.show(std::move(rows));

    if (!anyDeadline) {
        listRefresh_->cancel();
        return;
    }
    // "Today" becomes "Yesterday" at midnight; a deadline passing makes its to-do overdue.
    LocalDateTime tomorrow = calendar().localDateTime(now);
    tomorrow.day += 1;
    tomorrow.hour = 0;
    tomorrow.minute = 0;
    if (const auto midnight = calendar().instantOf(tomorrow);
        midnight && *midnight > now && (!nextChange || *midnight < *nextChange))
        nextChange = midnight;
    if (!nextChange) {
        listRefresh_->cancel();
        return;
    }
    // Just past the instant, so that the deadline is behind "now" when the list is built.
    listRefresh_->schedule(*nextChange - now + std::chrono::milliseconds(1),
                           [this] { refreshList(); });
}

QVariantList NotesStore::dueToday() const
{
    const WallTime now = clock_.now();
    LocalDateTime tomorrow = calendar().localDateTime(now);
    tomorrow.day += 1;
    tomorrow.hour = 0;
    tomorrow.minute = 0;
    const auto midnight = calendar().instantOf(tomorrow);
    std::vector<const Todo*> due;
    for (const Todo& todo : todos_)
        if (!todo.done && todo.due && midnight && *todo.due < *midnight)
            due.push_back(&todo);
    std::stable_sort(due.begin(), due.end(),
                     [](const Todo* a, const Todo* b) { return *a->due < *b->due; });
    QVariantList list;
    for (const Todo* todo : due)
        list.append(QVariantMap{{"id", toQString(todo->id)},
                                {"text", toQString(todo->text)},
                                {"due", toDateTime(*todo->due)},
                                {"overdue", *todo->due < now}});
    return list;
}

void NotesStore::watchList()
{
    ++listWatchers_;
    if (listWatchers_ == 1)
        refreshList();
}

void NotesStore::stopWatchingList()
{
    if (listWatchers_ == 0)
        return;
    --listWatchers_;
    if (listWatchers_ == 0)
        listRefresh_->cancel();
}

QString NotesStore::addTodo(const QString& text, int priority, const QDateTime& due)
{
    return add(text, priorityFrom(priority).value_or(Priority::none), toWallTime(due))
        .value_or(QString());
}

void NotesStore::setPriorityOf(const QString& id, int priority)
{
    if (const auto known = priorityFrom(priority))
        setPriority(*known, id);
}

void NotesStore::setDueOf(const QString& id, const QDateTime& due)
{
    setDue(toWallTime(due), id);
}

QVariantList NotesStore::priorities() const
{
    QVariantList list;
    for (Priority priority : prioritiesHighestFirst)
        list.append(QVariantMap{
            {"value", static_cast<int>(priority)},
            {"title", priorityTitle(static_cast<int>(priority), settings_.isArabic())}});
    return list;
}

QString NotesStore::priorityTitle(int priority, bool arabic) const
{
    return toQString(title(priorityFrom(priority).value_or(Priority::none)).in(arabic));
}

QVariantList NotesStore::duePresets() const
{
    const WallTime now = clock_.now();
    const bool arabic = settings_.isArabic();
    QVariantList list;
    for (DuePreset preset : offeredDuePresets(calendar().localDateTime(now).hour))
        list.append(QVariantMap{{"title", toQString(duePresetTitle(preset, arabic))},
                                {"due", toDateTime(calendar().presetMoment(preset, now))}});
    return list;
}

QString NotesStore::deadlineLabel(const QDateTime& due, bool arabic) const
{
    const auto at = toWallTime(due);
    if (!at)
        return {};
    const WallTime now = clock_.now();
    return toQString(calendar().deadlineLabel(*at, now, *at < now, arabic));
}

QVariantMap NotesStore::wallClock(const QDateTime& moment) const
{
    LocalDateTime local;
    if (const auto at = toWallTime(moment)) {
        local = calendar().localDateTime(*at);
    } else {
        local = calendar().localDateTime(clock_.now());
        local.hour += 1;
        local.minute = 0;
        local = calendar().localDateTime(calendar().instantOf(local).value_or(clock_.now()));
    }
    return {{"year", local.year},
            {"month", local.month},
            {"day", local.day},
            {"hour", local.hour},
            {"minute", local.minute}};
}

QDateTime NotesStore::momentAt(int year, int month, int day, int hour, int minute) const
{
    const auto at = calendar().instantOf({year, month, day, hour, minute});
    return at ? toDateTime(*at) : QDateTime();
}

} // namespace navro
