#include "shell/ZoomForm.h"

#include <QScreen>

#include "charts/ZoomTable.h"
#include "model/ValueText.h"
#include "paint/Text.h"
#include "shell/CommonDialogs.h"

namespace vortan {

void ZoomForm::Start(Desktop& desktop, DateTime day) {
    auto* form = new ZoomForm(desktop, day);
    if (!form->Refresh()) return;
    form->ShowWith(*form->table_);
    form->table_->LetShrink();
}

ZoomForm::ZoomForm(Desktop& desktop, DateTime day)
    : EntryForm(desktop, "ZoomForm", "Zoom in"), zoomDate_(day), table_(new TableView) {
    OkCommand().hide();
    CancelCommand().setText("Close");
    CancelCommand().setDefault(true);
    Body().addWidget(table_, 1);
    table_->TheVwindow().RedoLayout = [this] { RedoLayout(); };
    table_->TheVwindow().RedoGraphics = [this] { table_->TheVwindow().EndGraphics(); };
    setWindowTitle(Q("Zoom in on " + FormatShortDate(zoomDate_)));
}

void ZoomForm::RedoLayout() {
    Vwindow& window = table_->TheVwindow();
    StartZoomVwindow(window, true);
    for (const Vtemplate* each : desktop_.workspace.TemplateList()) {
        for (const Vresource* resource : each->ResourceList()) {
            if (resource->Include()) FillInZoomVwindow(window, true, desktop_.solver, *resource, zoomDate_);
        }
    }
    window.EndLayout(0, 0);
}

bool ZoomForm::Refresh() {
    const QSize room = screen()->availableGeometry().size();
    table_->Restart(desktop_, "ZoomForm", {room.width() * 9 / 10, room.height() * 3 / 4});
    if (table_->TheVwindow().Rows() == 1) {
        const std::string date = FormatShortDate(zoomDate_);
        Unload();
        desktop_.platform.MessageBox("There is nothing scheduled for " + date, "Nothing Scheduled on " + date,
                                     BoxIcon::Warning, BoxButtons::Ok);
        return false;
    }
    if (isVisible()) {
        resize(layout()->totalSizeHint());
        table_->LetShrink();
    }
    return true;
}

bool ZoomForm::ChangeFont() {
    if (ShowFont(desktop_, objectName())) Refresh();
    return true;
}

}  // namespace vortan
