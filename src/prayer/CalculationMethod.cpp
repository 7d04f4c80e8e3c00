#include "prayer/CalculationMethod.h"

#include "app/RawValue.h"

namespace navro {

std::string_view rawValue(CalculationMethod method)
{
    switch (method) {
    case CalculationMethod::ummAlQura:
        return "ummAlQura";
    case CalculationMethod::gulf:
        return "gulf";
    case CalculationMethod::jafari:
        return "jafari";
    case CalculationMethod::muslimWorldLeague:
        return "muslimWorldLeague";
    case CalculationMethod::egyptian:
        return "egyptian";
    case CalculationMethod::kuwait:
        return "kuwait";
    case CalculationMethod::qatar:
        return "qatar";
    case CalculationMethod::karachi:
        return "karachi";
    case CalculationMethod::isna:
        return "isna";
    }
    return "ummAlQura";
}

std::string_view rawValue(AsrMethod method)
{
    return method == AsrMethod::hanafi ? "hanafi" : "standard";
}

BilingualText title(CalculationMethod method)
{
    switch (method) {
    case CalculationMethod::ummAlQura:
        return {"Umm al-Qura (Makkah)", "أم القرى (مكة)"};
    case CalculationMethod::gulf:
        return {"Gulf Region", "منطقة الخليج"};
    case CalculationMethod::jafari:
        return {"Jafari (Shia Ithna Ashari)", "الجعفري"};
    case CalculationMethod::muslimWorldLeague:
        return {"Muslim World League", "رابطة العالم الإسلامي"};
    case CalculationMethod::egyptian:
        return {"Egyptian General Authority", "الهيئة المصرية العامة"};
    case CalculationMethod::kuwait:
        return {"Kuwait", "الكويت"};
    case CalculationMethod::qatar:
        return {"Qatar", "قطر"};
    case CalculationMethod::karachi:
        return {"Karachi", "كراتشي"};
    case CalculationMethod::isna:
        return {"North America (ISNA)", "أمريكا الشمالية"};
    }
    return {};
}

std::optional<CalculationMethod> calculationMethodFromRaw(std::string_view raw)
{
    return fromRaw(allCalculationMethods, raw);
}

std::optional<AsrMethod> asrMethodFromRaw(std::string_view raw)
{
    return fromRaw(allAsrMethods, raw);
}

} // namespace navro
