// The commands that start risk and crash solves, and those that show what they found.

#include "charts/CrashForm.h"
#include "charts/RiskForm.h"
#include "model/NumberText.h"
#include "paint/Text.h"
#include "shell/entry/ProjectEntryForm.h"
#include "shell/main/MainForm.h"
#include "shell/pages/ChartPage.h"
#include "shell/pages/CrashDataForm.h"
#include "shell/widgets/ProgressForm.h"

namespace vortan {

/// Asks until the answer is a number that `check` does not complain about. None: the user gave up, or typed
/// what is no number or 0.
std::optional<double> MainForm::AskNumber(
    const char* prompt, const char* title, double offered,
    const std::function<std::optional<std::string>(double)>& check) const {
    std::string text = FormatNumber(offered);
    for (;;) {
        const InputAnswer answer = desktop_.platform.InputBox(prompt, title, text);
        const auto number = answer.given ? ParseNumber(answer.text) : std::nullopt;
        if (!number || *number == 0) return std::nullopt;
        const auto complaint = check(*number);
        if (!complaint) return number;
        desktop_.platform.MessageBox(*complaint, "Invalid Number", BoxIcon::Warning, BoxButtons::Ok);
        text = answer.text;
    }
}

void MainForm::RiskSolve(bool quick) {
    if (!desktop_.workspace.ThisProjectSolved()) return;
    const auto iterations =
        AskNumber("Enter the number of iterations to perform:", "Enter Number of Iterations", riskIterations_,
                  [this](double number) { return desktop_.iterative.CheckRisk(number); });
    if (!iterations || !desktop_.workspace.ThisProjectSolved()) return;
    riskIterations_ = static_cast<std::int32_t>(*iterations);
    ProgressForm progress(this, quick ? "Quick risk solve" : "Detailed risk solve");
    const auto outcome = desktop_.iterative.RiskSolve(quick, riskIterations_, &progress);
    progress.hide();
    if (ExplainOutcome(outcome)) StartRiskForm();
}

void MainForm::CrashSolve(bool quick) {
    if (!desktop_.workspace.ThisProjectSolved()) return;
    if (Vproject* halting = IterativeSolve::FindHaltingProject(desktop_.workspace)) {
        const BoxAnswer answer = desktop_.platform.MessageBox(
            IterativeSolve::HaltRuleText(*halting) + "\r\n\r\nDo you want to change the solve rule?",
            "Halt Rule Must Be Changed", BoxIcon::Question, BoxButtons::YesNo);
        if (answer == BoxAnswer::Yes) ProjectEntryForm::StartModify(desktop_, halting);
        return;
    }
    const auto increment = AskNumber("Enter the team increment:", "Enter Team Increment", teamIncrement_,
                                     IterativeSolve::CheckIncrement);
    if (!increment || !desktop_.workspace.ThisProjectSolved()) return;
    teamIncrement_ = *increment;
    ProgressForm progress(this, quick ? "Quick crash solve" : "Detailed crash solve");
    const auto outcome = desktop_.iterative.CrashSolve(quick, teamIncrement_, &progress);
    progress.hide();
    if (ExplainOutcome(outcome)) StartCrashForm();
}

/// Whether there are new results to show.
bool MainForm::ExplainOutcome(const IterativeSolve::Outcome& outcome) {
    if (!outcome.message.empty()) {
        desktop_.platform.MessageBox(outcome.message, "Solve Broken Off", BoxIcon::Warning, BoxButtons::Ok);
    }
    return outcome.done;
}

void MainForm::StartRiskForm() {
    if (!RiskForm::HasData(desktop_.iterative.Results())) {
        desktop_.platform.MessageBox("Please perform iterative risk solve first.", "No Risk Data",
                                     BoxIcon::Warning, BoxButtons::Ok);
        return;
    }
    highestCost_ = std::max(highestCost_, RiskForm::HighestCost(desktop_.iterative.Results()));
    ChartPage::Start(desktop_, "RiskForm", [this](const TextMetrics& metrics) {
        return std::make_unique<RiskForm>(desktop_.workspace, desktop_.iterative.Results(), highestCost_,
                                          metrics);
    });
}

void MainForm::StartCrashForm() {
    ChartPage::Start(desktop_, "CrashForm", [this](const TextMetrics& metrics) {
        auto chart =
            std::make_unique<CrashForm>(desktop_.workspace, desktop_.iterative.Results().crashList, metrics);
        chart->ShowCrashData = [this](DateTime finish, std::vector<Vcrash> multipliers) {
            desktop_.Run("Crash:Vwindow_DateClick",
                         [&] { CrashDataForm::Start(desktop_, finish, std::move(multipliers)); });
        };
        return chart;
    });
}

}  // namespace vortan
