#include "shell/main/ReportCommands.h"

#include "paint/SaveFile.h"
#include "paint/TableFile.h"
#include "paint/Text.h"
#include "reports/ChartTables.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/desk/Printing.h"
#include "shell/main/MainForm.h"
#include "shell/pages/ChartPage.h"
#include "shell/pages/SpreadsheetForm.h"

namespace vortan {
namespace {

/// What there is to export, with its surface; none: nothing.
struct Exported {
    Table table;
    std::optional<ShownSurface> shown;
};

std::optional<Exported> InFront(MainForm& main) {
    ChildForm* page = main.FullPage();
    if (!page) return std::nullopt;
    if (const auto* report = SpreadsheetForm::InFront(main.TheDesktop()))
        return Exported{report->Shown(), page->Surface()};
    if (const ChartForm* chart = ChartPage::InFront(main.TheDesktop(), S(page->FormName()).c_str())) {
        if (auto table = TableOf(*chart, main.TheDesktop().platform.CurrencySymbol()))
            return Exported{std::move(*table), page->Surface()};
    }
    return std::nullopt;
}

}  // namespace

void ShowReport(MainForm& main, std::size_t place) {
    const ReportKind& kind = ReportKinds()[place];
    if (MayBuild(main.TheDesktop().workspace, kind)) SpreadsheetForm::Start(main.TheDesktop(), kind);
}

void OutputExport(MainForm& main) {
    Platform& platform = main.TheDesktop().platform;
    const auto exported = InFront(main);
    if (!exported) {
        platform.MessageBox("There is no table to export.", "Not Applicable", BoxIcon::Information,
                            BoxButtons::Ok);
        return;
    }
    const std::string name = AskForFile(&main, "Export Table", exported->table.caption, kTableFileFilters);
    if (name.empty()) return;
    const TableFile file{exported->table, *exported->shown, main.ThePrinting().Layout(),
                         platform.CurrencySymbol()};
    const std::string problem = SaveFile(name, MakeTableFile(file, name));
    if (!problem.empty()) {
        platform.MessageBox(problem, "File Not Written", BoxIcon::Warning, BoxButtons::Ok);
        return;
    }
    main.Note("Written to " + name);
}

}  // namespace vortan
