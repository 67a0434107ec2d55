#pragma once

#include <QLabel>
#include <QRadioButton>
#include <QStackedWidget>

#include "model/Vtask.h"
#include "shell/forms/ObjectForm.h"
#include "shell/widgets/EstimateGrid.h"

namespace vortan {

/// Creates and changes a task. Its duration is shown under the active journal.
class TaskEntryForm : public ObjectForm<Vtask> {
  public:
    static void StartAdd(Desktop& desktop, Vproject& owner);
    static void StartModify(Desktop& desktop, Vtask& object);
    /// What a task that the program makes is to start with.
    static void SetDefaultEfficiency(Desktop& desktop, Vtask& task);
    /// The same; 0: as it comes.
    static double DefaultEfficiency(Desktop& desktop);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    /// What was typed, when all of it can be stored.
    struct Entries {
        std::int32_t taskID;
        Money materialCost;
        double efficiency;
        std::optional<DateTime> startDate, finishDate;
    };

    TaskEntryForm(Desktop& desktop, Vtask& object, Vproject& owner, bool adding);

    QWidget* BuildDurationFrame();
    QWidget* BuildDates();
    void LoadData();
    void LoadDates();
    bool VerifyData() override;
    bool VerifyDates();
    void Join() override { object_->SetProject(owner_.Get()); }
    bool SaveData() override;
    void SaveDates();
    void UpdateEnabled();
    bool HasEstimates() const { return effortDriven_->isChecked() || calendarTime_->isChecked(); }

    Link<Vproject> owner_;
    Entries entries_{};
    TextField *taskId_, *description_, *efficiency_;
    CurrencyField* materialCost_;
    QRadioButton *effortDriven_, *calendarTime_, *specificDates_, *toFinish_;
    QStackedWidget* pages_;  // estimates or a note
    QLabel* note_;
    EstimateGrid* estimates_;
    QLabel *startLabel_, *finishLabel_;
    DateField *startDate_, *finishDate_;
};

}  // namespace vortan
