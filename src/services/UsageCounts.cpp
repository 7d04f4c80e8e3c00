#include "services/UsageCounts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <algorithm>

namespace navro {
namespace {

constexpr int maxCount = 1000000;
constexpr qsizetype maxNamesPerDay = 64;

QString text(std::string_view value)
{
    return QString::fromUtf8(value.data(), qsizetype(value.size()));
}

QJsonObject countsObject(const std::map<std::string, int>& counts)
{
    QJsonObject object;
    for (const auto& [name, count] : counts)
        object.insert(text(name), count);
    return object;
}

QJsonObject dayObject(const UsageDay& day)
{
    return QJsonObject{
        {QStringLiteral("date"), text(day.date)},
        {QStringLiteral("launches"), day.launches},
        {QStringLiteral("tabsOpened"), countsObject(day.tabsOpened)},
        {QStringLiteral("featuresUsed"), countsObject(day.featuresUsed)},
        {QStringLiteral("language"), text(day.language)},
    };
}

bool isCount(const QJsonValue& value)
{
    return value.isDouble() && value.toDouble() >= 0 && value.toDouble() <= maxCount &&
           value.toDouble() == double(value.toInt());
}

bool isDate(const QString& date)
{
    static const QRegularExpression pattern(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}$"));
    return pattern.match(date).hasMatch();
}

std::optional<std::map<std::string, int>> readCounts(const QJsonValue& value)
{
    if (!value.isObject() || value.toObject().size() > maxNamesPerDay)
        return std::nullopt;
    std::map<std::string, int> counts;
    const QJsonObject object = value.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        const std::string name = entry.key().toStdString();
        if (!isUsageName(name) || !isCount(entry.value()))
            return std::nullopt;
        counts[name] = entry.value().toInt();
    }
    return counts;
}

std::optional<UsageDay> readDay(const QJsonValue& value)
{
    const QJsonObject object = value.toObject();
    const QString date = object.value(QStringLiteral("date")).toString();
    const QJsonValue launches = object.value(QStringLiteral("launches"));
    const QString language = object.value(QStringLiteral("language")).toString();
    auto tabs = readCounts(object.value(QStringLiteral("tabsOpened")));
    auto features = readCounts(object.value(QStringLiteral("featuresUsed")));
    if (!value.isObject() || !isDate(date) || !isCount(launches) || !tabs || !features ||
        (language != QLatin1String("english") && language != QLatin1String("arabic")))
        return std::nullopt;
    return UsageDay{date.toStdString(), launches.toInt(), std::move(*tabs), std::move(*features),
                    language.toStdString()};
}

} // namespace

bool isUsageName(std::string_view name)
{
    return !name.empty() && name.size() <= maxUsageNameBytes &&
           std::all_of(name.begin(), name.end(), [](char c) {
               return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
           });
}

UsageDay& UsageRecord::day(const std::string& date)
{
    const auto found = std::find_if(days.begin(), days.end(),
                                    [&](const UsageDay& day) { return day.date == date; });
    if (found != days.end())
        return *found;
    if (days.size() >= maxUsageDays)
        days.erase(days.begin(), days.begin() + std::ptrdiff_t(days.size() - maxUsageDays + 1));
    days.push_back(UsageDay{date, 0, {}, {}, "english"});
    return days.back();
}

std::string encodeUsageRecord(const UsageRecord& record)
{
    QJsonArray days;
    for (const UsageDay& day : record.days)
        days.append(dayObject(day));
    const QJsonObject object{{QStringLiteral("days"), days},
                             {QStringLiteral("lastSent"), text(record.lastSent)}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

UsageRecordDecoding decodeUsageRecord(std::string_view bytes)
{
    QJsonParseError error;
    const QJsonDocument document =
        QJsonDocument::fromJson(QByteArray(bytes.data(), qsizetype(bytes.size())), &error);
    if (error.error != QJsonParseError::NoError)
        return {std::nullopt, "not JSON (" + error.errorString().toStdString() + ")"};
    const QJsonObject object = document.object();
    const QJsonValue days = object.value(QStringLiteral("days"));
    const QJsonValue lastSent = object.value(QStringLiteral("lastSent"));
    if (!document.isObject() || !days.isArray() || days.toArray().size() > qsizetype(maxUsageDays))
        return {std::nullopt, "no list of at most " + std::to_string(maxUsageDays) + " days"};
    if (!lastSent.isString() || (!lastSent.toString().isEmpty() && !isDate(lastSent.toString())))
        return {std::nullopt, "\"lastSent\" is no date"};
    UsageRecord record;
    record.lastSent = lastSent.toString().toStdString();
    for (const QJsonValue& value : days.toArray()) {
        auto day = readDay(value);
        if (!day)
            return {std::nullopt, "a day's counts are damaged"};
        const bool repeated =
            std::any_of(record.days.begin(), record.days.end(),
                        [&](const UsageDay& kept) { return kept.date == day->date; });
        if (repeated)
            return {std::nullopt, "the day " + day->date + " is there twice"};
        record.days.push_back(std::move(*day));
    }
    return {std::move(record), {}};
}

std::string usageReport(const std::vector<UsageDay>& days, std::string_view version)
{
    QJsonArray list;
    for (const UsageDay& day : days)
        list.append(dayObject(day));
    const QJsonObject report{{QStringLiteral("application"), QStringLiteral("Navro")},
                             {QStringLiteral("version"), text(version)},
                             {QStringLiteral("platform"), QStringLiteral("linux")},
                             {QStringLiteral("days"), list}};
    return QJsonDocument(report).toJson(QJsonDocument::Indented).toStdString();
}

} // namespace navro
