#include "calendar/CalendarService.h"

#include "app/AppSettings.h"
#include "app/FileAccess.h"
#include "app/Log.h"
#include "calendar/HijriDate.h"
#include "calendar/ICalendarReader.h"
#include "calendar/UpcomingEvents.h"

#include <QDateTime>
#include <QFileInfo>
#include <QPointer>
#include <QSet>
#include <QTimeZone>
#include <QUrl>
#include <QUuid>
#include <algorithm>
#include <array>

namespace navro {
namespace {

using namespace std::chrono;

// Colours for calendars that bring none of their own, in the order the calendars are listed.
constexpr std::array<std::uint32_t, 6> palette{0x3B82F6, 0x10B981, 0xF59E0B,
                                               0xEF4444, 0x8B5CF6, 0xEC4899};

QDateTime toDateTime(WallTime at)
{
    return QDateTime::fromMSecsSinceEpoch(at.time_since_epoch().count());
}

QString hexColour(std::uint32_t colour)
{
    return QStringLiteral("#%1").arg(colour, 6, 16, QLatin1Char('0'));
}

} // namespace

struct CalendarService::Source {
    explicit Source(CalendarSource source) : config(std::move(source)) {}

    CalendarSource config;
    std::shared_ptr<const std::string> document;  // the last one read without failing
    std::shared_ptr<const std::string> candidate; // a newer one, not read yet
    bool candidateFromNetwork = false;
    std::string ownName;
    std::optional<std::uint32_t> ownColour;
    std::vector<Meeting> events; // of the last good document, over the last window read
    QString etag, lastModified;
    std::string failure; // empty while the source is healthy
    bool fetching = false;
    bool cacheUnwritten = false;
};

struct CalendarService::Job {
    struct Input {
        QString id;
        std::shared_ptr<const std::string> document;
        bool isCandidate = false;
    };
    std::vector<Input> inputs;
    WallTime from, to;
    std::string zone;
    std::vector<CalendarReadResult> results;
};

CalendarService::CalendarService(AppSettings& settings, Clock& clock, SystemTimeEvents& events,
                                 CalendarFetcher& fetcher, BackgroundRunner runInBackground,
                                 Folders folders, QObject* parent)
    : QObject(parent), settings_(settings), clock_(clock), events_(events), fetcher_(fetcher),
      runInBackground_(std::move(runInBackground)), folders_(std::move(folders)),
      refreshTask_(clock.makeSlot()), fileTask_(clock.makeSlot()), endTask_(clock.makeSlot()),
      midnightTask_(clock.makeSlot())
{
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this,
            [this] { fileTask_->schedule(milliseconds(250), [this] { readFiles(); }); });
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this,
            [this] { fileTask_->schedule(milliseconds(250), [this] { readFiles(); }); });
    connect(&settings_, &AppSettings::isArabicChanged, this, [this] {
        // Evolution's own calendar has a name in each language.
        emit sourcesChanged();
        publish();
    });
    eventsHandler_ = events_.addHandler([this](SystemTimeEvents::Event event) {
        // After a sleep the links are stale too; after a change of clock or zone "today" moved.
        if (event == SystemTimeEvents::Event::resumed)
            fetchLinks();
        expand();
    });
}

CalendarService::~CalendarService()
{
    events_.removeHandler(eventsHandler_);
}

void CalendarService::start()
{
    loadSources();
    for (auto& source : sources_) {
        if (source->config.kind != CalendarSource::Kind::link)
            continue;
        const auto cached = readRegularFile(
            folders_.cache / (source->config.id.toStdString() + ".ics"), maxDocumentBytes);
        if (cached.ok())
            source->candidate = std::make_shared<const std::string>(cached.bytes);
    }
    readFiles();
    expand();
    fetchLinks();
    scheduleRefresh();
}

void CalendarService::loadSources()
{
    bool malformed = false;
    auto stored = decodeCalendarSources(settings_.calendarSources(), &malformed);
    if (malformed)
        logLine("the list of calendars in the settings is unreadable: " +
                excerptForLog(settings_.calendarSources().toStdString()));
    auto found = findEvolutionCalendars(folders_.dataHome);
    for (auto& evolution : found) {
        const auto kept = std::find_if(stored.begin(), stored.end(),
                                       [&](const auto& entry) { return entry.id == evolution.id; });
        if (kept != stored.end()) {
            evolution.enabled = kept->enabled;
            evolution.name = kept->name;
        }
    }
    std::erase_if(stored,
                  [](const auto& entry) { return entry.kind == CalendarSource::Kind::evolution; });
    sources_.clear();
    for (auto& config : stored)
        sources_.push_back(std::make_unique<Source>(std::move(config)));
    for (auto& config : found)
        sources_.push_back(std::make_unique<Source>(std::move(config)));
    emit sourcesChanged();
}

void CalendarService::storeSources()
{
    std::vector<CalendarSource> configs;
    for (const auto& source : sources_)
        configs.push_back(source->config);
    settings_.setCalendarSources(encodeCalendarSources(configs));
}

CalendarService::Source* CalendarService::find(const QString& id)
{
    for (auto& source : sources_)
        if (source->config.id == id)
            return source.get();
    return nullptr;
}

void CalendarService::addSource(CalendarSource config)
{
    // Evolution's calendars stay last, as they are found.
    const auto before = std::find_if(sources_.begin(), sources_.end(), [](const auto& source) {
        return source->config.kind == CalendarSource::Kind::evolution;
    });
    Source& added = **sources_.insert(before, std::make_unique<Source>(std::move(config)));
    storeSources();
    emit sourcesChanged();
    if (added.config.kind == CalendarSource::Kind::link) {
        fetch(added);
        scheduleRefresh();
    } else {
        readFiles();
    }
}

bool CalendarService::addLink(const QString& typed)
{
    const QString address = subscriptionAddress(typed);
    if (address.isEmpty())
        return false;
    for (const auto& source : sources_)
        if (source->config.location == address)
            return false;
    addSource({QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(),
               CalendarSource::Kind::link, address, QString(), true});
    return true;
}

bool CalendarService::addFile(const QString& pathOrUrl)
{
    const QUrl url(pathOrUrl);
    const QString path = url.isLocalFile() ? url.toLocalFile() : pathOrUrl;
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isFile())
        return false;
    const QString absolute = info.absoluteFilePath();
    for (const auto& source : sources_)
        if (source->config.location == absolute)
            return false;
    addSource({QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(),
               CalendarSource::Kind::file, absolute, QString(), true});
    return true;
}

void CalendarService::setEnabled(const QString& id, bool enabled)
{
    Source* source = find(id);
    if (!source || source->config.enabled == enabled)
        return;
    source->config.enabled = enabled;
    storeSources();
    emit sourcesChanged();
    if (!enabled) {
        publish();
    } else if (source->config.kind == CalendarSource::Kind::link) {
        fetch(*source);
        expand();
    } else {
        readFiles();
        expand();
    }
    scheduleRefresh();
}

void CalendarService::remove(const QString& id)
{
    const auto found = std::find_if(sources_.begin(), sources_.end(),
                                    [&](const auto& source) { return source->config.id == id; });
    if (found == sources_.end())
        return;
    if ((*found)->config.kind == CalendarSource::Kind::evolution) {
        setEnabled(id, false);
        return;
    }
    std::error_code ignored;
    std::filesystem::remove(folders_.cache / (id.toStdString() + ".ics"), ignored);
    sources_.erase(found);
    storeSources();
    emit sourcesChanged();
    watchFiles();
    publish();
    scheduleRefresh();
}

void CalendarService::readFiles()
{
    for (auto& source : sources_) {
        if (source->config.kind == CalendarSource::Kind::link || !source->config.enabled)
            continue;
        auto read = readRegularFile(source->config.location.toStdString(), maxDocumentBytes);
        if (read.ok())
            offer(*source, std::move(read.bytes), false);
        else
            noteFailure(*source, read.reason);
    }
    watchFiles();
}

void CalendarService::watchFiles()
{
    // The folder too: editors and Evolution replace a file by renaming a new one over it, which
    // ends a watch on the file itself.
    QSet<QString> wanted;
    for (const auto& source : sources_)
        if (source->config.kind != CalendarSource::Kind::link && source->config.enabled) {
            wanted.insert(source->config.location);
            wanted.insert(QFileInfo(source->config.location).absolutePath());
        }
    QStringList watched = watcher_.files() + watcher_.directories();
    QStringList gone;
    for (const QString& path : watched)
        if (!wanted.contains(path))
            gone.append(path);
    if (!gone.isEmpty())
        watcher_.removePaths(gone);
    QStringList added;
    for (const QString& path : wanted)
        if (!watched.contains(path) && QFileInfo::exists(path))
            added.append(path);
    if (!added.isEmpty())
        watcher_.addPaths(added);
}

void CalendarService::fetchLinks()
{
    for (auto& source : sources_)
        if (source->config.kind == CalendarSource::Kind::link && source->config.enabled)
            fetch(*source);
}

void CalendarService::fetch(Source& source)
{
    if (source.fetching)
        return;
    source.fetching = true;
    const QString id = source.config.id;
    fetcher_.fetch(source.config.location, source.etag, source.lastModified, this,
                   [this, id](CalendarFetch answer) {
                       Source* source = find(id);
                       if (!source)
                           return;
                       source->fetching = false;
                       switch (answer.status) {
                       case CalendarFetch::Status::fetched:
                           source->etag = answer.etag;
                           source->lastModified = answer.lastModified;
                           offer(*source, std::move(answer.body), true);
                           break;
                       case CalendarFetch::Status::notModified:
                           noteHealthy(*source);
                           if (source->cacheUnwritten)
                               writeCache(*source);
                           break;
                       case CalendarFetch::Status::failed:
                           noteFailure(*source, answer.error);
                           break;
                       }
                   });
}

void CalendarService::scheduleRefresh()
{
    const bool anyLink = std::any_of(sources_.begin(), sources_.end(), [](const auto& source) {
        return source->config.kind == CalendarSource::Kind::link && source->config.enabled;
    });
    if (!anyLink) {
        refreshTask_->cancel();
        return;
    }
    if (!refreshTask_->isPending())
        refreshTask_->schedule(refreshInterval, [this] {
            fetchLinks();
            scheduleRefresh();
        });
}

void CalendarService::offer(Source& source, std::string document, bool fromNetwork)
{
    const auto& latest = source.candidate ? source.candidate : source.document;
    if (latest && *latest == document) {
        // Unchanged: nothing to read again, but a copy that could not be kept is tried again.
        if (!source.candidate)
            noteHealthy(source);
        if (fromNetwork && source.cacheUnwritten)
            writeCache(source);
        return;
    }
    source.candidate = std::make_shared<const std::string>(std::move(document));
    source.candidateFromNetwork = fromNetwork;
    expand();
}

std::string CalendarService::localZone() const
{
    const std::string zone = events_.systemTimeZoneID();
    return zone.empty() ? QTimeZone::systemTimeZoneId().toStdString() : zone;
}

// From the start of today to the end of tomorrow on the machine's clock: everything the views
// and the closed notch show.
void CalendarService::expand()
{
    if (jobRunning_) {
        jobWanted_ = true;
        return;
    }
    auto job = std::make_shared<Job>();
    job->zone = localZone();
    QTimeZone zone(QByteArray::fromStdString(job->zone));
    if (!zone.isValid())
        zone = QTimeZone::utc();
    const QDate today =
        QDateTime::fromMSecsSinceEpoch(clock_.now().time_since_epoch().count(), zone).date();
    job->from = WallTime(milliseconds(today.startOfDay(zone).toMSecsSinceEpoch()));
    job->to = WallTime(milliseconds(today.addDays(2).startOfDay(zone).toMSecsSinceEpoch()));
    const WallTime tomorrow(milliseconds(today.addDays(1).startOfDay(zone).toMSecsSinceEpoch()));
    midnightTask_->schedule(std::max(tomorrow - clock_.now(), Duration::zero()),
                            [this] { expand(); });

    for (const auto& source : sources_) {
        const auto& document = source->candidate ? source->candidate : source->document;
        if (source->config.enabled && document)
            job->inputs.push_back({source->config.id, document, bool(source->candidate)});
    }
    jobRunning_ = true;
    QPointer<CalendarService> self(this);
    runInBackground_(
        [job] {
            for (const auto& input : job->inputs)
                job->results.push_back(
                    readICalendar(*input.document, job->from, job->to, job->zone));
        },
        [self, job] {
            if (self)
                self->finishJob(job);
        });
}

void CalendarService::finishJob(std::shared_ptr<Job> job)
{
    jobRunning_ = false;
    windowEnd_ = job->to;
    bool namesMoved = false;
    for (std::size_t i = 0; i < job->inputs.size(); ++i) {
        const auto& input = job->inputs[i];
        auto& result = job->results[i];
        Source* source = find(input.id);
        if (!source)
            continue;
        const bool stillLatest = input.isCandidate && source->candidate == input.document;
        if (!result.reading) {
            // The last good events stay; a broken document is not kept to be read again.
            if (stillLatest)
                source->candidate.reset();
            noteFailure(*source, result.error);
            continue;
        }
        if (stillLatest) {
            source->document = std::move(source->candidate);
            source->candidate.reset();
            if (source->candidateFromNetwork)
                writeCache(*source);
        } else if (input.isCandidate) {
            continue; // a newer document is waiting for the next job
        }
        namesMoved |=
            source->ownName != result.reading->name || source->ownColour != result.reading->colour;
        source->ownName = std::move(result.reading->name);
        source->ownColour = result.reading->colour;
        source->events = std::move(result.reading->events);
        noteHealthy(*source);
    }
    if (namesMoved)
        emit sourcesChanged();
    publish();
    if (jobWanted_) {
        jobWanted_ = false;
        expand();
    }
}

void CalendarService::publish()
{
    const WallTime now = clock_.now();
    std::vector<Meeting> all;
    for (const auto& source : sources_) {
        if (!source->config.enabled)
            continue;
        const std::string name = displayName(*source).toStdString();
        const std::uint32_t colour = colourOf(*source);
        for (Meeting event : source->events) {
            event.calendarName = name;
            event.colour = colour;
            all.push_back(std::move(event));
        }
    }
    auto upcoming = upcomingEvents(std::move(all), now, windowEnd_);
    if (upcoming != upcoming_) {
        upcoming_ = std::move(upcoming);
        emit upcomingChanged();
    }
    auto next = chooseNextMeeting(upcoming_, now);
    if (next != nextMeeting_) {
        nextMeeting_ = std::move(next);
        emit nextMeetingChanged();
    }
    // The list changes with time alone when something in it ends.
    if (const auto ends = nextEnd(upcoming_, now))
        endTask_->schedule(*ends - now + milliseconds(1), [this] { publish(); });
    else
        endTask_->cancel();
}

void CalendarService::noteFailure(Source& source, const std::string& reason)
{
    if (source.failure == reason)
        return;
    // One line when a healthy source starts failing, not one per retry.
    if (source.failure.empty())
        logLine("could not read calendar " + excerptForLog(displayName(source).toStdString()) +
                ": " + excerptForLog(reason));
    source.failure = reason;
    emit sourcesChanged();
}

void CalendarService::noteHealthy(Source& source)
{
    if (source.failure.empty())
        return;
    source.failure.clear();
    emit sourcesChanged();
}

void CalendarService::writeCache(Source& source)
{
    if (!source.document)
        return;
    auto error = makePrivateFolder(folders_.cache);
    if (!error)
        error = writeFileAtomically(folders_.cache / (source.config.id.toStdString() + ".ics"),
                                    *source.document);
    if (error && !source.cacheUnwritten)
        logLine("could not keep a copy of calendar " +
                excerptForLog(displayName(source).toStdString()) + ": " + *error);
    source.cacheUnwritten = error.has_value();
}

QString CalendarService::displayName(const Source& source) const
{
    if (!source.config.name.isEmpty())
        return source.config.name;
    if (!source.ownName.empty())
        return QString::fromStdString(source.ownName);
    switch (source.config.kind) {
    case CalendarSource::Kind::link:
        return QUrl(source.config.location).host();
    case CalendarSource::Kind::file:
        return QFileInfo(source.config.location).completeBaseName();
    case CalendarSource::Kind::evolution: {
        const QString folder = source.config.id.section(QLatin1Char(':'), 1);
        if (folder == QLatin1String("system"))
            return settings_.isArabic() ? QStringLiteral("شخصي") : QStringLiteral("Personal");
        return folder;
    }
    }
    return {};
}

std::uint32_t CalendarService::colourOf(const Source& source) const
{
    if (source.ownColour)
        return *source.ownColour;
    const auto index = std::find_if(sources_.begin(), sources_.end(),
                                    [&](const auto& other) { return other.get() == &source; }) -
                       sources_.begin();
    return palette[std::size_t(index) % palette.size()];
}

QVariantMap CalendarService::toMap(const Meeting& meeting) const
{
    QTimeZone zone(QByteArray::fromStdString(localZone()));
    if (!zone.isValid())
        zone = QTimeZone::systemTimeZone();
    const QDate today = toDateTime(clock_.now()).toTimeZone(zone).date();
    const QDate day = toDateTime(meeting.start).toTimeZone(zone).date();
    return {{"id", QString::fromStdString(meeting.id)},
            {"title", QString::fromStdString(meeting.title)},
            {"start", toDateTime(meeting.start)},
            {"end", toDateTime(meeting.end)},
            {"allDay", meeting.isAllDay},
            {"calendarName", QString::fromStdString(meeting.calendarName)},
            {"colour", hexColour(meeting.colour.value_or(palette.front()))},
            {"location", QString::fromStdString(meeting.location.value_or(""))},
            {"joinLink", QString::fromStdString(meeting.joinLink.value_or(""))},
            {"day", std::clamp(int(today.daysTo(day)), 0, 1)}};
}

QVariantList CalendarService::upcomingList() const
{
    QVariantList list;
    for (const Meeting& meeting : upcoming_)
        list.append(toMap(meeting));
    return list;
}

QVariantMap CalendarService::nextMeetingMap() const
{
    return nextMeeting_ ? toMap(*nextMeeting_) : QVariantMap();
}

QString CalendarService::hijriDate(const QDate& date, const QString& pattern) const
{
    if (!date.isValid())
        return {};
    return QString::fromStdString(
        formatHijriDate(date.year(), date.month(), date.day(), settings_.isArabic(),
                        pattern.isEmpty() ? std::string("d MMMM y") : pattern.toStdString()));
}

QVariantList CalendarService::sourceList() const
{
    QVariantList list;
    for (const auto& source : sources_)
        list.append(QVariantMap{{"id", source->config.id},
                                {"kind", rawValue(source->config.kind)},
                                {"location", source->config.location},
                                {"name", displayName(*source)},
                                {"colour", hexColour(colourOf(*source))},
                                {"enabled", source->config.enabled},
                                {"error", QString::fromStdString(source->failure)}});
    return list;
}

} // namespace navro
