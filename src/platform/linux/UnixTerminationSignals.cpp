#include "app/Log.h"
#include "app/TerminationSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace navro {
namespace {

// The write end of the self-pipe. A signal handler may only do async-signal-safe work, so it
// writes one byte here and the event loop does the rest.
int signalWriteEnd = -1;

extern "C" void onTerminationSignal(int)
{
    const int saved = errno;
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(signalWriteEnd, &byte, 1);
    errno = saved;
}

} // namespace

void quitOnTerminationSignals()
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0) {
        logLine("termination signals not handled: socketpair failed");
        return;
    }
    signalWriteEnd = ends[1];
    auto* notifier =
        new QSocketNotifier(ends[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [fd = ends[0]] {
        char buffer[16];
        while (::read(fd, buffer, sizeof buffer) > 0) {
        }
        QCoreApplication::quit();
    });

    struct sigaction action = {};
    action.sa_handler = onTerminationSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaction(signal, &action, nullptr);
}

void reportOversizedWrites()
{
    ::signal(SIGXFSZ, SIG_IGN);
}

} // namespace navro
