#include "app/AppDelegate.h"
#include "app/Log.h"
#include "app/RemoteControl.h"
#include "app/TerminationSignals.h"
#include "app/Version.h"
#include "prayer/SystemZone.h"

#include <QApplication>
#include <QQmlEngineExtensionPlugin>
#include <QQuickStyle>
#include <QQuickWindow>
#include <cstdlib>

// The views, compiled into the program.
Q_IMPORT_QML_PLUGIN(NavroPlugin)

namespace {

// The C library, Qt and ICU all read the file that TZ names the first time anything asks for
// local time; a folder, a FIFO or a device there would abort or block the process, so a value
// that names no usable zone is replaced before any of them looks.
void settleTimeZone()
{
    const navro::ZoneSettingCheck zone =
        navro::checkZoneSetting(std::getenv("TZ"), std::getenv("TZDIR"));
    if (zone.fallback == navro::ZoneSettingCheck::Fallback::none)
        return;
    navro::logLine(zone.message);
    if (zone.fallback == navro::ZoneSettingCheck::Fallback::systemZone)
        ::unsetenv("TZ");
    else
        ::setenv("TZ", "UTC0", 1);
}

} // namespace

int main(int argc, char* argv[])
{
    settleTimeZone();

    // The notch needs what only X11 offers a client (a window above all others at a position of
    // its choosing, input shapes, a global key grab), so a Wayland session runs it on XWayland.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
        !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && !qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");

    // Widgets only for the tray item (QSystemTrayIcon); every window is Qt Quick.
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Navro"));
    QApplication::setOrganizationName(QStringLiteral("Navro"));
    QApplication::setApplicationVersion(QString::fromUtf8(navro::applicationVersion()));
    QApplication::setDesktopFileName(QStringLiteral("navro"));
    // The notch, the tray item and the hidden windows keep running with no window open.
    QApplication::setQuitOnLastWindowClosed(false);

    // A second start asks the running Navro to open its notch and leaves.
    if (navro::handOverToRunningInstance())
        return 0;

    // Every view is compiled into the program; a cache on disk could only be stale or damaged.
    qputenv("QML_DISABLE_DISK_CACHE", "1");
    QQuickStyle::setStyle(QStringLiteral("Basic"));
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
