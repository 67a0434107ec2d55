// The key below the last row of GanttForm, in two columns.

#include "charts/GanttForm.h"
#include "model/Vproject.h"

namespace vortan {

void GanttForm::BuildKey(const Vproject& project) {
    const double unit = Unit(), y0 = vwindow_.RowPos(vwindow_.Rows() - 1) + 2.0 * vwindow_.TextHeight();
    const bool replanned = project.PlanIndex() != project.CurrentIndex();

    const double x1 = unit / 4, x2 = options_.milestones ? x1 + unit / 3 : 2 * unit;
    KeySample(x1, x2, y0, unit / 3, kYellow, "Plan");
    if (project.CurrentIndex() > 0) {
        KeySample(x1, x2, y0 + 0.75 * unit + unit / 9, 2 * unit / 9, kBlack, "Actual");
    }
    if (replanned) KeySample(x1, x2, y0 + 1.5 * unit + unit / 9, 2 * unit / 9, kGreen, "Projected");

    const double middle = x2 + unit / 4 + vwindow_.TextWidth("Projected XXX");
    if (options_.markers) KeyMarker(middle, y0, kRed, "T   plan");
    if (options_.markers && replanned) KeyMarker(middle, y0 + 0.75 * unit, kWhite, "T   not in plan");
    if (options_.arrows == Arrows::None) return;
    const double top = y0 + 1.25 * unit, bottom = y0 + 2.25 * unit, head = 2 * unit / 9;
    vwindow_.DrawLine(middle, top, middle, bottom);
    DrawHead(middle, top, top + head, kBlack, Apex::Down);
    DrawHead(middle, bottom - head, bottom, kBlack, Apex::Up);
    vwindow_.DrawText(middle + unit / 4, y0 + 11 * unit / 6 - 0.8 * vwindow_.TextHeight(), "Dependencies");
}

void GanttForm::KeySample(double x1, double x2, double top, double height, Color fill,
                          const std::string& label) {
    const double bottom = top + height;
    if (options_.milestones) {
        vwindow_.DrawMilestone(x1, top, x2, bottom, kBlack, fill);
    } else {
        vwindow_.DrawRect(x1, top, x2, bottom, kBlack, fill);
    }
    vwindow_.DrawText(x2 + Unit() / 4, bottom - 0.8 * vwindow_.TextHeight(), label);
}

void GanttForm::KeyMarker(double middle, double top, Color fill, const std::string& label) {
    const double side = Unit() / 3, bottom = top + side, x = middle + Unit() / 4;
    vwindow_.DrawTriangle(middle - side / 2, top, middle + side / 2, bottom, kRed, fill, Apex::Down);
    vwindow_.DrawText(x, bottom - 0.8 * vwindow_.TextHeight(), label);
    // "L" as the index of the label's "T": the latest time.
    vwindow_.DrawSmallText(x + vwindow_.TextWidth("T"), bottom - 0.4 * vwindow_.TextHeight(), "L");
}

}  // namespace vortan
