#pragma once

#include <QWidget>
#include <functional>

#include "model/Listener.h"
#include "shell/desk/ChildForm.h"
#include "shell/desk/Desktop.h"

namespace vortan {

/// A full page of the work area: hears the broadcasts from its making until it is unloaded, and deletes
/// itself then.
class PageForm : public QWidget, public ChildForm, public Listener {
  public:
    ~PageForm() override;

    FormClass Class() const override { return FormClass::FullPage; }
    QWidget& Window() override { return *this; }
    void Unload() override;

  protected:
    explicit PageForm(Desktop& desktop);
    /// Has `fill` fill the new page, and shows it. A page that could not be filled, which `fill` tells or
    /// throws, is gone.
    void Show(const std::function<bool()>& fill);
    /// What the page does about a broadcast, as a command of its own: a fault ends neither the broadcast nor
    /// the solve that sent it.
    void Hear(const char* section, const std::function<void()>& handler) { desktop_.Run(section, handler); }

    Desktop& desktop_;

  private:
    bool unloaded_ = false;
};

}  // namespace vortan
