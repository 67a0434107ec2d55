#pragma once

#include <functional>
#include <string>

#include "charts/Vwindow.h"

/// The vertical axis of a plot: a column of labels, one data row a step, down to 0 at the top of the footer.
namespace vortan {

/// The value of one row: 1, 2, 5, 10, 20 ... so that about ten rows reach `maxValue`.
double ComputeIncrement(double maxValue);

/// A row for each step from `maxValue`, taken up to a whole step, down to 0, with its label in column 0.
void AddAxisRows(Vwindow& surface, double maxValue, double increment,
                 const std::function<std::string(double value)>& label);

/// How high a value lies that is `steps` rows above 0.
double AxisY(const Vwindow& surface, double steps);

}  // namespace vortan
