// What differs between two journals of the active project, a row per task that does.

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <tuple>

#include "charts/PageHeader.h"
#include "model/ValueText.h"
#include "reports/Builders.h"

namespace vortan {
namespace {

/// In the order in which they are told.
constexpr const char* kWords[] = {"added",  "removed", "later",  "earlier", "starts later", "starts earlier",
                                  "longer", "shorter", "dearer", "cheaper", "not solved"};

bool Differs(double days) {
    return std::llround(days * kMinutesPerDay) != 0;
}

/// A task, or the whole project, in a journal. Without dates if it was not solved there.
struct Side {
    DateTime start, finish, lateFinish;
    Money cost;

    bool Solved() const { return start.IsSet() && finish.IsSet(); }
    double Duration() const { return DaysBetween(start, finish); }
    double Slack() const { return DaysBetween(finish, lateFinish); }
};

Money CostAt(const Vtask& task, std::int32_t journal) {
    return ShownCents(task.MaterialCostAt(journal) + task.LaborCostAt(journal));
}

/// A project in a journal: the span and the cost of its tasks, and their least slack in days.
struct JournalSums {
    Side all;
    double leastSlack = 0;
    bool solved = true;
};

std::optional<Side> SideOf(const Vtask& task, std::int32_t journal) {
    if (!task.IncludeAt(journal)) return std::nullopt;
    return Side{task.EarlyStartAt(journal), task.EarlyFinishAt(journal), task.LateFinishAt(journal),
                CostAt(task, journal)};
}

JournalSums SumsOf(const Vproject& project, std::int32_t journal) {
    JournalSums sums;
    sums.solved = HasResults(project, journal);
    bool any = false;
    for (const Vtask* task : project.TaskList()) {
        const std::optional<Side> side = SideOf(*task, journal);
        if (!side) continue;
        sums.leastSlack = any ? std::min(sums.leastSlack, side->Slack()) : side->Slack();
        sums.all.cost += side->cost;
        any = true;
    }
    if (any && sums.solved) {
        sums.all.start = project.EarlyStartAt(journal);
        sums.all.finish = project.EarlyFinishAt(journal);
    }
    return sums;
}

struct TaskChange {
    Vtask* task;
    std::optional<Side> from, to;
    std::vector<const char*> words;
    bool comparable = true;  ///< solved wherever it is
    bool decides = false;    ///< nothing in the project has less slack
    double effect = 0;       ///< days, without a sign
};

std::vector<const char*> WordsFor(const Side& from, const Side& to) {
    std::vector<const char*> words;
    const auto add = [&](double more, const char* up, const char* down) {
        if (more != 0) words.push_back(more > 0 ? up : down);
        return more != 0;
    };
    const auto whole = [](double days) { return Differs(days) ? days : 0; };
    if (!add(whole(DaysBetween(from.finish, to.finish)), "later", "earlier"))
        add(whole(DaysBetween(from.start, to.start)), "starts later", "starts earlier");
    add(whole(to.Duration() - from.Duration()), "longer", "shorter");
    add(static_cast<double>((to.cost - from.cost).Units()), "dearer", "cheaper");
    return words;
}

TaskChange ChangeOf(Vtask& task, std::int32_t fromJournal, std::int32_t toJournal,
                    const JournalSums& fromSums, const JournalSums& toSums) {
    TaskChange change{&task, SideOf(task, fromJournal), SideOf(task, toJournal), {}};
    const std::optional<Side>&from = change.from, &to = change.to;
    if (!from && !to) return change;
    change.comparable = (!from || from->Solved()) && (!to || to->Solved());
    if (!from) change.words.push_back("added");
    if (!to) change.words.push_back("removed");
    if (!change.comparable) {
        change.words.push_back("not solved");
        return change;
    }
    change.decides =
        to ? !Differs(to->Slack() - toSums.leastSlack) : !Differs(from->Slack() - fromSums.leastSlack);
    if (from && to) {
        change.words = WordsFor(*from, *to);
        change.effect = std::abs(DaysBetween(from->finish, to->finish));
    } else {
        change.effect = (from ? from : to)->Duration();
    }
    return change;
}

/// Moments are not exact in binary; what agrees to the minute is equal.
auto PlaceOf(const TaskChange& change) {
    return std::tuple(!change.comparable, !change.decides, -std::llround(change.effect * kMinutesPerDay));
}

std::vector<TaskChange> ChangesOf(const Vproject& project, std::int32_t from, std::int32_t to,
                                  const JournalSums& fromSums, const JournalSums& toSums) {
    std::vector<TaskChange> changes;
    for (Vtask* task : project.TaskList()) {
        TaskChange change = ChangeOf(*task, from, to, fromSums, toSums);
        if (!change.words.empty()) changes.push_back(std::move(change));
    }
    std::stable_sort(changes.begin(), changes.end(),
                     [](const auto& a, const auto& b) { return PlaceOf(a) < PlaceOf(b); });
    return changes;
}

/// The cells behind the words; what one side lacks is left empty.
void AddSides(RowWriter& row, const std::optional<Side>& from, const std::optional<Side>& to, bool withSlack,
              const std::string& symbol) {
    const Side* before = from && from->Solved() ? &*from : nullptr;
    const Side* after = to && to->Solved() ? &*to : nullptr;
    const auto each = [&](auto&& write, auto&& difference) {
        before ? write(*before) : row.Skip(1);
        after ? write(*after) : row.Skip(1);
        before&& after ? difference() : row.Skip(1);
    };
    const auto span = [&](double days) -> RowWriter& { return row.Span(Differs(days) ? days : 0); };
    before&& after ? span(DaysBetween(before->start, after->start)) : row.Skip(1);
    each([&](const Side& side) -> RowWriter& { return row.Date(side.finish); },
         [&]() -> RowWriter& { return span(DaysBetween(before->finish, after->finish)); });
    each([&](const Side& side) -> RowWriter& { return row.Span(side.Duration()); },
         [&]() -> RowWriter& { return span(after->Duration() - before->Duration()); });
    withSlack&& after ? row.Span(after->Slack()) : row.Skip(1);
    before ? row.Amount(before->cost, symbol) : row.Skip(1);
    after ? row.Amount(after->cost, symbol) : row.Skip(1);
    const Money costBefore = before ? before->cost : Money(), costAfter = after ? after->cost : Money();
    const bool known = (!from || before) && (!to || after);
    known ? row.Amount(costAfter - costBefore, symbol) : row.Skip(1);
}

/// "1 added, 2 later, 2 dearer"
std::string Counts(const std::vector<TaskChange>& changes) {
    std::map<std::string, int> counts;
    for (const TaskChange& change : changes)
        for (const char* word : change.words) ++counts[word];
    std::string text;
    for (const char* word : kWords) {
        if (const auto found = counts.find(word); found != counts.end())
            text += (text.empty() ? "" : ", ") + std::to_string(found->second) + " " + word;
    }
    return text.empty() ? "none" : text;
}

std::string JournalText(const Vproject& project, std::int32_t journal, const JournalSums& sums) {
    return FormatDate(project.JournalDates()[static_cast<std::size_t>(journal)]) +
           (sums.solved ? "" : " (not solved)");
}

}  // namespace

Table BuildChangesSpreadsheet(const ReportSource& source) {
    Table table("Changes Spreadsheet",
                {{"Task", Alignment::Left},
                 {"Change", Alignment::Left},
                 {"Start moved", Alignment::Right},
                 {"Finish from", Alignment::Right},
                 {"Finish to", Alignment::Right},
                 {"Finish moved", Alignment::Right},
                 {"Duration from", Alignment::Right},
                 {"Duration to", Alignment::Right},
                 {"Longer by", Alignment::Right},
                 {"Slack", Alignment::Right},
                 {"Cost from", Alignment::Right},
                 {"Cost to", Alignment::Right},
                 {"Dearer by", Alignment::Right}},
                1);
    const Vproject* project = source.workspace.ThisProject();
    if (!project) return table;
    const std::int32_t from = source.from >= 0 ? source.from : project->PlanIndex(),
                       to = source.to >= 0 ? source.to : project->CurrentIndex();
    const std::string symbol = source.workspace.ThePlatform().CurrencySymbol();
    const JournalSums fromSums = SumsOf(*project, from), toSums = SumsOf(*project, to);
    table.caption += " from " + JournalText(*project, from, fromSums) + " to " +
                     JournalText(*project, to, toSums) + " for " + GetPageHeader(source.workspace);
    const std::vector<TaskChange> changes = ChangesOf(*project, from, to, fromSums, toSums);
    for (const TaskChange& change : changes) {
        std::string words;
        for (const char* word : change.words) words += (words.empty() ? "" : ", ") + std::string(word);
        RowWriter row(table, Link<Vtask>(change.task));
        row.Text(change.task->BuildNodeText()).Text(words);
        AddSides(row, change.from, change.to, true, symbol);
    }
    RowWriter total(table);
    total.Text("Total").Text(Counts(changes));
    AddSides(total, fromSums.all, toSums.all, false, symbol);
    table.totalRows = 1;
    return table;
}

}  // namespace vortan
