#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "charts/ChartForm.h"
#include "model/Workspace.h"
#include "persist/Settings.h"

namespace vortan {

/// The mechanized Gantt chart: the solved network of the active project on a time scale. A row for each task,
/// with its plan bar, what is done and projected, its latest finish, its slack and the arrows of its
/// dependencies, and a key below the last row.
///
/// The model is read and never written: dates of the plan are asked for by the number of its journal.
class GanttForm : public ChartForm {
  public:
    /// All three must outlive the form.
    GanttForm(Workspace& workspace, Settings& settings, const TextMetrics& metrics);

    std::string Name() const override { return "GanttForm"; }
    void Start() override;
    std::string Caption() const override;
    OptionsFrame Frame() override;
    Answers AnswersTo() const override {
        return {.newThisProject = Answer::Unload, .newSolution = Answer::Start};
    }
    /// Task, dates, slack and resources of the bar there.
    std::string TipAt(int x, int y) const override;

    std::string RowText(int row) const override;

    /// The task of the bar there.
    Subject SubjectAt(int x, int y) const override { return {BarAt(x, y)}; }

    /// A drag from bar to bar is a link; from the start of a bar that a date decides, another date.
    Drag BeginDrag(int x, int y, bool links) override;
    DragState DragTo(int x, int y) override;
    std::optional<Wish> EndDrag() override;
    void CancelDrag() override { drag_ = {}; }
    std::string DragTip() const override;
    bool SelectAt(int x, int y) override;
    Vdependency* SelectedLink() const override;
    std::vector<Box> Marks() const override;
    /// The arrow that goes by there, or none; the one drawn last of several.
    Vdependency* LinkAt(int x, int y) const;

    /// Draws the critical path in red, whatever the preferences say.
    void SetCriticalRed() { criticalRed_ = true; }

    /// What a click on "Preferences" does.
    std::function<void()> PreferencesCommandClick;

    /// The height of ninth `ninth` in a row, the ninths being those of a row of one line, centred.
    int GetY(int row, float ninth) const;
    /// Whether the task has a row.
    bool IncludeTask(const Vtask& task) const;
    /// The row of a task, or of the subproject that it is hidden in; 0 if there is none.
    int FindRow(const Vtask* task);
    /// Whether `a` stands before `b` on the chart.
    bool CheckOrder(const Vtask& a, const Vtask& b) const;

  private:
    /// A bar's place on the surface.
    struct Bar {
        int x1, x2, y1, y2;
        /// Of a milestone's symbol, which is as wide as high.
        int Height() const { return y2 - y1; }
    };
    using Tasks = std::vector<Vtask*>;

    void LayOut() override;
    void Draw() override;

    // Rows
    /// Below `within`, the projects that hold this one.
    void BuildTaskList(const Vproject& project, std::unordered_set<const Vproject*>& within);
    void SortTaskList(Tasks& tasks) const;
    void BuildTaskRow(Vtask& task);
    std::string TaskCell(const Vtask& task) const;
    std::string DependencyCell(const Vtask& task) const;
    int RowOfProject(const Vproject& project);

    // Picture
    double Unit() const;
    /// How wide the head of an arrow is.
    double HeadWidth() const { return vwindow_.TextHeight() * 2.0 / 7; }
    /// Whether the plan's journal holds dates of the task.
    static bool HasPlan(const Vtask& task);
    Bar PlanBar(const Vtask& task, int row) const;
    Bar CurrentBar(const Vtask& task, int row) const;
    bool DrawsAsRect(const Bar& bar) const { return !options_.milestones && bar.x1 < bar.x2; }
    bool Covers(const Bar& bar, int x, int y) const;
    void DrawTaskBar(const Vtask& task, int row);
    void DrawCurrentBar(const Vtask& task, int row, Color border);
    void DrawSymbol(double middle, const Bar& bar, Color border, Color fill);
    void DrawLink(const Bar& bar);
    void DrawMarker(const Vtask& task, int row, std::int32_t planIndex);
    void DrawDependency(Vdependency& dependency);
    void DrawArrowBetweenRows(int row1, DateTime date1, int row2, DateTime date2);
    void DrawDateDependency(int row1, DateTime date1, int row2, DateTime date2);
    /// A head of an arrow, over the point `x`.
    void DrawHead(double x, double top, double bottom, Color color, Apex apex);

    // Drags
    /// An arrow as it was drawn: down, along, down. Of a date, from the top or in the row itself.
    struct LinkPlace {
        Link<Vdependency> dependency;
        int x1, y1, yMiddle, x2, y2;
    };
    struct Dragged {
        Drag kind = Drag::None;
        bool moved = false;
        int x1 = 0, y1 = 0, x2 = 0, y2 = 0;  ///< from there to here
        Link<Vtask> task{}, target{};
        int fromPercent = 100, toPercent = 0;
        Link<Vdependency> dependency{};
        DateTime date{};
    };
    /// The bar of the task as the journal in force has it.
    Bar BarNow(const Vtask& task, int row) const;
    Vtask* BarAt(int x, int y) const;
    int PercentAt(const Vtask& task, int x, int ofNone) const;
    /// The date that decides when the task starts, or none.
    static Vdependency* StartDate(const Vtask& task);
    static std::vector<Box> LinesOf(const LinkPlace& place);

    // Key
    void BuildKey(const Vproject& project);
    void KeySample(double x1, double x2, double top, double height, Color fill, const std::string& label);
    void KeyMarker(double middle, double top, Color fill, const std::string& label);

    Workspace& workspace_;
    Settings& settings_;
    DateTime startDate_, endDate_;
    Preferences options_;                                          ///< as they were when the layout began
    Tasks taskCol_;                                                ///< in chart order, hidden ones too
    std::unordered_map<const Vtask*, int> rowList_;                ///< the first row of tasks that have one
    std::vector<Link<Vtask>> rowTasks_;                            ///< the task of row 1, 2 ...
    std::unordered_map<const Vproject*, const Vtask*> standsFor_;  ///< the task that a subproject is
    std::unordered_map<const Vproject*, int> projectRows_;         ///< what RowOfProject has found
    std::vector<bool> criticalRows_;                               ///< empty if they are not to be red
    double projectSlack_ = 0;                                      ///< days
    bool criticalRed_ = false;
    std::vector<LinkPlace> links_;  ///< in drawing order
    Link<Vdependency> selected_;
    Dragged drag_;
};

}  // namespace vortan
