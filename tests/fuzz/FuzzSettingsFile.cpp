// The settings file, ~/.config/Navro/Navro.conf, which other programs and people edit too.
#include "app/IniDocument.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const navro::IniDocument document = navro::parseIni(text);
    // Whatever was read is written back so that it reads the same, with nothing left over.
    const navro::IniDocument again = navro::parseIni(navro::writeIni(document.values));
    if (again.values != document.values || !again.unreadLines.empty())
        std::abort();
    return 0;
}
