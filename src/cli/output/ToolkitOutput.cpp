#include "cli/output/ToolkitOutput.h"

#include <QGuiApplication>
#include <clocale>

#include "charts/PageCuts.h"
#include "model/Characters.h"
#include "paint/Pictures.h"
#include "paint/Printout.h"
#include "paint/QtTextMetrics.h"
#include "reports/xlsx/XlsxFile.h"

namespace vortan {
namespace {

/// Fonts need the toolkit to be up, which needs no display.
std::unique_ptr<QGuiApplication> StartToolkit() {
    if (QCoreApplication::instance()) return nullptr;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // What the toolkit thinks of its surroundings is of no use to whoever runs a batch.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    static int count = 1;
    static char name[] = "vortan-cli";
    static char* words[] = {name, nullptr};
    auto toolkit = std::make_unique<QGuiApplication>(count, words);
    std::setlocale(LC_NUMERIC, "C");  // which the toolkit has taken from the environment
    return toolkit;
}

QByteArray MakePages(const ShownSurface& shown, bool fit) {
    const PageCuts cuts(PageStatsOf(shown.surface, PageOf(DefaultPageLayout())));
    const auto choice = cuts.Fit() >= 1 ? PageCuts::Choice::CenterOnPage
                        : fit           ? PageCuts::Choice::ReduceToFit
                                        : PageCuts::Choice::MultipleHeadings;
    return MakePdf(DefaultPageLayout(), shown, cuts.Pieces(choice));
}

class ToolkitDrawing : public Drawing {
  public:
    explicit ToolkitDrawing(const FormFont& font) : toolkit_(StartToolkit()), metrics_(ToFont(font)) {}

    const TextMetrics& Metrics() const override { return metrics_; }
    Vwindow::Page Page() const override { return PageOf(DefaultPageLayout()); }
    std::string MakeFile(const Vwindow& surface, const std::string& title, const std::string& fileName,
                         bool fit) const override {
        const ShownSurface shown{surface, metrics_, title};
        if (EndsWithText(fileName, ".svg")) return MakePicture(shown, PictureType::Svg).toStdString();
        if (EndsWithText(fileName, ".png")) return MakePicture(shown, PictureType::Png).toStdString();
        return MakePages(shown, fit).toStdString();
    }
    std::string PictureText(const Vwindow& surface, const std::string& title) const override {
        return GetPictureText({surface, metrics_, title});
    }

  private:
    std::unique_ptr<QGuiApplication> toolkit_;  // before metrics_, which need it
    QtTextMetrics metrics_;
};

class ToolkitOutput final : public Output {
  public:
    std::unique_ptr<Drawing> StartDrawing(const FormFont& font) override {
        return std::make_unique<ToolkitDrawing>(font);
    }
    std::string MakeWorkbook(const Table& table, const std::string& sheet,
                             const std::string& currencySymbol) override {
        return XlsxOf(table, {sheet, currencySymbol});
    }
};

}  // namespace

Output& OutputByToolkit() {
    static ToolkitOutput output;
    return output;
}

}  // namespace vortan
