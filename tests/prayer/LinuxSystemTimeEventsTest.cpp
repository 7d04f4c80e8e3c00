#include "platform/linux/LinuxSystemTimeEvents.h"

#include "QtTestApplication.h"
#include "ScopedEnvironment.h"
#include "app/Log.h"
#include "platform/linux/SystemBusGate.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace navro {
namespace {

// Without a system bus (as in a container) and whatever the machine offers, the events source
// comes up quietly, reports the zone the process runs in, and goes away cleanly.
TEST(LinuxSystemTimeEvents, StartsQuietlyAndReportsTheProcessZone)
{
    testApplication();
    const ScopedEnvironment zone("TZ", "Asia/Tokyo");
    CapturingLogSink log;
    SystemBusGate noSystemBus("unix:path=/nonexistent/system_bus_socket", std::chrono::seconds(2));
    LinuxSystemTimeEvents events(noSystemBus);
    int delivered = 0;
    events.addHandler([&](SystemTimeEvents::Event) { ++delivered; });
    EXPECT_EQ(events.systemTimeZoneID(), "Asia/Tokyo");
    QCoreApplication::processEvents();
    EXPECT_EQ(delivered, 0);
    EXPECT_TRUE(log.lines.empty());
}

} // namespace
} // namespace navro
