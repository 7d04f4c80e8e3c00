#pragma once

#include "app/Clock.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// The name a browser's partial file will have once the download is done: "film.mkv.part" →
// "film.mkv". None for a name that is not a partial file, or is nothing but the ending.
std::optional<std::string> finalNameOfPartial(std::string_view name);

// A file of the downloads folder as one look at it found it.
struct FolderEntry {
    std::string name;
    std::uint64_t size = 0;
    bool operator==(const FolderEntry&) const = default;
};

struct Download {
    std::string partialName;
    std::string finalName;
    std::uint64_t bytes = 0;
    double bytesPerSecond = 0;
    bool operator==(const Download&) const = default;
};

// The downloads in progress, from successive looks at the folder. A partial file is a download
// while it exists; it finished when it is gone and its final name is there with content (the
// browser renamed it), and it was abandoned when the final file is missing or empty (cancelled,
// or renamed to another partial name, as Chromium does once the user has chosen a name).
class DownloadTracker {
public:
    struct Changes {
        bool listChanged = false;
        std::vector<std::string> finished; // final names
    };

    Changes update(const std::vector<FolderEntry>& entries, WallTime now);
    const std::vector<Download>& downloads() const { return downloads_; }

private:
    std::vector<Download> downloads_;
    WallTime lastLook_{};
};

} // namespace navro
