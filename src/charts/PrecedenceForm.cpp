#include "charts/PrecedenceForm.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "charts/PageHeader.h"
#include "charts/TextLines.h"
#include "model/ErrTrap.h"
#include "model/Rounding.h"
#include "model/ValueText.h"

namespace vortan {

void PrecedenceForm::Start() {
    const Section section("Precedence:Start");
    LayOut();
    if (IsEmpty()) {
        workspace_.ThePlatform().MessageBox("There are no tasks to display.", "Empty Precedence Diagram",
                                            BoxIcon::Warning, BoxButtons::Ok);
    }
}

std::string PrecedenceForm::Caption() const {
    return "Precedence diagram for " + GetPageHeader(workspace_);
}

ChartForm::OptionsFrame PrecedenceForm::Frame() {
    OptionsFrame frame{"StyleFrame", "Style", {}, true};
    int index = 0;
    for (const char* caption : {"Numeric index", "Elapsed time", "Date only", "Date and time"}) {
        const auto style = static_cast<PrecedenceStyle>(index);
        frame.options.push_back({Option::Kind::Choice, "StyleOption(" + std::to_string(index++) + ")",
                                 caption, style == style_, [this, style](bool on) {
                                     if (on) style_ = style;
                                 }});
    }
    Option units{Option::Kind::List, "UnitsCombo", "Units of elapsed times"};
    units.items = {"minutes", "hours", "days", "weeks", "months"};
    units.chosen = static_cast<int>(units_);
    units.choose = [this](int item) { units_ = static_cast<PrecedenceUnits>(item); };
    frame.options.push_back(std::move(units));
    return frame;
}

void PrecedenceForm::LayOut() {
    const Section section("Precedence:Vwindow_RedoLayout");
    workspace_.ThePlatform().StatusMessage("Building precedence diagram");
    vwindow_.ClearLayout();
    dragged_ = cursor_ = std::nullopt;
    moved_ = false;
    data_ = BuildPrecedence(workspace_, solver_);
    ComputeBoxDimensions();
    MakeLabels();
    workspace_.ThePlatform().StatusMessage("");
    vwindow_.EndLayout(0, 0);
}

void PrecedenceForm::ComputeBoxDimensions() {
    const int letter = vwindow_.TextWidth("X");
    lineHeight_ = RoundToInt32(1.25 * vwindow_.TextHeight());
    if (style_ == PrecedenceStyle::Index) {
        gap_ = 3 * letter;
        lines_ = boxCols_ = 1;
        // A number with a digit less is that of another box.
        boxWidth_ = std::max(3 * letter, vwindow_.TextWidth(std::to_string(data_.boxes.size())));
    } else {
        gap_ = 6 * letter;
        lines_ = (data_.showProject ? 4 : 3) + (style_ == PrecedenceStyle::DateTime ? 2 : 0);
        boxCols_ = 3;
        boxWidth_ = 3 * vwindow_.TextWidth(" " + FormatDate(DateTime(0.5242592592592593)) + " ");
    }
    boxHeight_ = lines_ * lineHeight_;
    FitToPage();
}

/// No box lies across the edge of a printed page. Columns are spaced exactly: what a rounded gap is too wide
/// would add up from page to page.
void PrecedenceForm::FitToPage() {
    const int usable = vwindow_.ThePage().width / vwindow_.GridStep() * vwindow_.GridStep();
    const int perPage = usable / (boxWidth_ + gap_);
    if (perPage > 0) gap_ = RoundToInt32(static_cast<double>(usable - perPage * boxWidth_) / perPage);
    pitch_ = perPage > 0 ? static_cast<double>(usable) / perPage : boxWidth_ + gap_;
}

int PrecedenceForm::GetX(int col) const {
    return RoundToInt32(gap_ / 4.0 + col * pitch_);
}

int PrecedenceForm::GetY(int row) const {
    return RoundToInt32(boxHeight_ / 4.0 + static_cast<double>(row) * boxHeight_);
}

PrecedenceForm::Room PrecedenceForm::RoomOf(int position) const {
    if (position < 2) return {0, static_cast<double>(boxWidth_), static_cast<double>(position * lineHeight_)};
    const double width = static_cast<double>(boxWidth_) / boxCols_, left = (position + 1) % 3 * width;
    const int lowerRow = lines_ - (style_ == PrecedenceStyle::DateTime ? 2 : 1);
    return {left, left + width, position < 5 ? TableTop() : static_cast<double>(lowerRow * lineHeight_)};
}

/// Texts are cut to their places once; a box that moves takes them along.
void PrecedenceForm::MakeLabels() {
    labels_.clear();
    firstLabel_.assign(1, 0);
    for (std::size_t place = 0; place < data_.boxes.size(); ++place) {
        std::vector<std::string> texts = BoxTexts(data_, place, style_, units_);
        const int titles = static_cast<int>(texts.size()) - (style_ == PrecedenceStyle::Index ? 0 : 6);
        for (int i = 0; i < static_cast<int>(texts.size()); ++i) {
            const Room room = RoomOf(i < titles ? i : i - titles + 2);
            const std::string_view text =
                FittingPart(texts[static_cast<std::size_t>(i)], room.right - room.left, vwindow_.Metrics());
            if (text.empty()) continue;
            const double x = (room.left + room.right - WidestLine(text, vwindow_.Metrics())) / 2;
            labels_.push_back({std::string(text), x, room.top + lineHeight_ / 8.0});
        }
        firstLabel_.push_back(labels_.size());
    }
}

void PrecedenceForm::Draw() {
    const Section section("Precedence:Vwindow_RedoGraphics");
    DrawLines();
    for (std::size_t place = 0; place < data_.boxes.size(); ++place) DrawBox(place);
    vwindow_.EndGraphics();
}

void PrecedenceForm::DrawLines() {
    for (const auto& [from, to] : data_.links) {
        const Box a = CornersOf(static_cast<std::size_t>(from)), b = CornersOf(static_cast<std::size_t>(to));
        vwindow_.DrawLine(a.x2, a.y1 + boxHeight_ / 2.0, b.x1, b.y1 + boxHeight_ / 2.0);
    }
}

void PrecedenceForm::DrawBox(std::size_t place) {
    const Box corners = CornersOf(place);
    vwindow_.DrawRect(corners.x1, corners.y1, corners.x2, corners.y2, kBlack, kWhite);
    for (std::size_t i = firstLabel_[place]; i < firstLabel_[place + 1]; ++i)
        vwindow_.DrawText(corners.x1 + labels_[i].x, corners.y1 + labels_[i].y, labels_[i].text);
    if (style_ == PrecedenceStyle::Index) return;
    for (int i = 1; i < lines_; ++i) {
        // Date and time take two lines each.
        if (style_ == PrecedenceStyle::DateTime && (i == lines_ - 3 || i == lines_ - 1)) continue;
        const int y = corners.y1 + i * lineHeight_;
        vwindow_.DrawLine(corners.x1, y, corners.x2, y);
    }
    for (int i = 1; i < boxCols_; ++i) {
        const double x = corners.x1 + static_cast<double>(boxWidth_) * i / boxCols_;
        vwindow_.DrawLine(x, corners.y1 + TableTop(), x, corners.y2);
    }
}

ChartForm::Box PrecedenceForm::CornersOf(std::size_t place) const {
    const int x = GetX(At(place).col), y = GetY(At(place).row);
    return {x, y, x + boxWidth_, y + boxHeight_};
}

}  // namespace vortan
