#pragma once

#include <cstdint>

#include "model/Money.h"
#include "solve/IterativeSolve.h"

namespace vortan {

class MainForm;

/// What the prompts of iterative solves offer, and the top of the risk plot's cost axis: kept for the run of
/// the program.
struct IterativeChoices {
    std::int32_t riskIterations = IterativeSolve::kUsualIterations;
    double teamIncrement = IterativeSolve::kUsualIncrement;
    double shortenSeconds = ShortenOptions::kUsualSeconds;
    Money highestCost;
};

// Each shows its chart as the page in front, or says why it cannot.
void StartGanttForm(MainForm& main);
void StartHistogramForm(MainForm& main);
/// A chart that needs nothing of the desktop but what all charts are made of; `kind` as in ChartKinds.
void StartChart(MainForm& main, const char* kind);
void StartRiskForm(MainForm& main);
void StartCrashForm(MainForm& main);

// Each asks for a number, solves and shows what it found.
void RiskSolve(MainForm& main, bool quick);
void CrashSolve(MainForm& main, bool quick);
void ShortenPlan(MainForm& main);

/// Takes the ranks of a shortened plan off its tasks, or says that there are none.
void SolveInToldOrder(MainForm& main);

}  // namespace vortan
