#include "ViewModels/Texts/AccessibilityTexts.h"

namespace kestrova {

using namespace Qt::StringLiterals;

bool isAccessibilityAvailable(const AppState &state)
{
    return state.accessibility.get() != Access::unavailable;
}

bool canAskForAccessibility(const AppState &state)
{
    const Access access = state.accessibility.get();
    return access == Access::denied || access == Access::notAsked;
}

QString accessibilityDetail(const AppState &state)
{
    if (!isAccessibilityAvailable(state))
        return u"Not possible on this desktop"_s;
    return state.permissions.get().accessibilityAuthorized ? u"Permission granted"_s
                                                           : u"Permission needed for auto paste"_s;
}

QString accessibilityExplanation(const AppState &state)
{
    if (!isAccessibilityAvailable(state))
        return u"This desktop does not let programs observe the keyboard and paste into other "
               "applications."_s;
    return u"Accessibility permission is required for reliable auto-paste into your active app."_s;
}

} // namespace kestrova
