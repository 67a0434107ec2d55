#include "charts/WorkBreakdown.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

#include "model/Rounding.h"

namespace vortan {
namespace {

class Builder {
  public:
    Builder(const WorkBreakdownSheet& sheet, LevelLimit& limit, const std::function<std::int32_t()>& ask)
        : sheet_(sheet),
          limit_(limit),
          ask_(ask),
          charWidth_(sheet.metrics.TextWidth("X")),
          charHeight_(sheet.metrics.TextHeight()) {}

    WorkBreakdown Build(Vproject& project) {
        PlaceTop(project);
        for (Vtask* task : project.TaskList()) {
            if (!task->Include() || !task->Subproject()) continue;
            if (!PlaceSubproject(*task)) break;
        }
        CountPages();
        return std::move(made_);
    }

  private:
    /// The ends so far of what has been walked.
    struct Reach {
        int x, y;
    };

    /// The next place at or below `y` where a line of text fits on a page.
    int GoDown(double place) const {
        const int y = RoundToInt32(place);
        if (y % sheet_.pageHeight + charHeight_ < sheet_.pageHeight) return y;
        return RoundToInt32(std::floor((static_cast<double>(y) + charHeight_) / sheet_.pageHeight) *
                                sheet_.pageHeight +
                            charHeight_);
    }

    void Stroke(double x1, double y1, double x2, double y2) {
        made_.strokes.push_back({RoundToInt32(x1), RoundToInt32(y1), RoundToInt32(x2), RoundToInt32(y2)});
    }

    /// The tree of a project from `x`, `y` on; without `draw` it is only measured. `holder` is the task that
    /// it is, none for the project at the top.
    void ProcessProject(Vproject& project, Vtask* holder, int level, int x, int y, Reach& max, bool draw) {
        // In a damaged plan a project may hold itself.
        if (!within_.insert(&project).second) return;
        if (level <= 1) {
            const std::string text = project.BuildNodeText();
            const int width = sheet_.metrics.TextWidth(text) + 2 * charWidth_;
            max.x = std::max(max.x, RoundToInt32(double(x) + width));
            if (draw) made_.boxes.push_back({level, text, x, y, width - charWidth_, charHeight_, {}, holder});
            if (draw && !holder) made_.boxes.back().project = &project;
            y = GoDown(y + 1.25 * charHeight_);
        }
        x += 3 * charWidth_;
        const int treeX = x - 2 * charWidth_, topY = y;
        int lastY = y;
        bool given = true;
        for (Vtask* task : project.TaskList()) {
            if (!task->Include()) continue;
            Vproject* subproject = task->Subproject();
            if (subproject && level == 0) continue;
            PlaceLine(*task, level, treeX, x, y, lastY, max, draw);
            if (subproject) given = ProcessNested(*task, level, x, y, max, draw);
            if (!given) break;
        }
        within_.erase(&project);
        if (!given) return;
        max.y = y;
        if (draw) Stroke(treeX, topY, treeX, lastY);
    }

    void PlaceLine(Vtask& task, int level, int treeX, int x, int& y, int& lastY, Reach& max, bool draw) {
        std::string text = task.BuildNodeText();
        max.x = std::max(max.x, RoundToInt32(double(x) + sheet_.metrics.TextWidth(text) + 2.0 * charWidth_));
        lastY = RoundToInt32(y + charHeight_ / 2.0);
        if (draw) {
            made_.lines.push_back({level, std::move(text), x, y, 0, 0, {}, &task});
            Stroke(treeX, lastY, x, lastY);
        }
        y = GoDown(double(y) + charHeight_);
    }

    /// False: the user gave up.
    bool ProcessNested(Vtask& task, int level, int x, int& y, Reach& max, bool draw) {
        if (level == 1 && limit_ == 0) {
            limit_ = RoundToInt32(ask_() - 2.0);
            if (limit_ < 0) return false;
            // What was asked once is known: 2 levels are as many as 3, since level 1 is never left out.
            limit_ = std::max(limit_, 1);
        }
        if (level < limit_) {
            max.y = y;
            ProcessProject(*task.Subproject(), &task, level + 1, x, y, max, draw);
            y = max.y;
        }
        return true;
    }

    /// In the middle of the first page. One that is wider begins at its left.
    void PlaceTop(Vproject& project) {
        Reach max{charWidth_, charHeight_};
        ProcessProject(project, nullptr, 0, charWidth_, charHeight_, max, false);
        x_ = std::max(RoundToInt32((sheet_.pageWidth - max.x) / 2.0 - 2 * charWidth_), charWidth_);
        y_ = charHeight_;
        ProcessProject(project, nullptr, 0, x_, y_, max, true);
        busLeft_ = x_ + charWidth_;
        busY_ = max.y >= y_ + 2 * charHeight_ ? RoundToInt32(max.y - charHeight_ / 2.0) : max.y;
        x_ = 4 * charWidth_;
        y_ = GoDown(max.y + 2.0 * charHeight_);
        max_ = {charWidth_, max.y};
    }

    /// In the row, or in a new one if it is full, and the bus to it. False: the user gave up.
    bool PlaceSubproject(Vtask& task) {
        Vproject& subproject = *task.Subproject();
        const bool firstOfRow = x_ == 4 * charWidth_;
        ProcessProject(subproject, &task, 1, x_, y_, max_, false);
        if (limit_ < 0) return false;
        if (max_.x > sheet_.pageWidth && !firstOfRow) BeginRow();
        const int dropX =
            RoundToInt32(x_ + charWidth_ + sheet_.metrics.TextWidth(subproject.BuildNodeText()) / 2.0);
        if (busLeft_ > busRight_) {
            const int y = GoDown((static_cast<double>(busY_) + y_) / 2);
            Stroke(busLeft_, busY_, busLeft_, y);
            busY_ = y;
            busRight_ = busLeft_;
        }
        if (dropX < busLeft_) {
            Stroke(dropX, busY_, busLeft_, busY_);
            busLeft_ = dropX;
        } else if (dropX > busRight_) {
            Stroke(dropX, busY_, busLeft_, busY_);
            busRight_ = dropX;
        }
        Stroke(dropX, busY_, dropX, y_);
        ProcessProject(subproject, &task, 1, x_, y_, max_, true);
        x_ = RoundToInt32(max_.x + 4.0 * charWidth_);
        rowBottom_ = std::max(rowBottom_, max_.y);
        return true;
    }

    void BeginRow() {
        x_ = 4 * charWidth_;
        max_.x = charWidth_;
        y_ = GoDown(rowBottom_ + 2.0 * charHeight_);
        if (busLeft_ > charWidth_) Stroke(charWidth_, busY_, busLeft_, busY_);
        Stroke(charWidth_, busY_, charWidth_, y_ - charHeight_);
        busY_ = y_ - charHeight_;
        busLeft_ = busRight_ = charWidth_;
    }

    void CountPages() {
        int right = 0, bottom = 0;
        for (const auto& box : made_.boxes) {
            right = std::max(right, RoundToInt32(double(box.x) + box.width));
            bottom = std::max(bottom, RoundToInt32(double(box.y) + 1.25 * box.height));
        }
        for (const auto& line : made_.lines) {
            right = std::max(right, RoundToInt32(double(line.x) + sheet_.metrics.TextWidth(line.text)));
            bottom = std::max(bottom, RoundToInt32(double(line.y) + charHeight_));
        }
        const auto pages = [](int extent, int page) {
            return static_cast<int>((std::int64_t{extent} + page - 1) / page);
        };
        made_.across = pages(right, sheet_.pageWidth);
        made_.down = pages(bottom, sheet_.pageHeight);
    }

    const WorkBreakdownSheet& sheet_;
    LevelLimit& limit_;
    const std::function<std::int32_t()>& ask_;
    int charWidth_, charHeight_;
    WorkBreakdown made_;
    std::unordered_set<const Vproject*> within_;  ///< that hold the one in hand
    int x_ = 0, y_ = 0;                           ///< of the next piece
    Reach max_{};
    int busY_ = 0, busLeft_ = 0, busRight_ = 0, rowBottom_ = 0;
};

}  // namespace

WorkBreakdown BuildWorkBreakdown(Vproject& project, const WorkBreakdownSheet& sheet, LevelLimit& limit,
                                 const std::function<std::int32_t()>& ask) {
    return Builder(sheet, limit, ask).Build(project);
}

}  // namespace vortan
