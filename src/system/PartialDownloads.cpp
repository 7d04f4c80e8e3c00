#include "system/PartialDownloads.h"

#include <algorithm>
#include <array>

namespace navro {

std::optional<std::string> finalNameOfPartial(std::string_view name)
{
    static constexpr std::array<std::string_view, 4> endings = {".part", ".crdownload", ".download",
                                                                ".partial"};
    for (std::string_view ending : endings) {
        if (name.size() > ending.size() && name.ends_with(ending)) {
            const std::string_view base = name.substr(0, name.size() - ending.size());
            // A hidden file's own dot is not a name; "x..part" keeps its dot.
            if (base == "." || base.find('/') != std::string_view::npos)
                return std::nullopt;
            return std::string(base);
        }
    }
    return std::nullopt;
}

DownloadTracker::Changes DownloadTracker::update(const std::vector<FolderEntry>& entries,
                                                 WallTime now)
{
    Changes changes;
    const auto find = [&](std::string_view name) -> const FolderEntry* {
        const auto it = std::find_if(entries.begin(), entries.end(),
                                     [&](const FolderEntry& entry) { return entry.name == name; });
        return it == entries.end() ? nullptr : &*it;
    };
    const double elapsed = std::chrono::duration<double>(now - lastLook_).count();

    std::vector<Download> next;
    for (const FolderEntry& entry : entries) {
        auto finalName = finalNameOfPartial(entry.name);
        if (!finalName)
            continue;
        Download download{entry.name, std::move(*finalName), entry.size, 0};
        const auto known = std::find_if(downloads_.begin(), downloads_.end(),
                                        [&](const auto& d) { return d.partialName == entry.name; });
        if (known != downloads_.end()) {
            download.bytesPerSecond = known->bytesPerSecond;
            if (elapsed > 0 && entry.size >= known->bytes) {
                // Smoothed, so that the rate shown does not jump with every write.
                const double latest = double(entry.size - known->bytes) / elapsed;
                download.bytesPerSecond = 0.5 * known->bytesPerSecond + 0.5 * latest;
            }
        }
        next.push_back(std::move(download));
    }
    std::sort(next.begin(), next.end(),
              [](const auto& a, const auto& b) { return a.partialName < b.partialName; });

    for (const Download& before : downloads_) {
        const bool stillThere = std::any_of(next.begin(), next.end(), [&](const auto& d) {
            return d.partialName == before.partialName;
        });
        if (stillThere)
            continue;
        const FolderEntry* done = find(before.finalName);
        if (done && done->size > 0)
            changes.finished.push_back(before.finalName);
    }
    changes.listChanged = next != downloads_;
    downloads_ = std::move(next);
    lastLook_ = now;
    return changes;
}

} // namespace navro
