// Precedence diagram and work breakdown structure as data.

#include "cli/ChartData.h"

namespace vortan {
namespace {

std::vector<std::string> TextsOf(const PrecedenceForm& form, std::size_t place) {
    return BoxTexts(form.Data(), place, form.TheStyle(), form.Units());
}

}  // namespace

void WriteChartJson(JsonWriter& json, const PrecedenceForm& precedence) {
    const Precedence& data = precedence.Data();
    json.Object([&] {
        json.Member("chart", "precedence");
        json.ArrayMember("boxes", [&] {
            for (std::size_t place = 0; place < data.boxes.size(); ++place) {
                const Precedence::Box& box = data.boxes[place];
                json.Object([&] {
                    json.Member("number", static_cast<std::int64_t>(place + 1));
                    json.Member("project", box.projectName);
                    json.Member("task", box.taskID);
                    json.Member("from", box.fromPercent);
                    json.Member("to", box.toPercent);
                    json.Member("col", box.col);
                    json.Member("row", box.row);
                    json.ArrayMember("lines", [&] {
                        for (const std::string& text : TextsOf(precedence, place)) json.Value(text);
                    });
                });
            }
        });
        json.ArrayMember("links", [&] {
            for (const auto& [from, to] : data.links) {
                json.Array([&, first = from + 1, second = to + 1] {
                    json.Value(first);
                    json.Value(second);
                });
            }
        });
        json.Member("columns", data.Columns());
        json.Member("rows", data.Rows());
    });
}

std::string ChartCsv(const PrecedenceForm& precedence) {
    const Precedence& data = precedence.Data();
    CsvWriter csv;
    for (const char* title : {"Number", "Project", "Task", "From", "To", "Column", "Row", "Before", "Lines"})
        csv.Cell(title);
    csv.EndLine();
    auto link = data.links.begin();
    for (std::size_t place = 0; place < data.boxes.size(); ++place) {
        const Precedence::Box& box = data.boxes[place];
        std::string before;
        for (; link != data.links.end() && static_cast<std::size_t>(link->first) == place; ++link)
            before += (before.empty() ? "" : " ") + std::to_string(link->second + 1);
        csv.Cell(static_cast<double>(place + 1));
        csv.Cell(box.projectName);
        for (const int number : {box.taskID, box.fromPercent, box.toPercent, box.col, box.row})
            csv.Cell(static_cast<double>(number));
        csv.Cell(before);
        for (const std::string& text : TextsOf(precedence, place)) csv.Cell(text);
        csv.EndLine();
    }
    return csv.Text();
}

void WriteChartJson(JsonWriter& json, const WorkBreakdown& breakdown) {
    const auto write = [&](const WorkBreakdown::Text& text, bool box) {
        json.Object([&] {
            json.Member("level", text.level);
            json.Member("text", text.text);
            json.Member("x", text.x);
            json.Member("y", text.y);
            if (!box) return;
            json.Member("width", text.width);
            json.Member("height", text.height);
        });
    };
    json.Object([&] {
        json.Member("chart", "wbs");
        json.ObjectMember("pages", [&] {
            json.Member("across", breakdown.across);
            json.Member("down", breakdown.down);
        });
        json.ArrayMember("boxes", [&] {
            for (const auto& box : breakdown.boxes) write(box, true);
        });
        json.ArrayMember("lines", [&] {
            for (const auto& line : breakdown.lines) write(line, false);
        });
    });
}

std::string ChartCsv(const WorkBreakdown& breakdown) {
    CsvWriter csv;
    for (const char* title : {"Kind", "Level", "Text", "X", "Y", "Width", "Height"}) csv.Cell(title);
    csv.EndLine();
    const auto write = [&](const char* kind, const WorkBreakdown::Text& text) {
        csv.Cell(kind);
        csv.Cell(static_cast<double>(text.level));
        csv.Cell(text.text);
        csv.Cell(static_cast<double>(text.x));
        csv.Cell(static_cast<double>(text.y));
        const bool box = text.width > 0;
        csv.Cell(box ? std::to_string(text.width) : "");
        csv.Cell(box ? std::to_string(text.height) : "");
        csv.EndLine();
    };
    for (const auto& box : breakdown.boxes) write("box", box);
    for (const auto& line : breakdown.lines) write("line", line);
    return csv.Text();
}

}  // namespace vortan
