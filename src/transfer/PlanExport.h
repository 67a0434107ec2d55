#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "transfer/Transfer.h"
#include "transfer/VortanText.h"
#include "transfer/WorkingTime.h"

namespace vortan {

/// Makes the file of that program from the active project, all below it, and the resources that it wants. The
/// steps follow each other as the told procedure has them; each finds what is lost on its way.
class PlanExport {
  public:
    explicit PlanExport(Transfer& transfer)
        : transfer_(transfer), workspace_(transfer.TheWorkspace()), losses_(transfer.TheLosses()) {}

    /// The file; it stays the object's.
    const MProject& Run(Vproject& top);
    /// What was written, whose changes are saved if nothing was lost.
    const std::vector<Vproject*>& Projects() const { return projects_; }
    const std::vector<Vtemplate*>& Templates() const { return templates_; }

  private:
    /// A row of the task table with what it is made from. The first row stands for the top project.
    struct Row {
        Vtask* task = nullptr;
        bool ownsSubproject = false;  ///< the rows below are those of its subproject
        std::size_t parent = 0;       ///< the summary row above
    };
    using Minute = WorkingTime::Minute;

    // ExportPlan.cpp
    void ExportProject(Vproject& project, int level, std::size_t parent);
    void ExportTask(const Vtask& task, MTask& row);
    void ExportTexts();
    void TellWhatStays();
    MTask& FileRow(std::size_t at) { return file_.Tasks[at]; }
    std::string ObjectText(const Vtask& task) const;
    void Lose(const Vtask& task, const std::string& what, const std::string& why, const std::string& instead);

    // ExportResources.cpp
    void ExportResources();
    void AddTemplate(Vtemplate& owner);
    void ExportResource(Vresource& resource);
    void CollectWanted(std::vector<Vresource*>& wanted) const;
    std::int32_t CalendarFor(const Vresource& resource);
    std::int32_t BaseCalendarFor(const Vshift* shift, unsigned weekdays);
    std::vector<MWorkingTime> TimesOf(const Vshift& shift, const std::string& calendar);
    void ExportAssignments();
    void ExportAssignment(const Vtask& task, const Vassignment& assignment, double share);

    // ExportLinks.cpp
    void ExportDependencies();
    void ExportDependency(std::size_t at, const Vdependency& dependency);
    void ExportDate(std::size_t at, const Vdependency& dependency);

    // ExportSchedule.cpp
    void ExportDurations();
    void ExportDuration(std::size_t at);
    void SetToldDuration(const Vtask& task, MTask& row, double factor);
    void ExportSchedule(std::size_t at);
    void ExportBaseline(const Vtask& task, MTask& row);
    void ExportSummaries();
    DateTime InRange(const Vtask* task, DateTime date);
    const WorkingTime& HoursOf(const Vtask& task);
    const WorkingTime& HoursOfCalendar(std::int32_t uid);
    Minute EarliestStart(std::size_t at, const WorkingTime& hours);

    Transfer& transfer_;
    Workspace& workspace_;
    Losses& losses_;
    MProject file_;
    ExportedPlan plan_;
    std::vector<Row> rows_;  ///< as file_.Tasks
    std::vector<Vproject*> projects_;
    std::vector<Vtemplate*> templates_;
    std::unordered_map<const Vtask*, std::size_t> rowOf_;
    std::vector<std::vector<const MAssignment*>> assignments_;           ///< by row
    std::vector<std::pair<std::size_t, std::size_t>> assignmentRanges_;  ///< by row, in file_.Assignments
    std::map<std::pair<const Vshift*, unsigned>, std::int32_t> baseCalendars_;
    std::unordered_map<std::int32_t, WorkingTime> hours_;            ///< by UID of the base calendar
    std::unordered_map<const Vresource*, std::int32_t> calendarOf_;  ///< UID of the base calendar
    std::vector<Minute>
        earliest_;  ///< by row: from which moment on the links of a summary row let its tasks start
};

}  // namespace vortan
