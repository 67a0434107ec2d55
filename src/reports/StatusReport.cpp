#include "reports/StatusReport.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "model/Characters.h"
#include "model/ValueText.h"
#include "model/Vresource.h"
#include "reports/RtfReading.h"

namespace vortan {
namespace {

constexpr std::size_t kCells = 4, kPreviousCell = 0, kTextCell = 1, kPresentCell = 2;

char MarkIn(const std::string& text) {
    const char first = text.empty() ? '\0' : text.front();
    return first == 'G' || first == 'Y' || first == 'R' ? first : '\0';
}

bool IsMark(const RtfToken& token) {
    const std::string_view text = token.Text();
    return text == "G" || text == "Y" || text == "R";
}

std::string WithBlankOf(const RtfToken& token, std::string text) {
    if (token.Text().back() == ' ') text += ' ';
    return text;
}

bool IsPictureType(std::string_view word) {
    constexpr std::string_view kTypes[] = {"emfblip", "pngblip",    "jpegblip",  "macpict",
                                           "wbitmap", "pmmetafile", "wmetafile", "dibitmap"};
    return std::find(std::begin(kTypes), std::end(kTypes), word) != std::end(kTypes);
}

/// Of the words that tell the size of a picture.
std::optional<int> SizeNumber(std::string_view word) {
    constexpr std::pair<std::string_view, int> kSizes[] = {{"picw", kReportPixelsWide},
                                                           {"pich", kReportPixelsHigh},
                                                           {"picwgoal", kReportTwipsWide},
                                                           {"pichgoal", kReportTwipsHigh},
                                                           {"picscalex", 100},
                                                           {"picscaley", 100},
                                                           {"piccropl", 0},
                                                           {"piccropr", 0},
                                                           {"piccropt", 0},
                                                           {"piccropb", 0}};
    for (const auto& [name, number] : kSizes)
        if (word == name) return number;
    return std::nullopt;
}

}  // namespace

ReportTexts::ReportTexts(const Vproject& from)
    : project(from.ProjectName()),
      description(from.Description()),
      journal(FormatDate(from.Journal())),
      manager(from.Manager() ? from.Manager()->Description() : "") {}

StatusReport::StatusReport(std::string bytes) : text_(std::move(bytes)) {
    ReadTable();
    BuildRows();
}

void StatusReport::ReadTable() {
    const auto& tokens = text_.Tokens();
    std::size_t number = 0, first = 0;
    std::vector<Cell> cells;
    RtfPlainText text;
    RtfGroups groups;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        groups.Take(i, tokens[i]);
        const std::string_view word = tokens[i].Word();
        if (word == "trowd" && cells.empty()) {  // what stands between two tables is no part of a cell
            text.TakeText();
            first = i + 1;
        } else if (word == "cell") {
            cells.push_back({first, i, text.TakeText()});
            first = i + 1;
        } else if (word == "row") {
            if (cells.size() == kCells) table_.push_back({number, {cells[0], cells[1], cells[2], cells[3]}});
            cells.clear();
            ++number;
            first = i + 1;
        } else if (groups.HasGroup() && groups.Innermost().isShown) {
            text.Take(tokens[i]);
        }
    }
}

void StatusReport::BuildRows() {
    if (table_.empty()) return;
    // The first row of a document is none of the table if there is another.
    if (table_.front().number == 0 && table_.size() > 1) table_.erase(table_.begin());
    const std::size_t headingNumber = table_.front().number;
    heading_ = table_.front().cells[kTextCell].text;
    Rows.resize(table_.back().number - headingNumber);
    for (std::size_t i = 1; i < table_.size(); ++i) {
        TableRow& row = table_[i];
        row.number -= headingNumber + 1;
        Rows[row.number] = {true, row.cells[kTextCell].text, MarkIn(row.cells[kPreviousCell].text),
                            MarkIn(row.cells[kPresentCell].text)};
    }
}

void StatusReport::CopyToPrevious() {
    for (StatusRow& row : Rows) row.previous = row.present;
}

/// As the key of the document has it: the number of the last colour word that follows the letter. Editors put
/// such a word in front of every piece of text, so one behind another text that happens to end in the letter,
/// or behind a mark of the table, counts only if the colour can be meant.
int StatusReport::ColorOf(char mark) const {
    const auto& tokens = text_.Tokens();
    const RtfColors colors(tokens);
    std::optional<int> key, last;
    std::size_t letter = tokens.size(), row = 0;
    const auto inMarks = [&](std::size_t at) {
        while (row < table_.size() && table_[row].cells.back().end < at) ++row;
        if (row == table_.size()) return false;
        const auto holds = [at](const Cell& cell) { return cell.first <= at && at < cell.end; };
        return holds(table_[row].cells[kPreviousCell]) || holds(table_[row].cells[kPresentCell]);
    };
    std::optional<int> before, ofMarks;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].IsText()) {
            letter = i;
            if (tokens[i].Text().front() == mark && IsMark(tokens[i]) &&
                colors.Suits(before.value_or(-1), mark) && inMarks(i))
                ofMarks = before;
        }
        if (!tokens[i].Is("cf") || !tokens[i].Number()) continue;
        before = tokens[i].Number();
        if (letter == tokens.size()) continue;
        const std::string_view text = Trim(tokens[letter].Text());
        if (text.empty() || text.back() != mark) continue;
        last = before;
        if (text.size() == 1 && !inMarks(letter)) key = last;
    }
    if (last && (last == key || !colors.Has(*last) || colors.Suits(*last, mark))) return *last;
    if (key) return *key;
    if (ofMarks) return *ofMarks;
    const int found = colors.FirstFor(mark);
    return found >= 0 ? found : last.value_or(0);
}

std::string StatusReport::Write(const ReportTexts& texts) const {
    Changes changes;
    PutTexts(changes, texts);
    return text_.Write(changes);
}

std::string StatusReport::Write(const ReportTexts& texts, const ReportPictures& pictures) const {
    Changes changes;
    PutTexts(changes, texts);
    std::map<char, int> colors;
    for (const char mark : {'G', 'Y', 'R'}) colors[mark] = ColorOf(mark);
    for (std::size_t i = 1; i < table_.size(); ++i) {
        const TableRow& row = table_[i];
        const StatusRow& marks = Rows[row.number];
        PutMark(changes, row.cells[kPreviousCell], marks.previous, colors[marks.previous]);
        PutMark(changes, row.cells[kPresentCell], marks.present, colors[marks.present]);
    }
    std::size_t count = 0;
    for (const Picture& picture : FindPictures()) {
        count += picture.isFallback ? 0 : 1;
        if (count > 2) break;
        if (count > 0) PutPicture(changes, picture, count == 1 ? pictures.budget : pictures.gantt);
    }
    return text_.Write(changes);
}

void StatusReport::PutMark(Changes& changes, const Cell& cell, char mark, int color) const {
    if (!mark) return;
    for (std::size_t i = cell.first; i < cell.end; ++i) {
        const RtfToken& token = text_.Tokens()[i];
        if (IsMark(token) && token.Text().front() != mark) changes[i] = mark;
        if (token.Is("cf") && token.Number() && token.Number() != color)
            changes[i] = "\\cf" + std::to_string(color);
    }
    if (Trim(cell.text).empty()) {
        changes[cell.end] =
            "{\\cf" + std::to_string(color) + " " + mark + "}" + std::string(text_.Tokens()[cell.end].Text());
    }
}

void StatusReport::PutTexts(Changes& changes, const ReportTexts& texts) const {
    const std::pair<std::string_view, const std::string&> marks[] = {{"VortanProject", texts.project},
                                                                     {"VortanDescription", texts.description},
                                                                     {"VortanJournal", texts.journal},
                                                                     {"VortanManager", texts.manager}};
    const auto& tokens = text_.Tokens();
    std::vector<std::pair<std::string_view, std::size_t>> open;  // names, and what follows their group
    for (std::size_t i = 0; i + 2 < tokens.size(); ++i) {
        const bool begins = tokens[i].Is("bkmkstart"), ends = tokens[i].Is("bkmkend");
        if ((!begins && !ends) || !tokens[i + 2].IsClose()) continue;
        const std::string_view name = Trim(tokens[i + 1].Text());
        const auto* mark = std::find_if(std::begin(marks), std::end(marks),
                                        [&](const auto& each) { return each.first == name; });
        if (mark == std::end(marks)) continue;
        if (begins) {
            open.emplace_back(name, i + 3);
            continue;
        }
        const auto opened =
            std::find_if(open.begin(), open.end(), [&](const auto& each) { return each.first == name; });
        if (opened == open.end()) continue;
        // Its group has a brace and a symbol ahead of the word.
        if (i >= opened->second + 2) PutText(changes, opened->second, i - 2, mark->second);
        open.erase(opened);
    }
}

/// A text that has been stretched over more than words of one paragraph is the writer's own.
void StatusReport::PutText(Changes& changes, std::size_t first, std::size_t end,
                           const std::string& text) const {
    const auto& tokens = text_.Tokens();
    if (!tokens[end].IsOpen()) return;
    RtfPlainText present;
    std::vector<std::size_t> places;
    for (std::size_t i = first; i < end; ++i) {
        const RtfToken& token = tokens[i];
        for (const char* word : {"par", "cell", "row", "pict", "bkmkstart", "bkmkend", "sect", "field"})
            if (token.Is(word)) return;
        if (token.IsText() || token.IsEscape() || token.Byte() || token.Is("u")) places.push_back(i);
        present.Take(token);
    }
    if (present.TakeText() == text) return;
    for (const std::size_t place : places) changes[place].clear();
    changes[places.empty() ? end : places.front()] = RtfEscape(text) + (places.empty() ? "{" : "");
}

std::vector<StatusReport::Picture> StatusReport::FindPictures() const {
    const auto& tokens = text_.Tokens();
    std::vector<Picture> found;
    std::vector<std::size_t> open;  // pictures whose group has not ended, by their place in `found`
    std::vector<std::size_t> depths;
    std::size_t depth = 0;
    RtfGroups groups;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        groups.Take(i, tokens[i]);
        depth += tokens[i].IsOpen() ? 1 : 0;
        if (tokens[i].IsClose()) {
            if (!open.empty() && depths.back() == depth) {
                found[open.back()].end = i;
                open.pop_back();
                depths.pop_back();
            }
            depth -= depth > 0 ? 1 : 0;
        } else if (tokens[i].Is("pict") && groups.HasGroup() && !groups.Innermost().isMargin &&
                   (depths.empty() || depths.back() != depth)) {
            found.push_back({i, i, false, groups.Innermost().isFallback});
            open.push_back(found.size() - 1);
            depths.push_back(depth);
        } else if (tokens[i].Is("blipuid") && !open.empty()) {
            found[open.back()].marked = true;
        }
    }
    const bool anyMarked =
        std::any_of(found.begin(), found.end(), [](const Picture& each) { return each.marked; });
    if (anyMarked) std::erase_if(found, [](const Picture& each) { return !each.marked && !each.isFallback; });
    return found;
}

void StatusReport::PutPicture(Changes& changes, const Picture& picture, const std::string& data) const {
    const auto& tokens = text_.Tokens();
    bool typed = false;
    std::vector<std::string_view> missing = {"picw", "pich", "picwgoal", "pichgoal"};
    std::size_t depth = 0;
    for (std::size_t i = picture.word + 1; i < picture.end; ++i) {
        const RtfToken& token = tokens[i];
        depth += token.IsOpen() ? 1 : 0;
        depth -= token.IsClose() ? 1 : 0;
        if (depth > 0 || token.IsClose()) continue;
        const std::string_view word = token.Word();
        if (token.IsText() || token.Byte() || word == "bin" || word.starts_with("wbm")) {
            changes[i].clear();
        } else if (IsPictureType(word)) {
            if (typed || word != "pngblip") changes[i] = typed ? "" : WithBlankOf(token, "\\pngblip");
            typed = true;
        } else if (const auto size = SizeNumber(word)) {
            std::erase(missing, word);
            if (token.Number() != size)
                changes[i] = WithBlankOf(token, "\\" + std::string(word) + std::to_string(*size));
        }
    }
    std::string words = typed ? "" : "\\pngblip";
    for (const std::string_view word : missing)
        words += "\\" + std::string(word) + std::to_string(*SizeNumber(word));
    if (!words.empty()) changes[picture.word] = "\\pict" + words;
    changes[picture.end] = data + "}";
}

void StartReportChart(ChartForm& chart, bool earnedValue) {
    if (earnedValue) {
        for (const ChartForm::Option& option : chart.Frame().options)
            if (option.name == "EarnedValueCheck") option.click(true);
    }
    chart.Start();
}

}  // namespace vortan
