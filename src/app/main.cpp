#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/FreeHeap.h"
#include "app/Log.h"
#include "app/RemoteControl.h"
#include "app/Startup.h"
#include "app/TerminationSignals.h"
#include "app/Version.h"
#include "platform/linux/JournalLogSink.h"
#include "prayer/SystemZone.h"

#include <QApplication>
#include <QQmlEngineExtensionPlugin>
#include <QQuickWindow>
#include <cstdio>
#include <cstdlib>

// The views, compiled into the program.
Q_IMPORT_QML_PLUGIN(NavroPlugin)

namespace {

using namespace std::chrono_literals;

// How long a launch waits for a Navro that holds the lock but is still starting to take its name
// on the bus.
constexpr auto startingNavroPatience = 10s;

// --help and --version answer without starting anything; anything else Navro does not take.
// Returns the exit status when the command line ends the process.
std::optional<int> answerCommandLine(int argc, char* argv[])
{
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    const navro::CommandLine line = navro::parseCommandLine(arguments);
    switch (line.action) {
    case navro::CommandLine::Action::run:
        return std::nullopt;
    case navro::CommandLine::Action::showHelp:
        std::fputs(navro::usageText().c_str(), stdout);
        return 0;
    case navro::CommandLine::Action::showVersion:
        std::printf("Navro %s\n", navro::applicationVersion().data());
        return 0;
    case navro::CommandLine::Action::refuse:
        std::fprintf(stderr, "navro: %s\n\n%s", line.problem.c_str(), navro::usageText().c_str());
        return 2;
    }
    return 2;
}

// The C library, Qt and ICU all read the file that TZ names the first time anything asks for
// local time; a folder, a FIFO or a device there would abort or block the process, so a value
// that names no usable zone is replaced before any of them looks.
void settleTimeZone()
{
    const navro::ZoneSettingCheck zone =
        navro::checkZoneSetting(std::getenv("TZ"), std::getenv("TZDIR"));
    if (zone.fallback == navro::ZoneSettingCheck::Fallback::none)
        return;
    if (zone.fallback == navro::ZoneSettingCheck::Fallback::systemZone)
        ::unsetenv("TZ");
    else
        ::setenv("TZ", "UTC0", 1);
    // Only now: the system log stamps each line with the local time, which reads the zone.
    navro::logLine(zone.message);
}

// Qt's own warnings carry text from outside too (a window title, a QML value, a bus message):
// they go through the same escaping and bound as Navro's lines. A fatal one still ends the
// process after it is written.
void logQtMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    using navro::LogPriority;
    const LogPriority priority = type == QtFatalMsg      ? LogPriority::critical
                                 : type == QtCriticalMsg ? LogPriority::error
                                 : type == QtWarningMsg  ? LogPriority::warning
                                 : type == QtInfoMsg     ? LogPriority::info
                                                         : LogPriority::debug;
    navro::logLine(priority, navro::LogChannel::general,
                   qFormatLogMessage(type, context, message).toStdString());
}

// Another Navro holds the lock: this launch only asks it to open its notch. It needs no display
// for that, and must never become a second notch.
int handOver(int argc, char* argv[], const navro::InstanceLockAttempt& lock)
{
    QCoreApplication application(argc, argv);
    const auto failure = navro::handOverToRunningInstance(startingNavroPatience);
    if (!failure)
        return 0;
    navro::logLine("Navro already runs (" + lock.detail + ") and could not be asked to open its " +
                   "notch: " + *failure + "; not starting a second one");
    return 1;
}

} // namespace

int main(int argc, char* argv[])
{
    if (const auto status = answerCommandLine(argc, argv))
        return *status;
    navro::returnLargeBlocksWhenFreed();
    navro::installLogSink(&navro::JournalLogSink::forThisProcess());
    navro::reportOversizedWrites();
    settleTimeZone();

    // The notch needs what only X11 offers a client (a window above all others at a position of
    // its choosing, input shapes, a global key grab), so a Wayland session runs it on XWayland.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb");
    // Qt would end in an abort of its own, with a core file and no word of what to do.
    if (const auto problem = navro::displayProblem()) {
        navro::logLine(navro::LogPriority::error, navro::LogChannel::general,
                       "needs an X11 display (or XWayland) to run; " + *problem);
        return 1;
    }
    navro::avoidSilentBuses();

    qInstallMessageHandler(logQtMessage);
    const navro::InstanceLockAttempt lock = navro::takeInstanceLock();
    if (lock.outcome == navro::InstanceLockAttempt::Outcome::heldByAnother)
        return handOver(argc, argv, lock);

    // Widgets only for the tray item (QSystemTrayIcon); every window is Qt Quick.
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Navro"));
    QApplication::setOrganizationName(QStringLiteral("Navro"));
    QApplication::setApplicationVersion(QString::fromUtf8(navro::applicationVersion()));
    QApplication::setDesktopFileName(QStringLiteral("io.navro.Navro"));
    // The notch, the tray item and the hidden windows keep running with no window open.
    QApplication::setQuitOnLastWindowClosed(false);

    if (lock.outcome == navro::InstanceLockAttempt::Outcome::unavailable) {
        // Without the lock, the bus name is all that keeps a second Navro away.
        navro::logLine("no single-instance lock (" + lock.detail + "); relying on the session bus");
        if (!navro::handOverToRunningInstance(0ms))
            return 0;
    }

    // The notch is a few flat shapes and some text. Qt Quick's own software renderer draws them
    // without loading an OpenGL driver, which on machines without a GPU (Mesa's llvmpipe) more
    // than halves resident memory and costs less processor time per animation frame.
    // QT_QUICK_BACKEND still chooses another renderer for whoever wants one.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    navro::quitOnTerminationSignals();

    navro::AppDelegate delegate(application);
    delegate.start();
    const int code = QApplication::exec();
    delegate.shutdown();
    return code;
}
