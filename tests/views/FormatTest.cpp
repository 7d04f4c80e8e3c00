#include "ViewsFixture.h"

#include <QDateTime>
#include <QJSValue>
#include <QRegularExpression>
#include <QTimeZone>

namespace navro {
namespace {

class FormatTest : public ViewsFixture {
protected:
    // A Format function as the views call it; an invalid option is left out.
    QString call(const char* function, const QVariant& value, const QVariant& option)
    {
        QVariant result;
        EXPECT_TRUE(root && QMetaObject::invokeMethod(
                                root.get(), "callFormat", Q_RETURN_ARG(QVariant, result),
                                Q_ARG(QVariant, QString::fromLatin1(function)),
                                Q_ARG(QVariant, value), Q_ARG(QVariant, option)))
            << function;
        return result.toString();
    }
};

// One digit rule per language: the "ar" locale's own digits for every figure of the Arabic
// interface, whether it arrives written already or as a number, a time or a date. The rows switch
// the language of one engine, so each also checks that Format follows a live change.
TEST_F(FormatTest, FiguresUseTheDigitsOfTheInterfacesLanguage)
{
    const QDateTime afternoon(QDate(2026, 3, 1), QTime(15, 5));
    struct Case {
        const char* language;
        const char* function;
        QVariant first;
        QVariant second;
        QString expected;
    };
    const std::vector<Case> cases{
        {"english", "digits", "04:39", {}, "04:39"},
        {"arabic", "digits", "04:39", {}, "٠٤:٣٩"},
        {"arabic", "digits", "0.1.0", {}, "٠.١.٠"},
        // Letters and key names around the figures stay as they are.
        {"arabic", "digits", "Ctrl+Alt+L 2", {}, "Ctrl+Alt+L ٢"},
        {"english", "number", 0.15, 2, "0.15"},
        {"arabic", "number", 0.15, 2, "٠٫١٥"},
        {"arabic", "number", 7, {}, "٧"},
        {"english", "number", 1500, {}, "1,500"},
        {"arabic", "number", 1500, {}, "١٬٥٠٠"},
        {"english", "time", afternoon, {}, "3:05 PM"},
        // Arabic times run on the 24-hour clock, as prayer timetables write them.
        {"arabic", "time", afternoon, {}, "١٥:٠٥"},
        {"english", "twoDigits", 7, {}, "07"},
        {"arabic", "twoDigits", 7, {}, "٠٧"},
        {"arabic", "twoDigits", 42, {}, "٤٢"},
        // Typed figures are read in either kind of digits (and the Persian forms), whatever
        // the language.
        {"english", "read", "٤٥", {}, "45"},
        {"arabic", "read", "12", {}, "12"},
        {"arabic", "read", "۰۹", {}, "9"},
        {"arabic", "read", "١a", {}, "nan"},
        {"english", "date", afternoon, "d MMMM yyyy", "1 March 2026"},
        {"arabic", "date", afternoon, "d MMMM yyyy", "١ مارس ٢٠٢٦"},
    };
    for (const Case& c : cases) {
        settings.setLanguageRaw(QString::fromLatin1(c.language));
        EXPECT_EQ(call(c.function, c.first, c.second), c.expected)
            << c.language << " " << c.function << "(" << c.first.toString().toStdString() << ")";
    }
}

TEST_F(FormatTest, AFieldOfMinutesTakesEitherKindOfDigitsAndADecimalMark)
{
    QVariant value = singleton("format")->property("minutesPattern");
    if (value.canConvert<QJSValue>())
        value = value.value<QJSValue>().toVariant();
    const QRegularExpression pattern = value.toRegularExpression();
    ASSERT_TRUE(pattern.isValid()) << pattern.errorString().toStdString();
    for (const QString& typed :
         {u"45"_qs, u"٤٥"_qs, u"۴۵"_qs, u"1.5"_qs, u"1,25"_qs, u"١٫٥"_qs, u"1440"_qs, u""_qs})
        EXPECT_TRUE(pattern.match(typed).hasMatch()) << typed.toStdString();
    for (const QString& typed : {u"12345"_qs, u"1.555"_qs, u"abc"_qs, u"-5"_qs, u"1..5"_qs})
        EXPECT_FALSE(pattern.match(typed).hasMatch()) << typed.toStdString();
}

} // namespace
} // namespace navro
