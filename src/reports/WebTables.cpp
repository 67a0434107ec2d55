// The tables of a web page, and what they are gathered from.

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "charts/HtmlText.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vtask.h"
#include "reports/Builders.h"
#include "reports/WebParts.h"

namespace vortan {
namespace {

using Kind = WebColumn::Kind;

constexpr int kGroupRows = 50, kBigTable = 500;

void AddSlot(Booking& booking, const Vslot& slot) {
    booking.from = std::min(booking.from, slot.startTime);
    booking.until = std::max(booking.until, slot.endTime);
    booking.cost += slot.laborCost;
    std::int64_t& hours = slot.slotType == kOffDaySlot     ? booking.offDay
                          : slot.slotType == kOvertimeSlot ? booking.overtime
                          : slot.slotType == kOverloadSlot ? booking.overload
                                                           : booking.normal;
    hours += MillisecondsOf(slot);
}

std::vector<Booking> GatherBookings(const WebPageSource& page, const std::vector<const Vproject*>& projects) {
    const std::unordered_set<const Vproject*> shown(projects.begin(), projects.end());
    std::vector<Booking> bookings;
    std::unordered_map<const Vtask*, std::size_t> bookingOf;  // of the resource at hand
    for (const Vtemplate* from : page.workspace.TemplateList()) {
        for (const Vresource* resource : from->ResourceList()) {
            bookingOf.clear();
            for (const Vslot& slot : page.solver.HeldSlots(*resource)) {
                if (!shown.contains(slot.taskRequired->Project())) continue;
                const auto [place, isNew] = bookingOf.try_emplace(slot.taskRequired, bookings.size());
                if (isNew) bookings.push_back({resource, slot.taskRequired, slot.startTime, slot.endTime});
                AddSlot(bookings[place->second], slot);
            }
        }
    }
    return bookings;
}

/// "3.5", or nothing for no hours.
std::string HourText(std::int64_t milliseconds) {
    return FormatHours(static_cast<float>(static_cast<double>(milliseconds) / kMillisecondsPerHour), true);
}

std::string PeopleOf(const Vtask& task) {
    std::string names;
    for (const Vassignment* assignment : task.AssignmentList()) {
        const Vresource* resource = assignment->Include() ? assignment->ResourceRequired() : nullptr;
        if (resource) names += (names.empty() ? "" : ", ") + resource->Description();
    }
    return names;
}

std::string SpanText(DateTime from, DateTime to) {
    return from.IsSet() && to.IsSet() ? FormatDuration(DaysBetween(from, to), true) : "";
}

/// "+2 days" is later.
std::string ChangeText(DateTime plan, DateTime current) {
    const std::string text = SpanText(plan, current);
    return text.empty() || text == "0" || text.front() == '-' ? text : "+" + text;
}

/// A row, for a task that the plan or the journal in force includes.
class TaskRows {
  public:
    TaskRows(WebTable& table, const WebFacts& facts) : table_(table), facts_(facts) {}

    void Add(const Vtask& task) {
        const Vproject& project = *task.Project();
        const std::int32_t plan = project.PlanIndex(), current = project.CurrentIndex();
        const bool now = task.IncludeAt(current), planned = facts_.besidePlan && task.IncludeAt(plan);
        if (!now && !planned) return;
        const DateTime finish = now ? task.EarlyFinishAt(current) : DateTime();
        table_.Row().Cell(task.BuildNodeText());
        if (facts_.projects.size() > 1) table_.Cell(project.ProjectName());
        table_.Cell(now ? PeopleOf(task) : "no longer in the project");
        table_.Cell(EffortText(task, now ? current : plan), task.MostLikelyAt(now ? current : plan));
        table_.Cell(now ? task.EarlyStartAt(current) : DateTime()).Cell(finish);
        if (facts_.besidePlan) {
            const DateTime planFinish = planned ? task.EarlyFinishAt(plan) : DateTime();
            table_.Cell(planned ? task.EarlyStartAt(plan) : DateTime()).Cell(planFinish);
            table_.Cell(planned ? ChangeText(planFinish, finish) : "not in the plan");
        }
        table_.Cell(now ? SpanText(finish, LatestFinish(task, current)) : "");
        table_.Cell(!finish.IsSet()              ? ""
                    : finish < project.Journal() ? "done"
                                                 : SpanText(project.Journal(), finish));
        if (!facts_.page.costs) return;
        table_.Cell(now ? AmountAt(task, current) : "");
        if (facts_.besidePlan) table_.Cell(planned ? AmountAt(task, plan) : "");
    }

  private:
    std::string AmountAt(const Vtask& task, std::int32_t journal) const {
        return FormatCurrency(task.MaterialCostAt(journal) + task.LaborCostAt(journal), facts_.symbol);
    }

    WebTable& table_;
    const WebFacts& facts_;
};

}  // namespace

WebFacts::WebFacts(const WebPageSource& thePage)
    : page(thePage),
      active(*thePage.workspace.ThisProject()),
      projects{&active},
      halted(thePage.solver.Mode() != SolveMode::Idle),
      symbol(thePage.workspace.ThePlatform().CurrencySymbol()) {
    for (const Vproject* project : page.workspace.ProjectList()) {
        if (project != &active && project->DescendsFrom(&active)) projects.push_back(project);
    }
    for (const Vproject* project : projects)
        besidePlan = besidePlan || project->PlanIndex() != project->CurrentIndex();
    bookings = GatherBookings(page, projects);
}

DateTime LatestFinish(const Vtask& task, std::int32_t journal) {
    const DateTime latest = task.LateFinishAt(journal);
    return latest.Days() > 0 ? latest : DateTime();
}

std::string ShortMoment(DateTime moment) {
    return moment.IsSet() ? WithoutSeconds(FormatDate(moment)) : "";
}

WebTable::WebTable(std::string& out, const char* id, const char* what, std::span<const WebColumn> columns)
    : out_(out) {
    const std::string table = "#" + std::string(id);
    std::string widths, tracks, heads, numbers;
    int total = 0, place = 0;
    for (const WebColumn& column : columns) {
        const std::string width = std::to_string(column.width) + "ch";
        ++place;
        total += column.width;
        tracks += " " + width;
        widths += "<col style=\"width:" + width + "\">";
        heads += std::string("<th scope=col data-t=") + static_cast<char>(column.kind) + ">" + column.title;
        if (column.kind != Kind::Text)
            numbers += (numbers.empty() ? "" : ",") + table + " tr>:nth-child(" + std::to_string(place) + ")";
    }
    out_ += "<style>" + numbers + "{text-align:right}@media screen{" + table +
            ".big tr{grid-template-columns:" + tracks +
            "}}</style>\n<div class=scroll tabindex=0 role=region aria-label=\"" + what +
            "\"><table id=" + id + " data-what=\"" + what + "\" style=\"width:" + std::to_string(total) +
            "ch\" class=\"data";
    classAt_ = out_.size();
    out_ += "\"><colgroup>" + widths + "</colgroup><thead><tr>" + heads + "</thead><tbody>";
}

WebTable& WebTable::Row() {
    if (rows_ > 0 && rows_ % kGroupRows == 0) out_ += "\n<tbody>";
    ++rows_;
    out_ += "\n<tr>";
    first_ = true;
    return *this;
}

void WebTable::Open(const std::string& attributes) {
    out_ += first_ ? "<th scope=row" : "<td";
    out_ += attributes + ">";
    first_ = false;
}

WebTable& WebTable::Cell(const std::string& text) {
    Open();
    if (MayBeFormula(text)) out_ += "&#8203;";
    out_ += EscapedHtml(text);
    return *this;
}

WebTable& WebTable::Cell(const std::string& text, std::int64_t value) {
    Open(text.empty() ? "" : " data-v=" + std::to_string(value));
    out_ += EscapedHtml(text);
    return *this;
}

WebTable& WebTable::Cell(DateTime moment) {
    Open();
    out_ += ShortMoment(moment);
    return *this;
}

void WebTable::End() {
    if (rows_ > kBigTable) out_.insert(classAt_, " big");
    out_ += "</tbody></table></div>\n";
}

void AddTaskSection(std::string& out, const WebFacts& facts) {
    std::vector<WebColumn> columns{{"Task", Kind::Text, 34}};
    if (facts.projects.size() > 1) columns.push_back({"Project", Kind::Text, 16});
    columns.insert(columns.end(), {{"People", Kind::Text, 24},
                                   {"Estimate", Kind::Duration, 20},
                                   {"Start", Kind::Date, 20},
                                   {"Finish", Kind::Date, 20}});
    if (facts.besidePlan)
        columns.insert(columns.end(), {{"Planned start", Kind::Date, 20},
                                       {"Planned finish", Kind::Date, 20},
                                       {"Finish moved", Kind::Duration, 15}});
    columns.insert(columns.end(), {{"Slack", Kind::Duration, 13}, {"Time left", Kind::Duration, 13}});
    if (facts.page.costs) columns.push_back({"Cost", Kind::Number, 16});
    if (facts.page.costs && facts.besidePlan) columns.push_back({"Planned cost", Kind::Number, 16});
    WebTable table(out, "tasks", "Tasks", columns);
    TaskRows rows(table, facts);
    for (const Vproject* project : facts.projects) {
        for (const Vtask* task : project->TaskList()) rows.Add(*task);
    }
    table.End();
}

void AddPeopleSection(std::string& out, const WebFacts& facts) {
    std::vector<WebColumn> columns{{"Name", Kind::Text, 28},    {"Department", Kind::Text, 18},
                                   {"Title", Kind::Text, 20},   {"Tasks", Kind::Number, 9},
                                   {"From", Kind::Date, 20},    {"Until", Kind::Date, 20},
                                   {"Hours", Kind::Number, 10}, {"Beyond normal time", Kind::Number, 12}};
    if (facts.page.costs) columns.push_back({"Labor cost", Kind::Number, 16});
    WebTable table(out, "people", "People", columns);
    const auto& all = facts.bookings;
    for (std::size_t first = 0, next = 0; first < all.size(); first = next) {
        Booking sum = all[first];
        for (next = first + 1; next < all.size() && all[next].resource == sum.resource; ++next) {
            const Booking& more = all[next];
            sum.from = std::min(sum.from, more.from);
            sum.until = std::max(sum.until, more.until);
            sum.normal += more.normal;
            sum.offDay += more.offDay;
            sum.overtime += more.overtime;
            sum.overload += more.overload;
            sum.cost += more.cost;
        }
        table.Row()
            .Cell(sum.resource->BuildNodeText())
            .Cell(sum.resource->Department())
            .Cell(sum.resource->Title())
            .Cell(std::to_string(next - first))
            .Cell(sum.from)
            .Cell(sum.until)
            .Cell(HourText(sum.Total()))
            .Cell(HourText(sum.Total() - sum.normal));
        if (facts.page.costs) table.Cell(FormatCurrency(sum.cost, facts.symbol));
    }
    table.End();
}

void AddLoadingSection(std::string& out, const WebFacts& facts) {
    std::vector<WebColumn> columns{{"Name", Kind::Text, 26}, {"Task", Kind::Text, 34}};
    if (facts.projects.size() > 1) columns.push_back({"Project", Kind::Text, 16});
    columns.insert(columns.end(), {{"From", Kind::Date, 20},
                                   {"Until", Kind::Date, 20},
                                   {"Normal", Kind::Number, 10},
                                   {"Off day", Kind::Number, 10},
                                   {"Overtime", Kind::Number, 10},
                                   {"Overload", Kind::Number, 10},
                                   {"Total", Kind::Number, 10}});
    WebTable table(out, "loading", "Loading", columns);
    for (const Booking& each : facts.bookings) {
        table.Row().Cell(each.resource->BuildNodeText()).Cell(each.task->BuildNodeText());
        if (facts.projects.size() > 1) table.Cell(each.task->Project()->ProjectName());
        table.Cell(each.from).Cell(each.until);
        for (const std::int64_t hours :
             {each.normal, each.offDay, each.overtime, each.overload, each.Total()})
            table.Cell(HourText(hours));
    }
    table.End();
}

}  // namespace vortan
