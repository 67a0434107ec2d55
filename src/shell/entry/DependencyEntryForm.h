#pragma once

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <vector>

#include "model/Vdependency.h"
#include "shell/forms/ObjectForm.h"

namespace vortan {

/// Creates and changes a dependency, which it shows as a sentence that follows every change.
class DependencyEntryForm : public ObjectForm<Vdependency> {
  public:
    static void StartAdd(Desktop& desktop, Vtask& task);
    static void StartModify(Desktop& desktop, Vdependency& object);

    void NewDragNode() override { Unload(); }
    void NewJournal() override { Unload(); }
    void NewThisProject() override { Unload(); }

  private:
    /// What was chosen, when all of it can be stored. Without a prerequisite, the date is one.
    struct Entries {
        DateTime date;
        Vtask* required = nullptr;
        double offset = 0;
    };
    /// Three options of which the outer two are the ends of a scroll bar.
    struct Point {
        QButtonGroup* options;
        QSlider* scroll;
        QSpinBox* percent;  ///< the same as a number
        QWidget* whole;
    };

    DependencyEntryForm(Desktop& desktop, Vdependency& object, Vtask& task, bool adding);

    void BuildSentence();
    QWidget* BuildToFrame();
    QWidget* BuildOffsetFrame();
    QWidget* BuildPrerequisiteFrame();
    QWidget* BuildQuickFrame();
    Point BuildPoint(const char* optionName, const char* scrollName, const char* const (&captions)[3]);

    void LoadData();
    bool VerifyData() override;
    void Join() override { object_->SetTask(task_.Get()); }
    bool SaveData() override;
    Vtask* ReadTask();
    std::optional<double> ReadOffset();

    void ProjectRequiredComboClick();
    void PointOptionClick(const Point& point, int index);
    void QuickOptionClick(int index);
    void OffsetOptionClick(int index);
    void UpdateScreen();
    void UpdatePoint(const Point& point, const std::string& before, const std::string& behind);
    void UpdateSentence();

    Link<Vtask> task_;
    std::string subject_;  // of the sentence
    Entries entries_;
    bool updating_ = false;
    QPlainTextEdit* sentence_;
    Point to_, from_;
    QButtonGroup *offsetOptions_, *quickOptions_;
    TextField* offset_;
    QRadioButton *dateOption_, *taskOption_;
    DateField* date_;
    QComboBox *project_, *requiredTask_;
    std::vector<Link<Vproject>> projects_;  // as listed
};

}  // namespace vortan
