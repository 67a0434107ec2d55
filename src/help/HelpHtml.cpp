#include "charts/HtmlText.h"
#include "help/HelpViews.h"

namespace vortan {
namespace {

using Kind = HelpBlock::Kind;
using Run = HelpRun::Kind;

class HtmlWriter {
  public:
    explicit HtmlWriter(const HelpAddresses& addresses) : addresses_(addresses) {}

    std::string Write(const HelpPage& page) {
        for (const HelpBlock& block : page.blocks) {
            OpenList(block);
            Block(block);
        }
        OpenList({});
        return std::move(html_);
    }

  private:
    /// Ends the list that is open, and begins one for an item.
    void OpenList(const HelpBlock& block) {
        const bool list = block.kind == Kind::Item || block.kind == Kind::NumberedItem;
        if (list && list_ == block.kind) return;
        if (list_ != Kind::Paragraph) html_ += list_ == Kind::Item ? "</ul>\n" : "</ol>\n";
        list_ = list ? block.kind : Kind::Paragraph;
        if (!list) return;
        html_ += block.kind == Kind::Item ? "<ul>\n"
                 : block.number == 1      ? "<ol>\n"
                                          : "<ol start=\"" + std::to_string(block.number) + "\">\n";
    }
    void Block(const HelpBlock& block) {
        switch (block.kind) {
            case Kind::Title:
                return Element("h1", block.text);
            case Kind::Section:
                return Element("h2", block.text);
            case Kind::Paragraph:
                return Element("p", block.text);
            case Kind::Item:
            case Kind::NumberedItem:
                return Element("li", block.text);
            case Kind::Lines:
                html_ += "<pre>" + EscapedHtml(PlainText(block.text), "\n") + "</pre>\n";
                break;
            case Kind::Table:
                Table(block);
                break;
            case Kind::Picture: {
                const std::string shows = EscapedHtml(PlainText(block.text));
                html_ += "<p><img src=\"" + EscapedHtml(addresses_.picture(block.picture)) + "\" alt=\"" +
                         shows + "\"></p>\n<p class=\"caption\"><i>" + shows + "</i></p>\n";
            }
        }
    }
    void Table(const HelpBlock& block) {
        html_ += "<table border=\"1\" cellspacing=\"0\" cellpadding=\"4\">\n";
        for (const auto& row : block.rows) {
            html_ += "<tr>";
            for (const HelpText& cell : row) Element(&row == &block.rows.front() ? "th" : "td", cell, "");
            html_ += "</tr>\n";
        }
        html_ += "</table>\n";
    }
    void Element(const std::string& name, const HelpText& text, const char* end = "\n") {
        html_ += "<" + name + ">";
        for (const HelpRun& run : text) Piece(run);
        html_ += "</" + name + ">" + end;
    }
    void Piece(const HelpRun& run) {
        const std::string text = EscapedHtml(run.text);
        switch (run.kind) {
            case Run::Plain:
                html_ += text;
                break;
            case Run::Emphasis:
                html_ += "<i>" + text + "</i>";
                break;
            case Run::Link:
                html_ += "<a href=\"" + EscapedHtml(addresses_.page(run.target)) + "\">" + text + "</a>";
                break;
            case Run::ProgramText:
                html_ += "<b>" + text + "</b>";
                break;
            case Run::Key:
                html_ += "<kbd>" + text + "</kbd>";
                break;
            case Run::Code:
                html_ += "<code>" + text + "</code>";
        }
    }

    const HelpAddresses& addresses_;
    std::string html_;
    Kind list_ = Kind::Paragraph;  // of the list that is open; a paragraph is none
};

}  // namespace

std::string HelpHtml(const HelpPage& page, const HelpAddresses& addresses) {
    return HtmlWriter(addresses).Write(page);
}

}  // namespace vortan
