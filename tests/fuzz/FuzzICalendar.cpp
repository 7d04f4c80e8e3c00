// iCalendar documents from subscription links and files.
#include "calendar/ICalendarReader.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace std::chrono;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    // Two days around the seeds' dates, on a clock with daylight saving.
    const navro::WallTime from(duration_cast<milliseconds>(seconds(1710028800)));
    const auto result = navro::readICalendar(text, from, from + hours(48), "Europe/Berlin");
    if (result.reading)
        for (const auto& event : result.reading->events)
            if (event.end < event.start)
                __builtin_trap();
    return 0;
}
