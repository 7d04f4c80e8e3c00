#include "notch/ActivityVariant.h"

#include "app/QtText.h"

#include <QDateTime>

namespace navro {
namespace {

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
    return {{QStringLiteral("id"), toQString(toast.id)},
            {QStringLiteral("symbol"), toQString(toast.symbol)},
            {QStringLiteral("title"), toQString(toast.title)},
            {QStringLiteral("detail"), toQString(toast.detail)},
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
        map = {{QStringLiteral("id"), toQString(meeting->id)},
               {QStringLiteral("title"), toQString(meeting->title)},
               {QStringLiteral("start"), dateTime(meeting->start)},
               {QStringLiteral("end"), dateTime(meeting->end)},
               {QStringLiteral("isAllDay"), meeting->isAllDay},
               {QStringLiteral("calendarName"), toQString(meeting->calendarName)},
               {QStringLiteral("colour"), colourText(meeting->colour)},
               {QStringLiteral("location"), toQString(meeting->location.value_or(""))},
               {QStringLiteral("joinLink"), toQString(meeting->joinLink.value_or(""))}};
    }
    if (auto prayer = activity->prayer()) {
        map.insert(QStringLiteral("prayer"), toQString(rawValue(*prayer)));
        map.insert(QStringLiteral("titleEnglish"), toQString(title(*prayer).english));
        map.insert(QStringLiteral("titleArabic"), toQString(title(*prayer).arabic));
    }
    if (auto time = activity->prayerTime())
        map.insert(QStringLiteral("time"), dateTime(*time));
    map.insert(QStringLiteral("kind"), toQString(rawValue(activity->kind())));
    return map;
}

QVariantMap toVariantMap(const std::optional<Toast>& toast)
{
    return toast ? toastFields(*toast) : QVariantMap();
}

} // namespace navro
