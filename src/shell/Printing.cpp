#include "shell/Printing.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QPageSetupDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRegularExpression>
#include <memory>

#include "paint/Printout.h"
#include "paint/SaveFile.h"
#include "paint/Text.h"

namespace vortan {
namespace {

constexpr const char* kPdfFile = "PDF file";

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

QString PageText(const QPageLayout& layout) {
    return layout.pageSize().name() +
           (layout.orientation() == QPageLayout::Landscape ? ", landscape" : ", portrait");
}

QString AskForPdfFile(QWidget* parent, const QString& title) {
    QFileDialog dialog(parent, "Print to PDF File", {}, "PDF (*.pdf)");
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("pdf");
    // Of "Mechanized Gantt chart for House: ..." what every file system takes.
    dialog.selectFile(title.section(':', 0, 0).remove(QRegularExpression("[^\\w .-]")).trimmed() + ".pdf");
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

}  // namespace

Printing::Printing() : layout_(DefaultPageLayout()) {}

Vwindow::Page Printing::Page() const {
    return PageOf(layout_);
}

bool Printing::ShowPrinter(QWidget* parent) {
    QDialog dialog(parent);
    dialog.setObjectName("PrinterForm");
    dialog.setWindowTitle("Printer Setup");
    auto* rows = new QFormLayout(&dialog);
    auto* printers = new QComboBox;
    printers->setObjectName("PrinterCombo");
    printers->addItem(kPdfFile, QString());
    for (const QString& name : QPrinterInfo::availablePrinterNames()) printers->addItem(name, name);
    printers->setCurrentIndex(std::max(0, printers->findData(printer_)));
    QPageLayout layout = layout_;
    auto* page = new QPushButton;
    page->setObjectName("PageCommand");
    page->setText(PageText(layout) + " ...");
    rows->addRow("&Printer:", printers);
    rows->addRow("Pa&ge:", page);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    rows->addRow(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    QObject::connect(page, &QPushButton::clicked, &dialog, [&] {
        const auto printer = NewPrinter(printers->currentData().toString(), layout);
        QPageSetupDialog setup(printer.get(), &dialog);
        if (setup.exec() != QDialog::Accepted) return;
        layout = printer->pageLayout();
        page->setText(PageText(layout) + " ...");
    });
    if (dialog.exec() != QDialog::Accepted) return false;
    printer_ = printers->currentData().toString();
    // A printer has papers and margins of its own.
    layout_ = NewPrinter(printer_, layout)->pageLayout();
    return true;
}

void Printing::Print(QWidget* parent, Platform& platform, const ShownSurface& shown,
                     const std::vector<Piece>& pieces) const {
    if (!printer_.isEmpty()) {
        const auto printer = NewPrinter(printer_, layout_);
        printer->setDocName(Q(shown.title));
        PrintPieces(*printer, shown, pieces);
        return;
    }
    const QString name = AskForPdfFile(parent, Q(shown.title));
    if (name.isEmpty()) return;
    const std::string problem = SaveFile(S(name), MakePdf(layout_, shown, pieces));
    if (!problem.empty()) platform.MessageBox(problem, "File Not Written", BoxIcon::Warning, BoxButtons::Ok);
}

}  // namespace vortan
