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

Output OutputOf(const std::string& fileName, bool data = false) {
    if (EndsWithText(fileName, ".svg")) return Output::Svg;
    if (EndsWithText(fileName, ".png")) return Output::Png;
    if (EndsWithText(fileName, ".pdf")) return Output::Pdf;
    throw CliError("The chart cannot be written to \"" + fileName + "\". Its name must end in .svg, .png" +
                   (data ? ", .pdf, .json or .csv." : " or .pdf."));
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

void RequireChartFile(const std::string& fileName, bool data) {
    if (data && (EndsWithText(fileName, ".json") || EndsWithText(fileName, ".csv"))) return;
    OutputOf(fileName, data);
}

void WriteResultFile(const std::string& fileName, const std::string& bytes) {
    const std::string problem =
        SaveFile(fileName, QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
    if (!problem.empty()) throw CliError(problem);
}

ChartFile::ChartFile(CliSession& session, const ChartKind& kind)
    : toolkit_(StartToolkit()), settings_(session.platform) {
    try {
        settings_.ReadConfigFile();
    } catch (const Fault& fault) {
        session.streams.err << "Warning: " << fault.Description() << "\n";
    }
    metrics_ = std::make_unique<QtTextMetrics>(ToFont(settings_.FontOf(kind.form)));
    form_ = kind.make({session.workspace, settings_, session.iterative.Results(), *metrics_, session.solver});
    form_->TheVwindow().SetPage(PageOf(DefaultPageLayout()));
}

ChartFile::~ChartFile() = default;

void ChartFile::Write(const std::string& fileName, bool fit) const {
    const ShownSurface shown{form_->TheVwindow(), *metrics_, form_->Caption()};
    QByteArray bytes;
    try {
        bytes = MakeFile(shown, OutputOf(fileName), fit);
    } catch (const Fault& fault) {
        throw CliError(fault.Description());
    }
    WriteResultFile(fileName, bytes.toStdString());
}

std::string ChartFile::PictureText() const {
    return GetPictureText({form_->TheVwindow(), *metrics_, form_->Caption()});
}

void WriteChart(CliSession& session, const std::string& fileName, const ChartKind& kind, bool fit) {
    ChartFile chart(session, kind);
    chart.Form().Start();
    chart.Write(fileName, fit);
}

}  // namespace vortan
