#include "help/HelpPage.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace vortan {
namespace {

using Kind = HelpBlock::Kind;
using Run = HelpRun::Kind;

constexpr std::size_t kLongestLine = 100;  // characters

bool IsWordChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || static_cast<unsigned char>(c) >= 128;
}

std::string_view Trimmed(std::string_view text) {
    while (text.starts_with(' ')) text.remove_prefix(1);
    while (text.ends_with(' ')) text.remove_suffix(1);
    return text;
}

std::size_t CountCharacters(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

/// Reads the styles of one line's worth of text, whose lines have been joined.
class TextReader {
  public:
    TextReader(std::string_view source, int line, const std::string& file, std::vector<HelpFault>& faults)
        : rest_(source), line_(line), file_(file), faults_(faults) {}

    HelpText Read() {
        while (!rest_.empty()) ReadOne();
        EndPlain();
        return std::move(text_);
    }

  private:
    void ReadOne() {
        const char c = rest_.front();
        if (c == '\n') {
            ++line_;
            plain_ += ' ';
            rest_.remove_prefix(1);
        } else if (c == '\\' && rest_.size() > 1) {
            plain_ += rest_[1];
            rest_.remove_prefix(2);
        } else if (rest_.starts_with("[[")) {
            Styled(Run::Link, "[[", "]]");
        } else if (rest_.starts_with("**")) {
            Styled(Run::ProgramText, "**", "**");
        } else if (c == '`') {
            Styled(Run::Code, "`", "`");
        } else if (c == '{') {
            Styled(Run::Key, "{", "}");
        } else if (c == '*' && rest_.size() > 1 && rest_[1] != ' ' && rest_[1] != '\n') {
            Styled(Run::Emphasis, "*", "*");
        } else {
            plain_ += c;
            rest_.remove_prefix(1);
        }
    }
    void Styled(Run kind, std::string_view open, std::string_view close) {
        EndPlain();
        const std::size_t end = rest_.find(close, open.size());
        if (end == std::string_view::npos) {
            Complain("\"" + std::string(open) + "\" has no \"" + std::string(close) + "\"");
            plain_ += open;
            rest_.remove_prefix(open.size());
            return;
        }
        HelpRun run{kind, {}, {}, line_};
        std::string_view inside = rest_.substr(open.size(), end - open.size());
        for (const char c : inside) {
            if (c == '\n') ++line_;
            run.text += c == '\n' ? ' ' : c;
        }
        if (Trimmed(inside).empty()) Complain("nothing between \"" + std::string(open) + "\" and its end");
        if (kind == Run::Link) SplitLink(run);
        text_.push_back(std::move(run));
        rest_.remove_prefix(end + close.size());
    }
    static void SplitLink(HelpRun& run) {
        const std::size_t bar = run.text.find('|');
        run.target = Trimmed(std::string_view(run.text).substr(bar == std::string::npos ? 0 : bar + 1));
        run.text = Trimmed(std::string_view(run.text).substr(0, bar));
    }
    void EndPlain() {
        if (!plain_.empty()) text_.push_back({Run::Plain, std::move(plain_), {}, line_});
        plain_.clear();
    }
    void Complain(std::string text) { faults_.push_back({file_, line_, std::move(text)}); }

    std::string_view rest_;
    int line_;
    const std::string& file_;
    std::vector<HelpFault>& faults_;
    std::string plain_;
    HelpText text_;
};

/// Reads a page line by line. A block ends with a blank line or where a block of another kind begins.
class PageReader {
  public:
    PageReader(std::string_view file, std::vector<HelpFault>& faults) : faults_(faults) { page_.file = file; }

    HelpPage Read(std::string_view source) {
        while (!source.empty()) {
            const std::size_t end = source.find('\n');
            std::string_view text = source.substr(0, end);
            source.remove_prefix(end == std::string_view::npos ? source.size() : end + 1);
            while (text.ends_with(' ') || text.ends_with('\r')) text.remove_suffix(1);
            ++line_;
            if (CountCharacters(text) > kLongestLine) Complain("the line has more than 100 characters");
            if (text.find('\t') != std::string_view::npos) Complain("a tab");
            ReadLine(text);
        }
        EndBlock();
        CheckPage();
        return std::move(page_);
    }

  private:
    void ReadLine(std::string_view text) {
        if (line_ == 1) {
            page_.key = text;
        } else if (line_ == 2 && text.starts_with("next:")) {
            page_.next = Trimmed(text.substr(5));
        } else if (text.empty()) {
            if (kind_ != Kind::Lines)
                EndBlock();
            else
                source_ += '\n';
        } else if (kind_ == Kind::Lines && open_ && text.starts_with("    ")) {
            source_ += std::string(text.substr(4)) + "\n";
        } else if (IsListItem() && text.starts_with("  ")) {
            source_ += "\n" + std::string(Trimmed(text));
        } else {
            BeginOrGoOn(text);
        }
    }
    void BeginOrGoOn(std::string_view text) {
        int number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        const std::size_t digits = static_cast<std::size_t>(end - text.data());
        if (text.starts_with("# ")) {
            Begin(Kind::Title, text.substr(2));
            EndBlock();
        } else if (text.starts_with("## ")) {
            Begin(Kind::Section, text.substr(3));
            EndBlock();
        } else if (text.starts_with("* ")) {
            Begin(Kind::Item, text.substr(2));
        } else if (digits > 0 && error == std::errc() && text.substr(digits).starts_with(". ")) {
            Begin(Kind::NumberedItem, text.substr(digits + 2));
            number_ = number;
        } else if (text.starts_with("|")) {
            Row(text);
        } else if (text.starts_with("![")) {
            Picture(text);
        } else if (text.starts_with("    ")) {
            Begin(Kind::Lines, std::string(text.substr(4)) + "\n");
        } else if (text.starts_with(" ")) {
            Complain("the line is indented and belongs to nothing");
        } else if (open_ && kind_ == Kind::Paragraph) {
            source_ += "\n" + std::string(text);
        } else if (open_ && kind_ != Kind::Lines) {
            Complain("a list, table or the like is to end with a blank line; lines that go on are indented");
        } else {
            Begin(Kind::Paragraph, text);
        }
    }
    bool IsListItem() const { return open_ && (kind_ == Kind::Item || kind_ == Kind::NumberedItem); }
    void Begin(Kind kind, std::string_view text) {
        EndBlock();
        kind_ = kind;
        open_ = true;
        begin_ = line_;
        source_ = text;
    }
    /// Adds what has been read.
    void EndBlock() {
        if (!open_) return;
        open_ = false;
        if (kind_ == Kind::Table) return;  // its rows are there
        HelpBlock block{kind_, begin_};
        if (kind_ == Kind::Lines) {
            while (source_.ends_with('\n')) source_.pop_back();
            block.text = {{Run::Code, source_, {}, begin_}};
        } else {
            block.text = Text(source_, begin_);
            if (kind_ == Kind::NumberedItem) block.number = number_;
        }
        page_.blocks.push_back(std::move(block));
        kind_ = Kind::Paragraph;
    }
    HelpText Text(std::string_view source, int line) {
        return TextReader(source, line, page_.file, faults_).Read();
    }

    void Row(std::string_view text) {
        if (!open_ || kind_ != Kind::Table) {
            Begin(Kind::Table, "");
            page_.blocks.push_back({Kind::Table, line_});
        }
        if (text.find_first_not_of("|-: ") == std::string_view::npos) return;
        if (!text.ends_with('|')) Complain("a row of a table ends with \"|\"");
        std::vector<HelpText> cells;
        std::string cell;
        bool inLink = false, inCode = false;
        for (std::size_t i = 1; i < text.size(); ++i) {
            if (text[i] == '`') inCode = !inCode;
            if (text.substr(i).starts_with("[[")) inLink = true;
            if (text.substr(i).starts_with("]]")) inLink = false;
            if (text[i] == '|' && !inLink && !inCode && text[i - 1] != '\\') {
                cells.push_back(Text(Trimmed(cell), line_));
                cell.clear();
            } else {
                cell += text[i];
            }
        }
        auto& rows = page_.blocks.back().rows;
        if (!rows.empty() && rows.front().size() != cells.size())
            Complain("the row has " + std::to_string(cells.size()) + " cells, the head of the table " +
                     std::to_string(rows.front().size()));
        cells.resize(rows.empty() ? cells.size() : rows.front().size());
        rows.push_back(std::move(cells));
    }
    void Picture(std::string_view text) {
        const std::size_t middle = text.find("](");
        if (middle == std::string_view::npos || !text.ends_with(')')) {
            Complain("a picture is ![what it shows](file.png)");
            return;
        }
        Begin(Kind::Picture, "");
        open_ = false;
        page_.blocks.push_back({Kind::Picture,
                                line_,
                                Text(text.substr(2, middle - 2), line_),
                                {},
                                std::string(text.substr(middle + 2, text.size() - middle - 3))});
    }
    void CheckPage() {
        const auto titles = std::count_if(page_.blocks.begin(), page_.blocks.end(),
                                          [](const HelpBlock& block) { return block.kind == Kind::Title; });
        line_ = 1;
        if (page_.key.empty()) Complain("the first line is to be the key of the page");
        if (titles != 1 || page_.blocks.front().kind != Kind::Title)
            Complain("a page begins with one heading (\"# \") and has no other");
        if (page_.blocks.size() < 2) Complain("the page has no text");
        const std::string name = HelpFileName(page_.key);
        if (page_.file.substr(page_.file.rfind('/') + 1) != name)
            Complain("a page of the key \"" + page_.key + "\" is to be in a file named " + name);
    }
    void Complain(std::string text) { faults_.push_back({page_.file, line_, std::move(text)}); }

    std::vector<HelpFault>& faults_;
    HelpPage page_;
    int line_ = 0;
    // The block that is being read, as long as it is open.
    Kind kind_ = Kind::Paragraph;
    bool open_ = false;
    int begin_ = 0, number_ = 0;
    std::string source_;
};

}  // namespace

std::string HelpPage::Title() const {
    return blocks.empty() || blocks.front().kind != Kind::Title ? key : PlainText(blocks.front().text);
}

HelpPage ParseHelpPage(std::string_view file, std::string_view source, std::vector<HelpFault>& faults) {
    return PageReader(file, faults).Read(source);
}

std::string HelpFileName(std::string_view key) {
    std::string name;
    for (const char c : key) {
        if (IsWordChar(c) || c == '.') {
            name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        } else if (!name.empty() && !name.ends_with('-')) {
            name += '-';
        }
    }
    while (name.ends_with('-')) name.pop_back();
    return name + ".txt";
}

std::string PlainText(const HelpText& text) {
    std::string all;
    for (const HelpRun& run : text) all += run.text;
    return all;
}

}  // namespace vortan
