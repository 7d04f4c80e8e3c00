#include "data/RecentCaptures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>

namespace navro {
namespace {

using namespace std::chrono;

// 2001-01-01 00:00:00 UTC, the origin of the file's times, in Unix milliseconds.
constexpr std::int64_t referenceDateMs = 978307200000;
constexpr double furthestSeconds = 1e12;

std::string_view rawValue(CaptureKind kind)
{
    return kind == CaptureKind::screenshot ? "screenshot" : "recording";
}

std::optional<Capture> readCapture(const QJsonValue& value)
{
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    const QJsonValue path = object.value(QLatin1StringView("path"));
    const QJsonValue kind = object.value(QLatin1StringView("kind"));
    const QJsonValue date = object.value(QLatin1StringView("date"));
    if (!path.isString() || !kind.isString() || !date.isDouble())
        return std::nullopt;
    Capture capture;
    capture.path = path.toString().toStdString();
    if (capture.path.empty() || capture.path.front() != '/')
        return std::nullopt;
    if (kind.toString() == u"screenshot")
        capture.kind = CaptureKind::screenshot;
    else if (kind.toString() == u"recording")
        capture.kind = CaptureKind::recording;
    else
        return std::nullopt;
    const double seconds = date.toDouble();
    if (!(std::abs(seconds) <= furthestSeconds))
        return std::nullopt;
    capture.date = WallTime(milliseconds(std::llround(seconds * 1000.0) + referenceDateMs));
    return capture;
}

} // namespace

void addRecentCapture(std::vector<Capture>& list, Capture capture, std::size_t limit)
{
    std::erase_if(list, [&](const Capture& entry) { return entry.path == capture.path; });
    list.insert(list.begin(), std::move(capture));
    if (list.size() > limit)
        list.resize(limit);
}

std::string encodeRecentCaptures(const std::vector<Capture>& list)
{
    QJsonArray captures;
    for (const Capture& capture : list)
        captures.append(QJsonObject{
            {QStringLiteral("path"), QString::fromStdString(capture.path)},
            {QStringLiteral("kind"), QString::fromLatin1(rawValue(capture.kind))},
            {QStringLiteral("date"),
             double(capture.date.time_since_epoch().count() - referenceDateMs) / 1000.0},
        });
    return QJsonDocument(QJsonObject{{QStringLiteral("captures"), captures}})
        .toJson(QJsonDocument::Compact)
        .toStdString();
}

RecentCapturesDecoding decodeRecentCaptures(std::string_view bytes)
{
    RecentCapturesDecoding result;
    QJsonParseError parseError{};
    const QJsonDocument json = QJsonDocument::fromJson(
        QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size())), &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        result.error = "not JSON (" + parseError.errorString().toStdString() + ")";
        return result;
    }
    const QJsonValue list = json.object().value(QLatin1StringView("captures"));
    if (!json.isObject() || !(list.isArray() || list.isUndefined())) {
        result.error = "not a list of captures";
        return result;
    }
    std::vector<Capture> captures;
    std::set<std::string> paths;
    for (const QJsonValue& entry : list.toArray()) {
        auto capture = readCapture(entry);
        if (capture && paths.insert(capture->path).second)
            captures.push_back(std::move(*capture));
        if (captures.size() == recentCapturesLimit)
            break;
    }
    result.captures = std::move(captures);
    return result;
}

std::string captureFileName(CaptureKind kind, const LocalMoment& moment, int attempt)
{
    char text[96];
    std::snprintf(text, sizeof text, "%s %04d-%02d-%02d at %02d.%02d.%02d",
                  kind == CaptureKind::screenshot ? "Screenshot" : "Recording", moment.year,
                  moment.month, moment.day, moment.hour, moment.minute, moment.second);
    std::string name = text;
    if (attempt > 1)
        name += " (" + std::to_string(attempt) + ")";
    return name + (kind == CaptureKind::screenshot ? ".png" : ".mp4");
}

} // namespace navro
