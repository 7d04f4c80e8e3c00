#include "system/UsbDeviceFacts.h"

#include "app/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace navro {
namespace {

constexpr std::size_t partLength = 64;
constexpr std::size_t nameLength = 80;

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view space = " \t\n\r\f\v";
    const std::size_t first = text.find_first_not_of(space);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}

// One to `digits` hexadecimal digits and nothing else.
std::optional<unsigned> hexNumber(std::string_view text, std::size_t digits)
{
    text = trimmed(text);
    if (text.empty() || text.size() > digits)
        return std::nullopt;
    unsigned value = 0;
    for (char c : text) {
        unsigned digit = 0;
        if (c >= '0' && c <= '9')
            digit = unsigned(c - '0');
        else if (c >= 'a' && c <= 'f')
            digit = unsigned(c - 'a' + 10);
        else if (c >= 'A' && c <= 'F')
            digit = unsigned(c - 'A' + 10);
        else
            return std::nullopt;
        value = value * 16 + digit;
    }
    return value;
}

std::optional<unsigned> decimalNumber(std::string_view text)
{
    text = trimmed(text);
    if (text.empty() || text.size() > 3)
        return std::nullopt;
    unsigned value = 0;
    for (char c : text) {
        if (c < '0' || c > '9')
            return std::nullopt;
        value = value * 10 + unsigned(c - '0');
    }
    return value;
}

std::string_view valueOf(const std::map<std::string, std::string, std::less<>>& map,
                         std::string_view key)
{
    const auto found = map.find(key);
    return found == map.end() ? std::string_view() : std::string_view(found->second);
}

std::optional<UsbIds> idsFrom(std::string_view vendor, std::string_view product)
{
    const auto v = hexNumber(vendor, 4);
    const auto p = hexNumber(product, 4);
    if (!v || !p)
        return std::nullopt;
    return UsbIds{std::uint16_t(*v), std::uint16_t(*p)};
}

bool isHub(const UsbDeviceFacts& facts)
{
    constexpr unsigned hubClass = 9;
    if (const auto deviceClass = hexNumber(valueOf(facts.attributes, "bDeviceClass"), 2))
        return *deviceClass == hubClass;
    // The kernel's TYPE is class/subclass/protocol in decimal.
    const std::string_view type = valueOf(facts.properties, "TYPE");
    const auto deviceClass = decimalNumber(type.substr(0, type.find('/')));
    return deviceClass && *deviceClass == hubClass;
}

bool isRootHub(const UsbDeviceFacts& facts, const std::optional<UsbIds>& ids)
{
    // The kernel names a controller's own hub after its bus ("usb3"); devices are "3-1.2".
    if (facts.sysName.starts_with("usb"))
        return true;
    constexpr std::uint16_t linuxFoundation = 0x1d6b;
    return ids && ids->vendor == linuxFoundation && ids->product >= 1 && ids->product <= 3;
}

// The database names companies as registered ("Logitech, Inc."); the list names them as people
// do.
std::string withoutCompanySuffix(std::string name)
{
    static constexpr std::array<std::string_view, 9> suffixes = {
        "Inc.", "Inc", "Ltd.", "Ltd", "Co.", "Corp.", "Corp", "Corporation", "LLC"};
    for (bool changed = true; changed;) {
        changed = false;
        for (std::string_view suffix : suffixes) {
            if (name.size() <= suffix.size() + 1 || !name.ends_with(suffix))
                continue;
            const char before = name[name.size() - suffix.size() - 1];
            if (before != ' ' && before != ',')
                continue;
            name.resize(name.size() - suffix.size());
            while (!name.empty() && (name.back() == ' ' || name.back() == ','))
                name.pop_back();
            changed = true;
        }
    }
    return name;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix)
{
    if (prefix.size() > text.size())
        return false;
    return std::equal(prefix.begin(), prefix.end(), text.begin(), [](char a, char b) {
        auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
        return lower(a) == lower(b);
    });
}

void appendUtf8(std::string& out, char32_t c)
{
    if (c < 0x80) {
        out += char(c);
    } else if (c < 0x800) {
        out += char(0xC0 | (c >> 6));
        out += char(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += char(0xE0 | (c >> 12));
        out += char(0x80 | ((c >> 6) & 0x3F));
        out += char(0x80 | (c & 0x3F));
    } else {
        out += char(0xF0 | (c >> 18));
        out += char(0x80 | ((c >> 12) & 0x3F));
        out += char(0x80 | ((c >> 6) & 0x3F));
        out += char(0x80 | (c & 0x3F));
    }
}

bool isControl(char32_t c)
{
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029;
}

// Marks, embeddings, overrides and isolates: in a name they would reorder the text around it.
bool turnsDirection(char32_t c)
{
    return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF;
}

} // namespace

std::optional<UsbIds> usbIdsOf(const UsbDeviceFacts& facts)
{
    if (auto ids =
            idsFrom(valueOf(facts.attributes, "idVendor"), valueOf(facts.attributes, "idProduct")))
        return ids;
    if (auto ids = idsFrom(valueOf(facts.properties, "ID_VENDOR_ID"),
                           valueOf(facts.properties, "ID_MODEL_ID")))
        return ids;
    const std::string_view product = valueOf(facts.properties, "PRODUCT");
    const std::size_t slash = product.find('/');
    if (slash == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = product.substr(slash + 1);
    return idsFrom(product.substr(0, slash), rest.substr(0, rest.find('/')));
}

std::string hardwareDatabaseKey(UsbIds ids)
{
    char key[16];
    std::snprintf(key, sizeof key, "usb:v%04Xp%04X", unsigned(ids.vendor), unsigned(ids.product));
    return key;
}

std::optional<UsbDevice> usbDeviceFrom(const UsbDeviceFacts& facts)
{
    const auto ids = usbIdsOf(facts);
    if (isRootHub(facts, ids) || isHub(facts))
        return std::nullopt;

    std::string vendor = withoutCompanySuffix(
        cleanDeviceText(valueOf(facts.properties, "ID_VENDOR_FROM_DATABASE"), partLength));
    if (vendor.empty())
        vendor = cleanDeviceText(valueOf(facts.attributes, "manufacturer"), partLength);
    std::string model =
        cleanDeviceText(valueOf(facts.properties, "ID_MODEL_FROM_DATABASE"), partLength);
    if (model.empty())
        model = cleanDeviceText(valueOf(facts.attributes, "product"), partLength);

    std::string name;
    if (model.empty())
        name = vendor;
    else if (vendor.empty() || startsWithIgnoringCase(model, vendor))
        name = model;
    else
        name = vendor + " " + model;

    UsbDevice device;
    device.id = facts.path;
    device.name = cleanDeviceText(name, nameLength);
    if (ids) {
        char text[10];
        std::snprintf(text, sizeof text, "%04x:%04x", unsigned(ids->vendor),
                      unsigned(ids->product));
        device.ids = text;
    }
    return device;
}

std::string cleanDeviceText(std::string_view text, std::size_t maxCharacters)
{
    std::string out;
    std::size_t characters = 0;
    bool pendingSpace = false;
    for (std::size_t at = 0; at < text.size();) {
        // A byte that does not start well-formed UTF-8 stands for itself, as U+FFFD.
        const auto decoded = decodeUtf8At(text, at);
        at += decoded ? decoded->length : 1;
        const char32_t c = decoded ? decoded->codePoint : U'\uFFFD';
        if (turnsDirection(c))
            continue;
        if (c == ' ' || isControl(c)) {
            pendingSpace = characters > 0;
            continue;
        }
        if (characters + (pendingSpace ? 1 : 0) >= maxCharacters) {
            out += "…";
            return out;
        }
        if (pendingSpace) {
            out += ' ';
            ++characters;
            pendingSpace = false;
        }
        appendUtf8(out, c);
        ++characters;
    }
    return out;
}

} // namespace navro
