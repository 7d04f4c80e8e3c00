#pragma once

#include "app/BilingualText.h"

#include <array>
#include <optional>
#include <string_view>

namespace navro {

// The choices of the settings, persisted by raw value (the case name).
enum class AppLanguage { system, english, arabic };
enum class AppTheme { system, dark, light };
enum class OpenMode { hover, click };
enum class SettingsPage { general, prayer, calendars, about };

inline constexpr std::array allAppLanguages{AppLanguage::system, AppLanguage::english,
                                            AppLanguage::arabic};
inline constexpr std::array allAppThemes{AppTheme::system, AppTheme::dark, AppTheme::light};
inline constexpr std::array allOpenModes{OpenMode::hover, OpenMode::click};
inline constexpr std::array allSettingsPages{SettingsPage::general, SettingsPage::prayer,
                                             SettingsPage::calendars, SettingsPage::about};

std::string_view rawValue(AppLanguage language);
std::string_view rawValue(AppTheme theme);
std::string_view rawValue(OpenMode mode);
std::string_view rawValue(SettingsPage page);

BilingualText title(AppLanguage language);
BilingualText title(AppTheme theme);
BilingualText title(OpenMode mode);
BilingualText title(SettingsPage page);
// The sentence that explains an open mode to the user.
BilingualText description(OpenMode mode);

// Exact, case-sensitive raw values only; callers choose their own fallback.
std::optional<AppLanguage> appLanguageFromRaw(std::string_view raw);
std::optional<AppTheme> appThemeFromRaw(std::string_view raw);
std::optional<OpenMode> openModeFromRaw(std::string_view raw);
std::optional<SettingsPage> settingsPageFromRaw(std::string_view raw);

} // namespace navro
