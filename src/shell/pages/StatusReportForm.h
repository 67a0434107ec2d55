#pragma once

#include <QLabel>
#include <QRadioButton>
#include <memory>
#include <string>

#include "model/Link.h"
#include "model/Vproject.h"
#include "reports/StatusReport.h"
#include "shell/desk/Editor.h"
#include "shell/forms/EntryForm.h"
#include "shell/widgets/MarkGrid.h"

namespace vortan {

/// The marks of the active project's status report. Ok writes them into its document, with new pictures, and
/// opens it in the user's editor. A project's first report is made from the layout and filled in there first.
class StatusReportForm : public EntryForm {
  public:
    static void Start(Desktop& desktop);

  private:
    StatusReportForm(Desktop& desktop, const Vproject& project);

    /// False: there is no document now, as the user has been told.
    static bool CreateStatusReport(Desktop& desktop, const Vproject& project, const std::string& fileName);
    static void ShowFor(Desktop& desktop, const Vproject& project);
    /// Reads the document and shows its marks. False: it cannot be used, as the user has been told.
    bool LoadRtfFile();
    bool SaveRtfFile();
    std::string PictureOf(const char* kind, bool earnedValue) const;
    bool Finish() override;

    Link<const Vproject> project_;
    std::string rtfFileName_;
    std::unique_ptr<StatusReport> report_;
    MarkGrid* grid_;
    QLabel* noTable_;
    QRadioButton* budget_;
    QRadioButton* earnedValue_;
};

}  // namespace vortan
