#pragma once

#include <QComboBox>
#include <QPointer>

#include "model/Vresource.h"
#include "shell/entry/RateCalculatorForm.h"
#include "shell/forms/EntryForm.h"

namespace vortan {

/// Creates and changes a resource.
class ResourceEntryForm : public EntryForm {
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
        std::int32_t id;
        Vshift* shift;
        std::array<Money, 4> rates;
    };

    ResourceEntryForm(Desktop& desktop, Vresource* object, bool adding);

    void BuildFields();
    QWidget* BuildRates();
    void BuildShiftList();
    void BuildDepartmentList();
    void LoadData();
    std::optional<Values> VerifyData();
    void SaveData(const Values& values);
    void RateCalculatorCommandClick();
    bool Finish() override;
    void FormUnload() override;

    Link<Vresource> object_;
    Link<Vtemplate> owner_;
    bool adding_;  // until the object is part of the plan
    TextField *templateName_, *id_, *description_, *title_;
    QComboBox *department_, *shift_;
    std::array<CurrencyField*, 4> rates_{};
    WorkDayChecks* workDays_;
    QPointer<RateCalculatorForm> calculator_;
};

}  // namespace vortan
