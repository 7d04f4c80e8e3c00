#pragma once

#include "app/Clock.h"

#include <filesystem>
#include <string>

namespace navro::SafeStorage {

// The name a copy of the unreadable file `fileName` ("notes.json") gets: "notes.unreadable-" +
// version + "-" + whole seconds since 1970 + ".json".
std::string backupName(const std::string& fileName, std::string_view version, WallTime now);

// Before a store starts over empty (and later overwrites the file), keeps a copy of the file it
// could not read beside it and says so in one log line. Never moves or changes the file itself;
// a failed copy (a backup of that name exists already, the disk is full) is not an error.
void backUpUnreadable(const std::filesystem::path& file, WallTime now);

} // namespace navro::SafeStorage
