#include "shell/main/OutputCommands.h"

#include <QApplication>
#include <QClipboard>

#include "paint/Pictures.h"
#include "paint/Text.h"
#include "shell/main/MainForm.h"
#include "shell/pages/PageSizeForm.h"

namespace vortan {
namespace {

void NotSupported(MainForm& main, ChildForm& form, const std::string& word) {
    std::string title = word;
    title.front() = static_cast<char>(title.front() - 'a' + 'A');
    const std::string name = S(form.FormName());
    main.TheDesktop().platform.MessageBox(
        "The " + word + " function is not supported for " + name.substr(0, name.size() - 4) + ".",
        title + " Not Supported", BoxIcon::Information, BoxButtons::Ok);
}

/// The form in front if it has a complete surface, else none after a message.
ChildForm* SurfaceToOutput(MainForm& main, const std::string& word) {
    ChildForm* form = main.Forms().Active();
    const auto shown = form ? form->Surface() : std::nullopt;
    if (shown && shown->surface.IsComplete()) return form;
    if (form && !shown) {
        NotSupported(main, *form, word);
    } else {
        main.TheDesktop().platform.MessageBox("There is nothing to " + word + ".", "Not Applicable",
                                              BoxIcon::Information, BoxButtons::Ok);
    }
    return nullptr;
}

}  // namespace

void OutputPrint(MainForm& main) {
    if (ChildForm* form = SurfaceToOutput(main, "print")) PageSizeForm::Wakeup(main.TheDesktop(), *form);
}

void OutputCopy(MainForm& main) {
    ChildForm* form = SurfaceToOutput(main, "copy");
    if (!form) return;
    QApplication::clipboard()->setMimeData(ClipboardData(*form->Surface()).release());
    main.Note("Copied to the clipboard");
}

void SetupFont(MainForm& main) {
    ChildForm* form = main.Forms().Active();
    if (!form) {
        main.TheDesktop().platform.MessageBox("There is no active window.", "Not Applicable",
                                              BoxIcon::Information, BoxButtons::Ok);
    } else if (!form->ChangeFont()) {
        NotSupported(main, *form, "font");
    }
}

}  // namespace vortan
