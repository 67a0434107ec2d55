#include "shell/forms/TableForm.h"

#include <QScreen>

#include "paint/Text.h"
#include "shell/desk/CommonDialogs.h"

namespace vortan {

TableForm::TableForm(Desktop& desktop, const char* name)
    : EntryForm(desktop, name, ""), table_(new TableView) {
    Body().addWidget(table_, 1);
    CancelCommand().hide();
}

bool TableForm::Refill() {
    const QSize room = screen()->availableGeometry().size();
    table_->Restart(desktop_, objectName(), {room.width() * 9 / 10, room.height() * 3 / 4},
                    [this](Vwindow& table) { RedoLayout(table); });
    if (isVisible()) {
        resize(layout()->totalSizeHint());
        table_->LetShrink();
    }
    return table_->TheVwindow().Rows() > 1;
}

void TableForm::ShowTable() {
    ShowWith(OkCommand());
    table_->LetShrink();
}

std::optional<ShownSurface> TableForm::Surface() {
    return table_->Shown(S(windowTitle()));
}

bool TableForm::ChangeFont() {
    if (ShowFont(desktop_, objectName())) Refill();
    return true;
}

}  // namespace vortan
