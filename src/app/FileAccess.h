#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace navro {

// Every file Navro reads or writes goes through these, so that a FIFO, a device or a folder
// where a file is expected can neither block the process nor be overwritten, and so that data
// never lands on disk half written or readable by other users.

// Why a file could not be read or written, in words fit for a log line.
using FileError = std::string;

struct FileRead {
    enum class Status { ok, missing, notRegular, tooLarge, failed };
    Status status = Status::failed;
    std::string bytes; // the whole file when ok
    FileError reason;  // empty when ok

    bool ok() const { return status == Status::ok; }
};

// Reads `path` whole when it is a regular file (a symbolic link to one counts) of at most
// `maxBytes` bytes. Special files are never opened for reading in a way that could block.
FileRead readRegularFile(const std::filesystem::path& path, std::size_t maxBytes);

// Replaces `path` whole: writes a temporary file beside it with `mode`, flushes it to the disk
// and renames it over the old one, so that a crash leaves either the old file or the new one.
// Refuses, leaving it alone, when something other than a regular file is in the way. Returns
// the reason on failure.
std::optional<FileError> writeFileAtomically(const std::filesystem::path& path,
                                             std::string_view bytes, mode_t mode = 0600);

// Removes the temporary files that writeFileAtomically leaves in `folder` when the process ends in
// the middle of a write (".name.XXXXXX"). For a store's load, before anything writes there again.
void removeAbandonedTemporaries(const std::filesystem::path& folder);

// Creates `folder` and any missing parents; `folder` itself gets mode 0700 (also when it existed:
// it is Navro's own and holds the user's private data). Returns the reason on failure.
std::optional<FileError> makePrivateFolder(const std::filesystem::path& folder);

// The folder of Navro's data files: "Navro" in $XDG_DATA_HOME, else in ~/.local/share. Only the
// path; makePrivateFolder creates it when a store first writes.
std::filesystem::path dataFolder();

// The user's configuration folder: $XDG_CONFIG_HOME, else ~/.config (the settings file and the
// autostart entries live there).
std::filesystem::path configHome();

} // namespace navro
