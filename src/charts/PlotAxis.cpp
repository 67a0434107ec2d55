#include "charts/PlotAxis.h"

#include <cmath>

namespace vortan {

double ComputeIncrement(double maxValue) {
    double increment = 1;
    for (int step = 0; increment * 10 < maxValue; step = (step + 1) % 3) increment *= step == 1 ? 2.5 : 2;
    return increment;
}

void AddAxisRows(Vwindow& surface, double maxValue, double increment,
                 const std::function<std::string(double value)>& label) {
    for (double step = std::max(0.0, std::ceil(maxValue / increment)); step >= 0; --step) {
        surface.AddRow();
        surface.SetCell(surface.Rows() - 1, 0, label(step * increment));
    }
}

double AxisY(const Vwindow& surface, double steps) {
    const int base = surface.RowPos(surface.Rows() - 1);
    return base - steps * (base - surface.RowPos(surface.Rows() - 2));
}

}  // namespace vortan
