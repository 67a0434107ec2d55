// What stands where on a chart: for the search and for assistive technology.

#include <algorithm>

#include "model/Vresource.h"
#include "model/Vtask.h"
#include "paint/Text.h"
#include "reports/ChartTables.h"
#include "shell/pages/ChartPage.h"

namespace vortan {

int ChartPage::Places() const {
    const Vwindow& surface = chart_->TheVwindow();
    const int rows = surface.TheStyle() == Vwindow::Style::Free ? 0 : surface.Rows();
    return rows + static_cast<int>(surface.Items().size());
}

QRect ChartPage::PlaceOf(int place) const {
    const Vwindow& surface = chart_->TheVwindow();
    const int rows = Places() - static_cast<int>(surface.Items().size());
    if (place < rows) {
        const int right = surface.FixedCols() > 0 ? surface.FixedCols() : surface.Cols();
        return QRect(QPoint(0, surface.RowPos(place)),
                     QPoint(surface.ColPos(right), surface.RowPos(place + 1)));
    }
    const DrawItem& item = surface.Items()[static_cast<std::size_t>(place - rows)];
    return QRect(QPoint(item.x1, item.y1), QPoint(item.x2, item.y2));
}

/// Of a picture: the text that stands there, and all of what it belongs to, which may be more than fits.
QString ChartPage::TextOf(int place) const {
    const Vwindow& surface = chart_->TheVwindow();
    const int rows = Places() - static_cast<int>(surface.Items().size());
    QString all;
    if (place < rows) {
        const bool cells = place >= surface.FixedRows() && !(surface.HasFooter() && place == rows - 1);
        for (int col = 0; cells && col < surface.Cols(); ++col) {
            if (!surface.IsTimeColumn(col)) all += Q(surface.Cell(place, col)) + " ";
        }
        return all;
    }
    const DrawItem& item = surface.Items()[static_cast<std::size_t>(place - rows)];
    if (item.kind != DrawItem::Kind::Text) return {};
    const auto subject = chart_->SubjectAt((item.x1 + item.x2) / 2, (item.y1 + item.y2) / 2);
    if (subject.task) all = Q(subject.task->BuildNodeText()) + " ";
    if (subject.resource) all = Q(subject.resource->BuildNodeText()) + " ";
    return all + Q(item.text);
}

bool ChartPage::Find(const FindWords& words, FindFrom from) {
    const int count = Places();
    if (!view_->Marked()) found_ = -1;
    const int begin =
        from == FindFrom::Here ? std::max(found_, 0) : found_ + (from == FindFrom::Next ? 1 : -1);
    for (int i = 0; i < count; ++i) {
        const int step = from == FindFrom::Before ? -i : i;
        const int place = ((begin + step) % count + count) % count;
        if (!words.AllIn(TextOf(place))) continue;
        found_ = place;
        view_->Mark(PlaceOf(place));
        return true;
    }
    view_->Mark(std::nullopt);
    return false;
}

void ChartPage::ShowSurface() {
    spoken_.reset();
    view_->SurfaceChanged();
}

SurfaceView::Place ChartPage::SpokenPlace(int part) const {
    const SpokenParts& spoken = Spoken();
    const auto count = static_cast<int>(spoken.places.size());
    if (part >= count) {
        const Table& table = *spoken.table;
        QStringList cells;
        for (int col = 0; col < table.Cols(); ++col) {
            const std::string_view text = table.Cell(part - count, col).text;
            if (!text.empty())
                cells += Q(TitleLine(table.Columns()[static_cast<std::size_t>(col)].title) + ": " +
                           std::string(text));
        }
        const Vwindow& surface = chart_->TheVwindow();
        return {cells.join(", "), QRect(0, 0, surface.ContentWidth(), surface.ContentHeight())};
    }
    const int place = spoken.places[static_cast<std::size_t>(part)];
    QString text = TextOf(place).trimmed();
    const int rows = Places() - static_cast<int>(chart_->TheVwindow().Items().size());
    if (place < rows) {
        const QString shown = Q(chart_->RowText(place));
        if (!shown.isEmpty()) text += "\n" + shown;
    }
    return {text, PlaceOf(place)};
}

const ChartPage::SpokenParts& ChartPage::Spoken() const {
    if (!spoken_) {
        spoken_.emplace();
        for (int place = 0; place < Places(); ++place)
            if (!TextOf(place).trimmed().isEmpty()) spoken_->places.push_back(place);
        if (!chart_->IsEmpty()) spoken_->table = TableOf(*chart_, desktop_.platform.CurrencySymbol());
    }
    return *spoken_;
}

}  // namespace vortan
