#pragma once

#include "app/BackgroundRunner.h"
#include "app/Clock.h"
#include "app/SystemTimeEvents.h"
#include "calendar/CalendarFetcher.h"
#include "calendar/CalendarSource.h"
#include "notch/Meeting.h"

#include <QDate>
#include <QFileSystemWatcher>
#include <QObject>
#include <QVariantList>
#include <QVariantMap>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace navro {

class AppSettings;

// The user's calendars and what they hold for today and tomorrow.
//
// Subscription links are fetched at start and every 15 minutes (conditionally, with the
// validators of the last answer), and their last good document is kept in the cache folder so
// meetings show at once after a start without network. Files, Evolution's among them, are read
// again when they change on disk. Documents are read and expanded off the main thread, one job
// at a time; a source that fails keeps its last good events and says so in one log line.
class CalendarService : public QObject {
    Q_OBJECT
    // [{id, title, start, end (QDateTime), allDay, calendarName, colour ("#rrggbb"), location,
    //   joinLink, day (0 today, 1 tomorrow)}] by start.
    Q_PROPERTY(QVariantList upcoming READ upcomingList NOTIFY upcomingChanged)
    // The same fields for the next meeting; empty without one.
    Q_PROPERTY(QVariantMap nextMeeting READ nextMeetingMap NOTIFY nextMeetingChanged)
    // [{id, kind, location, name, colour, enabled, error}] in the order of the settings.
    Q_PROPERTY(QVariantList sources READ sourceList NOTIFY sourcesChanged)

public:
    struct Folders {
        std::filesystem::path cache;    // the last good copies of links
        std::filesystem::path dataHome; // where Evolution keeps its calendars
    };

    static constexpr std::chrono::minutes refreshInterval{15};
    static constexpr std::size_t maxDocumentBytes = 32 * 1024 * 1024;

    CalendarService(AppSettings& settings, Clock& clock, SystemTimeEvents& events,
                    CalendarFetcher& fetcher, BackgroundRunner runInBackground, Folders folders,
                    QObject* parent = nullptr);
    ~CalendarService() override;

    // Reads the cached copies and the files and asks every link; nothing in it waits.
    void start();

    const std::vector<Meeting>& upcoming() const { return upcoming_; }
    const std::optional<Meeting>& nextMeeting() const { return nextMeeting_; }
    QVariantList upcomingList() const;
    QVariantMap nextMeetingMap() const;
    QVariantList sourceList() const;

    // A subscription link (http, https or webcal); false, with nothing added, for anything else
    // or one already there.
    Q_INVOKABLE bool addLink(const QString& address);
    // A local .ics file, as a path or a file:// URL; false when it is no regular file.
    Q_INVOKABLE bool addFile(const QString& pathOrUrl);
    Q_INVOKABLE void setEnabled(const QString& id, bool enabled);
    // Links and files go; Evolution's calendars, which live on, are turned off.
    Q_INVOKABLE void remove(const QString& id);

    // The Umm al-Qura date of a civil date in the interface language, with an ICU date pattern
    // ("d MMMM y" by default).
    Q_INVOKABLE QString hijriDate(const QDate& date, const QString& pattern = QString()) const;

signals:
    void upcomingChanged();
    void nextMeetingChanged();
    void sourcesChanged();

private:
    struct Source;
    struct Job;

    void loadSources();
    void storeSources();
    Source* find(const QString& id);
    void addSource(CalendarSource config);
    void readFiles();
    void watchFiles();
    void fetchLinks();
    void fetch(Source& source);
    void scheduleRefresh();
    void offer(Source& source, std::string document, bool fromNetwork);
    void expand();
    void finishJob(std::shared_ptr<Job> job);
    void publish();
    void noteFailure(Source& source, const std::string& reason);
    void noteHealthy(Source& source);
    void writeCache(Source& source);
    QString displayName(const Source& source) const;
    std::uint32_t colourOf(const Source& source) const;
    QVariantMap toMap(const Meeting& meeting) const;
    std::string localZone() const;

    AppSettings& settings_;
    Clock& clock_;
    SystemTimeEvents& events_;
    CalendarFetcher& fetcher_;
    BackgroundRunner runInBackground_;
    Folders folders_;
    int eventsHandler_ = -1;
    std::vector<std::unique_ptr<Source>> sources_;
    bool writingSources_ = false;
    QFileSystemWatcher watcher_;
    std::unique_ptr<TaskSlot> refreshTask_;
    std::unique_ptr<TaskSlot> fileTask_;
    std::unique_ptr<TaskSlot> endTask_;
    std::unique_ptr<TaskSlot> midnightTask_;
    bool jobRunning_ = false;
    bool jobWanted_ = false;
    WallTime windowEnd_{};
    std::vector<Meeting> upcoming_;
    std::optional<Meeting> nextMeeting_;
};

} // namespace navro
