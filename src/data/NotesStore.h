#pragma once

#include "app/Clock.h"
#include "app/SystemTimeEvents.h"
#include "data/DueCalendar.h"
#include "data/ReminderScheduler.h"
#include "data/Todo.h"
#include "data/TodoListModel.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace navro {

class AppSettings;
class DesktopNotifier;

// The user's to-dos and scratch note, kept in "notes.json" in the data folder, and one desktop
// reminder for each open to-do with a deadline still ahead.
//
// To-do changes are written at once; the note 0.6 s after the last change, so that typing makes
// one write. A write that fails is logged once and shown (saveError), and every later change
// tries again. Loading never writes.
//
// Operations name a to-do by its id; an id that is not there does nothing.
class NotesStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString note READ note WRITE setNote NOTIFY noteChanged)
    // The to-dos in display order, for the Notes tab.
    Q_PROPERTY(QObject* sorted READ sortedModel CONSTANT)
    Q_PROPERTY(int doneCount READ doneCount NOTIFY todosChanged)
    // Why the last write failed, empty while writing works.
    Q_PROPERTY(QString saveError READ saveError NOTIFY saveErrorChanged)

public:
    static constexpr Duration noteSaveDelay = std::chrono::milliseconds(600);

    NotesStore(Clock& clock, const AppSettings& settings, SystemTimeEvents& timeEvents,
               DesktopNotifier& notifier, std::filesystem::path file = defaultFile(),
               QObject* parent = nullptr);
    ~NotesStore() override;

    // "notes.json" in the data folder.
    static std::filesystem::path defaultFile();
    // "navro.todo." and the to-do's id.
    static std::string reminderKey(const std::string& todoID);

    const std::vector<Todo>& todos() const { return todos_; }
    std::vector<Todo> sorted() const;
    const Todo* find(const QString& id) const;

    // Returns the new to-do's id; nothing, and nothing written, when the text is blank.
    std::optional<QString> add(const QString& text, Priority priority = Priority::none,
                               std::optional<WallTime> due = std::nullopt);
    Q_INVOKABLE void toggle(const QString& id);
    // Blank text deletes the to-do.
    Q_INVOKABLE void update(const QString& id, const QString& text);
    void setPriority(Priority priority, const QString& id);
    void setDue(std::optional<WallTime> due, const QString& id);
    Q_INVOKABLE void remove(const QString& id);
    Q_INVOKABLE void clearDone();

    QString note() const { return note_; }
    void setNote(const QString& note);

    // Writes a pending change of the note now (before the program ends).
    void flushPendingSave();
    // Every to-do's reminder again, as at start-up.
    void rescheduleReminders();

    QObject* sortedModel() { return &model_; }
    int doneCount() const;
    QString saveError() const { return saveError_; }

    // For the views, which speak ints and dates: priority 0–3, an invalid date for none.
    Q_INVOKABLE QString addTodo(const QString& text, int priority, const QDateTime& due);
    Q_INVOKABLE void setPriorityOf(const QString& id, int priority);
    Q_INVOKABLE void setDueOf(const QString& id, const QDateTime& due);
    // [{value, title}] highest first, in the interface language.
    Q_INVOKABLE QVariantList priorities() const;
    // [{title, due}] offered now, in menu order.
    Q_INVOKABLE QVariantList duePresets() const;
    // The open to-dos due before the end of today on the wall clock (the overdue ones included),
    // soonest first: [{id, text, due, overdue}].
    Q_INVOKABLE QVariantList dueToday() const;
    // The language is an argument here so that a view's binding follows it.
    Q_INVOKABLE QString priorityTitle(int priority, bool arabic) const;
    Q_INVOKABLE QString deadlineLabel(const QDateTime& due, bool arabic) const;
    // The picker's fields of a moment on the local wall clock: {year, month (1–12), day, hour,
    // minute}; of now plus an hour, on the hour, for an invalid date.
    Q_INVOKABLE QVariantMap wallClock(const QDateTime& moment) const;
    // The moment the local wall clock shows those fields; invalid when there is none.
    Q_INVOKABLE QDateTime momentAt(int year, int month, int day, int hour, int minute) const;

    // While a view lists the to-dos, the list follows every change and the clock (a deadline
    // passing, midnight); nobody watching, nothing is computed for it and nothing wakes for it.
    Q_INVOKABLE void watchList();
    Q_INVOKABLE void stopWatchingList();

signals:
    void noteChanged();
    void todosChanged();
    void saveErrorChanged();

private:
    void load();
    void save();
    void saveSoon();
    void todosEdited();
    Todo* findMutable(const QString& id);
    std::vector<std::size_t> displayPositions(WallTime now) const;
    void scheduleReminder(const Todo& todo);
    void cancelReminder(const Todo& todo);
    void onTimeEvent(SystemTimeEvents::Event event);
    void refreshList();
    // Built on first use: the closed notch needs none of it.
    const DueCalendar& calendar() const;

    Clock& clock_;
    const AppSettings& settings_;
    SystemTimeEvents& timeEvents_;
    std::filesystem::path file_;
    std::vector<Todo> todos_;
    QString note_;
    std::unique_ptr<TaskSlot> saveTask_;
    QString saveError_;
    mutable std::unique_ptr<DueCalendar> calendar_;
    ReminderScheduler reminders_;
    TodoListModel model_;
    std::unique_ptr<TaskSlot> listRefresh_;
    int listWatchers_ = 0;
    int timeEventsHandler_ = -1;
};

} // namespace navro
