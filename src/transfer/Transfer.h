#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "model/Workspace.h"
#include "transfer/Losses.h"
#include "transfer/Mspdi.h"

namespace vortan {

/// Plans from and to Microsoft Project, by its XML data interchange format. One object serves a run of the
/// program, since it remembers an answer. Each public procedure is meant to run as one command in the error
/// trap.
class Transfer {
  public:
    /// `workspace` must outlive the object.
    explicit Transfer(Workspace& workspace) : workspace_(workspace) {}
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    /// Asked at every percent that is shown. True: the transfer ends, and nothing has changed.
    std::function<bool()> Cancelled;
    /// False: imported resources join the active template without a question.
    bool AskForTemplate = true;
    /// Shows what is lost. Called at the end of a transfer that lost anything, after everything has been
    /// done.
    std::function<void(const Losses&, bool import, const std::string& fileName)> ShowLosses;

    /// Opens or saves a file of either kind, by its name: what FileCommands calls. An .xml that holds
    /// something else is a fault.
    bool Open(const std::string& fileName);
    bool Save(const std::string& fileName);

    /// A plan file of that program's own (".mpp") cannot be read or written here: says so and how to go by
    /// XML instead. Always false.
    bool MSProjectInstalled(bool saving);
    /// Adds the plan of the file to memory, as a new active project, its resources to the active template.
    /// False: cancelled, or the file could not be read, which the user has been told; nothing has changed. So
    /// it is after a fault, which tells what is wrong with the file.
    bool ImportMSProject(const std::string& fileName);
    /// Writes the active project with all below it, and the resources of the active template. False:
    /// cancelled, or it could not be written, which the user has been told; the old file is whole.
    bool ExportToMSProject(const std::string& fileName);

    /// How far the phase under way is.
    int Percent() const { return static_cast<int>(transferPercent_); }
    /// The same with the bytes of a file, without question, list or end of the status text.
    bool ImportText(std::string bytes, const std::string& fileName);
    /// What the last transfer lost.
    const Losses& LastLosses() const { return losses_; }

    // What import and export are made of.
    Workspace& TheWorkspace() const { return workspace_; }
    Losses& TheLosses() { return losses_; }
    /// Begins a phase of `total` steps.
    void StartCount(const std::string& message, std::int64_t total);
    /// One step of progress: shows the percentage when it differs from the one last shown.
    void IncrementCount();
    /// For steps that count otherwise: shows `done`, 0 to 1, as IncrementCount does, and returns whether to
    /// go on.
    bool ShowPart(double done);
    /// What IncrementCount throws when the user cancels. Caught by the two commands above.
    struct Cancel {};
    /// 0 until asked, then the answer (BoxAnswer) of the question about to-start dependencies.
    std::int16_t ToStartAnswer = 0;

  private:
    bool ImportFile(const std::string& fileName);
    static std::string CleanFileStem(const std::string& name);

    Workspace& workspace_;
    Losses losses_;
    std::int64_t transferCount_ = 0, transferTotal_ = 0, transferPercent_ = 0;
    std::string transferMessage_;
};

}  // namespace vortan
