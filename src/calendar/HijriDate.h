#pragma once

#include <string>
#include <string_view>

namespace navro {

// The civil date year-month-day on the Umm al-Qura calendar, written with the ICU date pattern
// `pattern` ("d MMMM y" …) in English or in Arabic (with Arabic digits). Empty when ICU cannot.
std::string formatHijriDate(int year, int month, int day, bool arabic, std::string_view pattern);

} // namespace navro
