#include "shell/desk/Printing.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QPrinter>
#include <QPrinterInfo>
#include <algorithm>
#include <memory>

#include "paint/HelpDocument.h"
#include "paint/Printout.h"
#include "paint/SaveFile.h"
#include "paint/Text.h"
#include "shell/desk/CommonDialogs.h"

namespace vortan {
namespace {

constexpr double kMostMargin = 60;  // millimetres

std::unique_ptr<QPrinter> NewPrinter(const QString& name, const QPageLayout& layout) {
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    if (name.isEmpty()) {
        printer->setOutputFormat(QPrinter::PdfFormat);
    } else {
        printer->setPrinterName(name);
    }
    printer->setPageLayout(layout);
    return printer;
}

/// The dialog of a printer and its page.
class PrinterForm : public QDialog {
  public:
    PrinterForm(QWidget* parent, const QString& printer, const QPageLayout& layout)
        : QDialog(parent),
          printers_(new QComboBox),
          papers_(new QComboBox),
          orientations_(new QComboBox),
          margin_(new QDoubleSpinBox) {
        setObjectName("PrinterForm");
        setWindowTitle("Printer Setup");
        printers_->setObjectName("PrinterCombo");
        printers_->addItem("PDF file", QString());
        for (const QString& name : QPrinterInfo::availablePrinterNames()) printers_->addItem(name, name);
        printers_->setCurrentIndex(std::max(0, printers_->findData(printer)));
        papers_->setObjectName("PaperCombo");
        ListPapers(layout.pageSize());
        orientations_->setObjectName("OrientationCombo");
        orientations_->addItem("Portrait", QPageLayout::Portrait);
        orientations_->addItem("Landscape", QPageLayout::Landscape);
        orientations_->setCurrentIndex(orientations_->findData(layout.orientation()));
        margin_->setObjectName("MarginText");
        margin_->setRange(0, kMostMargin);
        margin_->setDecimals(1);
        margin_->setSuffix(" mm");
        margin_->setValue(layout.margins(QPageLayout::Millimeter).left());
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(printers_, &QComboBox::currentIndexChanged, this,
                [this] { ListPapers(papers_->currentData().value<QPageSize>()); });
        auto* rows = new QFormLayout(this);
        rows->addRow("P&rinter:", printers_);
        rows->addRow("&Paper:", papers_);
        rows->addRow("&Orientation:", orientations_);
        rows->addRow("&Margin:", margin_);
        rows->addRow(buttons);
    }

    QString Printer() const { return printers_->currentData().toString(); }
    /// As the printer takes it: it may have margins of its own.
    QPageLayout Layout() const {
        const double margin = margin_->value();
        const QPageLayout wanted(papers_->currentData().value<QPageSize>(),
                                 orientations_->currentData().value<QPageLayout::Orientation>(),
                                 QMarginsF(margin, margin, margin, margin), QPageLayout::Millimeter);
        return NewPrinter(Printer(), wanted)->pageLayout();
    }

  private:
    /// Those of the printer, or the usual ones for a file, with `chosen` in any case.
    void ListPapers(const QPageSize& chosen) {
        QList<QPageSize> papers = QPrinterInfo::printerInfo(Printer()).supportedPageSizes();
        if (papers.isEmpty()) {
            for (const auto id : {QPageSize::A3, QPageSize::A4, QPageSize::A5, QPageSize::Letter,
                                  QPageSize::Legal, QPageSize::Tabloid})
                papers.append(QPageSize(id));
        }
        if (!papers.contains(chosen)) papers.prepend(chosen);
        papers_->clear();
        for (const QPageSize& paper : papers) papers_->addItem(paper.name(), QVariant::fromValue(paper));
        papers_->setCurrentIndex(static_cast<int>(papers.indexOf(chosen)));
    }

    QComboBox *printers_, *papers_, *orientations_;
    QDoubleSpinBox* margin_;
};

}  // namespace

Printing::Printing() : layout_(DefaultPageLayout()) {}

Vwindow::Page Printing::Page() const {
    return PageOf(layout_);
}

bool Printing::ShowPrinter(QWidget* parent) {
    PrinterForm dialog(parent, printer_, layout_);
    if (dialog.exec() != QDialog::Accepted) return false;
    printer_ = dialog.Printer();
    layout_ = dialog.Layout();
    return true;
}

std::string Printing::Print(QWidget* parent, Platform& platform, const ShownSurface& shown,
                            const std::vector<Piece>& pieces) const {
    if (!printer_.isEmpty()) {
        const auto printer = NewPrinter(printer_, layout_);
        printer->setDocName(Q(shown.title));
        PrintPieces(*printer, shown, pieces);
        return "Sent to the printer " + S(printer_);
    }
    return WritePdf(parent, platform, shown.title, [&] { return MakePdf(layout_, shown, pieces); });
}

std::string Printing::PrintHelpPage(QWidget* parent, Platform& platform, const HelpPage& page) const {
    const auto picture = [](const std::string& file) { return QImage(":/manual/" + Q(file)); };
    if (!printer_.isEmpty()) {
        const auto printer = NewPrinter(printer_, layout_);
        printer->setDocName(Q(page.key));
        PrintHelpPages(*printer, {&page}, picture);
        return "Sent to the printer " + S(printer_);
    }
    return WritePdf(parent, platform, page.key,
                    [&] { return MakeHelpPdf({&page}, layout_, Q(page.key), picture); });
}

std::string Printing::WritePdf(QWidget* parent, Platform& platform, const std::string& title,
                               const std::function<QByteArray()>& make) const {
    const std::string name = AskForFile(parent, "Print to PDF File", title, "PDF (*.pdf)");
    if (name.empty()) return {};
    const std::string problem = SaveFile(name, make());
    if (problem.empty()) return "Written to " + name;
    platform.MessageBox(problem, "File Not Written", BoxIcon::Warning, BoxButtons::Ok);
    return {};
}

}  // namespace vortan
