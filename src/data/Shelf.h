#pragma once

#include "app/Clock.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// A file or folder kept at hand. The shelf holds shortcuts, never the files themselves.
struct ShelfItem {
    std::string id; // a UUID in upper-case canonical form
    std::string path;
    WallTime added;
    bool isFolder = false;

    bool operator==(const ShelfItem&) const = default;
};

struct ShelfSection {
    std::string id;
    std::string name; // as the user typed it
    std::vector<ShelfItem> items;

    bool operator==(const ShelfSection&) const = default;
};

// What is being put on the shelf: a path and whether it is a folder, as the caller found it.
struct ShelfEntry {
    std::string path;
    bool isFolder = false;
};

// The sections in their order and the rules every change keeps: once there is a section there
// always is one, and a path is in a section at most once.
class Shelf {
public:
    using NewID = std::function<std::string()>;

    // An empty shelf has no section yet; ensureSection() gives it its first.
    Shelf() = default;
    explicit Shelf(std::vector<ShelfSection> sections) : sections_(std::move(sections)) {}

    const std::vector<ShelfSection>& sections() const { return sections_; }
    const ShelfSection* section(std::string_view id) const;
    // The section that holds the item, or nothing.
    const ShelfSection* sectionOfItem(std::string_view itemID) const;

    // Adds a section named `name` when there is none. True when it did.
    bool ensureSection(const std::string& name, const NewID& newID);
    // Adds a section at the end; nothing for a blank name.
    std::optional<std::string> addSection(const std::string& name, const NewID& newID);
    // False for an unknown id or a blank name.
    bool renameSection(std::string_view id, const std::string& name);
    // The last section stays: with it, drops would have nowhere to go.
    bool removeSection(std::string_view id);
    // To position `index` (clamped) of the list without it.
    bool moveSection(std::string_view id, std::size_t index);

    // Appends the entries that are not in the section yet (an entry given twice counts once);
    // returns how many were added. Nothing for an unknown section or an empty path.
    std::size_t addItems(std::string_view sectionID, const std::vector<ShelfEntry>& entries,
                         WallTime now, const NewID& newID);
    bool removeItem(std::string_view itemID);
    // To position `index` (clamped) of `sectionID`. When that section has the path already, the
    // moved item merges into the one there.
    bool moveItem(std::string_view itemID, std::string_view sectionID, std::size_t index);

private:
    ShelfSection* findSection(std::string_view id);

    std::vector<ShelfSection> sections_;
};

// `name` without the white space at its ends.
std::string trimmedName(std::string_view name);

} // namespace navro
