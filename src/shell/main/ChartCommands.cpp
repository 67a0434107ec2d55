#include "shell/main/ChartCommands.h"

#include <algorithm>
#include <functional>
#include <optional>

#include "charts/ChartKinds.h"
#include "charts/CrashForm.h"
#include "charts/GanttForm.h"
#include "charts/HistogramForm.h"
#include "charts/RiskForm.h"
#include "model/Conventions.h"
#include "model/NumberText.h"
#include "model/Rounding.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtemplate.h"
#include "shell/entry/ProjectEntryForm.h"
#include "shell/main/MainForm.h"
#include "shell/main/PreferencesForm.h"
#include "shell/pages/ChartPage.h"
#include "shell/pages/CrashDataForm.h"
#include "shell/pages/FilterForm.h"
#include "shell/widgets/ProgressForm.h"
#include "solve/WhyText.h"

namespace vortan {
namespace {

/// Asks until the answer is a number that `check` does not complain about. None: the user gave up, or typed
/// what is no number or 0.
std::optional<double> AskNumber(Platform& platform, const char* prompt, const char* title, double offered,
                                const std::function<std::optional<std::string>(double)>& check) {
    std::string text = PlainNumber(offered);
    for (;;) {
        const InputAnswer answer = platform.InputBox(prompt, title, text);
        const auto number = answer.given ? ParseNumber(PlainTyped(answer.text)) : std::nullopt;
        if (!number || *number == 0) return std::nullopt;
        const auto complaint = check(*number);
        if (!complaint) return number;
        platform.MessageBox(*complaint, "Invalid Number", BoxIcon::Warning, BoxButtons::Ok);
        text = answer.text;
    }
}

/// Whether there are new results to show.
bool ExplainOutcome(Platform& platform, const IterativeSolve::Outcome& outcome) {
    if (!outcome.message.empty())
        platform.MessageBox(outcome.message, "Solve Broken Off", BoxIcon::Warning, BoxButtons::Ok);
    return outcome.done;
}

ChartPage::Maker MakerOf(Desktop& desktop, const ChartKind& kind) {
    return [&desktop, &kind](const TextMetrics& metrics) {
        return kind.make(
            {desktop.workspace, desktop.settings, desktop.iterative.Results(), metrics, desktop.solver});
    };
}

/// Of the histogram in front.
void AskForFilter(MainForm& main) {
    Desktop& desktop = main.TheDesktop();
    const auto chart = [&desktop] {
        return static_cast<HistogramForm*>(ChartPage::InFront(desktop, "HistogramForm"));
    };
    const Vtemplate* from = desktop.workspace.ThisTemplate();
    if (!chart() || !from) return;
    std::vector<FilterForm::Choice> choices;
    for (const Vresource* resource : from->ResourceList()) {
        if (!resource->Include()) continue;
        const auto& filter = chart()->Filter();
        choices.push_back({resource->Department(), resource->BuildNodeText(), resource->ResourceID(),
                           !filter || filter->Takes(*resource)});
    }
    const std::size_t all = choices.size();
    FilterForm::Start(desktop, choices, [&main, chart, all](const std::vector<std::int32_t>& ids) {
        if (!chart()) return;
        chart()->SetFilter(ids.size() == all ? std::nullopt
                                             : std::optional(HistogramFilter{{}, {ids.begin(), ids.end()}}));
        StartHistogramForm(main);
    });
}

/// Of the crash steps that there are.
void ShowCrashForm(Desktop& desktop) {
    ChartPage::Start(desktop, "CrashForm", [&desktop](const TextMetrics& metrics) {
        auto chart =
            std::make_unique<CrashForm>(desktop.workspace, desktop.iterative.Results().crashList, metrics);
        chart->ShowCrashData = [&desktop](DateTime finish, std::vector<Vcrash> multipliers) {
            desktop.Run("Crash:Vwindow_DateClick",
                        [&] { CrashDataForm::Start(desktop, finish, std::move(multipliers)); });
        };
        return chart;
    });
}

}  // namespace

void StartGanttForm(MainForm& main) {
    Desktop& desktop = main.TheDesktop();
    ChartPage::Start(desktop, "GanttForm", [&desktop](const TextMetrics& metrics) {
        auto chart = std::make_unique<GanttForm>(desktop.workspace, desktop.settings, metrics);
        chart->PreferencesCommandClick = [&desktop] { PreferencesForm::Start(desktop); };
        return chart;
    });
}

void StartChart(MainForm& main, const char* kind) {
    const ChartKind& row = ChartKindOf(kind);
    ChartPage::Start(main.TheDesktop(), row.form, MakerOf(main.TheDesktop(), row));
}

void StartHistogramForm(MainForm& main) {
    const auto make = MakerOf(main.TheDesktop(), ChartKindOf("histogram"));
    ChartPage::Start(main.TheDesktop(), "HistogramForm", [&](const TextMetrics& metrics) {
        auto chart = make(metrics);
        static_cast<HistogramForm&>(*chart).FilterCommandClick = [&main] { AskForFilter(main); };
        return chart;
    });
}

void StartRiskForm(MainForm& main) {
    Desktop& desktop = main.TheDesktop();
    const IterativeResults& results = desktop.iterative.Results();
    if (!RiskForm::HasData(results)) {
        desktop.platform.MessageBox("Please perform iterative risk solve first.", "No Risk Data",
                                    BoxIcon::Warning, BoxButtons::Ok);
        return;
    }
    Money& highestCost = main.iterative.highestCost;
    highestCost = std::max(highestCost, RiskForm::HighestCost(results));
    ChartPage::Start(desktop, "RiskForm", [&](const TextMetrics& metrics) {
        return std::make_unique<RiskForm>(desktop.workspace, results, highestCost, metrics);
    });
}

void StartCrashForm(MainForm& main) {
    Desktop& desktop = main.TheDesktop();
    if (!desktop.iterative.Results().crashList.empty()) return ShowCrashForm(desktop);
    desktop.platform.MessageBox(
        "Crash data is unavailable.  To create crash data, please perform an iterative crash solve.",
        "Crash Data Unavailable", BoxIcon::Information, BoxButtons::Ok);
}

void RiskSolve(MainForm& main, bool quick) {
    Desktop& desktop = main.TheDesktop();
    // What rounds to 0 gives up as 0 does.
    const auto check = [&desktop](double number) -> std::optional<std::string> {
        const std::int32_t rounded = RoundToInt32(number);
        return rounded == 0 ? std::nullopt : desktop.iterative.CheckRisk(rounded);
    };
    const auto answer = AskNumber(desktop.platform,
                                  "Enter the number of iterations to perform:", "Enter Number of Iterations",
                                  main.iterative.riskIterations, check);
    const std::int32_t iterations = RoundToInt32(answer.value_or(0));
    if (iterations == 0 || !desktop.workspace.ThisProjectSolved()) return;
    main.iterative.riskIterations = iterations;
    ProgressForm progress(&main, quick ? "Quick risk solve" : "Detailed risk solve");
    const auto outcome = desktop.iterative.RiskSolve(quick, iterations, &progress, true);
    progress.hide();
    if (ExplainOutcome(desktop.platform, outcome)) StartRiskForm(main);
}

void CrashSolve(MainForm& main, bool quick) {
    Desktop& desktop = main.TheDesktop();
    if (const Vproject* halting = IterativeSolve::FindHaltingProject(desktop.workspace)) {
        const BoxAnswer answer = desktop.platform.MessageBox(
            IterativeSolve::HaltRuleText(*halting) + "\r\n\r\nDo you want to change the solve rule?",
            "Halt Rule Must Be Changed", BoxIcon::Question, BoxButtons::YesNo);
        if (answer == BoxAnswer::Yes)
            ProjectEntryForm::StartModify(desktop, *desktop.workspace.ThisProject());
        return;
    }
    double& increment = main.iterative.teamIncrement;
    const auto number = AskNumber(desktop.platform, "Enter the team increment:", "Enter Team Increment",
                                  increment, IterativeSolve::CheckIncrement);
    if (!number || !desktop.workspace.ThisProjectSolved()) return;
    increment = *number;
    ProgressForm progress(&main, quick ? "Quick crash solve" : "Detailed crash solve");
    const auto outcome = desktop.iterative.CrashSolve(quick, increment, &progress);
    progress.hide();
    if (ExplainOutcome(desktop.platform, outcome)) ShowCrashForm(desktop);
}

void ShortenPlan(MainForm& main) {
    Desktop& desktop = main.TheDesktop();
    double& seconds = main.iterative.shortenSeconds;
    const auto check = [](double number) { return IterativeSolve::CheckShorten({.seconds = number}); };
    const auto answer =
        AskNumber(desktop.platform, "Enter the number of seconds to search:", "Enter Number of Seconds",
                  seconds, check);
    if (!answer || !desktop.workspace.ThisProjectSolved()) return;
    seconds = *answer;
    ProgressForm progress(&main, "Shorten");
    const auto outcome = desktop.iterative.ShortenSolve({.seconds = seconds}, &progress);
    progress.hide();
    const ShortenResult& result = desktop.iterative.Results().shorten;
    if (!outcome.message.empty() || (!outcome.done && !result.better)) {
        ExplainOutcome(desktop.platform, outcome);
        return;
    }
    std::string text = "No order of " + GroupDigits(result.moves) + " that were tried is better.";
    if (result.better) {
        text = "The project ends at " + MomentText(result.finish) + " instead of " +
               MomentText(result.finishBefore) + ", and costs " +
               FormatCurrency(result.cost, desktop.platform.CurrencySymbol()) + " instead of " +
               FormatCurrency(result.costBefore, desktop.platform.CurrencySymbol()) + ".";
    }
    text += result.optimal ? "\nNo order ends it earlier."
                           : "\nNo order ends it before " + MomentText(result.bound) + ".";
    if (outcome.done) {
        desktop.platform.MessageBox(text, "Shorten", BoxIcon::Information, BoxButtons::Ok);
    } else if (desktop.platform.MessageBox(text + "\n\nDo you want to keep this order?", "Shorten",
                                           BoxIcon::Question, BoxButtons::YesNo) == BoxAnswer::Yes) {
        desktop.iterative.KeepShortened();
    }
}

void SolveInToldOrder(MainForm& main) {
    Desktop& desktop = main.TheDesktop();
    if (desktop.iterative.SolveInToldOrder()) return;
    desktop.platform.MessageBox("No task has a rank: the plan is solved in the told order already.",
                                "Solve in Told Order", BoxIcon::Information, BoxButtons::Ok);
}

}  // namespace vortan
