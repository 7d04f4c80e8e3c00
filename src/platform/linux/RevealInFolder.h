#pragma once

#include <QString>

namespace navro {

// Shows a file in the user's file manager, selected in its folder (the freedesktop FileManager1
// interface on the session bus), or opens its folder where no file manager offers that.
void revealInFolder(const QString& path);

} // namespace navro
