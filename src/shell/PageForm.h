#pragma once

#include <QWidget>

#include "model/Listener.h"
#include "shell/ChildForm.h"
#include "shell/Desktop.h"

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

    Desktop& desktop_;

  private:
    bool unloaded_ = false;
};

}  // namespace vortan
