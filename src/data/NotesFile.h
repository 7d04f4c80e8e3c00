#pragma once

#include "data/Todo.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// Everything "notes.json" holds: the to-dos in stored order and the scratch note.
struct NotesDocument {
    std::vector<Todo> todos;
    std::string note;

    bool operator==(const NotesDocument&) const = default;
};

// The file's bytes: one compact JSON object {"todos":[…],"note":"…"}, each to-do's keys in the
// order id, text, done, created, priority, due (left out without a deadline), times as seconds
// since 2001-01-01 00:00:00 UTC, slashes escaped, as every other copy of the format is written.
std::string encodeNotes(const NotesDocument& document);

struct NotesDecoding {
    std::optional<NotesDocument> document;
    std::string error; // why there is no document, fit for a log line
};

// Reads what earlier versions wrote too: a missing (or null) key takes its default — no to-dos,
// an empty note; a to-do without `id` gets one from `newID`, without `created` the moment
// `loadedAt`, without `priority` none. A key that is present with the wrong type or an impossible
// value (an id that is no UUID, a priority outside 0–3) fails the whole file.
NotesDecoding decodeNotes(std::string_view bytes, WallTime loadedAt,
                          const std::function<std::string()>& newID);

// A fresh random UUID in canonical upper-case form.
std::string newTodoID();

} // namespace navro
