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
    return EndsWithText(fileName, ".png") ? Output::Png : Output::Pdf;
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

void RequireEnding(const std::string& what, const std::string& fileName,
                   std::span<const std::string_view> endings) {
    std::string all;
    for (std::size_t i = 0; i < endings.size(); ++i) {
        if (EndsWithText(fileName, endings[i])) return;
        all += (i == 0 ? "" : i + 1 == endings.size() ? " or " : ", ") + std::string(endings[i]);
    }
    throw CliError("The " + what + " cannot be written to \"" + fileName + "\". Its name must end in " + all +
                   ".");
}

void RequireChartFile(const std::string& fileName, bool data) {
    constexpr std::string_view endings[] = {".svg", ".png", ".pdf", ".json", ".csv"};
    RequireEnding("chart", fileName, std::span(endings).first(data ? 5 : 3));
}

void WriteResultFile(const std::string& fileName, const std::string& bytes) {
    const std::string problem =
        SaveFile(fileName, QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
    if (!problem.empty()) throw CliError(problem);
}

DrawingTools::DrawingTools(CliSession& session, const char* form)
    : toolkit_(StartToolkit()), settings_(session.platform) {
    try {
        settings_.ReadConfigFile();
    } catch (const Fault& fault) {
        session.streams.err << "Warning: " << fault.Description() << "\n";
    }
    metrics_ = std::make_unique<QtTextMetrics>(ToFont(settings_.FontOf(form)));
}

DrawingTools::~DrawingTools() = default;

void DrawingTools::Write(const Vwindow& surface, const std::string& title, const std::string& fileName,
                         bool fit) const {
    QByteArray bytes;
    try {
        bytes = MakeFile({surface, *metrics_, title}, OutputOf(fileName), fit);
    } catch (const Fault& fault) {
        throw CliError(fault.Description());
    }
    WriteResultFile(fileName, bytes.toStdString());
}

ChartFile::ChartFile(CliSession& session, const ChartKind& kind)
    : tools_(session, kind.form),
      form_(kind.make({session.workspace, tools_.TheSettings(), session.iterative.Results(), tools_.Metrics(),
                       session.solver})) {
    form_->TheVwindow().SetPage(PageOf(DefaultPageLayout()));
}

void ChartFile::Write(const std::string& fileName, bool fit) const {
    tools_.Write(form_->TheVwindow(), form_->Caption(), fileName, fit);
}

std::string ChartFile::PictureText() const {
    return GetPictureText({form_->TheVwindow(), tools_.Metrics(), form_->Caption()});
}

void WriteChart(CliSession& session, const std::string& fileName, const ChartKind& kind, bool fit) {
    ChartFile chart(session, kind);
    chart.Form().Start();
    chart.Write(fileName, fit);
}

}  // namespace vortan
