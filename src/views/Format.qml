pragma Singleton
import QtQuick

// How figures read in the interface's language. In Arabic every number, time and date is written
// with the "ar" locale's own digits; every view that shows one goes through here, so the rule
// lives in one place.
QtObject {
    readonly property bool arabic: settings.isArabic
    readonly property var arabicLocale: Qt.locale("ar")
    readonly property var englishLocale: Qt.locale("en_US")
    readonly property var locale: arabic ? arabicLocale : englishLocale

    // `text` with its Western digits in the interface's own: for figures that arrive written
    // already (a clock time from a service, a version number, a key name stays as it is).
    function digits(text) {
        const value = String(text);
        if (!arabic)
            return value;
        const zero = arabicLocale.zeroDigit.charCodeAt(0);
        return value.replace(/[0-9]/g, (digit) => String.fromCharCode(zero + digit.charCodeAt(0) - 48));
    }

    // A whole number on at least two places, as an hour or a minute is shown in a field.
    function twoDigits(value) {
        return digits(value < 10 ? "0" + value : String(value));
    }

    // What a field of minutes lets the user type: up to four figures in either kind of digits,
    // and up to two decimals after a point, a comma or the Arabic decimal mark. The characters
    // are written as themselves: the validator hands the pattern to PCRE, which reads no "\u"
    // escapes (with them the pattern is invalid and every keystroke refused).
    readonly property var minutesPattern: /^[0-9٠-٩۰-۹]{0,4}([.,٫][0-9٠-٩۰-۹]{0,2})?$/

    // What the user typed, in either kind of digits, as a number (NaN if it is not one).
    function read(text) {
        return Number(String(text).replace(/[\u0660-\u0669\u06f0-\u06f9]/g,
                                           (digit) => String((digit.charCodeAt(0) - 0x0660) % 0x90)));
    }

    // A number with `decimals` places (none unless given) and the language's decimal mark.
    function number(value, decimals) {
        return digits(Number(value).toLocaleString(locale, "f", decimals === undefined ? 0 : decimals));
    }

    // A clock time: "3:05 PM" in English, "١٥:٠٥" in Arabic (the 24-hour clock, as prayer
    // timetables write it).
    function time(value) {
        return digits(Qt.formatTime(value, arabic ? "h:mm" : "h:mm AP"));
    }

    // A date in the language's own words and digits; `format` as for Date.toLocaleDateString.
    function date(value, format) {
        return digits(value.toLocaleDateString(locale, format === undefined ? Locale.LongFormat : format));
    }

    // A size in bytes the way file managers write it: "1.5 GB", "١٫٥ غيغابايت".
    function bytes(value) {
        const units = arabic ? ["بايت", "كيلوبايت", "ميغابايت", "غيغابايت", "تيرابايت"]
                             : ["B", "KB", "MB", "GB", "TB"];
        let size = Math.max(0, Number(value));
        let unit = 0;
        while (size >= 1000 && unit < units.length - 1) {
            size /= 1000;
            ++unit;
        }
        return number(size, unit === 0 || size >= 100 ? 0 : 1) + " " + units[unit];
    }

    // A length of time in hours and minutes: "2 h 05 min", "٢ س ٠٥ د".
    function duration(seconds) {
        const minutes = Math.round(Math.max(0, seconds) / 60);
        const hours = Math.floor(minutes / 60);
        const rest = minutes % 60;
        if (hours === 0)
            return digits(String(rest)) + (arabic ? " د" : " min");
        return digits(String(hours)) + (arabic ? " س " : " h ") + twoDigits(rest) + (arabic ? " د" : " min");
    }
}
