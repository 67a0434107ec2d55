// vortan-manual FOLDER PICTURES: writes the manual as linked web pages with their pictures, and as
// manual.pdf.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <algorithm>
#include <iostream>
#include <set>

#include "charts/HtmlText.h"
#include "help/HelpViews.h"
#include "help/Manual.h"
#include "paint/HelpDocument.h"
#include "paint/Printout.h"
#include "paint/SaveFile.h"
#include "paint/Text.h"

namespace {

using namespace vortan;

const char kStyle[] =
    "body{font-family:sans-serif;line-height:1.45;max-width:46em;margin:1.5em auto;padding:0 "
    "1em;color:#222;background:#fff}"
    "a{color:#0645ad}h1{font-size:1.5em}h2{font-size:1.15em}img{max-width:100%;border:1px solid "
    "#ccc;background:#fff}"
    "table{border-collapse:collapse}td,th{border:1px solid #bbb;padding:.25em "
    ".6em;text-align:left;vertical-align:top}"
    "th,code,kbd,pre{background:#f0f0f0}kbd{border:1px solid #bbb;border-radius:3px;padding:0 .3em}"
    "pre{padding:.6em;overflow:auto}nav{margin:1em 0;color:#666}.caption{color:#666}"
    "@media(prefers-color-scheme:dark){body{color:#ddd;background:#1c1c1e}a{color:#8ab4f8}"
    "th,code,kbd,pre{background:#333}}";

std::string WebName(const HelpPage& page) {
    const std::string name = HelpFileName(page.key);
    return name.substr(0, name.size() - 4) + ".html";
}

std::string WebPage(const Manual& manual, const HelpPage& page) {
    const HelpAddresses addresses{[&](const std::string& key) {
                                      const HelpPage* to = manual.GetHelpPage(key);
                                      return to ? WebName(*to) : std::string("index.html");
                                  },
                                  [](const std::string& file) { return file; }};
    std::string ways = "<nav><a href=\"index.html\">Index</a>";
    if (const HelpPage* guide = manual.GetHelpPage("Guide me"))
        ways += " | <a href=\"" + WebName(*guide) + "\">" + EscapedHtml(guide->key) + "</a>";
    if (const HelpPage* next = page.next.empty() ? nullptr : manual.GetHelpPage(page.next))
        ways += " | Next: <a href=\"" + WebName(*next) + "\">" + EscapedHtml(next->key) + "</a>";
    ways += "</nav>\n";
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><meta name=\"viewport\" "
           "content=\"width=device-width,initial-scale=1\"><title>" +
           EscapedHtml(page.key) + " - VORTAN</title><style>" + kStyle + "</style></head><body>\n" + ways +
           HelpHtml(page, addresses) + (page.blocks.size() > 12 ? ways : "") + "</body></html>\n";
}

/// As one reads it: the welcome, the way through the tours, then all others by key.
std::vector<const HelpPage*> InReadingOrder(const Manual& manual) {
    std::vector<const HelpPage*> pages;
    std::set<const HelpPage*> taken;
    const auto take = [&](const HelpPage* page) {
        if (page && taken.insert(page).second) pages.push_back(page);
    };
    take(manual.GetHelpPage("Welcome"));
    take(manual.GetHelpPage("Guide me"));
    take(manual.GetHelpPage("Tour list"));
    for (const HelpPage& page : manual.Pages()) {
        if (!page.key.starts_with("Tour #")) continue;
        for (const HelpPage* step = &page; step && !taken.contains(step);
             step = manual.GetHelpPage(step->next))
            take(step);
    }
    for (const HelpPage& page : manual.Pages()) {
        if (page.key != "Index") take(&page);
    }
    take(manual.GetHelpPage("Index"));
    return pages;
}

bool Save(const std::string& name, const QByteArray& data) {
    const std::string problem = SaveFile(name, data);
    if (!problem.empty()) std::cerr << problem << "\n";
    return problem.empty();
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 3) {
        std::cerr << "vortan-manual FOLDER PICTURES\n";
        return 2;
    }
    const std::string folder = argv[1], pictures = argv[2];
    if (!QDir().mkpath(Q(folder))) {
        std::cerr << "The folder " << folder << " cannot be made.\n";
        return 2;
    }
    const Manual& manual = TheManual();
    bool done = true;
    for (const HelpPage& page : manual.Pages()) {
        done &= Save(folder + "/" + WebName(page), QByteArray::fromStdString(WebPage(manual, page)));
        for (const HelpBlock& block : page.blocks) {
            QFile picture(Q(pictures + "/" + block.picture));
            if (block.picture.empty() || !picture.open(QIODevice::ReadOnly)) continue;
            done &= Save(folder + "/" + block.picture, picture.readAll());
        }
    }
    const auto image = [&](const std::string& file) { return QImage(Q(pictures + "/" + file)); };
    QPageLayout layout = DefaultPageLayout();
    layout.setOrientation(QPageLayout::Portrait);
    const QByteArray pdf = MakeHelpPdf(InReadingOrder(manual), layout, "VORTAN", image);
    done &= Save(folder + "/manual.pdf", pdf);
    return done ? 0 : 1;
}
