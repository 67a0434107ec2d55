#include "paint/TableFile.h"

#include "charts/PageCuts.h"
#include "model/Characters.h"
#include "model/Fault.h"
#include "paint/Pictures.h"
#include "paint/Printout.h"
#include "reports/CsvFile.h"
#include "reports/HtmlFile.h"
#include "reports/xlsx/XlsxFile.h"

namespace vortan {

QByteArray MakeTableFile(const TableFile& file, const std::string& name) {
    const auto is = [&name](const char* ending) { return EndsWithText(name, ending); };
    if (is(".csv")) return QByteArray::fromStdString(CsvOf(file.table));
    if (is(".html")) return QByteArray::fromStdString(HtmlOf(file.table));
    if (is(".xlsx")) return QByteArray::fromStdString(XlsxOf(file.table, {"Table", file.currencySymbol}));
    if (is(".svg")) return MakePicture(file.shown, PictureType::Svg);
    if (is(".png")) return MakePicture(file.shown, PictureType::Png);
    if (!is(".pdf")) Refuse("The file must end in .xlsx, .csv, .html, .pdf, .svg or .png");
    const PageCuts cuts(PageStatsOf(file.shown.surface, PageOf(file.page)));
    const auto choice = cuts.Fit() >= 1 ? PageCuts::Choice::CenterOnPage : PageCuts::Choice::MultipleHeadings;
    return MakePdf(file.page, file.shown, cuts.Pieces(choice));
}

}  // namespace vortan
