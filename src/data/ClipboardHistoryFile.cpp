#include "data/ClipboardHistoryFile.h"

#include "app/Utf8.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <plist/plist.h>
#include <set>

namespace navro {
namespace {

using namespace std::chrono;
using std::chrono::seconds; // not the Clock helper of the same name

struct PlistDeleter {
    void operator()(void* node) const { plist_free(static_cast<plist_t>(node)); }
};
using Plist = std::unique_ptr<void, PlistDeleter>;

// Property-list dates count from 2001-01-01 00:00:00 UTC.
constexpr milliseconds referenceDate = seconds(978'307'200);

plist_t dateNode(WallTime date)
{
    const auto sinceReference = date.time_since_epoch() - referenceDate;
    // Whole seconds rounded down, so that the microseconds are never negative.
    auto whole = floor<seconds>(sinceReference);
    // The library reads the fraction of a date before 2001 with the wrong sign, so such a date (a
    // clock set wrong) keeps whole seconds only.
    const auto micro =
        whole.count() < 0 ? microseconds(0) : duration_cast<microseconds>(sinceReference - whole);
    using Limits = std::numeric_limits<std::int32_t>;
    whole = std::clamp(whole, seconds(Limits::min()), seconds(Limits::max()));
    return plist_new_date(std::int32_t(whole.count()), std::int32_t(micro.count()));
}

WallTime dateValue(plist_t node)
{
    std::int32_t whole = 0;
    std::int32_t micro = 0;
    plist_get_date_val(node, &whole, &micro);
    // The binary format keeps a date as floating-point seconds, which may read back a hair below
    // the millisecond written.
    return WallTime(referenceDate + seconds(whole) + round<milliseconds>(microseconds(micro)));
}

std::optional<std::string> stringValue(plist_t dictionary, const char* key)
{
    plist_t node = plist_dict_get_item(dictionary, key);
    if (!node || plist_get_node_type(node) != PLIST_STRING)
        return std::nullopt;
    std::uint64_t length = 0;
    const char* text = plist_get_string_ptr(node, &length);
    if (!text)
        return std::nullopt;
    // The file's bytes need not be UTF-8 (a binary list's ASCII strings may hold any byte).
    return withValidUtf8(std::string_view(text, length));
}

// A name that stays inside the images folder: no separator, not the folder or its parent.
bool isPlainFileName(const std::string& name)
{
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

std::optional<ClipboardItem> decodeItem(plist_t node)
{
    if (plist_get_node_type(node) != PLIST_DICT)
        return std::nullopt;
    const auto id = stringValue(node, "id");
    const auto canonicalId = id ? canonicalUuid(*id) : std::nullopt;
    const auto kindText = stringValue(node, "kind");
    const auto kind = kindText ? clipboardKindFromRaw(*kindText) : std::nullopt;
    auto text = stringValue(node, "text");
    plist_t date = plist_dict_get_item(node, "date");
    if (!canonicalId || !kind || !text || !date || plist_get_node_type(date) != PLIST_DATE)
        return std::nullopt;

    ClipboardItem item;
    item.id = *canonicalId;
    item.kind = *kind;
    item.text = std::move(*text);
    item.date = dateValue(date);
    // The optional keys are dropped when they hold something else than a string.
    item.imageFile = stringValue(node, "imageFile");
    item.sourceApp = stringValue(node, "source");
    if (item.imageFile && !isPlainFileName(*item.imageFile))
        return std::nullopt;
    return item;
}

void setString(plist_t dictionary, const char* key, std::string_view value)
{
    // The library takes C strings, so a NUL inside would end the value early: none is written.
    // Nor is anything but UTF-8, which the library would turn into a file it cannot read back.
    std::string clean = withValidUtf8(value);
    std::erase(clean, '\0');
    plist_dict_set_item(dictionary, key, plist_new_string(clean.c_str()));
}

} // namespace

std::optional<ClipboardHistoryFile> decodeClipboardHistory(std::string_view bytes)
{
    if (bytes.empty() || bytes.size() > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    plist_t parsed = nullptr;
    plist_from_memory(bytes.data(), std::uint32_t(bytes.size()), &parsed);
    const Plist root(parsed);
    if (!root || plist_get_node_type(parsed) != PLIST_ARRAY)
        return std::nullopt;

    ClipboardHistoryFile history;
    std::set<std::string> seen;
    const std::uint32_t count = plist_array_get_size(parsed);
    for (std::uint32_t i = 0; i < count; ++i) {
        auto item = decodeItem(plist_array_get_item(parsed, i));
        if (!item || !seen.insert(item->id).second) {
            ++history.skipped;
            continue;
        }
        history.items.push_back(std::move(*item));
    }
    return history;
}

std::string encodeClipboardHistory(const std::vector<ClipboardItem>& items)
{
    const Plist root(plist_new_array());
    for (const ClipboardItem& item : items) {
        plist_t entry = plist_new_dict();
        setString(entry, "id", item.id);
        setString(entry, "kind", rawValue(item.kind));
        setString(entry, "text", item.text);
        plist_dict_set_item(entry, "date", dateNode(item.date));
        if (item.imageFile)
            setString(entry, "imageFile", *item.imageFile);
        if (item.sourceApp)
            setString(entry, "source", *item.sourceApp);
        plist_array_append_item(root.get(), entry);
    }
    // Binary rather than XML: XML 1.0 cannot carry most control characters, which copied text
    // may well contain, while the binary format stores any string as it is; it is also smaller
    // and quicker to read back. Reading takes either format.
    char* out = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(root.get(), &out, &length);
    std::string bytes(out ? out : "", out ? length : 0);
    plist_to_bin_free(out);
    return bytes;
}

} // namespace navro
