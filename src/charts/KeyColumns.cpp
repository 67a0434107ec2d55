#include "charts/KeyColumns.h"

#include <algorithm>
#include <cstdint>

namespace vortan {
namespace {

/// The largest of any run of numbers, from tables of the largest of each 1, 2, 4, 8 ... in a row.
class RunMaximum {
  public:
    explicit RunMaximum(const std::vector<int>& numbers) : levels_{numbers} {
        for (std::size_t half = 1; 2 * half <= numbers.size(); half *= 2) {
            std::vector<int> next(numbers.size() - 2 * half + 1);
            for (std::size_t i = 0; i < next.size(); ++i)
                next[i] = std::max(levels_.back()[i], levels_.back()[i + half]);
            levels_.push_back(std::move(next));
        }
    }
    /// Of the numbers from `begin` to before `end`, at least one.
    int Of(std::size_t begin, std::size_t end) const {
        std::size_t level = 0, length = 1;
        for (; 2 * length <= end - begin; length *= 2) ++level;
        return std::max(levels_[level][begin], levels_[level][end - length]);
    }

  private:
    std::vector<std::vector<int>> levels_;
};

}  // namespace

KeyColumns FitKeyColumns(const std::vector<int>& widths, int first, int gap, int right) {
    if (widths.empty()) return {1, {first}};
    const RunMaximum widest(widths);
    for (std::size_t rows = 1;; ++rows) {
        KeyColumns columns{static_cast<int>(rows), {}};
        std::int64_t left = first, end = first;
        for (std::size_t begin = 0; begin < widths.size(); begin += rows) {
            if (begin > 0) left = end + gap;
            columns.left.push_back(static_cast<int>(left));
            end = left + widest.Of(begin, std::min(begin + rows, widths.size()));
            if (end >= right) break;
        }
        if (end < right || rows >= widths.size()) return columns;
    }
}

}  // namespace vortan
