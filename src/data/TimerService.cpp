#include "data/TimerService.h"

#include "app/AppSettings.h"
#include "app/FileAccess.h"
#include "app/Log.h"
#include "app/QtText.h"
#include "app/Shell.h"
#include "app/SoundPlayer.h"
#include "data/ClockText.h"
#include "data/FocusShortcuts.h"
#include "data/SleepPreventer.h"

#include <QDesktopServices>
#include <QFutureWatcher>
#include <QLocale>
#include <QUrl>
#include <QtConcurrent/QtConcurrentRun>
#include <cmath>
#include <cstdio>

namespace navro {
namespace {

constexpr Duration tickInterval = std::chrono::milliseconds(250);
constexpr Duration finishedShownFor = std::chrono::seconds(8);

bool hasSession(TimerState state)
{
    return state == TimerState::running || state == TimerState::paused;
}

// The digits of the interface's language: Arabic-Indic ones in Arabic.
QString inLanguageDigits(QString text, bool isArabic)
{
    if (!isArabic)
        return text;
    static const QString zero = QLocale(QLocale::Arabic).zeroDigit();
    if (zero.size() != 1 || zero == QStringLiteral("0"))
        return text;
    for (QChar& c : text)
        if (c >= u'0' && c <= u'9')
            c = QChar(zero.at(0).unicode() + (c.unicode() - u'0'));
    return text;
}

} // namespace

TimerService::TimerService(AppSettings& settings, Clock& clock, SleepPreventer& sleepPreventer,
                           SoundPlayer& sound, Shell& shell, std::filesystem::path shortcutsFolder,
                           QObject* parent)
    : QObject(parent), settings_(settings), clock_(clock), sleepPreventer_(sleepPreventer),
      sound_(sound), shell_(shell), shortcutsFolder_(std::move(shortcutsFolder)),
      tickTask_(clock.makeSlot()), resetTask_(clock.makeSlot())
{
    connect(&settings_, &AppSettings::timerKeepAwakeChanged, this, &TimerService::updateKeepAwake);
    connect(&settings_, &AppSettings::isArabicChanged, this, &TimerService::countdownChanged);
    connect(&settings_, &AppSettings::lastTimerMinutesChanged, this,
            &TimerService::lastMinutesChanged);
}

TimerService::~TimerService() = default;

double TimerService::lastMinutes() const
{
    return lastMinutes_.use(settings_.lastTimerMinutes());
}

QString TimerService::stateRaw() const
{
    switch (phase_.state()) {
    case TimerState::running:
        return QStringLiteral("running");
    case TimerState::paused:
        return QStringLiteral("paused");
    case TimerState::finished:
        return QStringLiteral("finished");
    case TimerState::idle:
        break;
    }
    return QStringLiteral("idle");
}

QString TimerService::clockText() const
{
    return clock(shownRemaining_);
}

QString TimerService::clock(double seconds) const
{
    return inLanguageDigits(toQString(navro::clockText(seconds)), settings_.isArabic());
}

QString TimerService::shortcutsFolder() const
{
    return QString::fromStdString(shortcutsFolder_.string());
}

bool TimerService::start(double minutes, bool focus)
{
    if (!isValidTimerMinutes(minutes)) {
        char asked[64];
        std::snprintf(asked, sizeof asked, "%g", minutes);
        logLine(std::string("a timer of ") + asked +
                " minutes was asked for; a timer runs for more than 0 and at most " +
                std::to_string(int(longestTimerMinutes)) + " minutes");
        return false;
    }
    // A session that replaces another goes straight from one to the other: the display stays
    // awake, and focus is switched only where the new session differs (running the off and the
    // on action at once could leave them racing).
    const bool wasFocus = hasSession(phase_.state()) && isFocus_;
    tickTask_->cancel();
    resetTask_->cancel();
    settings_.setLastTimerMinutes(minutes);
    phase_ = TimerPhase::startingAt(clock_.now(), minutes);
    isFocus_ = focus;
    updateKeepAwake();
    if (focus && !wasFocus)
        runShortcut(settings_.focusShortcutOn());
    else if (!focus && wasFocus)
        runShortcut(settings_.focusShortcutOff());
    tickTask_->schedule(tickInterval, [this] { tick(); });
    refreshCountdown();
    emit stateChanged();
    return true;
}

void TimerService::pause()
{
    if (phase_.state() != TimerState::running)
        return;
    tickTask_->cancel();
    setPhase(phase_.pausedAt(clock_.now()));
}

void TimerService::resume()
{
    if (phase_.state() != TimerState::paused)
        return;
    setPhase(phase_.resumedAt(clock_.now()));
    tickTask_->schedule(tickInterval, [this] { tick(); });
}

void TimerService::addMinute()
{
    setPhase(phase_.withExtraMinute());
}

void TimerService::stop()
{
    if (hasSession(phase_.state())) {
        tickTask_->cancel();
        endSession();
    }
    resetTask_->cancel();
    isFocus_ = false;
    setPhase(TimerPhase::idle());
}

void TimerService::dismiss()
{
    if (phase_.state() != TimerState::finished)
        return;
    resetTask_->cancel();
    isFocus_ = false;
    setPhase(TimerPhase::idle());
}

void TimerService::shutDown()
{
    tickTask_->cancel();
    resetTask_->cancel();
    if (hasSession(phase_.state()))
        endSession();
    isFocus_ = false;
    setPhase(TimerPhase::idle());
}

void TimerService::setPhase(TimerPhase phase)
{
    const bool changed = !(phase == phase_);
    phase_ = phase;
    refreshCountdown();
    if (changed)
        emit stateChanged();
}

void TimerService::endSession()
{
    if (holdsAssertion_) {
        sleepPreventer_.allowSleep();
        holdsAssertion_ = false;
    }
    if (isFocus_)
        runShortcut(settings_.focusShortcutOff());
}

void TimerService::finish()
{
    tickTask_->cancel();
    endSession();
    setPhase(TimerPhase::finished());
    if (settings_.timerSound())
        sound_.playEvent("complete", "Timer finished");
    resetTask_->schedule(finishedShownFor, [this] {
        if (phase_.state() != TimerState::finished)
            return;
        isFocus_ = false;
        setPhase(TimerPhase::idle());
    });
}

void TimerService::tick()
{
    if (phase_.isDue(clock_.now())) {
        finish();
        return;
    }
    refreshCountdown();
    tickTask_->schedule(tickInterval, [this] { tick(); });
}

void TimerService::refreshCountdown()
{
    const double whole = std::trunc(phase_.remaining(clock_.now()));
    const double length = phase_.total();
    double share = 0;
    if (phase_.state() == TimerState::finished)
        share = 1;
    else if (length > 0)
        share = std::clamp((length - whole) / length, 0.0, 1.0);
    if (whole == shownRemaining_ && share == shownProgress_)
        return;
    shownRemaining_ = whole;
    shownProgress_ = share;
    emit countdownChanged();
}

void TimerService::updateKeepAwake()
{
    const bool wanted = hasSession(phase_.state()) && (isFocus_ || settings_.timerKeepAwake());
    if (wanted == holdsAssertion_)
        return;
    holdsAssertion_ = wanted;
    if (wanted)
        sleepPreventer_.keepAwake();
    else
        sleepPreventer_.allowSleep();
}

void TimerService::runShortcut(const QString& name)
{
    if (name.isEmpty())
        return;
    const std::string plain = name.toStdString();
    if (!isFocusShortcutName(plain)) {
        logLine("the focus action \"" + excerptForLog(plain) + "\" is not the name of a file in " +
                excerptForLog(shortcutsFolder_.string()));
        return;
    }
    const QString path = QString::fromStdString((shortcutsFolder_ / plain).string());
    // Not awaited: the action runs on its own, and what it prints does not matter. Only a failure
    // is worth a line, so that a user whose focus did not switch can find out why.
    shell_.run(path, {}, this, [plain](std::optional<QByteArray> output) {
        if (!output)
            logLine("the focus action \"" + excerptForLog(plain) +
                    "\" could not be run or did not succeed");
    });
}

void TimerService::loadShortcuts()
{
    const int load = ++shortcutsLoads_;
    auto* watcher = new QFutureWatcher<std::vector<std::string>>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, load] {
        watcher->deleteLater();
        // An older listing that finishes after a newer one has nothing to add.
        if (load != shortcutsLoads_)
            return;
        QStringList names;
        for (const std::string& name : watcher->result())
            names << toQString(name);
        if (names == shortcuts_)
            return;
        shortcuts_ = names;
        emit shortcutsChanged();
    });
    watcher->setFuture(QtConcurrent::run(&listFocusShortcuts, shortcutsFolder_));
}

void TimerService::openShortcutsApp()
{
    if (auto error = makePrivateFolder(shortcutsFolder_)) {
        logLine("could not create the folder of focus actions: " + *error);
        return;
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(shortcutsFolder())))
        logLine("could not open " + excerptForLog(shortcutsFolder_.string()) +
                " in the file manager");
}

} // namespace navro
