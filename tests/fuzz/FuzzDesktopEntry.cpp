// Desktop entries of installed applications, read to name and draw them.
#include "platform/linux/DesktopEntries.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray text =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    if (auto entry = navro::parseDesktopEntry(QStringLiteral("fuzz.desktop"), text))
        (void)entry->displayName(true);
    return 0;
}
