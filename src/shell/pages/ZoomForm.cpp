#include "shell/pages/ZoomForm.h"

#include "charts/ZoomTable.h"
#include "model/ValueText.h"
#include "model/Vresource.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"

namespace vortan {

void ZoomForm::Start(Desktop& desktop, DateTime day) {
    auto* form = new ZoomForm(desktop, day);
    if (form->Refresh()) form->ShowTable();
}

ZoomForm::ZoomForm(Desktop& desktop, DateTime day) : TableForm(desktop, "ZoomForm"), zoomDate_(day) {
    setWindowTitle(Q("Zoom in on " + FormatShortDate(zoomDate_)));
}

void ZoomForm::RedoLayout(Vwindow& table) {
    StartZoomVwindow(table, true);
    for (const Vtemplate* each : desktop_.workspace.TemplateList()) {
        for (const Vresource* resource : each->ResourceList()) {
            if (resource->Include()) FillInZoomVwindow(table, true, desktop_.solver, *resource, zoomDate_);
        }
    }
    table.EndLayout(0, 0);
}

bool ZoomForm::Refresh() {
    if (Refill()) return true;
    const std::string date = FormatShortDate(zoomDate_);
    Unload();
    desktop_.platform.MessageBox("There is nothing scheduled for " + date, "Nothing Scheduled on " + date,
                                 BoxIcon::Warning, BoxButtons::Ok);
    return false;
}

}  // namespace vortan
