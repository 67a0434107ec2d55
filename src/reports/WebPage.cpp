#include "reports/WebPage.h"

#include <algorithm>
#include <cmath>

#include "charts/GanttForm.h"
#include "charts/HtmlText.h"
#include "charts/RiskForm.h"
#include "charts/Twips.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "reports/Builders.h"
#include "reports/PageMetrics.h"
#include "reports/SurfaceSvg.h"
#include "reports/WebParts.h"
#include "solve/ProblemText.h"

namespace vortan {
namespace {

constexpr int kChartPixels = 1500;  // that charts are fitted to
constexpr int kPaperPixels = 1030;  // the width of an A4 page on its side, inside of its margins
constexpr int kToldBars = 1000;     // rows of a chart whose bars tell their dates without the script
constexpr std::size_t kMostSentences = 20;

std::string NumberOf(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string OrNone(const std::string& text) {
    return text.empty() ? "-" : text;
}

void AddFact(std::string& out, const char* name, const std::string& value) {
    if (!value.empty())
        out += std::string("<div><dt>") + name + "</dt><dd>" + EscapedHtml(value) + "</dd></div>";
}

std::size_t CountTasks(const WebFacts& facts) {
    std::size_t count = 0;
    for (const Vproject* project : facts.projects) {
        for (const Vtask* task : project->TaskList()) count += task->Include() && !task->Subproject();
    }
    return count;
}

void AddHead(std::string& out, const WebFacts& facts) {
    const Vproject& project = facts.active;
    out += "<h1>" + EscapedHtml(project.BuildNodeText()) + "</h1>\n<dl>";
    AddFact(out, "Manager", project.Manager() ? project.Manager()->Description() : "");
    AddFact(out, "Journal", ShortMoment(project.Journal()));
    if (facts.besidePlan) {
        const auto plan = static_cast<std::size_t>(project.PlanIndex());
        AddFact(out, "Compared with the plan of", ShortMoment(project.JournalDates()[plan]));
    }
    AddFact(out, "Solve rule", SolveRuleText(project.SolveRules()));
    AddFact(out, "Tasks", std::to_string(CountTasks(facts)));
    if (facts.projects.size() > 1) AddFact(out, "Subprojects", std::to_string(facts.projects.size() - 1));
    if (!facts.halted) {
        AddFact(out, "Start", ShortMoment(project.EarlyStart()));
        AddFact(out, "Finish", ShortMoment(project.EarlyFinish()));
    }
    if (facts.page.costs && !facts.halted) {
        AddFact(out, "Labor cost", FormatCurrency(project.LaborCost(), facts.symbol));
        AddFact(out, "Material cost", FormatCurrency(project.MaterialCost(), facts.symbol));
        AddFact(out, "Total cost",
                FormatCurrency(project.LaborCost() + project.MaterialCost(), facts.symbol));
    }
    out += "</dl>\n";
}

/// What goes wrong in a plan that is solved, a sentence each.
std::vector<std::string> Complaints(const WebFacts& facts) {
    std::vector<std::string> all;
    const Vproject& project = facts.active;
    const DateTime plan = project.EarlyFinishAt(project.PlanIndex()), finish = project.EarlyFinish();
    if (plan.IsSet() && finish > plan)
        all.push_back("The project finishes " + FormatDuration(DaysBetween(plan, finish), true) +
                      " later than planned: " + ShortMoment(finish) + " instead of " + ShortMoment(plan) +
                      ".");
    for (const Vproject* each : facts.projects) {
        for (const Vtask* task : each->TaskList()) {
            if (!task->Include()) continue;
            const DateTime latest = LatestFinish(*task, each->CurrentIndex());
            const double late = DaysBetween(latest, task->EarlyFinish());
            if (latest.IsSet() && late * kMinutesPerDay >= 1)
                all.push_back(task->BuildNodeText() + " finishes " + FormatDuration(late, true) +
                              " after its latest finish.");
        }
    }
    for (const Booking& each : facts.bookings) {
        if (each.overload == 0) continue;
        const auto hours = static_cast<float>(static_cast<double>(each.overload) / kMillisecondsPerHour);
        all.push_back(each.resource->BuildNodeText() + " is overloaded by " + FormatHours(hours, false) +
                      " hours for " + each.task->BuildNodeText() + ", between " + FormatShortDate(each.from) +
                      " and " + FormatShortDate(each.until) + ".");
    }
    return all;
}

void AddProblems(std::string& out, const WebFacts& facts) {
    std::vector<std::string> complaints;
    if (facts.halted) {
        const std::string advice = ExplainProblem(facts.page.workspace, facts.page.solver);
        complaints = {facts.page.solver.SolveMessage() + (advice.empty() ? "" : ": " + advice),
                      "The plan is not solved: dates and bookings below are missing, or only as far as the "
                      "solve came."};
    } else {
        complaints = Complaints(facts);
    }
    out += std::string("<section id=problems") + (complaints.empty() ? "" : " class=bad") +
           "><h2>Problems</h2>\n";
    if (complaints.empty()) out += "<p>None: the plan is solved, and nobody is overloaded.</p>\n";
    for (std::size_t i = 0; i < std::min(complaints.size(), kMostSentences); ++i)
        out += "<p>" + EscapedHtml(complaints[i]) + "</p>\n";
    if (complaints.size() > kMostSentences)
        out += "<p>And " + NumberOf(complaints.size() - kMostSentences, "more problem") +
               ", which the tables below show.</p>\n";
    out += "</section>\n";
}

/// Start and finish out of a tip of the chart, which begins with a name.
std::string DatesOfTip(const std::string& tip) {
    constexpr std::string_view marks[] = {"\nStart: ", "\nFinish: ", "\nSlack: "};
    std::size_t at[3] = {};
    for (int i = 0; i < 3; ++i) {
        at[i] = tip.find(marks[i], i > 0 ? at[i - 1] + 1 : 0);
        if (at[i] == std::string::npos) return {};
    }
    const auto between = [&](int i) {
        const std::size_t first = at[i] + marks[i].size();
        return WithoutSeconds(tip.substr(first, at[i + 1] - first));
    };
    return between(0) + " - " + between(1);
}

void AddSurface(std::string& out, const Vwindow& surface, PageColors& colors, const char* id,
                const std::string& name, const std::function<std::string(int, int)>& tip = {}) {
    const int width = std::max(SurfacePixels(surface), 1);
    if (width > kPaperPixels)
        out += std::string("<style>@media print{#") + id +
               " table{zoom:" + std::to_string(std::floor(1000.0 * kPaperPixels / width) / 1000) +
               "}}</style>\n";
    out += std::string("<div class=chart id=") + id + " tabindex=0 role=region aria-label=\"" +
           EscapedHtml(name) + "\">" + SurfaceSvg(surface, colors, tip) + "</div>\n";
}

void AddGantt(std::string& out, const WebFacts& facts, PageColors& colors) {
    const PageMetrics metrics;
    GanttForm chart(facts.page.workspace, facts.page.settings, metrics);
    chart.TheVwindow().SetPage({static_cast<int>(kChartPixels * kTwipsPerPixel), 10000, 720, 720});
    chart.Start();
    DateTime first, last;
    chart.TheVwindow().GetShownDates(first, last);
    const DateTime now = facts.active.Journal();
    out += "<section id=gantt><h2>Gantt chart</h2>\n<p class=note>";
    if (now >= first && now <= last)
        out += "The blue line stands at " + ShortMoment(now) + ", the date of the journal. ";
    out += "A bar tells its dates when the mouse rests on it; the table of tasks has them too.</p>\n";
    std::function<std::string(int, int)> tip;
    if (chart.TheVwindow().Rows() <= kToldBars)
        tip = [&chart](int x, int y) { return DatesOfTip(chart.TipAt(x, y)); };
    AddSurface(out, chart.TheVwindow(), colors, "chart", "Gantt chart; the table of tasks has the same dates",
               tip);
    out += "</section>\n";
}

/// A row of plan, current and difference.
void AddComparison(std::string& out, const char* name, const std::string& plan, const std::string& current,
                   const std::string& difference) {
    out += std::string("<tr><th scope=row>") + name;
    for (const std::string& text : {plan, current, difference}) out += "<td>" + EscapedHtml(OrNone(text));
    out += "\n";
}

void AddPlanSection(std::string& out, const WebFacts& facts) {
    out += "<section id=plan><h2>Plan against current</h2>\n";
    if (!facts.besidePlan) {
        out += "<p>The journal shown is the plan itself.</p></section>\n";
        return;
    }
    const Vproject& project = facts.active;
    const std::int32_t plan = project.PlanIndex(), current = project.CurrentIndex();
    Money materials[2], labors[2];
    for (const Vtask* task : project.TaskList()) {
        for (const bool now : {false, true}) {
            const std::int32_t journal = now ? current : plan;
            if (!task->IncludeAt(journal)) continue;
            materials[now] += task->MaterialCostAt(journal);
            labors[now] += task->LaborCostAt(journal);
        }
    }
    out +=
        "<div class=scroll tabindex=0 role=region aria-label=\"Plan against current\"><table "
        "class=few><thead>"
        "<tr><th scope=col>Project<th scope=col>Plan<th scope=col>Current<th scope=col>Difference"
        "</thead><tbody>\n";
    const auto dates = [&](const char* name, DateTime from, DateTime to) {
        const std::string moved =
            from.IsSet() && to.IsSet() ? FormatDuration(DaysBetween(from, to), true) : "";
        AddComparison(out, name, ShortMoment(from), ShortMoment(to),
                      moved.empty() || moved == "0" || moved.front() == '-' ? moved : "+" + moved);
    };
    dates("Start", project.EarlyStartAt(plan), project.EarlyStartAt(current));
    dates("Finish", project.EarlyFinishAt(plan), project.EarlyFinishAt(current));
    const auto costs = [&](const char* name, Money from, Money to) {
        if (facts.page.costs)
            AddComparison(out, name, FormatCurrency(from, facts.symbol), FormatCurrency(to, facts.symbol),
                          FormatCurrency(to - from, facts.symbol));
    };
    costs("Material cost", materials[0], materials[1]);
    costs("Labor cost", labors[0], labors[1]);
    costs("Total cost", materials[0] + labors[0], materials[1] + labors[1]);
    out +=
        "</tbody></table></div>\n<p class=note>The table of tasks has the planned dates of "
        "each.</p></section>\n";
}

/// Whether the results are those of the solution that the page shows. Quick runs end between the minutes.
bool HasRisk(const WebFacts& facts) {
    const IterativeResults& results = facts.page.results;
    return !facts.halted && RiskForm::HasData(results) &&
           std::abs(DaysBetween(results.riskDates[0], facts.active.EarlyFinish())) * kMinutesPerDay < 1;
}

void AddRisk(std::string& out, const WebFacts& facts, PageColors& colors) {
    const IterativeResults& results = facts.page.results;
    const PageMetrics metrics;
    RiskForm chart(facts.page.workspace, results, {}, metrics);
    chart.TheVwindow().SetPage({static_cast<int>(kChartPixels * kTwipsPerPixel), 10000, 720, 720});
    chart.Start();
    out += "<section id=risk><h2>Risk</h2>\n<p>Of " +
           NumberOf(static_cast<std::size_t>(results.riskIterations), "run") +
           " with other estimates:</p>\n<ul>";
    const std::size_t runs = results.riskDates.size() - 1;
    for (const std::size_t percent : {std::size_t{50}, std::size_t{80}, std::size_t{95}}) {
        const std::size_t at = std::max<std::size_t>((percent * runs + 99) / 100, 1);
        out += "<li>" + std::to_string(percent) + "% finish by " +
               ShortMoment(AddMinutes(results.riskDates[at], 0)) + "</li>";
    }
    out += "</ul>\n";
    AddSurface(out, chart.TheVwindow(), colors, "riskchart",
               "Risk curve: how many of the runs finish by a date, in percent");
    out += "</section>\n";
}

void AddNavigation(std::string& out, const WebFacts& facts) {
    out += "<nav aria-label=\"On this page\"><a href=\"#problems\">Problems</a> ";
    if (!facts.halted) out += "<a href=\"#gantt\">Gantt chart</a> <a href=\"#plan\">Plan</a> ";
    out +=
        "<a href=\"#tasklist\">Tasks</a> <a href=\"#peoplelist\">People</a> "
        "<a href=\"#loadinglist\">Loading</a>";
    if (HasRisk(facts)) out += " <a href=\"#risk\">Risk</a>";
    out += "</nav>\n";
}

std::string Body(const WebFacts& facts, PageColors& colors) {
    std::string out = "<body><a class=skip href=\"#tasklist\">Skip to the tasks</a>\n<header>";
    AddHead(out, facts);
    AddNavigation(out, facts);
    out += "</header>\n<main>\n";
    AddProblems(out, facts);
    if (!facts.halted) {
        AddGantt(out, facts, colors);
        AddPlanSection(out, facts);
    }
    out += "<section id=tasklist class=long><h2>Tasks</h2>\n";
    AddTaskSection(out, facts);
    out += "</section>\n<section id=peoplelist class=long><h2>People</h2>\n";
    AddPeopleSection(out, facts);
    out += "</section>\n<section id=loadinglist class=long><h2>Loading, in hours</h2>\n";
    AddLoadingSection(out, facts);
    out += "</section>\n";
    if (HasRisk(facts)) AddRisk(out, facts, colors);
    return out + "</main>\n<footer><p class=note>Made by VORTAN " + GetAppVersion() + " on " +
           ShortMoment(facts.page.workspace.ThePlatform().Now()) + ".</p></footer>\n<script>" + kPageScript +
           "</script></body></html>\n";
}

}  // namespace

std::string WebPageOf(const WebPageSource& source) {
    const WebFacts facts(source);
    PageColors colors;
    const std::string body = Body(facts, colors);
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
           "<meta name=\"viewport\" content=\"width=device-width,initial-scale=1\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
           "'unsafe-inline'; script-src 'unsafe-inline'; base-uri 'none'; form-action 'none'\">\n<title>" +
           EscapedHtml(facts.active.BuildNodeText(), " ") + "</title>\n<style>" + kPageStyle + kSurfaceStyle +
           colors.Rules(false) + "@media screen and (prefers-color-scheme:dark){" + kDarkPageStyle +
           colors.Rules(true) + "}</style></head>\n" + body;
}

}  // namespace vortan
