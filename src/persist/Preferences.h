#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace vortan {

/// Which tasks of subprojects have a row on a chart; flat: no subprojects.
enum class Subprojects { OneLevel, All, Flat };
/// Which dependencies are drawn as arrows.
enum class Arrows { None, Control, All };
/// How a dependency on a date is drawn.
enum class DateDeps { LineToTop, ShortArrow, Triangle, Hidden };

/// The texts of the choices, in their order, on the screen and in the settings.
std::span<const char* const> ChoiceTexts(Subprojects);
std::span<const char* const> ChoiceTexts(Arrows);
std::span<const char* const> ChoiceTexts(DateDeps);

/// What the user has chosen in the preferences.
struct Preferences {
    std::int32_t backupMinutes = 0;   ///< between two backups; 0 for none
    std::string efficiency = "0.85";  ///< of new tasks, as it was typed
    bool projectManager = false;      ///< at the head of printouts
    bool adjustColors = false;        ///< for paper and clipboard
    bool wrapText = false;
    Arrows arrows = Arrows::Control;
    DateDeps dateDeps = DateDeps::LineToTop;
    bool sortByDate = false;
    bool allDeps = true;  ///< listed
    Subprojects subprojects = Subprojects::OneLevel;
    bool taskLeader = true;
    bool markers = true;                   ///< of the latest times
    bool milestones = false, bars = true;  ///< of the two one is on
    bool criticalRed = false;

    /// All with the names that they have in the settings, in the order in which they are shown.
    template <class Self, class Visitor>
    static void ForEach(Self&& self, Visitor&& visit) {
        visit("AutomaticBackupCombo", self.backupMinutes);
        visit("EfficiencyText", self.efficiency);
        visit("ShowProjectManagerCheck", self.projectManager);
        visit("AdjustColorsCheck", self.adjustColors);
        visit("WrapTextCheck", self.wrapText);
        visit("DependencyArrowsCombo", self.arrows);
        visit("DateDependencyCombo", self.dateDeps);
        visit("SortByDateCheck", self.sortByDate);
        visit("ListAllDepsCheck", self.allDeps);
        visit("SubprojectDisplayCombo", self.subprojects);
        visit("ListTaskLeaderCheck", self.taskLeader);
        visit("ShowMarkersCheck", self.markers);
        visit("MilestoneOption", self.milestones);
        visit("BarOption", self.bars);
        visit("CriticalPathRedCheck", self.criticalRed);
    }
};

}  // namespace vortan
