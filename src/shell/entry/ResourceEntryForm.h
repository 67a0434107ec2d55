#pragma once

#include <QComboBox>
#include <QPointer>

#include "model/Vresource.h"
#include "shell/entry/RateCalculatorForm.h"
#include "shell/forms/ObjectForm.h"

namespace vortan {

/// Creates and changes a resource.
class ResourceEntryForm : public ObjectForm<Vresource> {
  public:
    static void StartAdd(Desktop& desktop, Vtemplate& owner);
    static void StartModify(Desktop& desktop, Vresource& object);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisTemplate() override { Unload(); }

  private:
    /// What has to be read out of texts.
    struct Values {
        std::int32_t id;
        Vshift* shift;
        std::array<Money, 4> rates;
    };

    ResourceEntryForm(Desktop& desktop, Vresource& object, Vtemplate& owner, bool adding);

    void BuildFields();
    QWidget* BuildRates();
    void BuildShiftList();
    void BuildDepartmentList();
    void LoadData();
    bool VerifyData() override;
    void Join() override { object_->SetTemplate(owner_.Get()); }
    bool SaveData() override;
    void RateCalculatorCommandClick();
    void FormUnload() override;

    Link<Vtemplate> owner_;
    Values values_{};  // what was read
    TextField *templateName_, *id_, *description_, *title_;
    QComboBox *department_, *shift_;
    std::array<CurrencyField*, 4> rates_{};
    WorkDayChecks* workDays_;
    QPointer<RateCalculatorForm> calculator_;
};

}  // namespace vortan
