#include "notch/ActivityVariant.h"

#include <QDateTime>

namespace navro {
namespace {

QString text(std::string_view value)
{
    return QString::fromUtf8(value.data(), qsizetype(value.size()));
}

QString colourText(const std::optional<std::uint32_t>& colour)
{
    if (!colour)
        return {};
    return QStringLiteral("#%1").arg(*colour & 0xffffffu, 6, 16, QLatin1Char('0'));
}

QDateTime dateTime(WallTime time)
{
    return QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count());
}

QVariantMap toastFields(const Toast& toast)
{
    return {{QStringLiteral("id"), text(toast.id)},
            {QStringLiteral("symbol"), text(toast.symbol)},
            {QStringLiteral("title"), text(toast.title)},
            {QStringLiteral("detail"), text(toast.detail)},
            {QStringLiteral("tint"), colourText(toast.tint)}};
}

} // namespace

QVariantMap toVariantMap(const std::optional<ClosedActivity>& activity)
{
    if (!activity)
        return {{QStringLiteral("kind"), QString()}};
    QVariantMap map;
    if (const Toast* toast = activity->toast())
        map = toastFields(*toast);
    if (const Meeting* meeting = activity->meeting()) {
        map = {{QStringLiteral("id"), text(meeting->id)},
               {QStringLiteral("title"), text(meeting->title)},
               {QStringLiteral("start"), dateTime(meeting->start)},
               {QStringLiteral("end"), dateTime(meeting->end)},
               {QStringLiteral("isAllDay"), meeting->isAllDay},
               {QStringLiteral("calendarName"), text(meeting->calendarName)},
               {QStringLiteral("colour"), colourText(meeting->colour)},
               {QStringLiteral("location"), text(meeting->location.value_or(""))},
               {QStringLiteral("joinLink"), text(meeting->joinLink.value_or(""))}};
    }
    if (auto prayer = activity->prayer())
        map.insert(QStringLiteral("prayer"), text(rawValue(*prayer)));
    if (auto time = activity->prayerTime())
        map.insert(QStringLiteral("time"), dateTime(*time));
    map.insert(QStringLiteral("kind"), text(rawValue(activity->kind())));
    return map;
}

QVariantMap toVariantMap(const std::optional<Toast>& toast)
{
    return toast ? toastFields(*toast) : QVariantMap();
}

} // namespace navro
