#include "calendar/CalendarSource.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <algorithm>
#include <array>
#include <system_error>

namespace navro {
namespace {

constexpr std::array kinds{CalendarSource::Kind::link, CalendarSource::Kind::file,
                           CalendarSource::Kind::evolution};

} // namespace

QString rawValue(CalendarSource::Kind kind)
{
    switch (kind) {
    case CalendarSource::Kind::link:
        return QStringLiteral("link");
    case CalendarSource::Kind::file:
        return QStringLiteral("file");
    case CalendarSource::Kind::evolution:
        return QStringLiteral("evolution");
    }
    return {};
}

std::vector<CalendarSource> decodeCalendarSources(const QString& json, bool* malformed)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8(), &error);
    if (malformed)
        *malformed = error.error != QJsonParseError::NoError || !document.isArray();
    std::vector<CalendarSource> sources;
    for (const QJsonValue& value : document.array()) {
        const QJsonObject object = value.toObject();
        CalendarSource source;
        source.id = object.value(QStringLiteral("id")).toString();
        source.location = object.value(QStringLiteral("location")).toString();
        source.name = object.value(QStringLiteral("name")).toString();
        source.enabled = object.value(QStringLiteral("enabled")).toBool(true);
        const QString kind = object.value(QStringLiteral("kind")).toString();
        const auto found = std::find_if(kinds.begin(), kinds.end(), [&](auto candidate) {
            return rawValue(candidate) == kind;
        });
        const bool duplicate = std::any_of(sources.begin(), sources.end(), [&](const auto& other) {
            return other.id == source.id;
        });
        if (found == kinds.end() || source.id.isEmpty() || source.location.isEmpty() || duplicate)
            continue;
        source.kind = *found;
        sources.push_back(std::move(source));
    }
    return sources;
}

QString encodeCalendarSources(const std::vector<CalendarSource>& sources)
{
    QJsonArray array;
    for (const CalendarSource& source : sources)
        array.append(QJsonObject{{QStringLiteral("id"), source.id},
                                 {QStringLiteral("kind"), rawValue(source.kind)},
                                 {QStringLiteral("location"), source.location},
                                 {QStringLiteral("name"), source.name},
                                 {QStringLiteral("enabled"), source.enabled}});
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

std::vector<CalendarSource> findEvolutionCalendars(const std::filesystem::path& dataHome)
{
    std::vector<CalendarSource> found;
    std::error_code error;
    const auto folder = dataHome / "evolution" / "calendar";
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        const auto file = entry.path() / "calendar.ics";
        if (!std::filesystem::is_regular_file(file, error))
            continue;
        const QString name = QString::fromStdString(entry.path().filename().string());
        found.push_back({QStringLiteral("evolution:") + name, CalendarSource::Kind::evolution,
                         QString::fromStdString(file.string()), QString(), true});
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    return found;
}

QString subscriptionAddress(const QString& typed)
{
    QUrl url(typed.trimmed(), QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    if (url.host().isEmpty() ||
        (scheme != QLatin1String("http") && scheme != QLatin1String("https") &&
         scheme != QLatin1String("webcal")))
        return {};
    // webcal:// is how calendars advertise a subscription; the document itself is on https.
    if (scheme == QLatin1String("webcal"))
        url.setScheme(QStringLiteral("https"));
    return url.toString(QUrl::FullyEncoded);
}

} // namespace navro
