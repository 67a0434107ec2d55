#pragma once

#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <array>

#include "shell/forms/PageForm.h"
#include "shell/widgets/MonthGrid.h"

namespace vortan {

/// A year as twelve months, each day in the colour of the most demanding kind of time that is booked on it in
/// any template.
class CalendarForm : public PageForm {
  public:
    /// There is an active template.
    static void Start(Desktop& desktop);

    bool ChangeFont() override;

    int ThisYear() const { return thisYear_; }
    /// The day last clicked; not set for none.
    DateTime SelectedDate() const { return selectedDate_; }
    void SetYear(int year);

    void NewThisProject() override { Refresh("Calendar:NewThisProject"); }
    void NewThisTemplate() override { Refresh("Calendar:NewThisTemplate"); }
    void NewJournal() override { Refresh("Calendar:NewJournal"); }
    void NewSolution() override { Refresh("Calendar:NewSolution"); }

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    static constexpr int kMonths = 12;

    explicit CalendarForm(Desktop& desktop);
    QWidget* NewSidePanel();
    QWidget* NewKeyFrame();
    QPushButton* NewYearCommand(const char* name, int step);
    QWidget* NewMonths();
    /// From what is in memory; the year stays.
    void Restart();
    void Refresh(const char* section) {
        Hear(section, [this] { Restart(); });
    }
    void BuildCalendar();
    void ClickOnMonthGrid(int month, int day);
    void Select(DateTime date);
    void ZoomInOnDay();

    QScrollArea* scroll_;
    QLabel* year_ = nullptr;
    QPushButton *previous_ = nullptr, *next_ = nullptr;
    std::array<MonthGrid*, kMonths> months_{};
    int thisYear_;  // 0 until the first start of the program's run
    DateTime selectedDate_;
};

}  // namespace vortan
