#include "data/Shelf.h"

#include <algorithm>

namespace navro {
namespace {

bool holdsPath(const ShelfSection& section, std::string_view path)
{
    return std::any_of(section.items.begin(), section.items.end(),
                       [&](const ShelfItem& item) { return item.path == path; });
}

template <typename T> void moveWithin(std::vector<T>& list, std::size_t from, std::size_t to)
{
    T moved = std::move(list[from]);
    list.erase(list.begin() + std::ptrdiff_t(from));
    to = std::min(to, list.size());
    list.insert(list.begin() + std::ptrdiff_t(to), std::move(moved));
}

} // namespace

std::string trimmedName(std::string_view name)
{
    constexpr std::string_view space = " \t\n\r\f\v";
    const auto first = name.find_first_not_of(space);
    if (first == std::string_view::npos)
        return {};
    return std::string(name.substr(first, name.find_last_not_of(space) - first + 1));
}

const ShelfSection* Shelf::section(std::string_view id) const
{
    const auto found = std::find_if(sections_.begin(), sections_.end(),
                                    [&](const ShelfSection& section) { return section.id == id; });
    return found == sections_.end() ? nullptr : &*found;
}

ShelfSection* Shelf::findSection(std::string_view id)
{
    return const_cast<ShelfSection*>(section(id));
}

const ShelfSection* Shelf::sectionOfItem(std::string_view itemID) const
{
    for (const ShelfSection& section : sections_)
        for (const ShelfItem& item : section.items)
            if (item.id == itemID)
                return &section;
    return nullptr;
}

bool Shelf::ensureSection(const std::string& name, const NewID& newID)
{
    if (!sections_.empty())
        return false;
    sections_.push_back({newID(), name, {}});
    return true;
}

std::optional<std::string> Shelf::addSection(const std::string& name, const NewID& newID)
{
    std::string trimmed = trimmedName(name);
    if (trimmed.empty())
        return std::nullopt;
    sections_.push_back({newID(), std::move(trimmed), {}});
    return sections_.back().id;
}

bool Shelf::renameSection(std::string_view id, const std::string& name)
{
    ShelfSection* section = findSection(id);
    std::string trimmed = trimmedName(name);
    if (!section || trimmed.empty() || section->name == trimmed)
        return false;
    section->name = std::move(trimmed);
    return true;
}

bool Shelf::removeSection(std::string_view id)
{
    const ShelfSection* section = this->section(id);
    if (!section || sections_.size() == 1)
        return false;
    sections_.erase(sections_.begin() + (section - sections_.data()));
    return true;
}

bool Shelf::moveSection(std::string_view id, std::size_t index)
{
    const ShelfSection* section = this->section(id);
    if (!section)
        return false;
    const auto from = std::size_t(section - sections_.data());
    if (std::min(index, sections_.size() - 1) == from)
        return false;
    moveWithin(sections_, from, index);
    return true;
}

std::size_t Shelf::addItems(std::string_view sectionID, const std::vector<ShelfEntry>& entries,
                            WallTime now, const NewID& newID)
{
    ShelfSection* section = findSection(sectionID);
    if (!section)
        return 0;
    std::size_t added = 0;
    for (const ShelfEntry& entry : entries) {
        if (entry.path.empty() || holdsPath(*section, entry.path))
            continue;
        section->items.push_back({newID(), entry.path, now, entry.isFolder});
        ++added;
    }
    return added;
}

bool Shelf::removeItem(std::string_view itemID)
{
    for (ShelfSection& section : sections_) {
        const auto erased =
            std::erase_if(section.items, [&](const ShelfItem& item) { return item.id == itemID; });
        if (erased > 0)
            return true;
    }
    return false;
}

bool Shelf::moveItem(std::string_view itemID, std::string_view sectionID, std::size_t index)
{
    ShelfSection* target = findSection(sectionID);
    const ShelfSection* source = sectionOfItem(itemID);
    if (!target || !source)
        return false;
    auto& sourceItems = const_cast<ShelfSection*>(source)->items;
    const auto at = std::find_if(sourceItems.begin(), sourceItems.end(),
                                 [&](const ShelfItem& item) { return item.id == itemID; });
    const auto from = std::size_t(at - sourceItems.begin());
    if (source == target) {
        if (std::min(index, sourceItems.size() - 1) == from)
            return false;
        moveWithin(sourceItems, from, index);
        return true;
    }
    ShelfItem moved = std::move(*at);
    sourceItems.erase(at);
    if (holdsPath(*target, moved.path))
        return true;
    index = std::min(index, target->items.size());
    target->items.insert(target->items.begin() + std::ptrdiff_t(index), std::move(moved));
    return true;
}

} // namespace navro
