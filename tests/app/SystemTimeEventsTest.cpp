#include "FakeSystemTimeEvents.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using Event = SystemTimeEvents::Event;

TEST(SystemTimeEvents, EveryReceiverHearsEveryEventUntilRemoved)
{
    FakeSystemTimeEvents events;
    std::vector<std::string> heard;
    const int prayer = events.addHandler([&](Event) { heard.push_back("prayer"); });
    events.addHandler(
        [&](Event event) { heard.push_back(event == Event::resumed ? "notes resumed" : "notes"); });
    events.send(Event::resumed);
    EXPECT_EQ(heard, (std::vector<std::string>{"prayer", "notes resumed"}));
    events.removeHandler(prayer);
    heard.clear();
    events.send(Event::clockChanged);
    EXPECT_EQ(heard, std::vector<std::string>{"notes"});
    EXPECT_EQ(events.handlerCount(), 1u);
}

// A receiver that goes away while an event is delivered takes another with it (a service owning
// another): the one removed is not called, and nothing is called twice.
TEST(SystemTimeEvents, AReceiverMayRemoveOthersOrItselfWhileCalled)
{
    FakeSystemTimeEvents events;
    std::vector<int> called;
    int second = -1;
    int first = -1;
    first = events.addHandler([&](Event) {
        called.push_back(1);
        events.removeHandler(second);
        events.removeHandler(first);
    });
    second = events.addHandler([&](Event) { called.push_back(2); });
    events.addHandler([&](Event) { called.push_back(3); });
    events.send(Event::timeZoneChanged);
    events.send(Event::timeZoneChanged);
    EXPECT_EQ(called, (std::vector<int>{1, 3, 3}));
}

} // namespace
} // namespace navro
