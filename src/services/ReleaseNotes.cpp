#include "services/ReleaseNotes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace navro {
namespace {

std::optional<std::vector<std::string>> lines(const QJsonValue& value)
{
    if (!value.isArray())
        return std::nullopt;
    std::vector<std::string> result;
    for (const QJsonValue& line : value.toArray()) {
        if (!line.isString())
            return std::nullopt;
        result.push_back(line.toString().toStdString());
    }
    return result;
}

} // namespace

std::vector<ReleaseNotes> parseReleaseNotes(std::string_view bytes)
{
    const QJsonDocument document =
        QJsonDocument::fromJson(QByteArray(bytes.data(), qsizetype(bytes.size())));
    std::vector<ReleaseNotes> notes;
    const QJsonObject versions = document.object();
    for (auto entry = versions.begin(); entry != versions.end(); ++entry) {
        const auto version = VersionNumber::parse(entry.key().toStdString());
        const QJsonObject languages = entry.value().toObject();
        auto english = lines(languages.value(QStringLiteral("en")));
        auto arabic = lines(languages.value(QStringLiteral("ar")));
        if (version && english && arabic)
            notes.push_back({*version, std::move(*english), std::move(*arabic)});
    }
    std::sort(notes.begin(), notes.end(),
              [](const ReleaseNotes& a, const ReleaseNotes& b) { return b.version < a.version; });
    return notes;
}

std::vector<ReleaseNotes> notesToShow(const std::vector<ReleaseNotes>& notes,
                                      std::string_view lastSeen, std::string_view running)
{
    const auto now = VersionNumber::parse(running);
    if (lastSeen.empty() || !now)
        return {};
    const auto before = VersionNumber::parse(lastSeen);
    if (before && *before == *now)
        return {};
    // After an update every version passed on the way counts; after a downgrade (or with a
    // record that is no version) the user is on a version whose notes are the only ones that
    // describe what they have now.
    const bool updated = before && *before < *now;
    std::vector<ReleaseNotes> shown;
    for (const ReleaseNotes& entry : notes) {
        const bool wanted =
            updated ? *before < entry.version && !(*now < entry.version) : entry.version == *now;
        if (wanted)
            shown.push_back(entry);
    }
    return shown;
}

} // namespace navro
