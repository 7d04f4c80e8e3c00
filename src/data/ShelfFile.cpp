#include "data/ShelfFile.h"

#include "app/Utf8.h"
#include "data/ClipboardItem.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <cmath>
#include <limits>
#include <memory>
#include <plist/plist.h>
#include <set>

namespace navro {
namespace {

using namespace std::chrono;

// 2001-01-01 00:00:00 UTC, the origin of the file's times, in Unix milliseconds.
constexpr std::int64_t referenceDateMs = 978307200000;
// About 30,000 years either side: further out is no date anyone meant.
constexpr double furthestSeconds = 1e12;
constexpr auto defaultSectionName = "Shelf";

double toFileTime(WallTime time)
{
    return double(time.time_since_epoch().count() - referenceDateMs) / 1000.0;
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

bool present(const QJsonObject& object, const char* key)
{
    const auto value = object.value(QLatin1StringView(key));
    return !value.isUndefined() && !value.isNull();
}

// Reads records that were decoded into JSON values, from either file format.
class Reader {
public:
    Reader(WallTime loadedAt, const std::function<std::string()>& newID)
        : loadedAt_(loadedAt), newID_(newID)
    {
    }

    ShelfDecoding read(const QJsonValue& root)
    {
        ShelfDecoding result;
        QJsonValue list = root;
        if (root.isObject()) {
            list = root.toObject().value(QLatin1StringView("sections"));
            if (list.isUndefined() || list.isNull())
                list = QJsonArray();
        }
        if (!list.isArray()) {
            result.error = root.isObject() ? "\"sections\" is not a list" : "not an object";
            return result;
        }
        std::vector<ShelfSection> sections;
        const QJsonArray array = list.toArray();
        for (qsizetype index = 0; index < array.size(); ++index) {
            auto section = readSection(array.at(index));
            if (!section) {
                result.error = "section " + std::to_string(index + 1) + ": " + error_;
                return result;
            }
            sections.push_back(std::move(*section));
        }
        result.sections = std::move(sections);
        result.skipped = skipped_;
        return result;
    }

private:
    std::nullopt_t wrong(const char* key, const char* expected)
    {
        error_ = std::string("\"") + key + "\" is not " + expected;
        return std::nullopt;
    }

    // The id given when it is a UUID not seen before, else a new one that is not seen either: a
    // file can hold any id, even the next one the generator gives.
    std::optional<std::string> readID(const QJsonObject& object)
    {
        std::optional<std::string> id;
        if (present(object, "id")) {
            const auto value = object.value(QLatin1StringView("id"));
            if (!value.isString())
                return wrong("id", "a string");
            id = canonicalUuid(value.toString().toStdString());
        }
        if (!id || !ids_.insert(*id).second) {
            do
                id = newID_();
            while (!ids_.insert(*id).second);
        }
        return id;
    }

    std::optional<ShelfSection> readSection(const QJsonValue& value)
    {
        if (!value.isObject())
            return wrong("the section", "an object");
        const QJsonObject object = value.toObject();
        ShelfSection section;
        auto id = readID(object);
        if (!id)
            return std::nullopt;
        section.id = std::move(*id);
        section.name = defaultSectionName;
        if (present(object, "name")) {
            const auto name = object.value(QLatin1StringView("name"));
            if (!name.isString())
                return wrong("name", "a string");
            std::string trimmed = trimmedName(withValidUtf8(name.toString().toStdString()));
            if (!trimmed.empty())
                section.name = std::move(trimmed);
        }
        if (!present(object, "items"))
            return section;
        const auto items = object.value(QLatin1StringView("items"));
        if (!items.isArray())
            return wrong("items", "a list");
        std::set<std::string> paths;
        for (const QJsonValue& entry : items.toArray()) {
            auto item = readItem(entry);
            if (!item)
                return std::nullopt;
            if (item->path.empty() || !paths.insert(item->path).second) {
                ++skipped_;
                continue;
            }
            section.items.push_back(std::move(*item));
        }
        return section;
    }

    std::optional<ShelfItem> readItem(const QJsonValue& value)
    {
        if (!value.isObject())
            return wrong("the item", "an object");
        const QJsonObject object = value.toObject();
        ShelfItem item;
        auto id = readID(object);
        if (!id)
            return std::nullopt;
        item.id = std::move(*id);
        if (present(object, "path")) {
            const auto path = object.value(QLatin1StringView("path"));
            if (!path.isString())
                return wrong("path", "a string");
            item.path = path.toString().toStdString();
        } else if (present(object, "url")) {
            const auto url = object.value(QLatin1StringView("url"));
            if (!url.isString())
                return wrong("url", "a string");
            const QUrl location(url.toString());
            // Only local files: anything else is no shortcut to a file here.
            if (location.isLocalFile())
                item.path = location.toLocalFile().toStdString();
        }
        // A relative path would mean a different file depending on where Navro started.
        if (!item.path.empty() && item.path.front() != '/')
            item.path.clear();
        item.added = loadedAt_;
        if (present(object, "added")) {
            const auto added = readTime(object.value(QLatin1StringView("added")));
            if (!added)
                return wrong("added", "a time");
            item.added = *added;
        }
        if (present(object, "isFolder")) {
            const auto folder = object.value(QLatin1StringView("isFolder"));
            if (!folder.isBool())
                return wrong("isFolder", "true or false");
            item.isFolder = folder.toBool();
        }
        return item;
    }

    WallTime loadedAt_;
    const std::function<std::string()>& newID_;
    std::set<std::string> ids_;
    std::string error_;
    std::size_t skipped_ = 0;
};

struct PlistDeleter {
    void operator()(void* node) const { plist_free(static_cast<plist_t>(node)); }
};

// Property-list values as the JSON values of the same meaning; dates as the file's seconds.
// Nesting is bounded so that a crafted file cannot exhaust the stack.
QJsonValue toJson(plist_t node, int depth)
{
    if (depth > 16)
        return QJsonValue();
    switch (plist_get_node_type(node)) {
    case PLIST_DICT: {
        QJsonObject object;
        plist_dict_iter iter = nullptr;
        plist_dict_new_iter(node, &iter);
        for (;;) {
            char* key = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(node, iter, &key, &value);
            if (!key)
                break;
            object.insert(QString::fromStdString(withValidUtf8(key)), toJson(value, depth + 1));
            free(key);
        }
        free(iter);
        return object;
    }
    case PLIST_ARRAY: {
        QJsonArray array;
        const std::uint32_t count = plist_array_get_size(node);
        for (std::uint32_t i = 0; i < count; ++i)
            array.append(toJson(plist_array_get_item(node, i), depth + 1));
        return array;
    }
    case PLIST_STRING: {
        std::uint64_t length = 0;
        const char* text = plist_get_string_ptr(node, &length);
        return QString::fromStdString(withValidUtf8(std::string_view(text ? text : "", length)));
    }
    case PLIST_BOOLEAN: {
        std::uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_UINT: {
        std::uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return double(value);
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_DATE: {
        std::int32_t whole = 0;
        std::int32_t micro = 0;
        plist_get_date_val(node, &whole, &micro);
        return double(whole) + double(micro) / 1e6;
    }
    default:
        return QJsonValue();
    }
}

} // namespace

std::string encodeShelf(const std::vector<ShelfSection>& sections)
{
    QJsonArray list;
    for (const ShelfSection& section : sections) {
        QJsonArray items;
        for (const ShelfItem& item : section.items)
            items.append(QJsonObject{
                {QStringLiteral("id"), QString::fromStdString(item.id)},
                {QStringLiteral("path"), QString::fromStdString(item.path)},
                {QStringLiteral("added"), toFileTime(item.added)},
                {QStringLiteral("isFolder"), item.isFolder},
            });
        list.append(QJsonObject{
            {QStringLiteral("id"), QString::fromStdString(section.id)},
            {QStringLiteral("name"), QString::fromStdString(section.name)},
            {QStringLiteral("items"), items},
        });
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("sections"), list}})
        .toJson(QJsonDocument::Compact)
        .toStdString();
}

ShelfDecoding decodeShelf(std::string_view bytes, WallTime loadedAt,
                          const std::function<std::string()>& newID)
{
    QJsonParseError parseError{};
    const QJsonDocument json = QJsonDocument::fromJson(
        QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size())), &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        ShelfDecoding result;
        result.error = "not JSON (" + parseError.errorString().toStdString() + " at byte " +
                       std::to_string(parseError.offset) + ")";
        return result;
    }
    if (!json.isObject()) {
        ShelfDecoding result;
        result.error = "not a JSON object";
        return result;
    }
    return Reader(loadedAt, newID).read(json.object());
}

ShelfDecoding decodeShelfPropertyList(std::string_view bytes, WallTime loadedAt,
                                      const std::function<std::string()>& newID)
{
    ShelfDecoding result;
    if (bytes.empty() || bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
        result.error = "not a property list";
        return result;
    }
    plist_t parsed = nullptr;
    plist_from_memory(bytes.data(), std::uint32_t(bytes.size()), &parsed);
    const std::unique_ptr<void, PlistDeleter> root(parsed);
    if (!root) {
        result.error = "not a property list";
        return result;
    }
    return Reader(loadedAt, newID).read(toJson(parsed, 0));
}

} // namespace navro
