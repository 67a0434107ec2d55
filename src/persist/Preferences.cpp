#include "persist/Preferences.h"

namespace vortan {

std::span<const char* const> ChoiceTexts(Subprojects) {
    static constexpr const char* kTexts[] = {"One level only", "All subprojects", "Tasks only (flatten)"};
    return kTexts;
}

std::span<const char* const> ChoiceTexts(Arrows) {
    static constexpr const char* kTexts[] = {"None", "Control", "All"};
    return kTexts;
}

std::span<const char* const> ChoiceTexts(DateDeps) {
    static constexpr const char* kTexts[] = {"Line to top of chart", "Short arrow pointing up",
                                             "Triangle pointing right", "Do not show"};
    return kTexts;
}

}  // namespace vortan
