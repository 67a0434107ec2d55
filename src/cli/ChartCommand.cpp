#include <QGuiApplication>
#include <cctype>
#include <memory>
#include <ostream>

#include "charts/GanttForm.h"
#include "charts/PageCuts.h"
#include "cli/Commands.h"
#include "model/Fault.h"
#include "paint/Pictures.h"
#include "paint/Printout.h"
#include "paint/SaveFile.h"
#include "persist/Settings.h"

namespace vortan {
namespace {

enum class Output { Svg, Png, Pdf };

Output OutputOf(const std::string& fileName) {
    std::string ending = fileName.substr(fileName.size() < 4 ? 0 : fileName.size() - 4);
    for (char& c : ending) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (ending == ".svg") return Output::Svg;
    if (ending == ".png") return Output::Png;
    if (ending == ".pdf") return Output::Pdf;
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
    const PageCuts cuts(PageStatsOf(shown.surface));
    const auto choice = cuts.Fit() >= 1 ? PageCuts::Choice::CenterOnPage
                        : fit           ? PageCuts::Choice::ReduceToFit
                                        : PageCuts::Choice::MultipleHeadings;
    return MakePdf(DefaultPageLayout(), shown, cuts.Pieces(choice));
}

}  // namespace

int ChartCommand(CliSession& session, const ChartOptions& options) {
    const Output output = OutputOf(options.out);
    session.Load(options.file);
    session.SelectProject(options.project);
    session.SelectJournal(options.journal);
    if (!session.workspace.ThisProject()) throw CliError("There is no project in " + options.file + ".");
    if (session.Solve() != kExitDone) throw CliError(session.StatusLine(), kExitHalted);

    const auto toolkit = StartToolkit();
    Settings settings(session.platform);
    try {
        settings.ReadConfigFile();
    } catch (const Fault& fault) {
        session.streams.err << "Warning: " << fault.Description() << "\n";
    }
    const QtTextMetrics metrics(ToFont(settings.FontOf("GanttForm")));
    GanttForm chart(session.workspace, settings, metrics);
    chart.TheVwindow().SetPage(PageOf(DefaultPageLayout()));
    chart.Start();
    const ShownSurface shown{chart.TheVwindow(), metrics, chart.PrintTitle()};
    std::string problem;
    try {
        problem = SaveFile(options.out, MakeFile(shown, output, options.fit));
    } catch (const Fault& fault) {
        problem = fault.Description();
    }
    if (!problem.empty()) throw CliError(problem);
    return kExitDone;
}

}  // namespace vortan
