#pragma once

#include <QString>
#include <string_view>

namespace navro {

// The plain C++ layer speaks UTF-8 string views; Qt and the views speak QString.
inline QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

} // namespace navro
