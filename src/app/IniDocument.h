#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// One value of an INI file in the dialect QSettings writes, so that a settings file written by an
// earlier Navro (or by hand in that style) reads the same.
struct IniValue {
    enum class Kind {
        text,  // one string: the unescaped text
        other, // a list ("a, b") or a value of QSettings' own types ("@Variant(...)"): kept as
               // written, read as no string at all
    };
    Kind kind = Kind::text;
    std::string text; // UTF-8; for other, the value exactly as it stood in the file

    static IniValue plain(std::string text) { return {Kind::text, std::move(text)}; }
    bool operator==(const IniValue&) const = default;
};

// Keys of the [General] section are plain names; a key of any other section is "Section/name".
// std::map keeps them sorted, which is also the order QSettings writes them in.
using IniValues = std::map<std::string, IniValue>;

struct IniLine {
    int number = 0;      // from 1
    std::string excerpt; // escaped and cut, fit for a log line
};

struct IniDocument {
    IniValues values;
    // Lines that hold none of: a blank, a comment, a [section] or a key=value with well-formed
    // text (UTF-8, closed quotes, no dangling backslash). They are left out of values.
    std::vector<IniLine> unreadLines;
};

IniDocument parseIni(std::string_view text);

// The whole file: [General] first, then the other sections by name.
std::string writeIni(const IniValues& values);

} // namespace navro
