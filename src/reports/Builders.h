#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "model/Vproject.h"
#include "model/Vtask.h"
#include "reports/ReportKinds.h"

/// The builders behind ReportKinds, and what they share.
namespace vortan {

Table BuildResourceEntrySpreadsheet(const ReportSource& source);
Table BuildTaskEntrySpreadsheet(const ReportSource& source);
/// Some rows of one of the two above anew, as it would have them now.
Table BuildEntryRows(const Table& like, const std::vector<RowSubject>& subjects, const std::string& symbol);
Table BuildProjectSummarySpreadsheet(const ReportSource& source);
Table BuildProjectUpdateSpreadsheet(const ReportSource& source);
Table BuildLoadingSummary(const ReportSource& source, bool byResource);
Table BuildLoadingByDay(const ReportSource& source);
Table BuildOverageSpreadsheet(const ReportSource& source, bool includeOvertime);
Table BuildDateDependencySpreadsheet(const ReportSource& source);
/// The tasks of the active project that were added, removed, moved, or became longer, shorter, dearer or
/// cheaper from one journal to another, by effect on the finish: first those with the least slack of the
/// project (in the journal gone to, or else in the one gone from), then by the days that the early finish
/// moved, either way, then by number. An added or removed task counts with its duration. Starts, finishes and
/// durations are compared to the minute, costs to the cent. What was not solved in one of the journals comes
/// last, with nothing compared.
Table BuildChangesSpreadsheet(const ReportSource& source);

/// Writes a new row of a table, cell by cell from the left.
class RowWriter {
  public:
    explicit RowWriter(Table& table, RowSubject subject = {}) : table_(table), row_(table.AddRow(subject)) {}

    RowWriter& Text(std::string_view text, CellValue value = {}) {
        table_.SetCell(row_, column_++, text, value);
        return *this;
    }
    RowWriter& Skip(std::int32_t columns) {
        column_ += columns;
        return *this;
    }
    RowWriter& Number(std::int64_t number) { return Text(std::to_string(number), number); }
    RowWriter& Date(DateTime date);
    /// `symbol` of the currency.
    RowWriter& Amount(Money amount, const std::string& symbol);
    RowWriter& Span(double days);
    RowWriter& YorN(bool value) { return Text(value ? "Y" : "n", value); }
    /// Blank for none, if `blankIfZero`.
    RowWriter& HoursOf(float hours, bool blankIfZero);

  private:
    Table& table_;
    std::int32_t row_, column_ = 0;
};

/// The texts of projects, made once each.
class ProjectTexts {
  public:
    const std::string& Of(const Vproject* project) {
        const auto [place, isNew] = texts_.try_emplace(project);
        if (isNew && project) place->second = project->BuildNodeText();
        return place->second;
    }

  private:
    std::unordered_map<const Vproject*, std::string> texts_;
};

/// The estimates of a task in a journal, empty for a subproject. One that dates drive tells its estimate in
/// days of 24 hours, and a unit that is none is "???".
std::string EffortText(const Vtask& task, std::int32_t journalIndex);
TimeSpan EffortSpan(const Vtask& task, std::int32_t journalIndex);

/// In whole cents, as it is shown: totals are those of the amounts on screen.
Money ShownCents(Money amount);

/// How long a slot is. A moment of a day is not exact in binary; its millisecond is.
std::int64_t MillisecondsOf(const Vslot& slot);
constexpr std::int64_t kMillisecondsPerHour = 3'600'000;

constexpr int kNormalSlot = 3, kOffDaySlot = 4, kOvertimeSlot = 5, kOverloadSlot = 9;

}  // namespace vortan
