#include "data/FocusShortcuts.h"

#include "app/Log.h"

#include <algorithm>
#include <cctype>
#include <unistd.h>

namespace navro {
namespace {

bool lessIgnoringCase(const std::string& a, const std::string& b)
{
    const auto lower = [](unsigned char c) { return std::tolower(c); };
    const bool less = std::lexicographical_compare(
        a.begin(), a.end(), b.begin(), b.end(),
        [&](unsigned char x, unsigned char y) { return lower(x) < lower(y); });
    const bool greater = std::lexicographical_compare(
        b.begin(), b.end(), a.begin(), a.end(),
        [&](unsigned char x, unsigned char y) { return lower(x) < lower(y); });
    // Names equal but for case keep one fixed order.
    return less || (!greater && a < b);
}

} // namespace

std::vector<std::string> listFocusShortcuts(const std::filesystem::path& folder)
{
    namespace fs = std::filesystem;
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    if (error && error == std::errc::no_such_file_or_directory)
        return names;
    // Advancing with an error code: a folder that fails half way lists what was read so far,
    // and nothing here throws.
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.empty() || name.front() == '.')
            continue;
        // status() follows a link to the program it names; a dangling link is no action.
        std::error_code statusError;
        const fs::file_status status = entry->status(statusError);
        if (statusError || !fs::is_regular_file(status))
            continue;
        if (::access(entry->path().c_str(), X_OK) != 0)
            continue;
        names.push_back(name);
    }
    if (error)
        logLine("could not list the focus actions in " + excerptForLog(folder.string()) + ": " +
                error.message());
    std::sort(names.begin(), names.end(), lessIgnoringCase);
    return names;
}

bool isFocusShortcutName(std::string_view name)
{
    return !name.empty() && name != "." && name != ".." &&
           name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

} // namespace navro
