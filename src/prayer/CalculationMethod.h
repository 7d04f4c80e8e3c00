#pragma once

#include "app/BilingualText.h"

#include <array>
#include <optional>
#include <string_view>

namespace navro {

// Persisted by raw value (the case name) under the settings keys "prayerMethod" and "asrMethod".
enum class CalculationMethod {
    ummAlQura,
    gulf,
    jafari,
    muslimWorldLeague,
    egyptian,
    kuwait,
    qatar,
    karachi,
    isna
};

enum class AsrMethod { standard, hanafi };

inline constexpr std::array allCalculationMethods{
    CalculationMethod::ummAlQura, CalculationMethod::gulf,
    CalculationMethod::jafari,    CalculationMethod::muslimWorldLeague,
    CalculationMethod::egyptian,  CalculationMethod::kuwait,
    CalculationMethod::qatar,     CalculationMethod::karachi,
    CalculationMethod::isna};

inline constexpr std::array allAsrMethods{AsrMethod::standard, AsrMethod::hanafi};

std::string_view rawValue(CalculationMethod method);
std::string_view rawValue(AsrMethod method);
BilingualText title(CalculationMethod method);

// Exact, case-sensitive raw values only; callers choose their own fallback.
std::optional<CalculationMethod> calculationMethodFromRaw(std::string_view raw);
std::optional<AsrMethod> asrMethodFromRaw(std::string_view raw);

} // namespace navro
