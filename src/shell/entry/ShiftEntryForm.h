#pragma once

#include "model/Vshift.h"
#include "shell/forms/EntryForm.h"
#include "shell/widgets/ShiftGrid.h"

class QLabel;

namespace vortan {

/// Creates and changes a shift. While cells are selected, Ok is shut off, and Cancel only drops the
/// selection.
class ShiftEntryForm : public EntryForm {
  public:
    static void StartAdd(Desktop& desktop);
    /// The object is that of the selected node.
    static void StartModify(Desktop& desktop);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisTemplate() override { Unload(); }

  private:
    /// What has to be read out of texts.
    struct Values {
        std::string name;
        float burdened, overtime, offDay;
    };

    ShiftEntryForm(Desktop& desktop, Vshift* object, bool adding);

    QWidget* BuildFields();
    QWidget* BuildDay();
    void LoadData();
    std::optional<Values> ValidateData();
    void SaveData(const Values& values);
    void ShowSelection();
    bool Finish() override;
    void CancelCommandClick() override;
    void FormUnload() override;

    Link<Vshift> object_;
    Link<Vtemplate> owner_;
    bool adding_;  // until the object is part of the plan
    TextField *name_, *burdened_, *overtime_, *offDay_, *holiday_;
    ShiftGrid* grid_;
    QLabel* selection_;
    std::array<QPushButton*, 4> groupCommands_{};
};

}  // namespace vortan
