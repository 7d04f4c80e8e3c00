#include "data/NotesFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>
#include <charconv>
#include <cmath>

namespace navro {
namespace {

using namespace std::chrono;

// 2001-01-01 00:00:00 UTC, the origin of the file's times, in Unix milliseconds.
constexpr std::int64_t referenceDateMs = 978307200000;
// About 30,000 years either side: further out is no date anyone meant, and milliseconds of it
// would no longer fit.
constexpr double furthestSeconds = 1e12;

void appendNumber(std::string& out, double value)
{
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

void appendTime(std::string& out, WallTime time)
{
    appendNumber(out, double(time.time_since_epoch().count() - referenceDateMs) / 1000.0);
}

void appendString(std::string& out, std::string_view text)
{
    static constexpr char hex[] = "0123456789abcdef";
    out += '"';
    for (const char c : text) {
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '/':
            out += "\\/";
            break;
        case '\b':
            out += "\\b";
            break;
        case '\f':
            out += "\\f";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20) {
                out += "\\u00";
                out += hex[(c >> 4) & 0xf];
                out += hex[c & 0xf];
            } else {
                out += c;
            }
        }
    }
    out += '"';
}

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// "e621e1f8-c36c-495a-93fc-0c247a3e6e5f" in either case, as upper case; nothing else.
std::optional<std::string> canonicalUUID(const QString& text)
{
    std::string id = text.toStdString();
    if (id.size() != 36)
        return std::nullopt;
    for (std::size_t i = 0; i < id.size(); ++i) {
        const bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
        if (hyphen ? id[i] != '-' : !isHexDigit(id[i]))
            return std::nullopt;
        if (id[i] >= 'a' && id[i] <= 'f')
            id[i] = char(id[i] - 'a' + 'A');
    }
    return id;
}

// A key that is absent or null takes its default; one that is there must have the right type.
bool present(const QJsonObject& object, QLatin1StringView key)
{
    const auto value = object.value(key);
    return !value.isUndefined() && !value.isNull();
}

std::optional<WallTime> readTime(const QJsonValue& value)
{
    if (!value.isDouble())
        return std::nullopt;
    const double seconds = value.toDouble();
    if (!(std::abs(seconds) <= furthestSeconds))
        return std::nullopt;
    return WallTime(milliseconds(std::llround(seconds * 1000.0) + referenceDateMs));
}

std::optional<Todo> readTodo(const QJsonObject& object, WallTime loadedAt,
                             const std::function<std::string()>& newID, std::string& error)
{
    auto wrong = [&](const char* key, const char* expected) {
        error = std::string("\"") + key + "\" is not " + expected;
        return std::nullopt;
    };
    Todo todo;
    if (present(object, QLatin1StringView("id"))) {
        const auto value = object.value(QLatin1StringView("id"));
        auto id = value.isString() ? canonicalUUID(value.toString()) : std::nullopt;
        if (!id)
            return wrong("id", "a UUID");
        todo.id = std::move(*id);
    } else {
        todo.id = newID();
    }
    if (present(object, QLatin1StringView("text"))) {
        const auto value = object.value(QLatin1StringView("text"));
        if (!value.isString())
            return wrong("text", "a string");
        todo.text = value.toString().toStdString();
    }
    if (present(object, QLatin1StringView("done"))) {
        const auto value = object.value(QLatin1StringView("done"));
        if (!value.isBool())
            return wrong("done", "true or false");
        todo.done = value.toBool();
    }
    todo.created = loadedAt;
    if (present(object, QLatin1StringView("created"))) {
        const auto created = readTime(object.value(QLatin1StringView("created")));
        if (!created)
            return wrong("created", "a time");
        todo.created = *created;
    }
    if (present(object, QLatin1StringView("priority"))) {
        const auto value = object.value(QLatin1StringView("priority"));
        const double raw = value.isDouble() ? value.toDouble() : -1;
        if (raw != 0 && raw != 1 && raw != 2 && raw != 3)
            return wrong("priority", "a whole number from 0 to 3");
        todo.priority = static_cast<Priority>(int(raw));
    }
    if (present(object, QLatin1StringView("due"))) {
        const auto due = readTime(object.value(QLatin1StringView("due")));
        if (!due)
            return wrong("due", "a time");
        todo.due = *due;
    }
    return todo;
}

} // namespace

std::string encodeNotes(const NotesDocument& document)
{
    std::string out;
    out.reserve(document.note.size() + document.todos.size() * 160 + 32);
    out += "{\"todos\":[";
    bool first = true;
    for (const Todo& todo : document.todos) {
        if (!first)
            out += ',';
        first = false;
        out += "{\"id\":";
        appendString(out, todo.id);
        out += ",\"text\":";
        appendString(out, todo.text);
        out += todo.done ? ",\"done\":true" : ",\"done\":false";
        out += ",\"created\":";
        appendTime(out, todo.created);
        out += ",\"priority\":";
        out += char('0' + static_cast<int>(todo.priority));
        if (todo.due) {
            out += ",\"due\":";
            appendTime(out, *todo.due);
        }
        out += '}';
    }
    out += "],\"note\":";
    appendString(out, document.note);
    out += '}';
    return out;
}

NotesDecoding decodeNotes(std::string_view bytes, WallTime loadedAt,
                          const std::function<std::string()>& newID)
{
    NotesDecoding result;
    QJsonParseError parseError{};
    const QJsonDocument json = QJsonDocument::fromJson(
        QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size())), &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        result.error = "not JSON (" + parseError.errorString().toStdString() + " at byte " +
                       std::to_string(parseError.offset) + ")";
        return result;
    }
    if (!json.isObject()) {
        result.error = "not a JSON object";
        return result;
    }
    const QJsonObject root = json.object();
    NotesDocument document;
    if (present(root, QLatin1StringView("todos"))) {
        const auto todos = root.value(QLatin1StringView("todos"));
        if (!todos.isArray()) {
            result.error = "\"todos\" is not a list";
            return result;
        }
        const QJsonArray list = todos.toArray();
        document.todos.reserve(std::size_t(list.size()));
        for (qsizetype index = 0; index < list.size(); ++index) {
            const auto entry = list.at(index);
            std::string error = "not an object";
            auto todo = entry.isObject() ? readTodo(entry.toObject(), loadedAt, newID, error)
                                         : std::nullopt;
            if (!todo) {
                result.error = "to-do " + std::to_string(index + 1) + ": " + error;
                return result;
            }
            document.todos.push_back(std::move(*todo));
        }
    }
    if (present(root, QLatin1StringView("note"))) {
        const auto note = root.value(QLatin1StringView("note"));
        if (!note.isString()) {
            result.error = "\"note\" is not a string";
            return result;
        }
        document.note = note.toString().toStdString();
    }
    result.document = std::move(document);
    return result;
}

std::string newTodoID()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
}

} // namespace navro
