#pragma once

#include <QWidget>

#include "model/Listener.h"
#include "shell/ChildForm.h"
#include "shell/Desktop.h"
#include "shell/Node.h"

namespace vortan {

/// A pane with a tree, as far as both trees are alike.
class TreeForm : public QWidget, public ChildForm, public Listener {
  public:
    TreeForm(Desktop& desktop, const char* name);
    ~TreeForm() override;

    virtual void Start() = 0;

    FormClass Class() const override { return FormClass::Pane; }
    QWidget& Window() override { return *this; }
    void Unload() override { hide(); }

  protected:
    Desktop& desktop_;
};

}  // namespace vortan
