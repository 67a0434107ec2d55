#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "model/Money.h"
#include "transfer/Transfer.h"
#include "transfer/VortanText.h"

namespace vortan {

/// The tasks of an import under "project\number": what ParseDependency looks up.
using TaskKeys = std::unordered_map<std::string, Vtask*>;

/// Money per hour from the text of a rate: what stands before the first "/", which may have a currency
/// symbol. A fault if that is no amount.
Money FixRate(const std::string& text, const std::string& currencySymbol);
/// Sets task required, percentages and offset from one piece of a text of predecessors: "12", "7SS-1" or
/// "path\file.mpp\12FF+3": number, kind, signed lag in days. No task required: there is none under that
/// number.
void ParseDependency(Vdependency& dependency, const std::string& projectOfTask, std::string text,
                     const TaskKeys& keys);

/// Working and calendar time of a plan, by its minutes per day and per week.
class FileWorkTime {
  public:
    explicit FileWorkTime(const MProject& file);
    /// Eight working hours are one day, five working days seven; the rest of a week counts day by day.
    double CalendarDays(double workingMinutes) const;
    /// Working hours that a rate is per.
    double HoursOf(std::int32_t rateFormat) const;

  private:
    double minutesPerDay_, minutesPerWeek_, daysPerMonth_;
};

/// One import under way. All of it is built aside: `Join` brings it into memory, and without that the object
/// takes everything back that it made.
class PlanImport {
  public:
    PlanImport(Transfer& transfer, const MProject& file);
    ~PlanImport();
    PlanImport(const PlanImport&) = delete;
    PlanImport& operator=(const PlanImport&) = delete;

    /// Throws Transfer::Cancel when the user does.
    void Build();
    void Join();

  private:
    /// A row of the file that is imported.
    struct Row {
        const MTask* source = nullptr;
        std::int32_t parent = -1;  ///< row of the summary task that it is in
        std::int32_t end = 0;      ///< behind its last descendant
        std::int32_t number = 0;   ///< its ID, or another one where that is missing or taken
        Vtask* task = nullptr;
        Vproject* holder = nullptr;      ///< of the task
        Vproject* subproject = nullptr;  ///< that it stands for
        std::vector<std::int32_t> assignments;
        bool inserted = false;   ///< stands for a project in another file
        Vtask* inner = nullptr;  ///< the one task of that
    };

    // ImportPlan.cpp
    void MakeTop();
    void FixJournals();
    std::string FreeProjectName(const std::string& wanted);
    void CheckCancel();
    static std::string Name(const MTask& task);
    static std::string Name(const MResource& resource);
    void Lose(const std::string& object, const std::string& what, const std::string& why,
              const std::string& instead) {
        losses_.Add(object, what, why, instead);
    }
    bool AnyMarked() const;

    // ImportResources.cpp
    void MakeTemplate();
    void ImportResources();
    void ImportResource(const MResource& source);
    bool FindSamePerson(const MResource& source);
    std::int32_t FreeResourceID(const MResource& source);
    void SetRates(const MResource& source, Vresource& resource);
    void ListRates(const MResource& source);
    void SetCalendar(const MResource& source, Vresource& resource);
    Money RateOf(double amount, std::int32_t format) const;
    Vshift* ShiftFor(const std::string& name, const MDay& day);
    const MCalendar* FindCalendar(std::int32_t uid) const;
    void ListCalendars();

    // ImportTasks.cpp
    void FindRows();
    void NumberRows();
    void ImportTasks();
    void ImportOneTask(std::int32_t index);
    void ImportPlainTask(Row& row);
    void ImportLink(std::int32_t index);
    void AddInsertedProject(Row& row);
    void ListTask(const Row& row);
    void ListTracking(const Row& row);
    void ListPlan();
    void ImportTaskAssignments(Row& row);
    void ImportAssignment(Row& row, std::int32_t index);
    void ListAssignment(const Row& row, const MAssignment& source);
    bool IsWork(const MAssignment& assignment) const;
    float UnitsOf(const Row& row) const;
    void AddMaterial(Row& row);

    // ImportLinks.cpp
    void ImportTaskDependencies(Row& row);
    void AddDate(Vtask& task, DateTime date, std::uint8_t toPercent);
    DateTime StartOf(const Row& row) const;
    Vdependency* ImportPredecessor(const Row& row, const MLink& link, Vtask* task);
    void AddDefaultToStart(Row& row, Vtask* required);
    void SetPercentLag(const Row& row, const MLink& link, Vdependency& dependency, const MTask& predecessor);
    std::vector<Vtask*> FirstTasksIn(std::int32_t index, Row*& any);
    void ImportLinksOfSummary(std::int32_t index);
    void DropCircles();
    void AddLastTask();

    Transfer& transfer_;
    Workspace& workspace_;
    Losses& losses_;
    const MProject& file_;
    FileWorkTime time_;
    ImportedPlan plan_;
    bool joined_ = false;
    std::vector<Row> rows_;
    std::unordered_map<std::int32_t, std::int32_t> rowOf_;  // by UID
    TaskKeys keys_;
    std::unordered_map<std::string, std::string> lastName_;  // given to a project of a wanted name
    std::unordered_set<std::string> names_;                  // of projects
    std::unordered_map<std::int32_t, const MResource*> sources_;
    std::unordered_map<std::int32_t, std::int32_t> newIDs_;   // ResourceIDs to give, by UID
    std::unordered_set<std::int32_t> usedIDs_, givenIDs_;     // ResourceIDs
    std::vector<std::pair<Vshift*, std::string>> newShifts_;  // and names to give
    std::int64_t spread_ = 0;                                 // dependencies made for those of summary tasks
};

}  // namespace vortan
