#pragma once

#include <QWidget>
#include <string>

#include "shell/desk/ChildForm.h"

namespace vortan {

class Printing;

/// What forms may ask of the main window, whatever they show.
class FormHost {
  public:
    virtual ~FormHost() = default;

    /// The parent of dialogs.
    virtual QWidget& MainWindow() = 0;
    /// Places and shows a form by its class; an entry form locks the rest, a full page closes the one before.
    virtual void ShowForm(ChildForm& form) = 0;
    /// Each form calls this once when it is unloaded.
    virtual void FormClosed(ChildForm& form) = 0;
    /// The page in front of the trees, or none.
    virtual ChildForm* FullPage() const = 0;
    /// Whether an entry form is open, which nothing may come in the way of.
    virtual bool IsEntering() const = 0;

    /// A word about what has just been done, for some seconds.
    virtual void Note(const std::string& text) = 0;
    /// The manual, page by page and for the control that has the focus.
    virtual void DisplayHelpPage(const std::string& page) = 0;
    virtual void ContextHelp() = 0;
    /// Lets the user choose the font of the form in front, and the printer and its page.
    virtual void SetupFont() = 0;
    virtual void SetupPrinter() = 0;
    virtual Printing& ThePrinting() = 0;
};

}  // namespace vortan
