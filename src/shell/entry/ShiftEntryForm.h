#pragma once

#include "model/Vshift.h"
#include "model/Vtemplate.h"
#include "shell/forms/ObjectForm.h"
#include "shell/widgets/ShiftGrid.h"

class QLabel;

namespace vortan {

/// Creates and changes a shift. While cells are selected, Ok is shut off, and Cancel only drops the
/// selection.
class ShiftEntryForm : public ObjectForm<Vshift> {
  public:
    static void StartAdd(Desktop& desktop, Vtemplate& owner);
    static void StartModify(Desktop& desktop, Vshift& object);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisTemplate() override { Unload(); }

  private:
    /// What has to be read out of texts.
    struct Values {
        std::string name;
        float burdened, overtime, offDay;
    };

    ShiftEntryForm(Desktop& desktop, Vshift& object, Vtemplate& owner, bool adding);

    QWidget* BuildFields();
    QWidget* BuildDay();
    void LoadData();
    bool VerifyData() override;
    void Join() override { object_->SetTemplate(owner_.Get()); }
    bool SaveData() override;
    void ShowSelection();
    void CancelCommandClick() override;

    Link<Vtemplate> owner_;
    Values values_{};  // what was read
    TextField *name_, *burdened_, *overtime_, *offDay_, *holiday_;
    ShiftGrid* grid_;
    QLabel* selection_;
    std::array<QPushButton*, 4> groupCommands_{};
};

}  // namespace vortan
