.pragma library

// Figures written with the digits of the interface language's locale ("ar" uses the Arabic-Indic
// ones), and read back from either.
function write(value, arabic) {
    var text = String(value);
    if (!arabic)
        return text;
    var zero = Qt.locale("ar").zeroDigit.charCodeAt(0);
    return text.replace(/[0-9]/g, function (digit) {
        return String.fromCharCode(zero + Number(digit));
    });
}

function twoDigits(value, arabic) {
    return write(value < 10 ? "0" + value : String(value), arabic);
}

function read(text) {
    return Number(String(text).replace(/[\u0660-\u0669\u06f0-\u06f9]/g, function (digit) {
        return String((digit.charCodeAt(0) - 0x0660) % 0x90);
    }));
}
