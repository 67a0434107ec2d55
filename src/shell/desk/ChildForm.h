#pragma once

#include <QWidget>
#include <optional>

#include "paint/ShownSurface.h"
#include "shell/desk/FindWords.h"

namespace vortan {

/// How a form stands to the main window: where it is placed, and what it shuts off while it is open.
enum class FormClass {
    FullPage = 1,    ///< fills the work area, one at a time
    FreeWindow = 2,  ///< placed by itself
    EntryForm = 3,   ///< a dialog above the work area, which locks the rest
    Pane = 4,        ///< docked in the work area
};

/// Any window of the program besides the main one. Its name is the object name of its widget.
class ChildForm {
  public:
    ChildForm() = default;
    virtual ~ChildForm() = default;
    ChildForm(const ChildForm&) = delete;
    ChildForm& operator=(const ChildForm&) = delete;

    virtual FormClass Class() const = 0;
    virtual QWidget& Window() = 0;
    /// Closes the form for good; it may be deleted as soon as events are served again. Doing it twice is
    /// once.
    virtual void Unload() = 0;

    // What the Output and Setup menus ask of the form in front. None and false: it has no such function.
    virtual std::optional<ShownSurface> Surface() { return std::nullopt; }
    virtual bool ChangeFont() { return false; }
    /// Marks the next place of a page that shows all of these words and brings it into sight. False: there is
    /// none.
    virtual bool Find(const FindWords&, FindFrom) { return false; }
    /// Whether the commands that print and copy stay open while an entry form like this is.
    virtual bool IsPrintable() const { return Class() == FormClass::FullPage; }

    QString FormName() { return Window().objectName(); }
    /// Which page of the commands it is; several may be one form.
    virtual QString PageName() { return FormName(); }
};

}  // namespace vortan
