#include "cli/ChartFile.h"

#include <QGuiApplication>
#include <ostream>

#include "charts/PageCuts.h"
#include "model/Characters.h"
#include "model/Fault.h"
#include "paint/Pictures.h"
#include "paint/Printout.h"
#include "paint/SaveFile.h"

namespace vortan {
namespace {

enum class Output { Svg, Png, Pdf };

Output OutputOf(const std::string& fileName) {
    if (EndsWithText(fileName, ".svg")) return Output::Svg;
    if (EndsWithText(fileName, ".png")) return Output::Png;
    if (EndsWithText(fileName, ".pdf")) return Output::Pdf;
    throw CliError("The chart cannot be written to \"" + fileName +
                   "\". Its name must end in .svg, .png or .pdf.");
}

/// Fonts need the toolkit to be up, which needs no display.
std::unique_ptr<QGuiApplication> StartToolkit() {
    if (QCoreApplication::instance()) return nullptr;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // What the toolkit thinks of its surroundings is of no use to whoever runs a batch.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    static int count = 1;
    static char name[] = "vortan-cli";
    static char* words[] = {name, nullptr};
    return std::make_unique<QGuiApplication>(count, words);
}

QByteArray MakeFile(const ShownSurface& shown, Output output, bool fit) {
    if (output == Output::Svg) return MakePicture(shown, PictureType::Svg);
    if (output == Output::Png) return MakePicture(shown, PictureType::Png);
    const PageCuts cuts(PageStatsOf(shown.surface, PageOf(DefaultPageLayout())));
    const auto choice = cuts.Fit() >= 1 ? PageCuts::Choice::CenterOnPage
                        : fit           ? PageCuts::Choice::ReduceToFit
                                        : PageCuts::Choice::MultipleHeadings;
    return MakePdf(DefaultPageLayout(), shown, cuts.Pieces(choice));
}

}  // namespace

void RequireChartFile(const std::string& fileName) {
    OutputOf(fileName);
}

void WriteChart(CliSession& session, const std::string& fileName, const ChartKind& kind, bool fit) {
    const auto toolkit = StartToolkit();
    Settings settings(session.platform);
    try {
        settings.ReadConfigFile();
    } catch (const Fault& fault) {
        session.streams.err << "Warning: " << fault.Description() << "\n";
    }
    const QtTextMetrics metrics(ToFont(settings.FontOf(kind.form)));
    const auto chart = kind.make({session.workspace, settings, session.iterative.Results(), metrics});
    chart->TheVwindow().SetPage(PageOf(DefaultPageLayout()));
    chart->Start();
    const ShownSurface shown{chart->TheVwindow(), metrics, chart->Caption()};
    std::string problem;
    try {
        problem = SaveFile(fileName, MakeFile(shown, OutputOf(fileName), fit));
    } catch (const Fault& fault) {
        problem = fault.Description();
    }
    if (!problem.empty()) throw CliError(problem);
}

}  // namespace vortan
