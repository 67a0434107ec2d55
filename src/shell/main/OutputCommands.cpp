#include "shell/main/OutputCommands.h"

#include <QApplication>
#include <QClipboard>

#include "model/Characters.h"
#include "model/Vproject.h"
#include "paint/Pictures.h"
#include "paint/SaveFile.h"
#include "paint/Text.h"
#include "reports/WebPage.h"
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

void OutputPublish(MainForm& main) {
    constexpr const char* title = "Publish As Web Page";
    Desktop& desktop = main.TheDesktop();
    // The page of a plan that halted says what is wrong; while a solve runs there is nothing to say.
    const auto mayPublish = [&desktop] {
        return desktop.solver.Mode() == SolveMode::Halted ? desktop.workspace.ThisProjectSet()
                                                          : desktop.workspace.ThisProjectSolved();
    };
    if (!mayPublish()) return;
    const BoxAnswer costs =
        desktop.platform.MessageBox("Everyone who has the page can read it. Do you want it to show costs?",
                                    title, BoxIcon::Question, BoxButtons::YesNoCancel);
    if (costs == BoxAnswer::Cancel) return;
    std::string offered = desktop.workspace.ThisProject()->ProjectName();
    for (char& c : offered) {
        if (static_cast<unsigned char>(c) < ' ' ||
            std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos)
            c = '_';
    }
    const InputAnswer chosen =
        desktop.platform.SaveFileDialog(desktop.workspace.FileDialogPath, offered + ".html");
    // A solve may have begun while the questions were open.
    if (!chosen.given || !mayPublish()) return;
    const bool isPage = EndsWithText(chosen.text, ".html") || EndsWithText(chosen.text, ".htm");
    const std::string name = isPage ? chosen.text : chosen.text + ".html";
    const std::string page = WebPageOf({desktop.workspace, desktop.settings, desktop.solver,
                                        desktop.iterative.Results(), costs == BoxAnswer::Yes});
    const std::string problem = SaveFile(name, QByteArray(page.data(), static_cast<qsizetype>(page.size())));
    if (problem.empty()) {
        main.Note("Published as " + name);
    } else {
        desktop.platform.MessageBox(problem, title, BoxIcon::Warning, BoxButtons::Ok);
    }
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
