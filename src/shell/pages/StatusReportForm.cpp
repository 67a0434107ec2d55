#include "shell/pages/StatusReportForm.h"

#include <QDir>
#include <QGroupBox>

#include "charts/ChartKinds.h"
#include "paint/Pictures.h"
#include "paint/Text.h"
#include "reports/StatusReportFile.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/desk/FormHost.h"
#include "shell/desk/Printing.h"
#include "shell/pages/EditorWaitForm.h"

namespace vortan {
namespace {

constexpr int kGridLetters = 90, kGridLines = 14;

/// The editor for the document, or a warning that there is none.
std::optional<EditorCommand> EditorFor(Desktop& desktop, const std::string& fileName) {
    auto editor = FindEditor(Q(fileName));
    if (!editor) {
        desktop.platform.MessageBox("No editor is registered for .RTF files.", "No .RTF Editor",
                                    BoxIcon::Warning, BoxButtons::Ok);
    }
    return editor;
}

void TellLaunchError(Desktop& desktop) {
    desktop.platform.MessageBox("Shell function error", "Internal Error", BoxIcon::Stop, BoxButtons::Ok);
}

void TellProblem(Desktop& desktop, const std::string& problem) {
    desktop.platform.MessageBox(problem, "Status Report Error", BoxIcon::Stop, BoxButtons::Ok);
}

bool FileExists(const std::string& name) {
    return QFileInfo::exists(Q(name));
}

}  // namespace

void StatusReportForm::Start(Desktop& desktop) {
    const Vproject& project = *desktop.workspace.ThisProject();
    const std::string fileName = ReportFileName(project.ProjectName());
    if (EditorWaitForm* waiting = EditorWaitForm::Open(desktop)) waiting->Unload();
    if (IsReportFileName(fileName) && FileExists(fileName)) return ShowFor(desktop, project);
    if (!CreateStatusReport(desktop, project, fileName)) return;
    const auto editor = EditorFor(desktop, fileName);
    if (!editor) return ShowFor(desktop, project);
    const Link<const Vproject> link(&project);
    const auto goOn = [&desktop, link] {
        if (link && link.Get() == desktop.workspace.ThisProject()) {
            if (desktop.workspace.ThisProjectSolved()) ShowFor(desktop, *link.Get());
        } else {
            desktop.host->Note("Another project is active now");
        }
    };
    if (EditorWaitForm::Start(desktop, *editor, fileName, goOn)) return;
    TellLaunchError(desktop);
    ShowFor(desktop, project);
}

bool StatusReportForm::CreateStatusReport(Desktop& desktop, const Vproject& project,
                                          const std::string& fileName) {
    std::string layout;
    const bool read = ReadReport(FindReportLayout(desktop.platform), layout).empty();
    if (read && IsReportFileName(fileName)) {
        const StatusReport report(layout);
        const std::string bytes = report.Problem().empty() ? report.Write(ReportTexts(project)) : layout;
        if (SaveReport(desktop.platform, fileName, bytes).empty()) return true;
    }
    desktop.platform.MessageBox(ReportCopyError(fileName), "File Copy Error", BoxIcon::Warning,
                                BoxButtons::Ok);
    return false;
}

void StatusReportForm::ShowFor(Desktop& desktop, const Vproject& project) {
    auto* form = new StatusReportForm(desktop, project);
    if (form->LoadRtfFile()) {
        form->ShowWith(*form->grid_);
    } else {
        form->Unload();
    }
}

StatusReportForm::StatusReportForm(Desktop& desktop, const Vproject& project)
    : EntryForm(desktop, "StatusReportForm", "Status Report Generation"),
      project_(&project),
      rtfFileName_(ReportFileName(project.ProjectName())),
      grid_(new MarkGrid),
      noTable_(new QLabel("The document has no table with four columns. It gets new pictures only.")),
      budget_(new QRadioButton("&Budget")),
      earnedValue_(new QRadioButton("&Earned value")) {
    grid_->setObjectName("Grid");
    grid_->setMinimumSize(fontMetrics().averageCharWidth() * kGridLetters,
                          fontMetrics().height() * kGridLines);
    Body().addWidget(grid_, 1);
    noTable_->setObjectName("NoTableLabel");
    Body().addWidget(noTable_);
    auto* frame = new QGroupBox("Financial plot type");
    frame->setObjectName("Frame1");
    auto* row = new QHBoxLayout(frame);
    budget_->setObjectName("BudgetOption");
    earnedValue_->setObjectName("EarnedValueOption");
    budget_->setChecked(true);
    row->addWidget(budget_);
    row->addWidget(earnedValue_);
    row->addStretch();
    Body().addWidget(frame);
    auto* copy = new QPushButton("&Copy to Previous");
    copy->setObjectName("CopyCommand");
    copy->setAutoDefault(false);
    connect(copy, &QPushButton::clicked, this, Command("StatusReport:CopyCommand_Click", [this] {
                report_->CopyToPrevious();
                grid_->RedoColors();
            }));
    AddButton(copy);
}

bool StatusReportForm::LoadRtfFile() {
    std::string bytes;
    std::string problem = ReadReport(rtfFileName_, bytes);
    if (problem.empty()) {
        auto read = std::make_unique<StatusReport>(std::move(bytes));
        if (!read->Problem().empty()) problem = "The document " + rtfFileName_ + " " + read->Problem();
        if (problem.empty()) report_ = std::move(read);
    }
    if (!problem.empty()) {
        TellProblem(desktop_, problem);
        return false;
    }
    grid_->ShowRows(report_->Heading(), report_->Rows);
    noTable_->setVisible(!report_->HasTable());
    return true;
}

std::string StatusReportForm::PictureOf(const char* kind, bool earnedValue) const {
    const ChartKind& row = ChartKindOf(kind);
    const QtTextMetrics metrics(FontOfForm(desktop_, row.form));
    const auto chart = row.make(
        {desktop_.workspace, desktop_.settings, desktop_.iterative.Results(), metrics, desktop_.solver});
    chart->TheVwindow().SetPage(desktop_.host->ThePrinting().Page());
    StartReportChart(*chart, earnedValue);
    return GetPictureText({chart->TheVwindow(), metrics, chart->Caption()});
}

bool StatusReportForm::SaveRtfFile() {
    ReportPictures pictures;
    pictures.gantt = PictureOf("gantt", false);
    pictures.budget = PictureOf("budget", earnedValue_->isChecked());
    desktop_.platform.StatusMessage("Generating status report");
    const std::string problem =
        SaveReport(desktop_.platform, rtfFileName_, report_->Write(ReportTexts(*project_.Get()), pictures));
    desktop_.platform.StatusMessage("");
    if (!problem.empty()) TellProblem(desktop_, problem);
    return problem.empty();
}

bool StatusReportForm::Finish() {
    if (!project_ || project_.Get() != desktop_.workspace.ThisProject()) return true;
    if (!desktop_.workspace.ThisProjectSolved()) return false;
    std::string now;
    if (!ReadReport(rtfFileName_, now).empty() || now != report_->Bytes()) {
        TellProblem(desktop_, "The document " + rtfFileName_ +
                                  " has been changed by another program. It is read anew; please set the "
                                  "marks again.");
        return !LoadRtfFile();
    }
    if (!SaveRtfFile()) return false;
    hide();
    desktop_.host->Note("Status report written to " + rtfFileName_);
    const auto editor = EditorFor(desktop_, rtfFileName_);
    if (editor && !QProcess::startDetached(editor->program, editor->arguments)) TellLaunchError(desktop_);
    return true;
}

}  // namespace vortan
