#pragma once

#include <QDeadlineTimer>
#include <QGuiApplication>

namespace navro {

// The test program's application object: the one main() made, or else one QGuiApplication made
// on first use (the unit tests run on Qt's offscreen platform).
inline QCoreApplication& testApplication()
{
    if (QCoreApplication* existing = QCoreApplication::instance())
        return *existing;
    static int argc = 1;
    static char name[] = "navro_tests";
    static char* argv[] = {name, nullptr};
    static auto* application = new QGuiApplication(argc, argv);
    return *application;
}

// Turns the event loop until `done` holds or the deadline passes.
template <typename Predicate> bool waitFor(Predicate done, int milliseconds = 10000)
{
    testApplication();
    QDeadlineTimer deadline(milliseconds);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    return done();
}

} // namespace navro
