#pragma once

#include "notch/ClosedActivity.h"

#include <QVariantMap>

namespace navro {

// The activity as QML reads it: "kind" ("" for none) plus the payload's fields.
//   toast: id, symbol, title, detail, tint ("" or "#rrggbb")
//   meeting: id, title, start, end (QDateTime), isAllDay, calendarName, colour, location, joinLink
//   prayerSoon: prayer, time (QDateTime); prayerNow: prayer
QVariantMap toVariantMap(const std::optional<ClosedActivity>& activity);
QVariantMap toVariantMap(const std::optional<Toast>& toast);

} // namespace navro
