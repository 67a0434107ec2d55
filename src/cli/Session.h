#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "cli/Cli.h"
#include "cli/CliPlatform.h"
#include "cli/LossesText.h"
#include "model/Workspace.h"
#include "solve/IterativeSolve.h"
#include "solve/Solver.h"
#include "solve/WhyText.h"
#include "transfer/Transfer.h"

namespace vortan {

/// Ends a command with a message and an exit code.
class CliError : public std::runtime_error {
  public:
    explicit CliError(const std::string& message, int exitCode = kExitUsage)
        : std::runtime_error(message), exitCode_(exitCode) {}
    int ExitCode() const { return exitCode_; }

  private:
    int exitCode_;
};

/// One run of a command: a workspace with its solver, and the streams.
struct CliSession {
    explicit CliSession(const CliStreams& target)
        : streams(target),
          platform(target),
          workspace(platform),
          solver(workspace),
          iterative(workspace, solver),
          transfer(workspace) {
        // Nobody is there to ask: resources join what is in memory, and tasks get what lets them be solved.
        transfer.AskForTemplate = false;
        transfer.ToStartAnswer = static_cast<std::int16_t>(BoxAnswer::Yes);
        transfer.ShowLosses = [this](const Losses& found, bool, const std::string& fileName) {
            TellLosses(streams.err, found, fileName);
            losses.insert(losses.end(), found.List().begin(), found.List().end());
        };
    }

    /// Adds a plan file, or a plan of Microsoft Project (.xml), to the workspace. CliError if it cannot be
    /// read or is damaged. The first project and template become active.
    void Load(const std::string& fileName);
    /// Writes everything; to an .xml, the active project as solved. CliError if that fails.
    void Save(const std::string& fileName);
    /// The result of a command, which is one JSON object, with a member "losses" at its end if a transfer
    /// lost anything.
    std::string WithLosses(const std::string& json) const;
    /// Makes the project of that name active; nothing for an empty name. CliError if there is none.
    void SelectProject(const std::string& name);
    /// The same with a template.
    void SelectTemplate(const std::string& name);
    /// Makes the journal of that date active in all projects that have it. CliError if the active one has
    /// not.
    void SelectJournal(const std::string& date);
    void SelectJournal(DateTime date);
    /// The place of the journal of that date in the active project. CliError, with the dates that there are.
    std::int32_t FindJournal(const std::string& date) const;
    /// Solves everything in memory. Returns the exit code.
    int Solve();
    /// The same before a risk or crash solve: tells of a halt on the error stream. CliError without a
    /// project.
    int SolveToIterate();
    /// The text about the solve; when it halted, with the object at fault and what can be done about it.
    std::string StatusLine() const;

    CliStreams streams;
    CliPlatform platform;
    Workspace workspace;
    Solver solver;
    IterativeSolve iterative;
    Transfer transfer;
    std::vector<Loss> losses;  ///< of all transfers

  private:
    void Import(const std::string& fileName);
};

/// CliError unless the name is that of a plan file.
void RequirePlanFile(const std::string& name);
/// The same, or of Microsoft Project's XML.
void RequirePlanOrXml(const std::string& name);

/// What is wrong with a packed file.
const char* DamageText(bool cutOff);

/// A date as a user types it. CliError if it is none.
DateTime ParseDateArgument(const std::string& text);

}  // namespace vortan
