#include "shell/main/Exchange.h"

#include "paint/Text.h"
#include "shell/desk/Desktop.h"

namespace vortan {
namespace {

constexpr qint64 kQuiet = 300;  // milliseconds in which nothing is shown

}  // namespace

Exchange::Exchange(Desktop& desktop, QWidget& window)
    : desktop_(desktop), window_(window), transfer_(desktop.workspace) {
    transfer_.Cancelled = [this] {
        return progress_ && since_.elapsed() > kQuiet && progress_->Report(transfer_.Percent(), -1);
    };
    transfer_.ShowLosses = [this](const Losses& losses, bool import, const std::string& fileName) {
        untold_ = std::make_unique<LossesForm>(&window_, losses, import, fileName);
    };
    desktop_.files.TellLosses = [this] {
        if (const auto box = std::move(untold_)) box->exec();
    };
    desktop_.files.Import = [this](const std::string& fileName) {
        return Run("Import from Microsoft Project", [&] { return transfer_.Open(fileName); });
    };
    desktop_.files.Export = [this](const std::string& fileName) {
        // A solve that began meanwhile would move the dates that are being written.
        const bool solving = desktop_.workspace.Mode() != SolveMode::Idle;
        if (solving) desktop_.solver.SuspendSolve();
        bool done = false;
        Steps steps;
        steps.Do(
            [&] { done = Run("Export to Microsoft Project", [&] { return transfer_.Save(fileName); }); });
        if (solving) steps.Do([&] { desktop_.solver.ResumeSolve(); });
        steps.Do(desktop_.files.TellLosses);
        steps.End();
        return done;
    };
}

Exchange::~Exchange() {
    desktop_.files.Import = nullptr;
    desktop_.files.Export = nullptr;
    desktop_.files.TellLosses = nullptr;
}

bool Exchange::Run(const std::string& caption, const std::function<bool()>& transfer) {
    progress_ = std::make_unique<ProgressForm>(&window_, Q(caption));
    since_.start();
    bool done = false;
    Steps steps;
    steps.Do([&] { done = transfer(); });
    progress_.reset();
    steps.End();
    return done;
}

}  // namespace vortan
