#include "shell/pages/PageSizeForm.h"

#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <algorithm>

#include "charts/Twips.h"
#include "paint/ChartPainter.h"
#include "paint/Text.h"
#include "shell/desk/FormHost.h"
#include "shell/desk/Printing.h"

namespace vortan {
namespace {

constexpr double kPreviewScale = 1.0 / 5;
constexpr double kShadow = 100;  // twips on the screen
constexpr std::ptrdiff_t kManyPages = 50;
constexpr QRgb kSheet = qRgb(0xE0, 0xE0, 0xE0);
// Buttons by their index, which is that of PageCuts::Choice.
constexpr auto kFirstChosen = {PageCuts::Choice::ReduceToFit, PageCuts::Choice::CenterOnPage};

std::ptrdiff_t CountPages(const std::vector<Piece>& pieces) {
    return std::count_if(pieces.begin(), pieces.end(), [](const Piece& piece) { return piece.newPage; });
}

/// Nobody prints a stack of paper by mistake.
bool WantsPages(Platform& platform, std::ptrdiff_t pages) {
    return pages <= kManyPages ||
           platform.MessageBox("This will print " + std::to_string(pages) + " pages.  Do you want that?",
                               "Many Pages", BoxIcon::Question, BoxButtons::YesNo) == BoxAnswer::Yes;
}

/// A sheet of paper with its shadow, the part that can be printed on, and the surface over it, at a fifth of
/// the size.
class Preview : public QWidget {
  public:
    Preview(ChildForm& source, const Printing& printing) : source_(source), printing_(printing) {}

  protected:
    void paintEvent(QPaintEvent*) override {
        const auto shown = source_.Surface();
        if (!shown || !shown->surface.IsComplete()) return;
        QPainter painter(this);
        const double pixel = kTwipsPerInch / logicalDpiX();  // twips on the screen
        painter.scale(1 / pixel, 1 / pixel);
        const Vwindow::Page page = printing_.Page();
        const QRectF sheet(0, 0, (page.width + 2 * page.marginWidth) * kPreviewScale,
                           (page.height + 2 * page.marginHeight) * kPreviewScale);
        const double across = page.marginWidth * kPreviewScale, down = page.marginHeight * kPreviewScale;
        const QRectF printable = sheet.adjusted(across, down, -across, -down);
        painter.fillRect(sheet.translated(kShadow, kShadow), Qt::black);
        painter.setPen(QPen(Qt::black, pixel));
        painter.setBrush(QColor(kSheet));
        painter.drawRect(sheet);
        painter.fillRect(printable, Qt::white);
        painter.translate(printable.topLeft());
        painter.scale(kPreviewScale, kPreviewScale);
        // Of a surface of many pages only what the form shows.
        const double perPixel = pixel / kPreviewScale;
        const QRect part(0, 0,
                         static_cast<int>(std::min(shown->surface.ContentWidth() + perPixel,
                                                   (width() * pixel - across) / kPreviewScale)),
                         static_cast<int>(std::min(shown->surface.ContentHeight() + perPixel,
                                                   (height() * pixel - down) / kPreviewScale)));
        painter.setRenderHint(QPainter::TextAntialiasing);
        ChartPainter(shown->surface, shown->metrics).Paint(painter, part, perPixel);
    }

  private:
    ChildForm& source_;
    const Printing& printing_;
};

}  // namespace

void PageSizeForm::Wakeup(Desktop& desktop, ChildForm& source) {
    auto* form = new PageSizeForm(desktop, source);
    form->Refresh();
    for (const Choice choice : kFirstChosen) {
        QPushButton* button = form->buttons_[static_cast<std::size_t>(choice)];
        if (!button->isEnabled()) continue;
        form->ShowWith(*button);
        break;
    }
}

PageSizeForm::PageSizeForm(Desktop& desktop, ChildForm& source)
    : EntryForm(desktop, "PageSizeForm", "Print Preview"),
      source_(source),
      preview_(new Preview(source, desktop.host->ThePrinting())) {
    OkCommand().hide();
    CancelCommand().hide();
    auto* frames = new QVBoxLayout;
    frames->addWidget(NewFrame(
        0, "Print multiple pages",
        {{Choice::MultipleHeadings, "&Multiple headings"}, {Choice::SingleHeading, "&Single heading"}}));
    frames->addWidget(NewFrame(1, "Print a single page",
                               {{Choice::ExpandToFit, "&Expand to fit"},
                                {Choice::ReduceToFit, "&Reduce to fit"},
                                {Choice::CenterOnPage, "Center &on page"}}));
    frames->addWidget(NewFrame(2, "Print no pages",
                               {{Choice::ChangePage, "Change &page"},
                                {Choice::ChangeFont, "Change &font"},
                                {Choice::Cancel, "&Cancel"}}));
    frames->addStretch();
    auto* row = new QHBoxLayout;
    row->addLayout(frames);
    row->addSpacing(fontMetrics().height());
    row->addWidget(preview_, 1);
    Body().addLayout(row, 1);
}

QWidget* PageSizeForm::NewFrame(int index, const QString& caption,
                                std::initializer_list<std::pair<Choice, const char*>> buttons) {
    auto* frame = new QGroupBox(caption);
    frame->setObjectName(QString("PrintFrame(%1)").arg(index));
    auto* column = new QVBoxLayout(frame);
    for (const auto& [choice, text] : buttons) {
        const int number = static_cast<int>(choice);
        auto* button = new QPushButton(text);
        button->setObjectName(QString("ContinueCommand(%1)").arg(number));
        connect(button, &QPushButton::clicked, this,
                Command("PageSize:ContinueCommand_Click",
                        [this, chosen = choice] { ContinueCommandClick(chosen); }));
        buttons_[static_cast<std::size_t>(number)] = button;
        column->addWidget(button);
    }
    return frame;
}

void PageSizeForm::Refresh() {
    const auto shown = source_.Surface();
    const bool complete = shown && shown->surface.IsComplete();
    for (const Choice choice : {Choice::MultipleHeadings, Choice::SingleHeading, Choice::ExpandToFit,
                                Choice::ReduceToFit, Choice::CenterOnPage})
        buttons_[static_cast<std::size_t>(choice)]->setEnabled(false);
    preview_->update();
    if (!complete) return;
    const PageCuts cuts(PageStatsOf(shown->surface, desktop_.host->ThePrinting().Page()));
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        buttons_[i]->setEnabled(cuts.IsEnabled(static_cast<Choice>(i)));
    for (const Choice choice : {Choice::MultipleHeadings, Choice::SingleHeading}) {
        buttons_[static_cast<std::size_t>(choice)]->setToolTip(
            QString("%1 pages").arg(CountPages(cuts.Pieces(choice))));
    }
}

void PageSizeForm::NewSolution() {
    desktop_.Run("PageSize:NewSolution", [this] {
        // A form that goes gives up its name and is deleted later.
        if (source_.FormName().isEmpty()) return Unload();
        Refresh();
    });
}

/// The form goes first, and may be deleted while a dialog that follows is open: a change of font or page does
/// not come back to it.
void PageSizeForm::ContinueCommandClick(Choice choice) {
    FormHost& host = *desktop_.host;
    Platform& platform = desktop_.platform;
    ChildForm& source = source_;
    Unload();
    if (choice == Choice::ChangeFont) return host.SetupFont();
    if (choice == Choice::ChangePage) return host.SetupPrinter();
    const auto shown = source.Surface();
    if (!shown || !shown->surface.IsComplete()) return;
    const auto pieces = PageCuts(PageStatsOf(shown->surface, host.ThePrinting().Page())).Pieces(choice);
    if (pieces.empty() || !WantsPages(platform, CountPages(pieces))) return;
    host.Note(host.ThePrinting().Print(&host.MainWindow(), platform, *shown, pieces));
}

QSize PageSizeForm::sizeHint() const {
    return {screen()->geometry().width() * 3 / 4, QDialog::sizeHint().height()};
}

void PageSizeForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_F1) {
        EntryForm::keyPressEvent(event);
        return;
    }
    desktop_.Run("PageSize:Form_KeyDown", [this] { desktop_.host->DisplayHelpPage("Print preview"); });
}

}  // namespace vortan
