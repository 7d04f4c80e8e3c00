#include "ViewsFixture.h"

#include <QDate>
#include <QDateTime>
#include <QVariantList>
#include <QVariantMap>

namespace navro {
namespace {

// The days a month's grid shows, as the calendar tab and the deadline picker lay them out.
class MonthDaysTest : public ViewsFixture {
protected:
    MonthDaysTest()
    {
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nimport Navro\nMonthDays {}", QUrl());
        grid.reset(component.create());
        EXPECT_TRUE(grid) << component.errorString().toStdString();
    }

    // The 42 days of `month` (1–12) with weeks from the locale's first day, today being `today`.
    std::vector<QDate> days(int year, int month, const char* locale, QDate today = {})
    {
        cells = shown(year, month, locale, today);
        std::vector<QDate> dates;
        for (const QVariant& cell : cells) {
            const QVariantMap fields = cell.toMap();
            dates.emplace_back(fields["year"].toInt(), fields["month"].toInt() + 1,
                               fields["day"].toInt());
        }
        return dates;
    }

    QVariantList shown(int year, int month, const char* locale, QDate today)
    {
        QVariant result;
        const QDateTime now = (today.isValid() ? today : QDate(2000, 1, 1)).startOfDay();
        QJSValue localeValue = engine.evaluate(QStringLiteral("Qt.locale('%1')").arg(locale));
        EXPECT_TRUE(grid && QMetaObject::invokeMethod(
                                grid.get(), "daysOf", Q_RETURN_ARG(QVariant, result),
                                Q_ARG(QVariant, year), Q_ARG(QVariant, month - 1),
                                Q_ARG(QVariant, localeValue.property("firstDayOfWeek").toInt()),
                                Q_ARG(QVariant, now)));
        return result.toList();
    }

    // Six whole weeks of consecutive days from `first`.
    static void expectSixWeeksFrom(const std::vector<QDate>& dates, QDate first)
    {
        ASSERT_EQ(dates.size(), 42u);
        for (std::size_t i = 0; i < dates.size(); ++i)
            EXPECT_EQ(dates[i], first.addDays(static_cast<qint64>(i))) << "cell " << i;
    }

    std::unique_ptr<QObject> grid;
    QVariantList cells;
};

// Six whole weeks of consecutive days from the locale's first day of the week, across the turn of
// a year and through a leap February. March 2026 begins on a Sunday: six days of February come
// before it where weeks begin on Monday, one (Saturday 28 February) where they begin on Saturday,
// as in Arabic, and a whole week where they begin on Sunday. June 2026 begins on a Monday, the
// first day of a British week: a whole week of May comes first, so that the grid never opens on the
// 1st.
TEST_F(MonthDaysTest, SixWeeksFromTheLocalesFirstDayBeforeTheMonth)
{
    struct Case {
        int year, month;
        const char* locale;
        QDate first;
    };
    for (const Case& c :
         {Case{2026, 3, "en_GB", QDate(2026, 2, 23)}, Case{2026, 3, "ar", QDate(2026, 2, 28)},
          Case{2026, 3, "en_US", QDate(2026, 2, 22)}, Case{2026, 6, "en_GB", QDate(2026, 5, 25)},
          Case{2027, 1, "en_US", QDate(2026, 12, 27)},
          Case{2028, 2, "en_GB", QDate(2028, 1, 31)}}) {
        SCOPED_TRACE(
            QStringLiteral("%1-%2 %3").arg(c.year).arg(c.month).arg(c.locale).toStdString());
        expectSixWeeksFrom(days(c.year, c.month, c.locale), c.first);
    }
}

// Today is marked once when its month is shown, and nowhere when it is not.
TEST_F(MonthDaysTest, TodayIsMarkedOnlyOnItsOwnDay)
{
    const auto dates = days(2026, 11, "en_GB", QDate(2026, 11, 24));
    int marked = 0;
    for (std::size_t i = 0; i < dates.size(); ++i) {
        if (cells[static_cast<qsizetype>(i)].toMap()["today"].toBool()) {
            ++marked;
            EXPECT_EQ(dates[i], QDate(2026, 11, 24));
        }
    }
    EXPECT_EQ(marked, 1);

    days(2026, 12, "en_GB", QDate(2026, 11, 24));
    for (const QVariant& cell : cells)
        EXPECT_FALSE(cell.toMap()["today"].toBool());
}

} // namespace
} // namespace navro
