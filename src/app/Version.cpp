#include "app/Version.h"

namespace navro {

std::string_view applicationVersion()
{
    return NAVRO_VERSION;
}

} // namespace navro
