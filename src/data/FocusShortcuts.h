#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// The user's focus actions: programs of their own (scripts or links to programs) kept in one
// folder, named by their file names.

// The executable regular files directly in `folder` (links to them count), by name, ignoring
// case first. Hidden files (a leading dot) are left out, being editors' and tools' leftovers
// rather than actions. A missing folder lists nothing; a folder that cannot be read lists nothing
// and says why in one log line.
std::vector<std::string> listFocusShortcuts(const std::filesystem::path& folder);

// A name that can only mean a file directly inside the folder: not empty, no slash, not "." or
// "..", no NUL.
bool isFocusShortcutName(std::string_view name);

} // namespace navro
