#pragma once

#include <vector>

namespace vortan {

/// How the entries of a key stand in columns, filled one after the other.
struct KeyColumns {
    int rows = 1;           ///< entries in each but the last
    std::vector<int> left;  ///< left edges, twips
};

/// As few rows as the room allows: the right end of all columns must lie left of `right`. A single column
/// need not fit. `first` is the left edge of the first column, `gap` the space between two.
KeyColumns FitKeyColumns(const std::vector<int>& widths, int first, int gap, int right);

}  // namespace vortan
