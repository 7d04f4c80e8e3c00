#include "app/SettingsEnums.h"

#include "app/RawValue.h"

namespace navro {
std::string_view rawValue(AppLanguage language)
{
    switch (language) {
    case AppLanguage::system:
        return "system";
    case AppLanguage::english:
        return "english";
    case AppLanguage::arabic:
        return "arabic";
    }
    return "system";
}

std::string_view rawValue(AppTheme theme)
{
    switch (theme) {
    case AppTheme::system:
        return "system";
    case AppTheme::dark:
        return "dark";
    case AppTheme::light:
        return "light";
    }
    return "system";
}

std::string_view rawValue(OpenMode mode)
{
    switch (mode) {
    case OpenMode::hover:
        return "hover";
    case OpenMode::click:
        return "click";
    }
    return "hover";
}

std::string_view rawValue(SettingsPage page)
{
    switch (page) {
    case SettingsPage::general:
        return "general";
    case SettingsPage::prayer:
        return "prayer";
    case SettingsPage::calendars:
        return "calendars";
    case SettingsPage::about:
        return "about";
    }
    return "general";
}

BilingualText title(AppLanguage language)
{
    // A language is offered under its own name, so a user who cannot read the current interface
    // still finds theirs.
    switch (language) {
    case AppLanguage::system:
        return {"System", "لغة النظام"};
    case AppLanguage::english:
        return {"English", "English"};
    case AppLanguage::arabic:
        return {"العربية", "العربية"};
    }
    return {"System", "لغة النظام"};
}

BilingualText title(AppTheme theme)
{
    switch (theme) {
    case AppTheme::system:
        return {"System", "حسب النظام"};
    case AppTheme::dark:
        return {"Dark", "داكن"};
    case AppTheme::light:
        return {"Light", "فاتح"};
    }
    return {"System", "حسب النظام"};
}

BilingualText title(OpenMode mode)
{
    switch (mode) {
    case OpenMode::hover:
        return {"Hover", "عند المرور"};
    case OpenMode::click:
        return {"Click", "عند النقر"};
    }
    return {"Hover", "عند المرور"};
}

BilingualText title(SettingsPage page)
{
    switch (page) {
    case SettingsPage::general:
        return {"General", "عام"};
    case SettingsPage::prayer:
        return {"Prayer", "الصلاة"};
    case SettingsPage::calendars:
        return {"Calendars", "التقويمات"};
    case SettingsPage::about:
        return {"About", "حول"};
    }
    return {"General", "عام"};
}

BilingualText description(OpenMode mode)
{
    switch (mode) {
    case OpenMode::hover:
        return {"Opens when you rest the pointer on it", "يُفتح عند وضع المؤشر عليه"};
    case OpenMode::click:
        return {"Stays closed until you click it", "يبقى مغلقاً حتى تنقر عليه"};
    }
    return {"Opens when you rest the pointer on it", "يُفتح عند وضع المؤشر عليه"};
}

std::optional<AppLanguage> appLanguageFromRaw(std::string_view raw)
{
    return fromRaw(allAppLanguages, raw);
}

std::optional<AppTheme> appThemeFromRaw(std::string_view raw)
{
    return fromRaw(allAppThemes, raw);
}

std::optional<OpenMode> openModeFromRaw(std::string_view raw)
{
    return fromRaw(allOpenModes, raw);
}

std::optional<SettingsPage> settingsPageFromRaw(std::string_view raw)
{
    return fromRaw(allSettingsPages, raw);
}

} // namespace navro
