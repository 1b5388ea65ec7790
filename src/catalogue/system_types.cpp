#include "catalogue/system_types.h"

namespace brizalog {

std::string_view LogPrefix(int systemType) {
    return IsKnownSystemType(systemType) ? kSystemTypes[systemType].logPrefix : std::string_view{};
}

DecoderKind DecoderOf(int systemType) {
    return IsKnownSystemType(systemType) ? kSystemTypes[systemType].decoder : DecoderKind::None;
}

PowerRule PowerRuleOf(int systemType) {
    return IsKnownSystemType(systemType) ? kSystemTypes[systemType].power : PowerRule::None;
}

std::string_view MenuText(SystemMenu menu, int systemType) {
    if (!IsKnownSystemType(systemType)) {
        return {};
    }
    const SystemTypeInfo& info = kSystemTypes[systemType];
    switch (menu) {
        case SystemMenu::setsystem:
            return info.setsystemText;
        case SystemMenu::logging:
        case SystemMenu::display:
            return info.loggingText;
        case SystemMenu::logTOfile:
        case SystemMenu::graphing:
            return info.logTOfileText;
    }
    return {};
}

}  // namespace brizalog
